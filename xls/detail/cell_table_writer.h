// Writes the cell table of a sheet straight from its grid, one row block at a time, so that a
// save holds the records of one block at once and never the whole table (internal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "xls/detail/shared_string_index.h"
#include "xls/sheet.h"
#include "xls/worksheet_records.h"

namespace xls {

class CellTableWriter {
public:
    using RowRecord = RowBlock::Row;
    using Put = std::function<bool(const void*, std::size_t)>;

    // Rows come from the grid (those with cells) and from `formats` (rows read with a Row
    // record of their own: height, format), both by row number.
    CellTableWriter(Sheet::RowRange grid, const std::map<std::uint16_t, RowRecord>& formats);

    // Lays out the row blocks; each text gets its shared string index. Returns the number of
    // string cells.
    std::size_t Plan(SharedStringIndex& strings);
    const std::vector<Worksheet::BlockSize>& Blocks() const { return blocks_; }
    // The stream size of the planned table.
    std::size_t Size() const { return size_; }
    // The used range of the rows with cells; Empty when no row has one.
    bool Empty() const { return firstRow_ == SIZE_MAX; }
    std::size_t FirstRow() const { return firstRow_; }
    std::size_t LastRow() const { return lastRow_; }
    std::size_t FirstCol() const { return firstCol_; }
    std::size_t LastCol() const { return lastCol_; }

    // Writes the planned blocks to `put`; false when `put` fails or a block comes out at
    // another size than planned (the positions in the stream would be wrong).
    bool Write(const Put& put);

private:
    // One row of the table: its number, its cells (may be none) and its own Row record.
    struct TableRow {
        std::size_t number;
        const Sheet::Row* cells;
        const RowRecord* format;
        std::size_t first, last;  // written columns; first is SIZE_MAX when none
    };
    // Calls `each` for every row that goes into the table, in row order.
    template <class Each>
    void ForEachRow(Each&& each) const;

    Sheet::RowRange grid_;
    const std::map<std::uint16_t, RowRecord>& formats_;
    std::vector<Worksheet::BlockSize> blocks_;
    // The shared string index of each string cell, in table order (a deque: it grows without
    // moving what it holds).
    std::deque<std::uint32_t> texts_;
    std::size_t size_ = 0;
    std::size_t firstRow_ = SIZE_MAX, lastRow_ = 0, firstCol_ = SIZE_MAX, lastCol_ = 0;
};

}  // namespace xls
