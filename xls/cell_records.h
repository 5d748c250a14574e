// The cell records of a sheet's cell table. Each record's data layout is defined once, by the
// ReadData / WriteData functions of its fields: the record classes use them to read and write
// whole records, and the sheet reader uses them to decode a record where it lies in the stream.
//
// The five fixed-size records (Blank, BoolErr, LabelSST, Number, RK) share one class template,
// CellRecord; MulBlank, MulRK and Formula, whose data has lists, have classes of their own.
#pragma once

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "xls/biff_record.h"
#include "xls/record_codes.h"

namespace xls {

// The row, column and format index that every cell record starts with (6 bytes).
struct CellAddress {
    std::uint16_t row = 0, col = 0, xf = 0x0F;

    // Reads a cell record's row, column and format.
    static void ReadAddress(biff::Cursor& c, CellAddress& a) { a.row = c.U16(); a.col = c.U16(); a.xf = c.U16(); }
    // Writes a cell record's row, column and format at `p`.
    void WriteAddress(std::uint8_t* p) const { biff::Put16(p, row); biff::Put16(p + 2, col); biff::Put16(p + 4, xf); }
};

// Blank: a cell with a format and no value.
struct BlankCell : CellAddress {
    enum : std::uint16_t { kCode = kBlank, kDataSize = 6 };
    // Reads a Blank record's data.
    static void ReadData(biff::Cursor& c, BlankCell& cell) { ReadAddress(c, cell); }
    // Writes a Blank record's data (kDataSize bytes) at `p`.
    void WriteData(std::uint8_t* p) const { WriteAddress(p); }
};

// BoolErr: a boolean (0, 1) or an error code.
struct BoolErrCell : CellAddress {
    enum : std::uint16_t { kCode = kBoolErr, kDataSize = 8 };
    std::uint8_t value = 0, isError = 0;
    // Reads a BoolErr record's data.
    static void ReadData(biff::Cursor& c, BoolErrCell& cell) { ReadAddress(c, cell); cell.value = c.U8(); cell.isError = c.U8(); }
    // Writes a BoolErr record's data (kDataSize bytes) at `p`.
    void WriteData(std::uint8_t* p) const { WriteAddress(p); p[6] = value; p[7] = isError; }
};

// LabelSST: a cell holding shared string `index` of the workbook's table.
struct LabelSSTCell : CellAddress {
    enum : std::uint16_t { kCode = kLabelSST, kDataSize = 10 };
    std::uint32_t index = 0;
    // Reads a LabelSST record's data.
    static void ReadData(biff::Cursor& c, LabelSSTCell& cell) { ReadAddress(c, cell); cell.index = c.U32(); }
    // Writes a LabelSST record's data (kDataSize bytes) at `p`.
    void WriteData(std::uint8_t* p) const { WriteAddress(p); biff::Put32(p + 6, index); }
};

// Number: a cell holding a 64-bit floating-point number.
struct NumberCell : CellAddress {
    enum : std::uint16_t { kCode = kNumber, kDataSize = 14 };
    double value = 0;
    // Reads a Number record's data.
    static void ReadData(biff::Cursor& c, NumberCell& cell) { ReadAddress(c, cell); cell.value = c.F64(); }
    // Writes a Number record's data (kDataSize bytes) at `p`.
    void WriteData(std::uint8_t* p) const { WriteAddress(p); biff::PutF64(p + 6, value); }
};

// RK: a cell holding a number in 30 bits (an integer, or the high bits of a double, either
// possibly scaled by 100).
struct RKCell : CellAddress {
    enum : std::uint16_t { kCode = kRK, kDataSize = 10 };
    std::uint32_t rk = 0;
    // Reads an RK record's data.
    static void ReadData(biff::Cursor& c, RKCell& cell) { ReadAddress(c, cell); cell.rk = c.U32(); }
    // Writes an RK record's data (kDataSize bytes) at `p`.
    void WriteData(std::uint8_t* p) const { WriteAddress(p); biff::Put32(p + 6, rk); }
    // Decodes an RK value: the number it stands for; `integral` when it is a whole number that
    // fits an int32 (then `asInt` holds it).
    static double Decode(std::uint32_t rk, bool& integral, std::int32_t& asInt)
    {
        const bool hundredths = (rk & 1) != 0;
        if (rk & 2) {
            const std::int32_t whole = static_cast<std::int32_t>(rk) >> 2;  // arithmetic: the sign stays
            if (!hundredths) {
                integral = true;
                asInt = whole;
                return whole;
            }
            integral = whole % 100 == 0;
            asInt = whole / 100;
            return whole / 100.0;
        }
        double value;
        const std::uint64_t bits = static_cast<std::uint64_t>(rk & 0xFFFFFFFCu) << 32;
        std::memcpy(&value, &bits, sizeof value);
        if (hundredths) value /= 100;
        integral = std::isfinite(value) && value == std::trunc(value) && value >= INT_MIN && value <= INT_MAX;
        asInt = integral ? static_cast<std::int32_t>(value) : 0;
        return value;
    }
    // Encodes an integer as an RK value, when it fits the 30 bits of one.
    static bool EncodeInteger(std::int32_t value, std::uint32_t& rk)
    {
        if (value < -(1 << 29) || value >= (1 << 29)) return false;
        rk = (static_cast<std::uint32_t>(value) << 2) | 2;
        return true;
    }
};

// Label and RString: a cell holding its own text (an RString adds formatting runs after it,
// which are not read).
struct LabelCell : CellAddress {
    std::u16string text;
    bool wide = false;
    // Reads a Label or RString record's data up to the end of its text.
    static void ReadData(biff::Cursor& c, LabelCell& label)
    {
        ReadAddress(c, label);
        const std::uint16_t count = c.U16();
        label.wide = (c.U8() & 1) != 0;
        label.text = c.Chars(count, label.wide);
    }
};

// The fixed part of a Formula record: the cell, its cached result, options and chain.
struct FormulaCell : CellAddress {
    enum : std::uint16_t { kResultEnd = 14, kFixedSize = 20 };  // data bytes to the result's end, and in all
    // The cached result: a number, or (marked by 0xFFFF in its last two bytes) a string in
    // the following String record (0), a boolean (1), an error (2) or an empty string (3).
    std::uint8_t result[8] = {};
    std::uint16_t options = 0;
    std::uint32_t chain = 0;
    // Reads a Formula record's fixed data.
    static void ReadData(biff::Cursor& c, FormulaCell& f)
    {
        ReadAddress(c, f);
        for (auto& b : f.result) b = c.U8();
        f.options = c.U16();
        f.chain = c.U32();
    }
};

// Grows `out` by one record of `size` data bytes (a size one part holds), writes its header and
// returns where the data goes.
inline std::uint8_t* AppendRecordHeader(std::vector<std::uint8_t>& out, std::uint16_t code, std::uint16_t size)
{
    const std::size_t at = out.size();
    out.resize(at + 4 + size);
    std::uint8_t* p = out.data() + at;
    biff::Put16(p, code);
    biff::Put16(p + 2, size);
    return p + 4;
}

// A fixed-size cell record: its fields (one of the *Cell structs above) read from its data and
// written back through the fields' ReadData and WriteData.
template <class Fields>
class CellRecord : public Record, public Fields {
public:
    CellRecord() : Record(Fields::kCode) {}
    // Reads the record and its fields (missing bytes read as 0).
    std::size_t Read(const char* stream) override
    {
        return biff::ReadFields(*this, stream,
                                [this](biff::Cursor& c) { Fields::ReadData(c, *this); });
    }
    // Rebuilds the record's data from its fields.
    void Serialize() override
    {
        biff::Fields(data, continueIndices);
        data.resize(Fields::kDataSize);
        Fields::WriteData(data.data());
    }
    // Appends the record of these row, column, format and values to a row block's buffer.
    template <class... Values>
    static void Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                       Values... values)
    {
        const Fields fields{{row, col, xf}, values...};
        fields.WriteData(AppendRecordHeader(out, Fields::kCode, Fields::kDataSize));
    }
};

// The cell records by their record names.
class CellBlock {
public:
    using Blank = CellRecord<BlankCell>;
    using BoolErr = CellRecord<BoolErrCell>;
    using LabelSST = CellRecord<LabelSSTCell>;
    using Number = CellRecord<NumberCell>;
    using RK = CellRecord<RKCell>;

    // MulBlank: blank cells of one row from a first column on, one format each.
    class ORDERVIEW_API MulBlank : public Record {
    public:
        MulBlank();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        // Reads a MulBlank record's data: its row and first column, then hands each cell's
        // format to `each` (with the cell's place in the list) while it returns true; the last
        // column that ends the data is not read.
        template <class Each>
        static void ReadData(biff::Cursor& c, std::uint16_t& row, std::uint16_t& firstCol, Each each)
        {
            row = c.U16();
            firstCol = c.U16();
            for (std::size_t i = 0; c.left() >= 4; ++i)
                if (!each(i, c.U16())) break;
        }
        std::uint16_t row = 0, firstCol = 0;
        std::vector<std::uint16_t> xfs;
    };

    // MulRK: RK cells of one row from a first column on, each with its format.
    class ORDERVIEW_API MulRK : public Record {
    public:
        MulRK();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        struct Item {
            std::uint16_t xf;
            std::uint32_t rk;
        };
        // Reads a MulRK record's data: its row and first column, then hands each cell (its
        // place in the list, format and RK value) to `each` while it returns true; the last
        // column that ends the data is not read.
        template <class Each>
        static void ReadData(biff::Cursor& c, std::uint16_t& row, std::uint16_t& firstCol, Each each)
        {
            row = c.U16();
            firstCol = c.U16();
            for (std::size_t i = 0; c.left() >= 8; ++i) {
                const std::uint16_t xf = c.U16();
                if (!each(i, Item{xf, c.U32()})) break;
            }
        }
        std::uint16_t row = 0, firstCol = 0;
        std::vector<Item> items;
    };

    // Formula: a cell's formula (its parsed expression kept as bytes) and its cached result.
    class ORDERVIEW_API Formula : public Record, public FormulaCell {
    public:
        Formula();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::vector<std::uint8_t> parsedExpression;

        class ORDERVIEW_API Array : public Record { public: Array(); };
        class ORDERVIEW_API ShrFmla : public Record { public: ShrFmla(); };
        class ORDERVIEW_API ShrFmla1 : public Record { public: ShrFmla1(); };
        class ORDERVIEW_API Table : public Record { public: Table(); };
        // String: the cached text result of the formula before it.
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

}  // namespace xls
