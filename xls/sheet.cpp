#include "xls/sheet.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "xls/book.h"
#include "xls/utf16.h"

namespace xls {

const char* Sheet::GetAnsiSheetName()
{
    ansiName_ = book_->GetAnsiSheetName(index_) ? book_->GetAnsiSheetName(index_) : "";
    return ansiName_.c_str();
}

const wchar_t* Sheet::GetUnicodeSheetName()
{
    wideName_ = book_->GetUnicodeSheetName(index_) ? book_->GetUnicodeSheetName(index_) : L"";
    return wideName_.c_str();
}

bool Sheet::GetSheetName(char* name) { return book_->GetSheetName(index_, name); }
bool Sheet::GetSheetName(wchar_t* name) { return book_->GetSheetName(index_, name); }
bool Sheet::Rename(const char* name) { return book_->RenameWorksheet(index_, name); }
bool Sheet::Rename(const wchar_t* name) { return book_->RenameWorksheet(index_, name); }

Sheet::~Sheet()
{
    // The cells are destroyed here; their memory goes back with the arena, all at once.
    arena_.Close();
    if (!textsLentOnly_)
        for (Row& row : grid_)
            for (xls::Cell& cell : row) cell.~Cell();
    for (std::size_t i = 0; i < lentCount_; ++i) lentTexts_[i].~Cell();
}

// Makes the row `width` cells wide: new cells are undefined. A row that must move takes room for
// twice its width, so that widening one column at a time moves each row only a few times.
void Sheet::Widen(Row& row, std::size_t width)
{
    if (width > row.capacity_) {
        const std::size_t capacity = std::min<std::size_t>(kMaxCols, std::max<std::size_t>(width, 2u * row.capacity_));
        auto* cells = static_cast<xls::Cell*>(arena_.Allocate(capacity * sizeof(xls::Cell)));
        xls::Cell::Relocate(row.cells_, row.size_, cells);
        if (row.cells_) arena_.Deallocate(row.cells_, row.capacity_ * sizeof(xls::Cell));
        row.cells_ = cells;
        row.capacity_ = static_cast<std::uint16_t>(capacity);
    }
    for (std::size_t c = row.size_; c < width; ++c) new (row.cells_ + c) xls::Cell();
    row.size_ = static_cast<std::uint16_t>(width);
}

xls::Cell* Sheet::Grow(std::size_t row, std::size_t col)
{
    if (row >= kMaxRows || col >= kMaxCols) return nullptr;
    if (col >= cols_) cols_ = col + 1;
    if (row >= rows_) rows_ = row + 1;
    if (row >= grid_.size()) {
        // A sheet past a thousand rows gets room for all 65536 at once (1 MiB, in the arena's
        // large pages where the system has them): the rows are never moved again.
        if (row >= 1024 && grid_.capacity() < kMaxRows) grid_.reserve(kMaxRows);
        if (row == grid_.size())
            grid_.emplace_back();  // the common case, a sheet filled row by row
        else
            grid_.resize(row + 1);
    }
    Row& cells = grid_[row];
    if (col >= cells.size()) Widen(cells, cols_);  // a row widens to the sheet's column count
    return &cells[col];
}

void Sheet::Reserve(std::size_t rows, std::size_t cols)
{
    rows = std::min<std::size_t>(rows, kMaxRows);
    cols = std::min<std::size_t>(cols, kMaxCols);
    arena_.Expect(rows * (cols * sizeof(xls::Cell) + sizeof(Row)));
}

bool Sheet::EraseCell(std::size_t row, std::size_t col)
{
    if (row >= rows_ || col >= cols_) return false;
    if (row < grid_.size() && col < grid_[row].size()) grid_[row][col].EraseContents();
    return true;
}

void Sheet::Print(std::ostream& out, char delimiter, char qualifier)
{
    auto quoted = [&](const std::string& text) {
        out << qualifier;
        for (char c : text) {
            if (c == qualifier) out << qualifier;
            out << c;
        }
        out << qualifier;
    };
    char number[32];
    static const Row kNoCells;
    for (std::size_t r = 0; r < rows_; ++r) {
        const Row& cells = r < grid_.size() ? grid_[r] : kNoCells;
        for (std::size_t c = 0; c < cols_; ++c) {
            if (c) out << delimiter;
            if (c >= cells.size()) continue;
            const xls::Cell& cell = cells[c];
            switch (cell.Type()) {
            case xls::Cell::kInteger: out << cell.GetInteger(); break;
            case xls::Cell::kDouble:
                std::snprintf(number, sizeof number, "%.15g", cell.GetDouble());
                out << number;
                break;
            case xls::Cell::kString: quoted(cell.GetString()); break;
            case xls::Cell::kWString: quoted(Utf16ToUtf8(ToUtf16(cell.GetWString()))); break;
            default: break;
            }
        }
        out << '\n';
    }
}

}  // namespace xls
