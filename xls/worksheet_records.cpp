#include "xls/worksheet_records.h"

#include <climits>
#include <cmath>
#include <cstring>

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;
using biff::WriteFields;
using RowBlock = Worksheet::CellTable::RowBlock;
using CellBlock = RowBlock::CellBlock;

CellSink::~CellSink() = default;

void CellSink::SharedText(std::uint16_t row, std::uint16_t col, std::uint32_t, const std::u16string& text, bool wide)
{
    Text(row, col, text, wide);
}

namespace {

// Grows `out` by one record of `size` data bytes, writes its header and the cell's row, column
// and format, and returns where the rest of the data goes.
std::uint8_t* CellRecord(std::vector<std::uint8_t>& out, std::uint16_t code, std::uint16_t size, std::uint16_t row,
                         std::uint16_t col, std::uint16_t xf)
{
    const std::size_t at = out.size();
    out.resize(at + 4 + size);
    std::uint8_t* p = out.data() + at;
    biff::Put16(p, code);
    biff::Put16(p + 2, size);
    biff::Put16(p + 4, row);
    biff::Put16(p + 6, col);
    biff::Put16(p + 8, xf);
    return p + 10;
}

}  // namespace

// --- Index ---
Worksheet::Index::Index() : Record(0x020B) {}
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
std::size_t Worksheet::Index::DataSize() { return 16 + 4 * dbCellPositions.size(); }
std::size_t Worksheet::Index::RecordSize() { return PartsSize(DataSize()); }
std::size_t Worksheet::Index::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U32(0);
        b.U32(firstRow);
        b.U32(lastRowPlus1);
        b.U32(defColWidthPosition);
        for (std::uint32_t p : dbCellPositions) b.U32(p);
    });
}

// --- Dimensions ---
Worksheet::Dimensions::Dimensions() : Record(0x0200) {}
std::size_t Worksheet::Dimensions::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        firstRow = c.U32();
        lastRowPlus1 = c.U32();
        firstCol = c.U16();
        lastColPlus1 = c.U16();
    });
}
std::size_t Worksheet::Dimensions::DataSize() { return 14; }
std::size_t Worksheet::Dimensions::RecordSize() { return 18; }
std::size_t Worksheet::Dimensions::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U32(firstRow);
        b.U32(lastRowPlus1);
        b.U16(firstCol);
        b.U16(lastColPlus1);
        b.U16(0);
    });
}

// --- Window2 ---
Worksheet::Window2::Window2() : Record(0x023E) {}
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
std::size_t Worksheet::Window2::DataSize() { return 18; }
std::size_t Worksheet::Window2::RecordSize() { return 22; }
std::size_t Worksheet::Window2::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        for (std::uint16_t v : {options, topRow, leftCol, gridColor, std::uint16_t{0}, zoomPageBreak, zoomNormal}) b.U16(v);
        b.U32(0);
    });
}

// --- Row ---
RowBlock::Row::Row() : Record(0x0208) {}
std::size_t RowBlock::Row::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        firstCol = c.U16();
        lastColPlus1 = c.U16();
        height = c.U16();
        c.U32();
        options = c.U16();
        xf = c.U16();
    });
}
std::size_t RowBlock::Row::DataSize() { return 16; }
std::size_t RowBlock::Row::RecordSize() { return 20; }
std::size_t RowBlock::Row::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        for (std::uint16_t v : {row, firstCol, lastColPlus1, height}) b.U16(v);
        b.U32(0);
        b.U16(options);
        b.U16(xf);
    });
}

// --- DBCell ---
RowBlock::DBCell::DBCell() : Record(0x00D7) {}
std::size_t RowBlock::DBCell::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        firstRowOffset = c.U32();
        cellOffsets.clear();
        while (c.left() >= 2) cellOffsets.push_back(c.U16());
    });
}
std::size_t RowBlock::DBCell::DataSize() { return 4 + 2 * cellOffsets.size(); }
std::size_t RowBlock::DBCell::RecordSize() { return PartsSize(DataSize()); }
std::size_t RowBlock::DBCell::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U32(firstRowOffset);
        for (std::uint16_t v : cellOffsets) b.U16(v);
    });
}

// --- Cell records ---
CellBlock::Blank::Blank() : Record(0x0201) {}
std::size_t CellBlock::Blank::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
    });
}
std::size_t CellBlock::Blank::DataSize() { return 6; }
std::size_t CellBlock::Blank::RecordSize() { return 10; }
std::size_t CellBlock::Blank::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(row);
        b.U16(col);
        b.U16(xf);
    });
}

CellBlock::BoolErr::BoolErr() : Record(0x0205) {}
std::size_t CellBlock::BoolErr::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
        value = c.U8();
        isError = c.U8();
    });
}
std::size_t CellBlock::BoolErr::DataSize() { return 8; }
std::size_t CellBlock::BoolErr::RecordSize() { return 12; }
std::size_t CellBlock::BoolErr::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(row);
        b.U16(col);
        b.U16(xf);
        b.U8(value);
        b.U8(isError);
    });
}

CellBlock::LabelSST::LabelSST() : Record(0x00FD) {}
std::size_t CellBlock::LabelSST::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
        index = c.U32();
    });
}
std::size_t CellBlock::LabelSST::DataSize() { return 10; }
std::size_t CellBlock::LabelSST::RecordSize() { return 14; }
std::size_t CellBlock::LabelSST::Write(char* stream)
{
    data.clear();
    Append(data, row, col, xf, index);
    std::memcpy(stream, data.data(), data.size());
    return data.size();
}
void CellBlock::LabelSST::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                 std::uint16_t xf, std::uint32_t index)
{
    biff::Put32(CellRecord(out, 0x00FD, 10, row, col, xf), index);
}

CellBlock::MulBlank::MulBlank() : Record(0x00BE) {}
std::size_t CellBlock::MulBlank::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        firstCol = c.U16();
        xfs.clear();
        while (c.left() >= 4) xfs.push_back(c.U16());  // the last u16 is the last column
    });
}
std::size_t CellBlock::MulBlank::DataSize() { return 6 + 2 * xfs.size(); }
std::size_t CellBlock::MulBlank::RecordSize() { return PartsSize(DataSize()); }
std::size_t CellBlock::MulBlank::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(row);
        b.U16(firstCol);
        for (std::uint16_t xf : xfs) b.U16(xf);
        b.U16(static_cast<std::uint16_t>(firstCol + xfs.size() - 1));
    });
}

CellBlock::MulRK::MulRK() : Record(0x00BD) {}
std::size_t CellBlock::MulRK::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        firstCol = c.U16();
        items.clear();
        while (c.left() >= 8) {
            const std::uint16_t xf = c.U16();
            items.push_back({xf, c.U32()});
        }
    });
}
std::size_t CellBlock::MulRK::DataSize() { return 6 + 6 * items.size(); }
std::size_t CellBlock::MulRK::RecordSize() { return PartsSize(DataSize()); }
std::size_t CellBlock::MulRK::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(row);
        b.U16(firstCol);
        for (const Item& item : items) {
            b.U16(item.xf);
            b.U32(item.rk);
        }
        b.U16(static_cast<std::uint16_t>(firstCol + items.size() - 1));
    });
}

CellBlock::Number::Number() : Record(0x0203) {}
std::size_t CellBlock::Number::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
        value = c.F64();
    });
}
std::size_t CellBlock::Number::DataSize() { return 14; }
std::size_t CellBlock::Number::RecordSize() { return 18; }
std::size_t CellBlock::Number::Write(char* stream)
{
    data.clear();
    Append(data, row, col, xf, value);
    std::memcpy(stream, data.data(), data.size());
    return data.size();
}
void CellBlock::Number::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                               std::uint16_t xf, double value)
{
    biff::PutF64(CellRecord(out, 0x0203, 14, row, col, xf), value);
}

CellBlock::RK::RK() : Record(0x027E) {}
std::size_t CellBlock::RK::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
        rk = c.U32();
    });
}
std::size_t CellBlock::RK::DataSize() { return 10; }
std::size_t CellBlock::RK::RecordSize() { return 14; }
std::size_t CellBlock::RK::Write(char* stream)
{
    data.clear();
    Append(data, row, col, xf, rk);
    std::memcpy(stream, data.data(), data.size());
    return data.size();
}
void CellBlock::RK::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                           std::uint32_t rk)
{
    biff::Put32(CellRecord(out, 0x027E, 10, row, col, xf), rk);
}

double CellBlock::RK::Decode(std::uint32_t rk, bool& integral, std::int32_t& asInt)
{
    const bool hundredths = (rk & 1) != 0;
    double value;
    if (rk & 2) {
        const std::int32_t whole = static_cast<std::int32_t>(rk) >> 2;  // arithmetic: the sign stays
        if (!hundredths) {
            integral = true;
            asInt = whole;
            return whole;
        }
        value = whole / 100.0;
        integral = whole % 100 == 0;
        asInt = whole / 100;
        return value;
    }
    const std::uint64_t bits = static_cast<std::uint64_t>(rk & 0xFFFFFFFCu) << 32;
    std::memcpy(&value, &bits, sizeof value);
    if (hundredths) value /= 100;
    integral = std::isfinite(value) && value == std::trunc(value) && value >= INT_MIN && value <= INT_MAX;
    asInt = integral ? static_cast<std::int32_t>(value) : 0;
    return value;
}

bool CellBlock::RK::EncodeInteger(std::int32_t value, std::uint32_t& rk)
{
    if (value < -(1 << 29) || value >= (1 << 29)) return false;
    rk = (static_cast<std::uint32_t>(value) << 2) | 2;
    return true;
}

CellBlock::Formula::Formula() : Record(0x0006) {}
std::size_t CellBlock::Formula::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        row = c.U16();
        col = c.U16();
        xf = c.U16();
        for (auto& b : result) b = c.U8();
        options = c.U16();
        chain = c.U32();
        parsedExpression.assign(data.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(c.at(), data.size())),
                                data.end());
    });
}
std::size_t CellBlock::Formula::DataSize() { return 20 + parsedExpression.size(); }
std::size_t CellBlock::Formula::RecordSize() { return PartsSize(DataSize()); }
std::size_t CellBlock::Formula::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(row);
        b.U16(col);
        b.U16(xf);
        b.Bytes(result, sizeof result);
        b.U16(options);
        b.U32(chain);
        b.Bytes(parsedExpression.data(), parsedExpression.size());
    });
}

CellBlock::Formula::Array::Array() : Record(0x0221) {}
CellBlock::Formula::ShrFmla::ShrFmla() : Record(0x00BC) {}
CellBlock::Formula::ShrFmla1::ShrFmla1() : Record(0x04BC) {}
CellBlock::Formula::Table::Table() : Record(0x0036) {}

CellBlock::Formula::String::String() : Record(0x0207) {}
std::size_t CellBlock::Formula::String::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        const std::uint16_t length = c.U16();
        wide = (c.U8() & 1) != 0;
        text = c.Chars(length, wide);
    });
}
std::size_t CellBlock::Formula::String::DataSize() { return 3 + text.size() * (wide ? 2 : 1); }
std::size_t CellBlock::Formula::String::RecordSize() { return PartsSize(DataSize()); }
std::size_t CellBlock::Formula::String::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(static_cast<std::uint16_t>(text.size()));
        b.U8(wide ? 1 : 0);
        b.Chars(text, wide);
    });
}

// --- Row blocks ---
std::size_t RowBlock::RecordSize() { return 20 * rows.size() + cells.size() + dbCell.RecordSize(); }

std::size_t RowBlock::Write(char* stream)
{
    std::size_t at = 0;
    for (Row& row : rows) at += row.Write(stream + at);
    if (!cells.empty()) std::memcpy(stream + at, cells.data(), cells.size());
    at += cells.size();
    at += dbCell.Write(stream + at);
    return at;
}

std::size_t Worksheet::CellTable::RecordSize()
{
    std::size_t size = 0;
    for (RowBlock& block : rowBlocks) size += block.RecordSize();
    return size;
}

std::size_t Worksheet::CellTable::Write(char* stream)
{
    std::size_t at = 0;
    for (RowBlock& block : rowBlocks) at += block.Write(stream + at);
    return at;
}

// --- Worksheet ---
Worksheet::Worksheet() { bof.type = 0x0010; }

std::size_t Worksheet::RecordSize()
{
    return bof.RecordSize() + index.RecordSize() + dimensions.RecordSize() + cellTable.RecordSize() +
           window2.RecordSize() + eof.RecordSize();
}

std::size_t Worksheet::Write(char* stream)
{
    std::size_t at = 0;
    at += bof.Write(stream + at);
    at += index.Write(stream + at);
    at += dimensions.Write(stream + at);
    at += cellTable.Write(stream + at);
    at += window2.Write(stream + at);
    at += eof.Write(stream + at);
    return at;
}

void Worksheet::AdjustDBCellPositions(std::size_t streamPosition)
{
    index.dbCellPositions.assign(cellTable.rowBlocks.size(), 0);  // the Index's size counts them
    std::size_t at = streamPosition + bof.RecordSize() + index.RecordSize() + dimensions.RecordSize();
    index.dbCellPositions.clear();
    for (RowBlock& block : cellTable.rowBlocks) {
        const std::size_t firstRow = at;
        const std::size_t cellsStart = firstRow + 20 * block.rows.size();
        const std::size_t dbCellAt = cellsStart + block.cells.size();
        block.dbCell.firstRowOffset = static_cast<std::uint32_t>(dbCellAt - firstRow);
        block.dbCell.cellOffsets.clear();
        // The first row's cells from the start of the second Row record; each later row's from
        // the previous row's first cell.
        std::size_t previous = firstRow + 20;
        for (std::size_t offset : block.firstCellOfRow) {
            const std::size_t position = cellsStart + offset;
            block.dbCell.cellOffsets.push_back(static_cast<std::uint16_t>(position - previous));
            previous = position;
        }
        index.dbCellPositions.push_back(static_cast<std::uint32_t>(dbCellAt));
        at = dbCellAt + block.dbCell.RecordSize();
    }
}

std::size_t Worksheet::Read(const char* stream, std::size_t size, CellSink* sink,
                            const std::vector<std::u16string>* strings, const std::vector<bool>* wideStrings)
{
    const auto* base = reinterpret_cast<const std::uint8_t*>(stream);
    std::size_t at = 0;
    bool pendingString = false;  // a formula whose text result follows in a String record
    std::uint16_t pendingRow = 0, pendingCol = 0;
    int depth = 0;               // nested substreams (embedded charts) have a BOF and EOF of their own
    while (at + 4 <= size) {
        const std::uint16_t code = biff::U16(base + at);
        const std::size_t length = biff::U16(base + at + 2);
        if (length > size - at - 4) return 0;  // the record runs past the substream
        const std::uint8_t* p = base + at + 4;
        if (at == 0 && code != 0x0809) return 0;
        Cursor c(p, length);
        if (code == 0x0809) ++depth;
        const bool nested = depth > 1;  // counted before an EOF closes its substream
        if (code == 0x000A) --depth;
        if (nested) {  // inside an embedded substream: its records are not this sheet's
            at += 4 + length;
            continue;
        }
        switch (code) {
        case 0x0809: bof.ReadFrom(stream + at, size - at); break;
        case 0x020B: index.ReadFrom(stream + at, size - at); break;
        case 0x0200: dimensions.ReadFrom(stream + at, size - at); break;
        case 0x023E: window2.ReadFrom(stream + at, size - at); break;
        case 0x000A: return at + 4;
        case 0x0203: {  // Number
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            const double value = c.F64();
            if (c.ok() && sink) sink->Double(row, col, value);
            break;
        }
        case 0x027E: {  // RK
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            const std::uint32_t rk = c.U32();
            bool integral = false;
            std::int32_t asInt = 0;
            const double value = CellBlock::RK::Decode(rk, integral, asInt);
            if (c.ok() && sink) integral ? sink->Integer(row, col, asInt) : sink->Double(row, col, value);
            break;
        }
        case 0x00BD: {  // MulRK: row, first column, (xf, rk) pairs, last column
            const std::uint16_t row = c.U16(), first = c.U16();
            for (std::size_t col = first; c.left() >= 8 && col <= 0xFFFF; ++col) {
                c.U16();
                bool integral = false;
                std::int32_t asInt = 0;
                const double value = CellBlock::RK::Decode(c.U32(), integral, asInt);
                if (!sink) continue;
                const auto column = static_cast<std::uint16_t>(col);
                integral ? sink->Integer(row, column, asInt) : sink->Double(row, column, value);
            }
            break;
        }
        case 0x00FD: {  // LabelSST
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            const std::uint32_t sst = c.U32();
            if (c.ok() && sink && strings && sst < strings->size())
                sink->SharedText(row, col, sst, (*strings)[sst],
                                 wideStrings && sst < wideStrings->size() && (*wideStrings)[sst]);
            break;
        }
        case 0x0204:    // Label
        case 0x00D6: {  // RString: text, then formatting runs
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            const std::uint16_t count = c.U16();
            const bool wide = (c.U8() & 1) != 0;
            const std::u16string text = c.Chars(count, wide);
            if (c.ok() && sink) sink->Text(row, col, text, wide);
            break;
        }
        case 0x0205: {  // BoolErr
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            const std::uint8_t value = c.U8();
            if (c.ok() && sink) sink->Integer(row, col, value);
            break;
        }
        case 0x0006: {  // Formula: its cached result
            const std::uint16_t row = c.U16(), col = c.U16();
            c.U16();
            std::uint8_t result[8];
            for (auto& b : result) b = c.U8();
            if (!c.ok() || !sink) break;
            if (result[6] == 0xFF && result[7] == 0xFF) {
                if (result[0] == 0) {
                    pendingString = true;
                    pendingRow = row;
                    pendingCol = col;
                } else if (result[0] == 1 || result[0] == 2) {
                    sink->Integer(row, col, result[2]);
                } else if (result[0] == 3) {
                    sink->Text(row, col, std::u16string(), false);
                }
            } else {
                sink->Double(row, col, biff::F64(result));
            }
            break;
        }
        case 0x0207: {  // String: the text result of the formula before it
            const std::uint16_t count = c.U16();
            const bool wide = (c.U8() & 1) != 0;
            const std::u16string text = c.Chars(count, wide);
            if (pendingString && sink) sink->Text(pendingRow, pendingCol, text, wide);
            pendingString = false;
            break;
        }
        default:
            break;  // Row, DBCell, Blank, MulBlank and records not understood: read and dropped
        }
        at += 4 + length;
    }
    return 0;  // no EOF
}

}  // namespace xls
