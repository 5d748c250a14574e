// One order screen's list over the main folder's day: which list (simple, full or deal), its
// mode, its columns, and its rows filled on demand with the library's row functions. The records
// are read from "orders.csv" or "deals.csv" as they are needed; nothing is kept per row but the
// file offset of each shown record, so a list of any size streams.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/default_host.h"
#include "host/record_file.h"
#include "platform/list_control.h"

namespace ovcli {

class Options;
class Progress;

enum class ListKind { Simple, Full, Deal };

// The list a command shows: --list, --mode and --columns.
struct ListChoice {
    ListKind kind = ListKind::Full;
    int mode = 0;
    std::vector<CString> columns;
};
// Reads --list (default full), --mode (default: every record) and --columns (default: the
// screen's; each key must be one the list's rows carry). -1 to go on, else the exit status
// after a usage message.
int ReadListChoice(const Options& options, const char* command, const char* usage, ListChoice& choice);

bool ParseListKind(const std::string& text, ListKind& kind);
// A title for printed and exported lists.
const char* ListTitle(ListKind kind);
// The list mode that shows every record of a list.
int DefaultMode(ListKind kind);
// The columns a screen of the list shows by default (item keys).
std::vector<CString> DefaultColumns(ListKind kind);
// Every item key the list's row function sets, in the order it sets them.
std::vector<CString> KnownColumns(ListKind kind);

class OrderList : public CListCtrl {
public:
    // Finds the shown records; `columns` are item keys, their headings the language texts. The
    // day's malformed records are in Diagnostics(). `scan` (when set) is stepped with the bytes
    // read of the day's file, and cleared at the end.
    //
    // With `stream`, the records are found as the rows are asked for, in one pass that reads and
    // fills each row once (ReachRow); the day's diagnostics are complete only when the pass is
    // (ReachRow false). Asking for the row count, or for a row behind the last one reached,
    // finishes the pass first.
    OrderList(orderview::DefaultHost& host, ListKind kind, int mode, std::vector<CString> columns,
              Progress* scan = nullptr, bool stream = false);
    // The day's file a list of `kind` reads in `mainFolder`, and its size in bytes (0 when unknown).
    static std::string DayFile(const std::string& mainFolder, ListKind kind);
    // Why the list's day cannot be read from the main folder of the --main option (a missing
    // folder, no sys/, an unreadable day file); empty when it can.
    static std::string DayProblem(const std::string& mainOption, ListKind kind);
    static std::size_t FileSize(const std::string& mainFolder, ListKind kind);
    // The day's file of a list of `kind`, opened through the host's system folder.
    static orderview::RecordFile OpenDay(orderview::DefaultHost& host, ListKind kind);
    const std::vector<CString>& Diagnostics() const { return file_.Diagnostics(); }
    const std::vector<CString>& Keys() const { return columns_; }

    // CListCtrl: headings, right alignment for numbers, rows filled when first read.
    int GetColumnCount() const override { return static_cast<int>(columns_.size()); }
    CString GetColumnText(int column) const override;
    int GetColumnFormat(int column) const override;
    int GetColumnWidth(int column) const override;
    int GetItemCount() const override;
    CString GetItemText(int row, int column) const override;
    // The text of a cell without a copy; it stays valid until another row is read.
    std::string_view CellText(int row, int column) const;
    bool SetItemText(int row, int column, const CString& text) override;
    bool GetItemSelected(int row) const override;

    // Reports each row as it is first read (exports read the rows in order).
    void SetProgress(Progress* progress) { progress_ = progress; }
    // Whether the list has row `row`; streaming, it reads up to that row. Writers go through a
    // list with it, in order: for (int r = 0; list.ReachRow(r); ++r).
    bool ReachRow(int row) const;
private:
    // Reads the record at the file's position and, with `fill`, fills `row`; false when there is
    // none or the list (or, with `fill`, the list mode) hides it. Without `fill` the record's
    // values are only checked, not kept.
    bool ReadAndFill(CBaseOrderItemGroup& row, bool fill = true) const;
    void Load(int row) const;
    // The cells of row_, now row `row`.
    void KeepCells(int row) const;

    orderview::DefaultHost& host_;
    ListKind kind_;
    int mode_;
    std::vector<CString> columns_;
    std::vector<CString> headings_;
    mutable orderview::RecordFile file_;
    mutable CBaseOrder_DealInfo record_;  // the record being shown (deals; orders use its order part)
    mutable std::vector<std::uint64_t> shown_;  // file offset of each shown record found so far
    mutable bool scanned_ = false;        // every shown record found
    Progress* scan_ = nullptr;
    mutable int cachedRow_ = -1;
    mutable std::vector<std::string_view> cells_;  // into row_'s texts, or into spare_
    mutable std::vector<CString> spare_;            // the numbers of row_ written out, by column
    mutable CBaseOrderItemGroup row_;
    mutable std::vector<int> widths_;     // of every column, measured on first asking
    Progress* progress_ = nullptr;
};

}  // namespace ovcli
