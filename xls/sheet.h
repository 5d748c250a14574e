// One sheet of a workbook: its name and a grid of cells (rows 0..65535, columns 0..255).
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "order_data/visibility.h"
#include "xls/cell.h"
#include "xls/cell_arena.h"

namespace xls {

class Book;

class ORDERVIEW_API Sheet {
public:
    enum : std::size_t { kMaxRows = 65536, kMaxCols = 256 };

    Sheet(Book* book, std::size_t index) : book_(book), index_(index) {}
    ~Sheet();
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    // The name; narrow form has each code unit below 256 as a byte and '?' for the others.
    const char* GetAnsiSheetName();
    const wchar_t* GetUnicodeSheetName();
    bool GetSheetName(char* name);
    bool GetSheetName(wchar_t* name);
    bool Rename(const char* name);
    bool Rename(const wchar_t* name);

    // Writes the grid row by row: cells separated by `delimiter`, strings between `qualifier`s
    // (a qualifier inside a string doubled), wide strings as UTF-8, doubles with 15 digits.
    void Print(std::ostream& out, char delimiter = ',', char qualifier = '"');

    std::size_t GetTotalRows() const { return rows_; }
    std::size_t GetTotalCols() const { return cols_; }
    // The cell at (row, col), growing the used range to include it; null outside the limits.
    xls::Cell* Cell(std::size_t row, std::size_t col)
    {
        xls::Cell* cell = FindCell(row, col);
        return cell ? cell : Grow(row, col);
    }
    // The cell at (row, col) if the sheet holds it already, else null; the used range stays.
    xls::Cell* FindCell(std::size_t row, std::size_t col)
    {
        textsLentOnly_ = false;  // the caller may give the cell a text of its own
        return row < grid_.size() && col < grid_[row].size() ? &grid_[row][col] : nullptr;
    }
    const xls::Cell* FindCell(std::size_t row, std::size_t col) const
    {
        return row < grid_.size() && col < grid_[row].size() ? &grid_[row][col] : nullptr;
    }
    // Makes the cell undefined; false outside the used range.
    bool EraseCell(std::size_t row, std::size_t col);
    // Prepares for a used range of about `rows` x `cols` cells (a hint, cut to the sheet's
    // limits): a big sheet then takes its memory in large blocks from the start. No cell changes.
    void Reserve(std::size_t rows, std::size_t cols);

    // One row of the grid: its cells, which live in the sheet's arena (internal to the workbook
    // writer and reader). 16 bytes, so that the table of a full sheet's rows takes 1 MiB.
    class Row {
    public:
        std::size_t size() const { return size_; }
        bool empty() const { return size_ == 0; }
        xls::Cell& operator[](std::size_t col) { return cells_[col]; }
        const xls::Cell& operator[](std::size_t col) const { return cells_[col]; }
        xls::Cell* begin() { return cells_; }
        xls::Cell* end() { return cells_ + size_; }
        const xls::Cell* begin() const { return cells_; }
        const xls::Cell* end() const { return cells_ + size_; }

    private:
        friend class Sheet;
        xls::Cell* cells_ = nullptr;
        std::uint16_t size_ = 0, capacity_ = 0;
    };
    using Grid = std::vector<Row, GridAllocator<Row>>;
    // The rows that hold cells, in row order, each with its number.
    struct NumberedRow {
        std::size_t number;
        const Row& cells;
    };
    class RowRange {
    public:
        class Iterator {
        public:
            Iterator(const Grid& grid, std::size_t at) : grid_(&grid), at_(at) { Skip(); }
            NumberedRow operator*() const { return {at_, (*grid_)[at_]}; }
            Iterator& operator++()
            {
                ++at_;
                Skip();
                return *this;
            }
            bool operator==(const Iterator& other) const { return at_ == other.at_; }
            bool operator!=(const Iterator& other) const { return at_ != other.at_; }

        private:
            void Skip()
            {
                while (at_ < grid_->size() && (*grid_)[at_].empty()) ++at_;
            }
            const Grid* grid_;
            std::size_t at_;
        };
        explicit RowRange(const Grid& grid) : grid_(grid) {}
        Iterator begin() const { return Iterator(grid_, 0); }
        Iterator end() const { return Iterator(grid_, grid_.size()); }

    private:
        const Grid& grid_;
    };
    RowRange Rows() const { return RowRange(grid_); }
    std::size_t Index() const { return index_; }
    void SetIndex(std::size_t index) { index_ = index; }

private:
    friend class TextHolds;  // hands the sheet the texts it lent the sheet's cells
    friend class Book;       // loads the sheet
    xls::Cell* Grow(std::size_t row, std::size_t col);
    void Widen(Row& row, std::size_t width);

    Book* book_;
    std::size_t index_;
    std::size_t rows_ = 0, cols_ = 0;
    // Indexed by row number, up to the last touched row. An untouched row holds no cells; a
    // touched one is as wide as the sheet was when its last cell was touched.
    CellArena arena_;
    Grid grid_{GridAllocator<Row>(&arena_)};
    // The texts lent to the sheet's cells as it was loaded, each held once for all of them (in
    // the arena, whose large pages are mapped already).
    xls::Cell* lentTexts_ = nullptr;
    std::size_t lentCount_ = 0;
    // True while no cell holds a text of its own, each string cell being lent its text: set when
    // the sheet was loaded so, and cleared by any access that can change a cell. The cells then
    // need no destroying one by one.
    bool textsLentOnly_ = false;
    std::string ansiName_;
    std::wstring wideName_;
};

}  // namespace xls
