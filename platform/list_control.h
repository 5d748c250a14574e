// The host's report-style list control as the library uses it: headings with format bits and
// widths, rows of cell texts, and a selected state per row. A front end wraps its real control
// in a class derived from CListCtrl; MemoryListCtrl keeps the table itself, for tests, tools and
// embedders that have no control of their own.
#pragma once

#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

class ORDERVIEW_API CListCtrl {
public:
    // Column format bits: the low two bits give the alignment.
    enum : int { kFormatLeft = 0, kFormatRight = 1, kFormatCenter = 2 };

    virtual ~CListCtrl();
    // Number of columns, as the header control counts them.
    virtual int GetColumnCount() const = 0;
    // Heading text of a column; empty for a column outside the list.
    virtual CString GetColumnText(int column) const = 0;
    // Format bits of a column (kFormatLeft when outside the list).
    virtual int GetColumnFormat(int column) const = 0;
    // Width of a column in pixels (0 when outside the list).
    virtual int GetColumnWidth(int column) const = 0;
    // Number of rows.
    virtual int GetItemCount() const = 0;
    // Text of one cell; empty for a cell outside the list.
    virtual CString GetItemText(int row, int column) const = 0;
    // Sets the text of one cell; false for a cell outside the list.
    virtual bool SetItemText(int row, int column, const CString& text) = 0;
    // Whether a row is selected (false outside the list).
    virtual bool GetItemSelected(int row) const = 0;
};

// The front end's extended list control; the library needs only what CListCtrl offers.
using CListCtrlEx = CListCtrl;

namespace orderview {

// A list control that holds its columns and rows in memory.
class ORDERVIEW_API MemoryListCtrl : public CListCtrl {
public:
    // Appends a column and returns its index; existing rows get an empty cell.
    int InsertColumn(const CString& heading, int format = kFormatLeft, int width = 100);
    // Appends a row of cells (cut or padded to the column count) and returns its index.
    int InsertItem(const std::vector<CString>& cells);
    bool SetItemSelected(int row, bool selected);
    void DeleteAllItems() { rows_.clear(); }

    int GetColumnCount() const override { return static_cast<int>(columns_.size()); }
    CString GetColumnText(int column) const override;
    int GetColumnFormat(int column) const override;
    int GetColumnWidth(int column) const override;
    int GetItemCount() const override { return static_cast<int>(rows_.size()); }
    CString GetItemText(int row, int column) const override;
    bool SetItemText(int row, int column, const CString& text) override;
    bool GetItemSelected(int row) const override;

private:
    struct Column {
        CString heading;
        int format = kFormatLeft;
        int width = 0;
    };
    struct Row {
        std::vector<CString> cells;
        bool selected = false;
    };
    bool HasCell(int row, int column) const;

    std::vector<Column> columns_;
    std::vector<Row> rows_;
};

}  // namespace orderview
