#include "platform/list_control.h"

CListCtrl::~CListCtrl() = default;

namespace orderview {

int MemoryListCtrl::InsertColumn(const CString& heading, int format, int width)
{
    columns_.push_back(Column{heading, format, width});
    for (Row& row : rows_) row.cells.emplace_back();
    return static_cast<int>(columns_.size()) - 1;
}

int MemoryListCtrl::InsertItem(const std::vector<CString>& cells)
{
    Row row;
    row.cells = cells;
    row.cells.resize(columns_.size());
    rows_.push_back(std::move(row));
    return static_cast<int>(rows_.size()) - 1;
}

bool MemoryListCtrl::HasCell(int row, int column) const
{
    return row >= 0 && row < GetItemCount() && column >= 0 && column < GetColumnCount();
}

bool MemoryListCtrl::SetItemSelected(int row, bool selected)
{
    if (row < 0 || row >= GetItemCount()) return false;
    rows_[static_cast<size_t>(row)].selected = selected;
    return true;
}

CString MemoryListCtrl::GetColumnText(int column) const
{
    if (column < 0 || column >= GetColumnCount()) return CString();
    return columns_[static_cast<size_t>(column)].heading;
}

int MemoryListCtrl::GetColumnFormat(int column) const
{
    if (column < 0 || column >= GetColumnCount()) return kFormatLeft;
    return columns_[static_cast<size_t>(column)].format;
}

int MemoryListCtrl::GetColumnWidth(int column) const
{
    if (column < 0 || column >= GetColumnCount()) return 0;
    return columns_[static_cast<size_t>(column)].width;
}

CString MemoryListCtrl::GetItemText(int row, int column) const
{
    if (!HasCell(row, column)) return CString();
    return rows_[static_cast<size_t>(row)].cells[static_cast<size_t>(column)];
}

bool MemoryListCtrl::SetItemText(int row, int column, const CString& text)
{
    if (!HasCell(row, column)) return false;
    rows_[static_cast<size_t>(row)].cells[static_cast<size_t>(column)] = text;
    return true;
}

bool MemoryListCtrl::GetItemSelected(int row) const
{
    return row >= 0 && row < GetItemCount() && rows_[static_cast<size_t>(row)].selected;
}

}  // namespace orderview
