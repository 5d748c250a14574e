#include "xls/worksheet_records.h"

#include <climits>
#include <cmath>
#include <cstring>
#if defined(_MSC_VER) && (defined(_M_X64) || defined(_M_IX86))
#include <xmmintrin.h>
#endif

#include "xls/stream_window.h"

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;
using RowBlock = Worksheet::CellTable::RowBlock;
using CellBlock = RowBlock::CellBlock;

CellSink::~CellSink() = default;

void CellSink::SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t,
                          std::u16string_view text, bool wide)
{
    Text(row, col, xf, std::u16string(text), wide);
}

void CellSink::MissingText(std::uint16_t, std::uint16_t, std::uint16_t, std::uint32_t) {}
void CellSink::Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool)
{
    Integer(row, col, xf, value);
}
void CellSink::Blank(std::uint16_t, std::uint16_t, std::uint16_t) {}

namespace {

// Grows `out` by one record of `size` data bytes (a size one part holds), writes its header and
// returns where the data goes.
std::uint8_t* CellRecord(std::vector<std::uint8_t>& out, std::uint16_t code, std::uint16_t size)
{
    const std::size_t at = out.size();
    out.resize(at + 4 + size);
    std::uint8_t* p = out.data() + at;
    biff::Put16(p, code);
    biff::Put16(p + 2, size);
    return p + 4;
}

// The row, column and format that every cell record starts with.
void PutCell(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf)
{
    biff::Put16(p, row);
    biff::Put16(p + 2, col);
    biff::Put16(p + 4, xf);
}

}  // namespace

// Of the records here only String continues its text in CONTINUE parts (each part starting with
// the flag byte of its characters). Index, DBCell, MulBlank, MulRK and Formula keep within one
// part: the lists and the formula expression of an oversized record read from a file are
// trimmed to what one part holds. The fixed-size records cannot outgrow one.

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
void Worksheet::Dimensions::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(firstRow);
    b.U32(lastRowPlus1);
    b.U16(firstCol);
    b.U16(lastColPlus1);
    b.U16(0);
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
void Worksheet::Window2::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {options, topRow, leftCol, gridColor, std::uint16_t{0}, zoomPageBreak, zoomNormal}) b.U16(v);
    b.U32(0);
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
void RowBlock::Row::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {row, firstCol, lastColPlus1, height}) b.U16(v);
    b.U32(0);
    b.U16(options);
    b.U16(xf);
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
void RowBlock::DBCell::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(firstRowOffset);
    const std::size_t count = std::min(cellOffsets.size(), (kMaxRecordData - 4) / 2);
    for (std::size_t i = 0; i < count; ++i) b.U16(cellOffsets[i]);
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
void CellBlock::Blank::Serialize()
{
    biff::Fields(data, continueIndices);
    data.resize(kDataSize);
    PutCell(data.data(), row, col, xf);
}
void CellBlock::Blank::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col, std::uint16_t xf)
{
    PutCell(CellRecord(out, 0x0201, kDataSize), row, col, xf);
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
void CellBlock::BoolErr::Serialize()
{
    biff::Fields(data, continueIndices);
    data.resize(kDataSize);
    Put(data.data(), row, col, xf, value, isError);
}
void CellBlock::BoolErr::Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                             std::uint8_t value, std::uint8_t isError)
{
    PutCell(p, row, col, xf);
    p[6] = value;
    p[7] = isError;
}
void CellBlock::BoolErr::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                std::uint16_t xf, std::uint8_t value, std::uint8_t isError)
{
    Put(CellRecord(out, 0x0205, kDataSize), row, col, xf, value, isError);
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
void CellBlock::LabelSST::Serialize()
{
    biff::Fields(data, continueIndices);
    data.resize(kDataSize);
    Put(data.data(), row, col, xf, index);
}
void CellBlock::LabelSST::Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                              std::uint32_t index)
{
    PutCell(p, row, col, xf);
    biff::Put32(p + 6, index);
}
void CellBlock::LabelSST::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                                 std::uint16_t xf, std::uint32_t index)
{
    Put(CellRecord(out, 0x00FD, kDataSize), row, col, xf, index);
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
void CellBlock::MulBlank::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(row);
    b.U16(firstCol);
    const std::size_t count = std::min(xfs.size(), (kMaxRecordData - 6) / 2);
    for (std::size_t i = 0; i < count; ++i) b.U16(xfs[i]);
    b.U16(static_cast<std::uint16_t>(firstCol + count - 1));
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
void CellBlock::Number::Serialize()
{
    biff::Fields(data, continueIndices);
    data.resize(kDataSize);
    Put(data.data(), row, col, xf, value);
}
void CellBlock::Number::Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value)
{
    PutCell(p, row, col, xf);
    biff::PutF64(p + 6, value);
}
void CellBlock::Number::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col,
                               std::uint16_t xf, double value)
{
    Put(CellRecord(out, 0x0203, kDataSize), row, col, xf, value);
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
void CellBlock::RK::Serialize()
{
    biff::Fields(data, continueIndices);
    data.resize(kDataSize);
    Put(data.data(), row, col, xf, rk);
}
void CellBlock::RK::Put(std::uint8_t* p, std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t rk)
{
    PutCell(p, row, col, xf);
    biff::Put32(p + 6, rk);
}
void CellBlock::RK::Append(std::vector<std::uint8_t>& out, std::uint16_t row, std::uint16_t col, std::uint16_t xf,
                           std::uint32_t rk)
{
    Put(CellRecord(out, 0x027E, kDataSize), row, col, xf, rk);
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
void CellBlock::Formula::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(row);
    b.U16(col);
    b.U16(xf);
    b.Bytes(result, sizeof result);
    b.U16(options);
    b.U32(chain);
    b.Bytes(parsedExpression.data(), std::min(parsedExpression.size(), kMaxRecordData - 20));
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
        const bool startWide = (c.U8() & 1) != 0;
        wide = false;
        text.clear();
        biff::ContinuedChars(c, length, startWide, continueIndices, wide, text);
    });
}
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

// --- Row blocks ---
std::size_t RowBlock::DBCellOffset(std::size_t rowCount, std::size_t cellBytes)
{
    static const std::size_t kRowSize = Row().RecordSize();
    return rowCount * kRowSize + cellBytes;
}

std::size_t RowBlock::SizeOf(std::size_t rowCount, std::size_t cellBytes)
{
    DBCell dbCell;
    dbCell.cellOffsets.resize(rowCount);
    return DBCellOffset(rowCount, cellBytes) + dbCell.RecordSize();
}

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

std::size_t RowBlock::RecordSize()
{
    std::size_t size = cells.size() + dbCell.RecordSize();
    for (Row& row : rows) size += row.RecordSize();
    return size;
}

std::size_t RowBlock::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (Row& row : rows) out.Put(row);
    out.Put(cells.data(), cells.size());
    out.Put(dbCell);
    return out.result();
}

std::size_t Worksheet::CellTable::RecordSize()
{
    std::size_t size = 0;
    for (RowBlock& block : rowBlocks) size += block.RecordSize();
    return size;
}

std::size_t Worksheet::CellTable::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (RowBlock& block : rowBlocks) out.Took(block.Write(out.next(), out.room()));
    return out.result();
}

// --- Worksheet ---
Worksheet::Worksheet() { bof.type = 0x0010; }

std::size_t Worksheet::HeadSize()
{
    std::size_t size = bof.RecordSize() + index.RecordSize() + dimensions.RecordSize();
    for (Record& r : head) size += r.RecordSize();
    return size;
}

std::size_t Worksheet::TailSize()
{
    std::size_t size = window2.RecordSize() + eof.RecordSize();
    for (Record& r : tail) size += r.RecordSize();
    return size;
}

std::size_t Worksheet::RecordSize() { return HeadSize() + cellTable.RecordSize() + TailSize(); }

std::size_t Worksheet::WriteHead(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    out.Put(bof);
    out.Put(index);
    for (Record& r : head) out.Put(r);
    out.Put(dimensions);
    return out.result();
}

std::size_t Worksheet::WriteTail(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    for (std::size_t i = 0; i < tail.size() && i < window2At; ++i) out.Put(tail[i]);
    out.Put(window2);
    for (std::size_t i = window2At; i < tail.size(); ++i) out.Put(tail[i]);
    out.Put(eof);
    return out.result();
}

std::size_t Worksheet::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    out.Took(WriteHead(out.next(), out.room()));
    if (!cellTable.rowBlocks.empty()) out.Took(cellTable.Write(out.next(), out.room()));
    out.Took(WriteTail(out.next(), out.room()));
    return out.result();
}

void Worksheet::AdjustDBCellPositions(std::size_t streamPosition)
{
    std::vector<BlockSize> blocks;
    for (RowBlock& block : cellTable.rowBlocks) {
        block.SetDBCellOffsets();
        blocks.push_back({block.rows.size(), block.cells.size()});
    }
    AdjustDBCellPositions(streamPosition, blocks);
}

void Worksheet::AdjustDBCellPositions(std::size_t streamPosition, const std::vector<BlockSize>& blocks)
{
    index.dbCellPositions.assign(blocks.size(), 0);  // the Index's size counts them
    std::size_t at = streamPosition + bof.RecordSize() + index.RecordSize();
    index.defColWidthPosition = 0;
    for (Record& r : head) {
        if (r.code == 0x0055 && index.defColWidthPosition == 0)  // DefColWidth
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

namespace {

// How far ahead of the record being read the walk asks for the stream's bytes. The walk cannot
// run ahead by itself: each record's position comes from the length of the one before it, so
// without a hint every cache line of a large sheet is waited for in turn.
constexpr std::size_t kReadAhead = 1024;

void Prefetch(const std::uint8_t* p)
{
#if defined(__GNUC__) || defined(__clang__)
    __builtin_prefetch(p);
#elif defined(_MSC_VER) && (defined(_M_X64) || defined(_M_IX86))
    _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_T0);
#else
    (void)p;
#endif
}

// Records of the cell table: their values go to the sink, and the table is rebuilt on save.
bool InCellTable(std::uint16_t code)
{
    switch (code) {
    case 0x0208: case 0x00D7: case 0x0201: case 0x0205: case 0x00FD: case 0x0204: case 0x00D6: case 0x00BE:
    case 0x00BD: case 0x0203: case 0x027E: case 0x0006: case 0x0221: case 0x00BC: case 0x04BC: case 0x0207:
    case 0x0036:
        return true;
    default:
        return false;
    }
}

}  // namespace

std::size_t Worksheet::Read(const char* stream, std::size_t size, CellSink* sink,
                            const StringList* strings, const std::vector<bool>* wideStrings)
{
    StreamWindow window(reinterpret_cast<const std::uint8_t*>(stream), size);
    return Read(window, 0, sink, strings, wideStrings);
}

std::size_t Worksheet::Read(StreamWindow& window, std::size_t start, CellSink* sink,
                            const StringList* strings, const std::vector<bool>* wideStrings)
{
    head.clear();
    tail.clear();
    window2At = 0;
    rowFormats.clear();
    std::size_t at = start;
    bool pendingString = false;  // a formula whose text result follows in a String record
    std::uint16_t pendingRow = 0, pendingCol = 0, pendingXF = 0;
    int depth = 0;               // nested substreams (embedded charts) have a BOF and EOF of their own
    bool inTable = false, window2Seen = false;
    // Counted once: the size of a vector<bool> takes several steps.
    const std::size_t stringCount = strings ? strings->size() : 0;
    const std::size_t wideCount = wideStrings ? wideStrings->size() : 0;
    // The window's held bytes [heldFrom, heldTo), copied here: the walk checks them per record,
    // and would reload them from the window after every call to the sink. The walk only moves
    // on, so heldFrom <= at <= heldTo holds throughout.
    const std::uint8_t* held = nullptr;  // the bytes of position heldFrom
    std::size_t heldFrom = at, heldTo = at;
    auto refresh = [&]() {
        heldFrom = at;
        heldTo = at + window.HeldFrom(at);
        held = heldTo > at ? window.At(at) : nullptr;
    };
    // Makes [at, at + n) readable.
    auto hold = [&](std::size_t n) -> bool {
        if (n <= heldTo - at) return true;
        const bool holds = window.Hold(at, n);
        refresh();
        return holds;
    };
    // A record read whole, with its CONTINUE parts; the bytes it took, 0 when it is damaged.
    auto read = [&](Record& record) -> std::size_t {
        window.HoldRecordChain(at);
        refresh();
        return held ? record.ReadFrom(reinterpret_cast<const char*>(held), heldTo - at) : 0;
    };
    // A record kept as it is: before the cell table, or after it.
    auto keep = [&]() -> std::size_t {
        std::vector<Record>& list = (inTable || window2Seen) ? tail : head;
        list.emplace_back();
        const std::size_t consumed = read(list.back());
        if (consumed == 0) list.pop_back();
        return consumed;
    };
    while (hold(4)) {
        const std::uint8_t* header = held + (at - heldFrom);
        if (heldTo - at > kReadAhead) Prefetch(header + kReadAhead);
        const std::uint16_t code = biff::U16(header);
        const std::size_t length = biff::U16(header + 2);
        if (!hold(4 + length)) return 0;  // the record runs past the substream
        const std::uint8_t* p = held + (at - heldFrom) + 4;
        // The commonest cell records, first: each has a fixed size, so one length check comes
        // before its fields are read in place (a short one is skipped).
        if (depth == 1 && (code == 0x0203 || code == 0x00FD || code == 0x027E)) {
            inTable = true;
            if (code == 0x0203) {  // Number
                if (length >= 14 && sink)
                    sink->Double(biff::U16(p), biff::U16(p + 2), biff::U16(p + 4), biff::F64(p + 6));
            } else if (code == 0x00FD) {  // LabelSST
                if (length >= 10 && sink) {
                    const std::uint16_t row = biff::U16(p), col = biff::U16(p + 2), xf = biff::U16(p + 4);
                    const std::uint32_t sst = biff::U32(p + 6);
                    if (sst < stringCount)
                        sink->SharedText(row, col, xf, sst, (*strings)[sst], sst < wideCount && (*wideStrings)[sst]);
                    else
                        sink->MissingText(row, col, xf, sst);
                }
            } else if (length >= 10 && sink) {  // RK
                bool integral = false;
                std::int32_t asInt = 0;
                const double value = CellBlock::RK::Decode(biff::U32(p + 6), integral, asInt);
                const std::uint16_t row = biff::U16(p), col = biff::U16(p + 2), xf = biff::U16(p + 4);
                integral ? sink->Integer(row, col, xf, asInt) : sink->Double(row, col, xf, value);
            }
            at += 4 + length;
            continue;
        }
        if (at == start && code != 0x0809) return 0;
        Cursor c(p, length);
        if (code == 0x0809) ++depth;
        const bool nested = depth > 1;  // counted before an EOF closes its substream
        if (code == 0x000A) --depth;
        if (nested) {  // inside an embedded substream: kept whole, not this sheet's cells
            const std::size_t consumed = keep();
            if (consumed == 0) return 0;
            at += consumed;
            continue;
        }
        if (!inTable && InCellTable(code)) inTable = true;
        switch (code) {
        case 0x0809: read(bof); break;
        case 0x020B: read(index); break;
        case 0x0200: read(dimensions); break;
        case 0x023E:
            read(window2);
            window2Seen = true;
            window2At = tail.size();
            break;
        case 0x000A: return at + 4 - start;
        case kContinue: break;  // a part of a record that is rebuilt, or a stray one: dropped
        case 0x0208: {  // Row: a height, options or format other than the default are kept
            const CellTable::RowBlock::Row plain;
            const std::uint16_t row = c.U16();
            c.Skip(4);  // the column range is rebuilt
            const std::uint16_t height = c.U16();
            c.Skip(4);
            const std::uint16_t options = c.U16(), xf = c.U16();
            if (c.ok() && (height != plain.height || options != plain.options || xf != plain.xf)) {
                CellTable::RowBlock::Row& kept = rowFormats[row];
                kept.row = row;
                kept.height = height;
                kept.options = options;
                kept.xf = xf;
            }
            break;
        }
        case 0x00BD: {  // MulRK: row, first column, (xf, rk) pairs, last column
            const std::uint16_t row = c.U16(), first = c.U16();
            for (std::size_t col = first; c.left() >= 8 && col <= 0xFFFF; ++col) {
                const std::uint16_t xf = c.U16();
                bool integral = false;
                std::int32_t asInt = 0;
                const double value = CellBlock::RK::Decode(c.U32(), integral, asInt);
                if (!sink) continue;
                const auto column = static_cast<std::uint16_t>(col);
                integral ? sink->Integer(row, column, xf, asInt) : sink->Double(row, column, xf, value);
            }
            break;
        }
        case 0x0201: {  // Blank: a cell with a format and no value
            const std::uint16_t row = c.U16(), col = c.U16(), xf = c.U16();
            if (c.ok() && sink) sink->Blank(row, col, xf);
            break;
        }
        case 0x00BE: {  // MulBlank: row, first column, formats, last column
            const std::uint16_t row = c.U16(), first = c.U16();
            for (std::size_t col = first; c.left() >= 4 && col <= 0xFFFF; ++col) {
                const std::uint16_t xf = c.U16();
                if (sink) sink->Blank(row, static_cast<std::uint16_t>(col), xf);
            }
            break;
        }
        case 0x0204:    // Label
        case 0x00D6: {  // RString: text, then formatting runs
            const std::uint16_t row = c.U16(), col = c.U16(), xf = c.U16();
            const std::uint16_t count = c.U16();
            const bool wide = (c.U8() & 1) != 0;
            const std::u16string text = c.Chars(count, wide);
            if (c.ok() && sink) sink->Text(row, col, xf, text, wide);
            break;
        }
        case 0x0205: {  // BoolErr
            const std::uint16_t row = c.U16(), col = c.U16(), xf = c.U16();
            const std::uint8_t value = c.U8(), isError = c.U8();
            if (c.ok() && sink) sink->Logical(row, col, xf, value, isError != 0);
            break;
        }
        case 0x0006: {  // Formula: its cached result
            const std::uint16_t row = c.U16(), col = c.U16(), xf = c.U16();
            std::uint8_t result[8];
            for (auto& b : result) b = c.U8();
            if (!c.ok() || !sink) break;
            if (result[6] == 0xFF && result[7] == 0xFF) {
                if (result[0] == 0) {
                    pendingString = true;
                    pendingRow = row;
                    pendingCol = col;
                    pendingXF = xf;
                } else if (result[0] == 1 || result[0] == 2) {
                    sink->Logical(row, col, xf, result[2], result[0] == 2);
                } else if (result[0] == 3) {
                    sink->Text(row, col, xf, std::u16string(), false);
                }
            } else {
                sink->Double(row, col, xf, biff::F64(result));
            }
            break;
        }
        case 0x0207: {  // String: the text result of the formula before it
            CellBlock::Formula::String record;
            if (read(record) == 0) return 0;
            if (pendingString && sink) sink->Text(pendingRow, pendingCol, pendingXF, record.text, record.wide);
            pendingString = false;
            at += record.recordSize;
            continue;
        }
        default:
            if (InCellTable(code)) break;  // DBCell and the formula companions: rebuilt or dropped
            {
                const std::size_t consumed = keep();
                if (consumed == 0) return 0;
                at += consumed;
            }
            continue;
        }
        at += 4 + length;
    }
    return 0;  // no EOF
}

}  // namespace xls
