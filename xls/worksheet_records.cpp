#include "xls/worksheet_records.h"

#include <algorithm>

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;

// Index keeps within one part: the list of an oversized record read from a file is trimmed to
// what one part holds.

// Makes an empty Index record.
Worksheet::Index::Index() : Record(kIndex) {}

// Reads an Index record: the used rows, the DefColWidth position and the DBCell positions.
std::size_t Worksheet::Index::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        c.U32();
        firstRow = c.U32();
        lastRowPlus1 = c.U32();
        defColWidthPosition = c.U32();
        dbCellPositions.clear();
        while (c.left() >= 4) dbCellPositions.push_back(c.U32());
    });
}

// Writes an Index record's data.
void Worksheet::Index::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(0);
    b.U32(firstRow);
    b.U32(lastRowPlus1);
    b.U32(defColWidthPosition);
    const std::size_t count = std::min(dbCellPositions.size(), (kMaxRecordData - 16) / 4);
    for (std::size_t i = 0; i < count; ++i) b.U32(dbCellPositions[i]);
}

// Makes a Dimensions record of an empty sheet.
Worksheet::Dimensions::Dimensions() : Record(kDimensions) {}

// Reads a Dimensions record: the used range.
std::size_t Worksheet::Dimensions::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        firstRow = c.U32();
        lastRowPlus1 = c.U32();
        firstCol = c.U16();
        lastColPlus1 = c.U16();
    });
}

// Writes a Dimensions record's data.
void Worksheet::Dimensions::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(firstRow);
    b.U32(lastRowPlus1);
    b.U16(firstCol);
    b.U16(lastColPlus1);
    b.U16(0);
}

// Makes a Window2 record of the default settings.
Worksheet::Window2::Window2() : Record(kWindow2) {}

// Reads a Window2 record: options, first visible cell, grid colour and zoom.
std::size_t Worksheet::Window2::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        options = c.U16();
        topRow = c.U16();
        leftCol = c.U16();
        gridColor = c.U16();
        c.U16();
        zoomPageBreak = c.U16();
        zoomNormal = c.U16();
    });
}

// Writes a Window2 record's data.
void Worksheet::Window2::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {options, topRow, leftCol, gridColor, std::uint16_t{0}, zoomPageBreak, zoomNormal}) b.U16(v);
    b.U32(0);
}

// Makes the records of an empty worksheet.
Worksheet::Worksheet() { bof.type = kWorksheetSubstream; }

// Returns the stream size of the records before the cell table.
std::size_t Worksheet::HeadSize()
{
    std::size_t size = bof.RecordSize() + index.RecordSize() + dimensions.RecordSize();
    for (Record& r : head) size += r.RecordSize();
    return size;
}

// Returns the stream size of the records after the cell table.
std::size_t Worksheet::TailSize()
{
    std::size_t size = window2.RecordSize() + eof.RecordSize();
    for (Record& r : tail) size += r.RecordSize();
    return size;
}

// Returns the stream size of the whole sheet.
std::size_t Worksheet::RecordSize() { return HeadSize() + cellTable.RecordSize() + TailSize(); }

// Writes the records before the cell table: BOF, Index, the kept head records, Dimensions.
std::size_t Worksheet::WriteHead(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    out.Put(bof);
    out.Put(index);
    for (Record& r : head) out.Put(r);
    out.Put(dimensions);
    return out.result();
}

// Writes the records after the cell table: the kept tail records around the Window2, and EOF.
std::size_t Worksheet::WriteTail(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (std::size_t i = 0; i < tail.size() && i < window2At; ++i) out.Put(tail[i]);
    out.Put(window2);
    for (std::size_t i = window2At; i < tail.size(); ++i) out.Put(tail[i]);
    out.Put(eof);
    return out.result();
}

// Writes the whole sheet.
std::size_t Worksheet::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    out.Took(WriteHead(out.next(), out.room()));
    if (!cellTable.rowBlocks.empty()) out.Took(cellTable.Write(out.next(), out.room()));
    out.Took(WriteTail(out.next(), out.room()));
    return out.result();
}

// Fills the DBCell offsets of the sheet's own row blocks and the Index.
void Worksheet::AdjustDBCellPositions(std::size_t streamPosition)
{
    std::vector<BlockSize> blocks;
    for (RowBlock& block : cellTable.rowBlocks) {
        block.SetDBCellOffsets();
        blocks.push_back({block.rows.size(), block.cells.size()});
    }
    AdjustDBCellPositions(streamPosition, blocks);
}

// Fills the Index from the sizes of the row blocks: the DefColWidth and DBCell positions.
void Worksheet::AdjustDBCellPositions(std::size_t streamPosition, const std::vector<BlockSize>& blocks)
{
    index.dbCellPositions.assign(blocks.size(), 0);  // the Index's size counts them
    std::size_t at = streamPosition + bof.RecordSize() + index.RecordSize();
    index.defColWidthPosition = 0;
    for (Record& r : head) {
        if (r.code == kDefColWidth && index.defColWidthPosition == 0)
            index.defColWidthPosition = static_cast<std::uint32_t>(at);
        at += r.RecordSize();
    }
    at += dimensions.RecordSize();
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        index.dbCellPositions[i] =
            static_cast<std::uint32_t>(at + RowBlock::DBCellOffset(blocks[i].rowCount, blocks[i].cellBytes));
        at += RowBlock::SizeOf(blocks[i].rowCount, blocks[i].cellBytes);
    }
}

}  // namespace xls
