#include "xls/row_blocks.h"

#include <algorithm>

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;

// Makes a Row record of the default height, options and format.
RowBlock::Row::Row() : Record(kRow) {}

// Reads a Row record.
std::size_t RowBlock::Row::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) { ReadData(c, *this); });
}

// Writes a Row record's data: row, columns, height, reserved bytes, options and format.
void RowBlock::Row::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {row, firstCol, lastColPlus1, height}) b.U16(v);
    b.U32(0);
    b.U16(options);
    b.U16(xf);
}

// Makes an empty DBCell record. Like the Index, it keeps within one part: an oversized list
// read from a file is trimmed to what one part holds.
RowBlock::DBCell::DBCell() : Record(kDBCell) {}

// Reads a DBCell record: the offset back to the first Row record and the cell offsets.
std::size_t RowBlock::DBCell::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        firstRowOffset = c.U32();
        cellOffsets.clear();
        while (c.left() >= 2) cellOffsets.push_back(c.U16());
    });
}

// Writes a DBCell record's data.
void RowBlock::DBCell::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(firstRowOffset);
    const std::size_t count = std::min(cellOffsets.size(), (kMaxRecordData - 4) / 2);
    for (std::size_t i = 0; i < count; ++i) b.U16(cellOffsets[i]);
}

// Returns where a block's DBCell starts from the block's start.
std::size_t RowBlock::DBCellOffset(std::size_t rowCount, std::size_t cellBytes)
{
    static const std::size_t kRowSize = Row().RecordSize();
    return rowCount * kRowSize + cellBytes;
}

// Returns the stream size of a block.
std::size_t RowBlock::SizeOf(std::size_t rowCount, std::size_t cellBytes)
{
    DBCell dbCell;
    dbCell.cellOffsets.resize(rowCount);
    return DBCellOffset(rowCount, cellBytes) + dbCell.RecordSize();
}

// Fills the block's DBCell from its rows and cells.
void RowBlock::SetDBCellOffsets()
{
    std::size_t rowsSize = 0;
    for (Row& row : rows) rowsSize += row.RecordSize();
    dbCell.firstRowOffset = static_cast<std::uint32_t>(rowsSize + cells.size());
    dbCell.cellOffsets.clear();
    // From the block's first Row record: the first row's cells from the start of the second Row
    // record; each later row's from the previous row's first cell.
    std::size_t previous = rows.empty() ? 0 : rows.front().RecordSize();
    for (std::size_t offset : firstCellOfRow) {
        const std::size_t position = rowsSize + offset;
        dbCell.cellOffsets.push_back(static_cast<std::uint16_t>(position - previous));
        previous = position;
    }
}

// Returns the stream size of the block as it stands.
std::size_t RowBlock::RecordSize()
{
    std::size_t size = cells.size() + dbCell.RecordSize();
    for (Row& row : rows) size += row.RecordSize();
    return size;
}

// Writes the block: its Row records, its cell records and its DBCell.
std::size_t RowBlock::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (Row& row : rows) out.Put(row);
    out.Put(cells.data(), cells.size());
    out.Put(dbCell);
    return out.result();
}

// Returns the stream size of the cell table.
std::size_t CellTable::RecordSize()
{
    std::size_t size = 0;
    for (RowBlock& block : rowBlocks) size += block.RecordSize();
    return size;
}

// Writes the cell table's row blocks in order.
std::size_t CellTable::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (RowBlock& block : rowBlocks) out.Took(block.Write(out.next(), out.room()));
    return out.result();
}

}  // namespace xls
