// A sheet substream: BOF, Index, Dimensions, the cell table (row blocks, in row_blocks.h), Window2
// and EOF, and the records between them that the library does not parse, kept as they are.
//
// Cell records are not kept as objects when a sheet is read: the sheet reader (sheet_reader.cpp)
// hands their values straight to a CellSink, wherever they stand in the substream. When a sheet
// is written, each row block holds its cell records serialised.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "xls/biff_record.h"
#include "xls/record_codes.h"
#include "xls/row_blocks.h"
#include "xls/sheet_reader.h"
#include "xls/string_list.h"

namespace xls {

class StreamWindow;

class ORDERVIEW_API Worksheet {
public:
    // Stream positions of the row blocks' DBCell records, for fast row lookup.
    class ORDERVIEW_API Index : public Record {
    public:
        Index();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint32_t firstRow = 0, lastRowPlus1 = 0, defColWidthPosition = 0;
        std::vector<std::uint32_t> dbCellPositions;
    };

    // The used range: first row, last row + 1, first column, last column + 1.
    class ORDERVIEW_API Dimensions : public Record {
    public:
        Dimensions();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint32_t firstRow = 0, lastRowPlus1 = 0;
        std::uint16_t firstCol = 0, lastColPlus1 = 0;
    };

    // Sheet window settings.
    class ORDERVIEW_API Window2 : public Record {
    public:
        Window2();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint16_t options = 0x00B6, topRow = 0, leftCol = 0, gridColor = 64;
        std::uint16_t zoomPageBreak = 0, zoomNormal = 0;
    };

    using CellTable = xls::CellTable;

    Worksheet();
    // Reads a sheet substream until EOF (the sheet reader, sheet_reader.cpp), handing every cell
    // value to `sink` (may be null); `strings` and `wideStrings` are the workbook's shared
    // strings. Returns the bytes consumed, 0 when the substream is damaged.
    std::size_t Read(const char* stream, std::size_t size, CellSink* sink,
                     const StringList* strings = nullptr, const std::vector<bool>* wideStrings = nullptr);
    // The same from position `start` of a workbook stream read through a window (internal).
    std::size_t Read(StreamWindow& stream, std::size_t start, CellSink* sink,
                     const StringList* strings, const std::vector<bool>* wideStrings);
    // Writes the sheet into `stream` of `capacity` bytes; returns the bytes written, or 0 when
    // they do not fit.
    std::size_t Write(char* stream, std::size_t capacity);
    std::size_t RecordSize();
    // Fills the Index and the DBCell offsets for a sheet whose BOF is at `streamPosition`.
    void AdjustDBCellPositions(std::size_t streamPosition);

    // The sheet in three parts, for a writer that makes the row blocks one at a time: the
    // records before the cell table (BOF to Dimensions) and after it (to EOF). Write and
    // RecordSize are head + cell table + tail.
    struct BlockSize {
        std::size_t rowCount, cellBytes;
    };
    // Fills the Index for a sheet whose BOF is at `streamPosition` and whose cell table has
    // row blocks of these sizes.
    void AdjustDBCellPositions(std::size_t streamPosition, const std::vector<BlockSize>& blocks);
    std::size_t HeadSize();
    std::size_t TailSize();
    std::size_t WriteHead(char* stream, std::size_t capacity);
    std::size_t WriteTail(char* stream, std::size_t capacity);

    BOF bof;
    Index index;
    Dimensions dimensions;
    CellTable cellTable;
    Window2 window2;
    Eof eof;
    // Records the sheet does not parse, kept as read and written back in their order: `head`
    // between the Index and the Dimensions (they stood before the cell table), `tail` after the
    // cell table, its first `window2At` before the Window2.
    std::vector<Record> head;
    std::vector<Record> tail;
    std::size_t window2At = 0;
    // The Row records read with a height, options or format other than the default, by row number.
    std::map<std::uint16_t, CellTable::RowBlock::Row> rowFormats;
};

}  // namespace xls
