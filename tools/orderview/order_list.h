// One order screen's list over the main folder's records: which list (simple, full or deal), its
// mode, its columns, and its rows filled on demand with the library's row functions. Nothing is
// kept per row but the index of each shown record, so a list streams.
#pragma once

#include <string>
#include <vector>

#include "host/default_host.h"
#include "platform/list_control.h"

namespace ovcli {

class Progress;

enum class ListKind { Simple, Full, Deal };

bool ParseListKind(const std::string& text, ListKind& kind);
// A title for printed and exported lists.
const char* ListTitle(ListKind kind);
// The list mode that shows every record of a list.
int DefaultMode(ListKind kind);
// The columns a screen of the list shows by default (item keys).
std::vector<CString> DefaultColumns(ListKind kind);

class OrderList : public CListCtrl {
public:
    // Finds the shown records; `columns` are item keys, their headings the language texts.
    OrderList(orderview::DefaultHost& host, ListKind kind, int mode, std::vector<CString> columns);

    // CListCtrl: headings, right alignment for numbers, rows filled when first read.
    int GetColumnCount() const override { return static_cast<int>(columns_.size()); }
    CString GetColumnText(int column) const override;
    int GetColumnFormat(int column) const override;
    int GetColumnWidth(int column) const override;
    int GetItemCount() const override { return static_cast<int>(shown_.size()); }
    CString GetItemText(int row, int column) const override;
    bool SetItemText(int row, int column, const CString& text) override;
    bool GetItemSelected(int row) const override;

    // Reports each row as it is first read (exports read the rows in order).
    void SetProgress(Progress* progress) { progress_ = progress; }
    // Records read, before the list mode filters them.
    size_t RecordCount() const;

private:
    bool Fill(size_t record, CBaseOrderItemGroup& row) const;
    void Load(int row) const;

    orderview::DefaultHost& host_;
    ListKind kind_;
    int mode_;
    std::vector<CString> columns_;
    std::vector<CString> headings_;
    std::vector<size_t> shown_;
    mutable int cachedRow_ = -1;
    mutable std::vector<CString> cells_;
    mutable CBaseOrderItemGroup row_;
    Progress* progress_ = nullptr;
};

}  // namespace ovcli
