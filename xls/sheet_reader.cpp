#include "xls/sheet_reader.h"

#if defined(_MSC_VER) && (defined(_M_X64) || defined(_M_IX86))
#include <xmmintrin.h>
#endif

#include "xls/cell_records.h"
#include "xls/record_codes.h"
#include "xls/detail/stream_window.h"
#include "xls/worksheet_records.h"

namespace xls {

using biff::Cursor;
using CellBlock = RowBlock::CellBlock;

CellSink::~CellSink() = default;

// Hands a shared string cell to the sink as its text.
void CellSink::SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t,
                          std::u16string_view text, bool wide)
{
    Text(row, col, xf, std::u16string(text), wide);
}

// Ignores a cell whose shared string is missing.
void CellSink::MissingText(std::uint16_t, std::uint16_t, std::uint16_t, std::uint32_t) {}

// Hands a boolean or error cell to the sink as an integer.
void CellSink::Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool)
{
    Integer(row, col, xf, value);
}

// Ignores a blank cell.
void CellSink::Blank(std::uint16_t, std::uint16_t, std::uint16_t) {}

namespace {

// How far ahead of the record being read the walk asks for the stream's bytes. The walk cannot
// run ahead by itself: each record's position comes from the length of the one before it, so
// without a hint every cache line of a large sheet is waited for in turn.
constexpr std::size_t kReadAhead = 1024;

// Asks the processor for the cache line at `p`.
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

// True for the records of the cell table: their values go to the sink, and the table is rebuilt
// on save.
bool InCellTable(std::uint16_t code)
{
    switch (code) {
    case kRow: case kDBCell: case kBlank: case kBoolErr: case kLabelSST: case kLabel: case kRString:
    case kMulBlank: case kMulRK: case kNumber: case kRK: case kFormula: case kArray: case kShrFmla:
    case kShrFmla1: case kString: case kTable:
        return true;
    default:
        return false;
    }
}

// The workbook's shared strings, with their counts taken once (the size of a vector<bool> takes
// several steps).
struct SharedStrings {
    const StringList* strings;
    const std::vector<bool>* wide;
    std::size_t count, wideCount;
};

// A formula whose text result follows in a String record.
struct PendingString {
    bool pending = false;
    CellAddress cell;
};

// Decodes a fixed-size cell record of `length` data bytes at `p`; false (the record skipped)
// when it is shorter than its fields.
template <class Fields>
bool ReadFixed(const std::uint8_t* p, std::size_t length, Fields& cell)
{
    if (length < Fields::kDataSize) return false;
    Cursor c(p, Fields::kDataSize);
    Fields::ReadData(c, cell);
    return true;
}

// Hands an RK value to the sink: an integer when it is one, else a double.
void PutRK(CellSink& sink, std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t rk)
{
    bool integral = false;
    std::int32_t asInt = 0;
    const double value = RKCell::Decode(rk, integral, asInt);
    integral ? sink.Integer(row, col, xf, asInt) : sink.Double(row, col, xf, value);
}

// Reads a Number record.
void ReadNumber(const std::uint8_t* p, std::size_t length, CellSink& sink)
{
    NumberCell cell;
    if (ReadFixed(p, length, cell)) sink.Double(cell.row, cell.col, cell.xf, cell.value);
}

// Reads an RK record.
void ReadRK(const std::uint8_t* p, std::size_t length, CellSink& sink)
{
    RKCell cell;
    if (ReadFixed(p, length, cell)) PutRK(sink, cell.row, cell.col, cell.xf, cell.rk);
}

// Reads a LabelSST record: the shared string it points at, or a missing one.
void ReadLabelSST(const std::uint8_t* p, std::size_t length, CellSink& sink, const SharedStrings& shared)
{
    LabelSSTCell cell;
    if (!ReadFixed(p, length, cell)) return;
    const std::uint32_t sst = cell.index;
    if (sst < shared.count)
        sink.SharedText(cell.row, cell.col, cell.xf, sst, (*shared.strings)[sst],
                        sst < shared.wideCount && (*shared.wide)[sst]);
    else
        sink.MissingText(cell.row, cell.col, cell.xf, sst);
}

// Reads a Blank record.
void ReadBlank(const std::uint8_t* p, std::size_t length, CellSink& sink)
{
    BlankCell cell;
    if (ReadFixed(p, length, cell)) sink.Blank(cell.row, cell.col, cell.xf);
}

// Reads a BoolErr record.
void ReadBoolErr(const std::uint8_t* p, std::size_t length, CellSink& sink)
{
    BoolErrCell cell;
    if (ReadFixed(p, length, cell)) sink.Logical(cell.row, cell.col, cell.xf, cell.value, cell.isError != 0);
}

// Reads a MulRK record: one value a column, up to the last column a sheet has.
void ReadMulRK(Cursor& c, CellSink& sink)
{
    std::uint16_t row = 0, first = 0;
    CellBlock::MulRK::ReadData(c, row, first, [&](std::size_t i, CellBlock::MulRK::Item item) {
        const std::size_t col = first + i;
        if (col > 0xFFFF) return false;
        PutRK(sink, row, static_cast<std::uint16_t>(col), item.xf, item.rk);
        return true;
    });
}

// Reads a MulBlank record: one blank a column, up to the last column a sheet has.
void ReadMulBlank(Cursor& c, CellSink& sink)
{
    std::uint16_t row = 0, first = 0;
    CellBlock::MulBlank::ReadData(c, row, first, [&](std::size_t i, std::uint16_t xf) {
        const std::size_t col = first + i;
        if (col > 0xFFFF) return false;
        sink.Blank(row, static_cast<std::uint16_t>(col), xf);
        return true;
    });
}

// Reads a Label or RString record: the text (an RString's formatting runs are not read).
void ReadLabel(Cursor& c, CellSink& sink)
{
    LabelCell cell;
    LabelCell::ReadData(c, cell);
    if (c.ok()) sink.Text(cell.row, cell.col, cell.xf, cell.text, cell.wide);
}

// Reads a Formula record's cached result: a number, boolean, error or empty text goes to the
// sink; a text result is noted as pending, for the String record that follows.
void ReadFormula(const std::uint8_t* p, std::size_t length, CellSink& sink, PendingString& text)
{
    if (length < FormulaCell::kResultEnd) return;
    Cursor c(p, length);
    FormulaCell cell;
    FormulaCell::ReadData(c, cell);  // options and chain may be missing: only the result is used
    const std::uint8_t* result = cell.result;
    if (result[6] == 0xFF && result[7] == 0xFF) {
        if (result[0] == 0) {
            text.pending = true;
            text.cell = cell;
        } else if (result[0] == 1 || result[0] == 2) {
            sink.Logical(cell.row, cell.col, cell.xf, result[2], result[0] == 2);
        } else if (result[0] == 3) {
            sink.Text(cell.row, cell.col, cell.xf, std::u16string(), false);
        }
    } else {
        sink.Double(cell.row, cell.col, cell.xf, biff::F64(result));
    }
}

// Reads a Row record: a height, options or format other than the default are kept, by row.
void ReadRow(Cursor& c, std::map<std::uint16_t, RowBlock::Row>& rowFormats)
{
    RowFields fields;
    RowFields::ReadData(c, fields);
    if (!c.ok() || fields.Plain()) return;
    RowBlock::Row& kept = rowFormats[fields.row];  // the column range is rebuilt
    kept.row = fields.row;
    kept.height = fields.height;
    kept.options = fields.options;
    kept.xf = fields.xf;
}

}  // namespace

// Reads a sheet substream held in memory.
std::size_t Worksheet::Read(const char* stream, std::size_t size, CellSink* sink, const StringList* strings,
                            const std::vector<bool>* wideStrings)
{
    StreamWindow window(reinterpret_cast<const std::uint8_t*>(stream), size);
    return Read(window, 0, sink, strings, wideStrings);
}

// Reads a sheet substream from `start` of a workbook stream: the records the sheet keeps are
// read into it, the cell values go to `sink`.
std::size_t Worksheet::Read(StreamWindow& window, std::size_t start, CellSink* sink, const StringList* strings,
                            const std::vector<bool>* wideStrings)
{
    head.clear();
    tail.clear();
    window2At = 0;
    rowFormats.clear();
    std::size_t at = start;
    PendingString pendingString;
    int depth = 0;  // nested substreams (embedded charts) have a BOF and EOF of their own
    bool inTable = false, window2Seen = false;
    const SharedStrings shared{strings, wideStrings, strings ? strings->size() : 0,
                               wideStrings ? wideStrings->size() : 0};
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
        if (depth == 1 && (code == kNumber || code == kLabelSST || code == kRK)) {
            inTable = true;
            if (sink) {
                if (code == kNumber)
                    ReadNumber(p, length, *sink);
                else if (code == kLabelSST)
                    ReadLabelSST(p, length, *sink, shared);
                else
                    ReadRK(p, length, *sink);
            }
            at += 4 + length;
            continue;
        }
        if (at == start && code != kBOF) return 0;
        Cursor c(p, length);
        if (code == kBOF) ++depth;
        const bool nested = depth > 1;  // counted before an EOF closes its substream
        if (code == kEOF) --depth;
        if (nested) {  // inside an embedded substream: kept whole, not this sheet's cells
            const std::size_t consumed = keep();
            if (consumed == 0) return 0;
            at += consumed;
            continue;
        }
        if (!inTable && InCellTable(code)) inTable = true;
        switch (code) {
        case kBOF: read(bof); break;
        case kIndex: read(index); break;
        case kDimensions: read(dimensions); break;
        case kWindow2:
            read(window2);
            window2Seen = true;
            window2At = tail.size();
            break;
        case kEOF: return at + 4 - start;
        case kContinue: break;  // a part of a record that is rebuilt, or a stray one: dropped
        case kRow: ReadRow(c, rowFormats); break;
        case kMulRK: if (sink) ReadMulRK(c, *sink); break;
        case kBlank: if (sink) ReadBlank(p, length, *sink); break;
        case kMulBlank: if (sink) ReadMulBlank(c, *sink); break;
        case kLabel:
        case kRString: if (sink) ReadLabel(c, *sink); break;
        case kBoolErr: if (sink) ReadBoolErr(p, length, *sink); break;
        case kFormula: if (sink) ReadFormula(p, length, *sink, pendingString); break;
        case kString: {  // the text result of the formula before it
            CellBlock::Formula::String record;
            if (read(record) == 0) return 0;
            const CellAddress& cell = pendingString.cell;
            if (pendingString.pending && sink) sink->Text(cell.row, cell.col, cell.xf, record.text, record.wide);
            pendingString.pending = false;
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
