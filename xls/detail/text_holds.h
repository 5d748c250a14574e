// One text lent to many cells while a sheet is loaded. A string cell's text block counts its
// holders with an atomic add per copy and an atomic subtract per release; a loaded sheet makes
// hundreds of thousands of copies of a few thousand texts. So the cells are lent the text
// (they count no hold, and their sheet keeps the text for them) and the sheet holds each text
// once, handed to it when the sheet is read.
#pragma once

#include <cstddef>
#include <cstdint>

#include "xls/cell.h"

namespace xls {

class Sheet;

class TextHolds {
public:
    TextHolds() = default;
    // A text lent and never handed to its sheet is left to its cells, never freed under them.
    ~TextHolds()
    {
        if (lent()) text_.logical_ = Cell::kLent;
    }
    TextHolds(const TextHolds&) = delete;
    TextHolds& operator=(const TextHolds&) = delete;

    bool empty() const { return text_.Type() == Cell::kUndefined; }
    // Sets the text of an empty holder (one that has a text keeps it).
    void SetString(const char* text, std::size_t length);
    void SetWString(const wchar_t* text, std::size_t length);
    // Makes `cell`, a cell of the sheet the text is handed to, a borrower of the text with format
    // `xf` (its old value released).
    void LendTo(Cell& cell, std::uint16_t xf)
    {
        if (empty()) return;
        if (cell.type_ >= Cell::kString) cell.Release();
        cell.value_ = text_.value_;
        cell.length_ = text_.length_;
        cell.type_ = text_.type_;
        cell.logical_ = Cell::kLent;
        cell.xf_ = xf;
        text_.xf_ = kLentOnce;
    }
    // Gives `sheet` the texts of `count` holders that were lent to a cell, which it keeps while
    // it lives; the holders are empty again.
    static void HandTo(TextHolds* holds, std::size_t count, Sheet& sheet);

private:
    // The holder's own cell records in its (otherwise unused) format whether a cell was lent the
    // text, so that a table of holders takes 16 bytes a string.
    enum : std::uint16_t { kLentOnce = 1 };
    bool lent() const { return text_.xf_ == kLentOnce; }

    Cell text_;
};

}  // namespace xls
