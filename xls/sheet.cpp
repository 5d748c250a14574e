#include "xls/sheet.h"

#include <cstdio>
#include <cstring>

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

xls::Cell* Sheet::Grow(std::size_t row, std::size_t col)
{
    if (row >= kMaxRows || col >= kMaxCols) return nullptr;
    if (col >= cols_) cols_ = col + 1;
    if (row >= rows_) rows_ = row + 1;
    if (row >= grid_.size()) {
        // A sheet past a thousand rows gets room for all 65536 at once (2 MiB, one block of large
        // pages where the system has them): the rows are never moved again.
        if (row >= 1024 && grid_.capacity() < kMaxRows) grid_.reserve(kMaxRows);
        grid_.resize(row + 1);
    }
    Row& cells = grid_[row];
    if (col >= cells.size()) cells.resize(cols_);  // a row widens to the sheet's column count
    return &cells[col];
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
    const Row noCells{GridAllocator<xls::Cell>(&arena_)};
    for (std::size_t r = 0; r < rows_; ++r) {
        const Row& cells = r < grid_.size() ? grid_[r] : noCells;
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
