#include "xls/detail/grid_sink.h"

#include "xls/utf16.h"

#if defined(__GNUC__) || defined(__clang__)
#define NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define NOINLINE __declspec(noinline)
#else
#define NOINLINE
#endif

namespace xls {

// Makes a sink for `sheet`, with a text holder for each of `sharedStrings` shared strings.
GridSink::GridSink(Sheet& sheet, const Worksheet& records, std::size_t sharedStrings)
    : sheet_(sheet), records_(records), shared_(new TextHolds[sharedStrings]), sharedCount_(sharedStrings)
{
}

// Hands the sheet the shared texts its cells were lent.
GridSink::~GridSink() { TextHolds::HandTo(shared_.get(), sharedCount_, sheet_); }

// Lends a shared string cell the string's converted text.
void GridSink::SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                          std::u16string_view text, bool wide)
{
    TextHolds& converted = shared_[index];
    Cell* cell = sheet_.FindCell(row, col);
    if (!cell || converted.empty() || cell->Type() >= Cell::kString)
        return NewSharedText(row, col, xf, converted, text, wide);
    converted.LendTo(*cell, xf);
}

// Stores an integer cell.
void GridSink::Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value)
{
    Cell* cell = sheet_.FindCell(row, col);
    if (!cell || cell->Type() >= Cell::kString) return NewInteger(row, col, xf, value);
    cell->SetFormat(xf);
    cell->SetInteger(value);
}

// Stores a floating-point cell.
void GridSink::Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value)
{
    Cell* cell = sheet_.FindCell(row, col);
    if (!cell || cell->Type() >= Cell::kString) return NewDouble(row, col, xf, value);
    cell->SetFormat(xf);
    cell->SetDouble(value);
}

// Stores a cell whose shared string is missing as empty text, and counts it.
void GridSink::MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t)
{
    if (Cell* cell = At(row, col, xf)) cell->SetString("", 0);
    ownsTexts_ = true;
    ++missing_;
}

// Stores a boolean or error cell.
void GridSink::Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError)
{
    if (Cell* cell = At(row, col, xf)) cell->SetLogical(value, isError);
}

// Stores a blank cell: its format only.
void GridSink::Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf) { At(row, col, xf); }

// Stores a cell of its own text.
void GridSink::Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text, bool wide)
{
    Cell* cell = At(row, col, xf);
    if (!cell) return;
    ownsTexts_ = true;
    if (wide) {
        const std::wstring w = FromUtf16(text);
        cell->SetWString(w.c_str(), w.size());
    } else {
        const std::string& narrow = Narrow(text);
        cell->SetString(narrow.data(), narrow.size());
    }
}

// Lends a shared string to a new cell or one holding text, converting the string on first use.
NOINLINE void GridSink::NewSharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, TextHolds& converted,
                                      std::u16string_view text, bool wide)
{
    Cell* cell = CellAt(row, col);
    if (!cell) return;
    if (converted.empty()) {
        if (wide) {
            const std::wstring w = FromUtf16(text);
            converted.SetWString(w.data(), w.size());
        } else {
            const std::string& narrow = Narrow(text);
            converted.SetString(narrow.data(), narrow.size());
        }
    }
    converted.LendTo(*cell, xf);
}

// Stores an integer in a new cell or one holding text.
NOINLINE void GridSink::NewInteger(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value)
{
    if (Cell* cell = At(row, col, xf)) cell->SetInteger(value);
}

// Stores a floating-point number in a new cell or one holding text.
NOINLINE void GridSink::NewDouble(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value)
{
    if (Cell* cell = At(row, col, xf)) cell->SetDouble(value);
}

// Returns the cell at (row, col), made if need be, with format `xf`.
Cell* GridSink::At(std::uint16_t row, std::uint16_t col, std::uint16_t xf)
{
    Cell* cell = CellAt(row, col);
    if (cell) cell->SetFormat(xf);
    return cell;
}

// Returns 8-bit text as bytes.
const std::string& GridSink::Narrow(std::u16string_view text)
{
    narrow_.resize(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) narrow_[i] = static_cast<char>(text[i]);
    return narrow_;
}

// Returns the cell at (row, col), made if need be; the first call reserves the declared range.
Cell* GridSink::CellAt(std::uint16_t row, std::uint16_t col)
{
    if (!reserved_) {
        sheet_.Reserve(records_.dimensions.lastRowPlus1, records_.dimensions.lastColPlus1);
        reserved_ = true;
    }
    return sheet_.Cell(row, col);
}

}  // namespace xls
