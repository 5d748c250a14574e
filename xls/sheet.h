// One sheet of a workbook: its name and a grid of cells (rows 0..65535, columns 0..255).
#pragma once

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "order_data/export.h"
#include "xls/cell.h"

namespace xls {

class Book;

class ORDERVIEW_API Sheet {
public:
    enum : std::size_t { kMaxRows = 65536, kMaxCols = 256 };

    Sheet(Book* book, std::size_t index) : book_(book), index_(index) {}

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
    xls::Cell* Cell(std::size_t row, std::size_t col);
    // Makes the cell undefined; false outside the used range.
    bool EraseCell(std::size_t row, std::size_t col);

    // The rows that hold cells, by row number (internal to the workbook writer and reader).
    using Row = std::vector<xls::Cell>;
    const std::map<std::size_t, Row>& Rows() const { return grid_; }
    std::size_t Index() const { return index_; }
    void SetIndex(std::size_t index) { index_ = index; }

private:
    Row& RowAt(std::size_t row);

    Book* book_;
    std::size_t index_;
    std::size_t rows_ = 0, cols_ = 0;
    // Only rows that were touched are kept; a row is as wide as its last touched column.
    std::map<std::size_t, Row> grid_;
    std::size_t lastRow_ = static_cast<std::size_t>(-1);
    Row* lastRowCells_ = nullptr;
    std::string ansiName_;
    std::wstring wideName_;
};

}  // namespace xls
