#include "xls/cell_records.h"

#include <algorithm>

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;

// Of the cell records only String continues its text in CONTINUE parts (each part starting with
// the flag byte of its characters). MulBlank, MulRK and Formula keep within one part: the lists
// and the formula expression of an oversized record read from a file are trimmed to what one
// part holds. The fixed-size records cannot outgrow one.

// Makes an empty MulBlank record.
CellBlock::MulBlank::MulBlank() : Record(kMulBlank) {}

// Reads a MulBlank record: its row, first column and the cells' formats.
std::size_t CellBlock::MulBlank::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        xfs.clear();
        ReadData(c, row, firstCol, [this](std::size_t, std::uint16_t xf) {
            xfs.push_back(xf);
            return true;
        });
    });
}

// Writes a MulBlank record's data: row, first column, formats, last column.
void CellBlock::MulBlank::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(row);
    b.U16(firstCol);
    const std::size_t count = std::min(xfs.size(), (kMaxRecordData - 6) / 2);
    for (std::size_t i = 0; i < count; ++i) b.U16(xfs[i]);
    b.U16(static_cast<std::uint16_t>(firstCol + count - 1));
}

// Makes an empty MulRK record.
CellBlock::MulRK::MulRK() : Record(kMulRK) {}

// Reads a MulRK record: its row, first column and the cells' formats and RK values.
std::size_t CellBlock::MulRK::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        items.clear();
        ReadData(c, row, firstCol, [this](std::size_t, Item item) {
            items.push_back(item);
            return true;
        });
    });
}

// Writes a MulRK record's data: row, first column, (format, RK value) pairs, last column.
void CellBlock::MulRK::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(row);
    b.U16(firstCol);
    const std::size_t count = std::min(items.size(), (kMaxRecordData - 6) / 6);
    for (std::size_t i = 0; i < count; ++i) {
        b.U16(items[i].xf);
        b.U32(items[i].rk);
    }
    b.U16(static_cast<std::uint16_t>(firstCol + count - 1));
}

// Makes an empty Formula record.
CellBlock::Formula::Formula() : Record(kFormula) {}

// Reads a Formula record: its fixed data, then the parsed expression as bytes.
std::size_t CellBlock::Formula::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        ReadData(c, *this);
        parsedExpression.assign(data.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(c.at(), data.size())),
                                data.end());
    });
}

// Writes a Formula record's data: the cell, cached result, options, chain and expression.
void CellBlock::Formula::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(row);
    b.U16(col);
    b.U16(xf);
    b.Bytes(result, sizeof result);
    b.U16(options);
    b.U32(chain);
    b.Bytes(parsedExpression.data(), std::min(parsedExpression.size(), kMaxRecordData - kFixedSize));
}

// Make the formula companions, kept only as plain records.
CellBlock::Formula::Array::Array() : Record(kArray) {}
CellBlock::Formula::ShrFmla::ShrFmla() : Record(kShrFmla) {}
CellBlock::Formula::ShrFmla1::ShrFmla1() : Record(kShrFmla1) {}
CellBlock::Formula::Table::Table() : Record(kTable) {}

// Makes an empty String record.
CellBlock::Formula::String::String() : Record(kString) {}

// Reads a String record: the text, whose characters may continue in CONTINUE parts.
std::size_t CellBlock::Formula::String::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        const std::uint16_t length = c.U16();
        const bool startWide = (c.U8() & 1) != 0;
        wide = false;
        text.clear();
        biff::ContinuedChars(c, length, startWide, continueIndices, wide, text);
    });
}

// Writes a String record's data: length, flag and characters, in parts of at most 8224 bytes.
void CellBlock::Formula::String::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    const bool sixteen = wide || !biff::FitsCompressed(text);
    const std::size_t length = std::min<std::size_t>(text.size(), 0xFFFF);
    b.U16(static_cast<std::uint16_t>(length));
    b.U8(sixteen ? 1 : 0);
    std::size_t partStart = 0;
    biff::AppendContinuedChars(data, continueIndices, partStart, text.substr(0, length), sixteen);
}

}  // namespace xls
