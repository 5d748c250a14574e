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
        if (lent_) text_.logical_ = Cell::kLent;
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
        lent_ = true;
    }
    // Gives the text to `sheet`, which keeps it while it lives, when a cell was lent it; the
    // holder is empty again.
    void HandTo(Sheet& sheet);

private:
    Cell text_;
    bool lent_ = false;
};

}  // namespace xls
