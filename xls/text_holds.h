// One text lent to many cells while a sheet is loaded. A string cell's text block counts its
// holders with an atomic add per copy; a loaded sheet makes hundreds of thousands of copies of a
// few thousand texts, so the holds are counted here and added to the block once.
//
// While holds are pending the block carries a reserve of holds, so that a lent cell dropped
// before the count is settled (a cell that a later record overwrites) never frees the text.
// The text must not be copied to another thread before Settle; the destructor settles.
#pragma once

#include <cstddef>
#include <cstdint>

#include "xls/cell.h"

namespace xls {

class TextHolds {
public:
    TextHolds() = default;
    ~TextHolds() { Settle(); }
    TextHolds(const TextHolds&) = delete;
    TextHolds& operator=(const TextHolds&) = delete;

    bool empty() const { return text_.Type() == Cell::kUndefined; }
    // Sets the text; the holds of an earlier text are settled first.
    void SetString(const char* text, std::size_t length);
    void SetWString(const wchar_t* text, std::size_t length);
    // Makes `cell` a holder of the text with format `xf` (its old value released); the text
    // must have been set.
    void LendTo(Cell& cell, std::uint16_t xf)
    {
        if (!reserved_) return;
        if (cell.type_ >= Cell::kString) cell.Release();
        cell.value_ = text_.value_;
        cell.length_ = text_.length_;
        cell.type_ = text_.type_;
        cell.logical_ = Cell::kNotLogical;
        cell.xf_ = xf;
        // The count stays above the reserve's worth of lent cells: a full reserve is added now.
        if (++pending_ == kHoldReserve) TopUp();
    }
    // Adds the pending holds to the text's count and takes the reserve back.
    void Settle();

private:
    // The holds a lent text carries until its count is settled: more than a sheet has cells.
    static constexpr std::uint32_t kHoldReserve = 1u << 24;
    void Reserve();
    void TopUp();
    void* Chars() const;  // the text block's characters

    Cell text_;
    std::uint32_t pending_ = 0;
    bool reserved_ = false;
};

}  // namespace xls
