// A sheet substream: BOF, Index, Dimensions, the cell table (row blocks of Row records, their
// cell records and a DBCell), Window2 and EOF, and the records between them that the library
// does not parse, kept as they are.
//
// Cell records are not kept as objects when a sheet is read: their values go straight to a
// CellSink, wherever they stand in the substream (also outside row blocks, and Label/RString
// text). When a sheet is written, each row block holds its cell records serialised.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "xls/biff_record.h"
#include "xls/string_list.h"

namespace xls {

class StreamWindow;

// Receives the cell values of a sheet as it is read, each with its format index (XF).
class ORDERVIEW_API CellSink {
public:
    virtual ~CellSink();
    virtual void Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value) = 0;
    virtual void Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value) = 0;
    // `wide` tells whether the text was stored 16-bit; otherwise every code unit is below 256.
    virtual void Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text,
                      bool wide) = 0;
    // Shared string `index` of the table the sheet was read with (valid); by default its Text.
    virtual void SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                            std::u16string_view text, bool wide);
    // A cell pointing at shared string `index`, which the table does not hold (a damaged file);
    // by default ignored.
    virtual void MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index);
    // A boolean (0, 1) or an error code, stored as such or as a formula's result; by default its
    // Integer.
    virtual void Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError);
    // A cell with a format and no value; by default ignored.
    virtual void Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf);
};

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

    class ORDERVIEW_API CellTable {
    public:
        class ORDERVIEW_API RowBlock {
        public:
            // A row's column range, height and format.
            class ORDERVIEW_API Row : public Record {
            public:
                Row();
                std::size_t Read(const char* stream) override;
                void Serialize() override;
                std::uint16_t row = 0, firstCol = 0, lastColPlus1 = 0, height = 0x00FF;
                std::uint16_t options = 0x0100, xf = 0x000F;
            };

            // Offsets from the block's first Row record and between the rows' first cells.
            class ORDERVIEW_API DBCell : public Record {
            public:
                DBCell();
                std::size_t Read(const char* stream) override;
                void Serialize() override;
                std::uint32_t firstRowOffset = 0;
                std::vector<std::uint16_t> cellOffsets;
            };

            // The cell records. Each reads its fields from its data and writes them back; Append
            // serialises a record straight into a row block's buffer.
            class ORDERVIEW_API CellBlock {
            public:
                class ORDERVIEW_API Blank : public Record {
                public:
                    Blank();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    static constexpr std::uint16_t kDataSize = 6;
                    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                       std::uint16_t xf);
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                };
                class ORDERVIEW_API BoolErr : public Record {
                public:
                    BoolErr();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    static constexpr std::uint16_t kDataSize = 8;
                    // Writes the data (kDataSize bytes) at `p`; Serialize and Append both use it.
                    static void Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                                    std::uint8_t value, std::uint8_t isError);
                    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                       std::uint16_t xf, std::uint8_t value, std::uint8_t isError);
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                    std::uint8_t value = 0, isError = 0;
                };
                class ORDERVIEW_API LabelSST : public Record {
                public:
                    LabelSST();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    static constexpr std::uint16_t kDataSize = 10;
                    // Writes the data (kDataSize bytes) at `p`; Serialize and Append both use it.
                    static void Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                                    std::uint32_t index);
                    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                       std::uint16_t xf, std::uint32_t index);
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                    std::uint32_t index = 0;
                };
                class ORDERVIEW_API MulBlank : public Record {
                public:
                    MulBlank();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    std::uint16_t row = 0, firstCol = 0;
                    std::vector<std::uint16_t> xfs;
                };
                class ORDERVIEW_API MulRK : public Record {
                public:
                    MulRK();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    struct Item {
                        std::uint16_t xf;
                        std::uint32_t rk;
                    };
                    std::uint16_t row = 0, firstCol = 0;
                    std::vector<Item> items;
                };
                class ORDERVIEW_API Number : public Record {
                public:
                    Number();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    static constexpr std::uint16_t kDataSize = 14;
                    // Writes the data (kDataSize bytes) at `p`; Serialize and Append both use it.
                    static void Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                                    double value);
                    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                       std::uint16_t xf, double value);
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                    double value = 0;
                };
                class ORDERVIEW_API RK : public Record {
                public:
                    RK();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    static constexpr std::uint16_t kDataSize = 10;
                    // Writes the data (kDataSize bytes) at `p`; Serialize and Append both use it.
                    static void Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                                    std::uint32_t rk);
                    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                       std::uint16_t xf, std::uint32_t rk);
                    // The number an RK value stands for; `integral` when it is a whole number
                    // that fits an int32 (then `asInt` holds it).
                    static double Decode(std::uint32_t rk, bool& integral, std::int32_t& asInt);
                    // The RK form of an integer, when it fits the 30 bits of one.
                    static bool EncodeInteger(std::int32_t value, std::uint32_t& rk);
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                    std::uint32_t rk = 0;
                };
                class ORDERVIEW_API Formula : public Record {
                public:
                    Formula();
                    std::size_t Read(const char* stream) override;
                    void Serialize() override;
                    // The cached result: a number, or (marked by 0xFFFF in its last two bytes)
                    // a string in the following String record (0), a boolean (1), an error (2)
                    // or an empty string (3).
                    std::uint16_t row = 0, col = 0, xf = 0x0F;
                    std::uint8_t result[8] = {};
                    std::uint16_t options = 0;
                    std::uint32_t chain = 0;
                    std::vector<std::uint8_t> parsedExpression;

                    class ORDERVIEW_API Array : public Record { public: Array(); };
                    class ORDERVIEW_API ShrFmla : public Record { public: ShrFmla(); };
                    class ORDERVIEW_API ShrFmla1 : public Record { public: ShrFmla1(); };
                    class ORDERVIEW_API Table : public Record { public: Table(); };
                    // The cached text result of the formula before it.
                    class ORDERVIEW_API String : public Record {
                    public:
                        String();
                        std::size_t Read(const char* stream) override;
                        void Serialize() override;
                        std::u16string text;
                        bool wide = false;
                    };
                };
            };

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
            std::size_t RecordSize();
            // Writes the block into `stream` of `capacity` bytes; returns the bytes written, or 0
            // when they do not fit.
            std::size_t Write(char* stream, std::size_t capacity);
        };

        std::vector<RowBlock> rowBlocks;
        std::size_t RecordSize();
        std::size_t Write(char* stream, std::size_t capacity);
    };

    Worksheet();
    // Reads a sheet substream until EOF, handing every cell value to `sink` (may be null);
    // `strings` and `wideStrings` are the workbook's shared strings. Returns the bytes consumed,
    // 0 when the substream is damaged.
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
