// The cell table of a sheet as it is written: row blocks of up to 32 Row records, their cell
// records (serialised) and a DBCell giving the offsets between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "xls/biff_record.h"
#include "xls/cell_records.h"
#include "xls/record_codes.h"

namespace xls {

// A row's column range, height, options and format, as its Row record holds them.
struct RowFields {
    std::uint16_t row = 0, firstCol = 0, lastColPlus1 = 0, height = 0x00FF;
    std::uint16_t options = 0x0100, xf = 0x000F;
    // Reads a Row record's data.
    static void ReadData(biff::Cursor& c, RowFields& r)
    {
        r.row = c.U16();
        r.firstCol = c.U16();
        r.lastColPlus1 = c.U16();
        r.height = c.U16();
        c.U32();
        r.options = c.U16();
        r.xf = c.U16();
    }
    // True when the height, options and format are those of a row with no record of its own.
    bool Plain() const
    {
        const RowFields plain;
        return height == plain.height && options == plain.options && xf == plain.xf;
    }
};

class ORDERVIEW_API RowBlock {
public:
    // Row: a row's column range, height and format.
    class ORDERVIEW_API Row : public Record, public RowFields {
    public:
        Row();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
    };

    // DBCell: offsets from the block's first Row record and between the rows' first cells.
    class ORDERVIEW_API DBCell : public Record {
    public:
        DBCell();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint32_t firstRowOffset = 0;
        std::vector<std::uint16_t> cellOffsets;
    };

    using CellBlock = xls::CellBlock;

    std::vector<Row> rows;
    std::vector<std::uint8_t> cells;          // the rows' cell records, serialised
    std::vector<std::size_t> firstCellOfRow;  // offset in `cells` of each row's first record
    DBCell dbCell;

    // The stream size of a block of `rowCount` Row records and `cellBytes` of cell records,
    // and where its DBCell starts from the block's start.
    static std::size_t SizeOf(std::size_t rowCount, std::size_t cellBytes);
    static std::size_t DBCellOffset(std::size_t rowCount, std::size_t cellBytes);
    // Fills the DBCell from the rows and cells: the offset back to the first Row record
    // and the offsets between the rows' first cells.
    void SetDBCellOffsets();
    // The stream size of the block as it stands.
    std::size_t RecordSize();
    // Writes the block into `stream` of `capacity` bytes; returns the bytes written, or 0
    // when they do not fit.
    std::size_t Write(char* stream, std::size_t capacity);
};

// A sheet's row blocks in row order.
class ORDERVIEW_API CellTable {
public:
    using RowBlock = xls::RowBlock;

    std::vector<RowBlock> rowBlocks;
    // The stream size of all the blocks.
    std::size_t RecordSize();
    // Writes the blocks into `stream` of `capacity` bytes; returns the bytes written, or 0 when
    // they do not fit.
    std::size_t Write(char* stream, std::size_t capacity);
};

}  // namespace xls
