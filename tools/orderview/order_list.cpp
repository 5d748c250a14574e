#include "order_list.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>

#include "cli_support.h"
#include "format/normalize.h"
#include "options.h"
#include "platform/narrow_text.h"
#include "progress.h"
#include "rows/order_rows.h"

namespace ovcli {

namespace {

// Columns of numbers and prices, shown right-aligned.
bool IsNumberColumn(const CString& key)
{
    static const char* const kNumbers[] = {
        "QTY", "PRICE", "DEALREPORT_FEE", "DEALREPORT_TAX", "NETAMOUNT", "DATACOUNT"};
    for (const char* n : kNumbers)
        if (key.Find(n) >= 0 && key.Find("TYPE_AND_PRICE") < 0) return true;
    return false;
}

// The text an item shows: its own for a text item, else its number written into `spare`.
std::string_view ItemText(const CBaseOrderItemGroup::Item* item, CString& spare)
{
    if (!item) return {};
    switch (item->kind) {
    case CBaseOrderItemGroup::ValueKind::Text:
        return {item->csText.GetString(), static_cast<size_t>(item->csText.GetLength())};
    case CBaseOrderItemGroup::ValueKind::Int:
        spare.Format("%d", item->iValue);
        break;
    case CBaseOrderItemGroup::ValueKind::Double:
        spare.Format("%.2f", item->dbValue);
        spare = g_cszNormalizCstring(spare);
        break;
    }
    return {spare.GetString(), static_cast<size_t>(spare.GetLength())};
}

// Character cells of a text: two for an East Asian wide character, one for any other.
int Characters(const CString& text)
{
    int cells = 0;
    for (const char16_t unit : orderview::NarrowToUtf16(text.str())) {
        if (unit >= 0xDC00 && unit <= 0xDFFF) continue;  // the second half of a pair
        const bool wide = (unit >= 0x1100 && unit <= 0x115F) || (unit >= 0x2E80 && unit <= 0xA4CF) ||
                          (unit >= 0xAC00 && unit <= 0xD7A3) || (unit >= 0xF900 && unit <= 0xFAFF) ||
                          (unit >= 0xFE30 && unit <= 0xFE4F) || (unit >= 0xFF00 && unit <= 0xFF60) ||
                          (unit >= 0xFFE0 && unit <= 0xFFE6) || (unit >= 0xD800 && unit <= 0xDBFF);
        cells += wide ? 2 : 1;
    }
    return cells;
}

}  // namespace

bool ParseListKind(const std::string& text, ListKind& kind)
{
    if (text == "simple") kind = ListKind::Simple;
    else if (text == "full") kind = ListKind::Full;
    else if (text == "deal") kind = ListKind::Deal;
    else return false;
    return true;
}

const char* ListTitle(ListKind kind)
{
    return kind == ListKind::Simple ? "Orders" : kind == ListKind::Full ? "Orders (full list)" : "Deals";
}

int DefaultMode(ListKind kind) { return kind == ListKind::Simple ? 255 : 0x4ffff; }

std::vector<CString> DefaultColumns(ListKind kind)
{
    switch (kind) {
    case ListKind::Simple:
        return {"IDS_ORDER-ITEM_ORDERNO",    "IDS_ORDER-ITEM_ORDERTIME",  "IDS_ORDER-ITEM_ACCOUNT_NAME",
                "IDS_ORDER-ITEM_COMMODITY",  "IDS_ORDER-ITEM_BUYSELL",    "IDS_ORDER-ITEM_NEWOFFSET",
                "IDS_ORDER-ITEM_ORDERTYPE",  "IDS_ORDER-ITEM_ORDERPRICE", "IDS_ORDER-ITEM_ORDERQTY",
                "IDS_ORDER-ITEM_DEALQTY",    "IDS_ORDER-ITEM_AVEPRICE",   "IDS_ORDER-ITEM_STATUS"};
    case ListKind::Full:
        return {"IDS_ORDER-ITEM_ORDERNO",     "IDS_ORDER-ITEM_BOKDTANDTM",  "IDS_ORDER-ITEM_ACCOUNT_NAME",
                "IDS_ORDER-ITEM_COMTYPE",     "IDS_ORDER-ITEM_COMMODITY",   "IDS_ORDER-ITEM_BUYSELL",
                "IDS_ORDER-ITEM_NEWOFFSET",   "IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE", "HTS_ORDER-ITEM_ROLE",
                "IDS_ORDER-ITEM_ORDERQTY",    "IDS_ORDER-ITEM_DEALQTY",     "IDS_ORDER-ITEM_CANCELQTY",
                "IDS_ORDER-ITEM_AVEPRICE",    "IDS_ORDER-ITEM_STATUS"};
    case ListKind::Deal:
        return {"IDS_ORDER-ITEM_DEALTIME",  "IDS_ORDER-ITEM_DEALNO",   "IDS_ORDER-ITEM_ORDERNO",
                "IDS_ORDER-ITEM_ACCOUNT_NAME", "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_BUYSELL",
                "IDS_ORDER-ITEM_NEWOFFSET", "IDS_ORDER-ITEM_DEALPRICE", "IDS_ORDER-ITEM_DEALQTY",
                "IDS_ORDER-TAB-DEALREPORT_FEE", "IDS_ORDER-TAB-DEALREPORT_TAX", "IDS_ORDER-ITEM_NETAMOUNT"};
    }
    return {};
}

std::vector<CString> KnownColumns(ListKind kind)
{
    // The row functions set the same items for every record; a blank one shows them.
    CBaseOrderItemGroup row;
    CBaseOrder_DealInfo record;
    if (kind == ListKind::Deal) g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&row, &record, 0, true, false, true);
    else if (kind == ListKind::Simple) g_bAddODOI2OIG_SimpleOrderListCtrl(&row, &record, DefaultMode(kind));
    else g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&row, &record, DefaultMode(kind), true, false, true);
    std::vector<CString> keys;
    for (const auto& call : row.GetSetCalls())
        if (std::find(keys.begin(), keys.end(), call.Key()) == keys.end()) keys.push_back(call.Key());
    for (const CString& key : DefaultColumns(kind))
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(key);
    return keys;
}

int ReadListChoice(const Options& options, const char* command, const char* usage, ListChoice& choice)
{
    const std::string kind = options.Get("list", "full");
    if (!ParseListKind(kind, choice.kind))
        return UsageError(command, "--list is simple, full or deal, not '" + kind + "'", usage);
    long long mode = DefaultMode(choice.kind);
    Options copy = options;
    if (options.Has("mode") && !copy.GetInt("mode", 0, 0x7fffffff, mode)) return UsageError(command, copy.Error(), usage);
    choice.mode = static_cast<int>(mode);
    choice.columns.clear();
    const std::string text = options.Get("columns");
    const std::vector<CString> known = KnownColumns(choice.kind);
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const CString key(text.substr(start, comma - start));
        start = comma + 1;
        if (key.IsEmpty()) continue;
        if (std::find(known.begin(), known.end(), key) == known.end())
            return UsageError(command,
                              "unknown column key '" + key.str() + "' ('orderview columns --list " + kind +
                                  "' lists them)",
                              usage);
        choice.columns.push_back(key);
    }
    if (choice.columns.empty()) choice.columns = DefaultColumns(choice.kind);
    return -1;
}

std::string OrderList::DayProblem(const std::string& mainOption, ListKind kind)
{
    const std::string problem = MainFolderProblem(mainOption);
    return problem.empty() ? ReadableProblem(DayFile(MainFolderPath(mainOption), kind)) : problem;
}

std::string OrderList::DayFile(const std::string& mainFolder, ListKind kind)
{
    return (std::filesystem::path(mainFolder) / "sys" / (kind == ListKind::Deal ? "deals.csv" : "orders.csv")).string();
}

std::size_t OrderList::FileSize(const std::string& mainFolder, ListKind kind)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(DayFile(mainFolder, kind), error);
    return error ? 0 : static_cast<std::size_t>(size);
}

orderview::RecordFile OrderList::OpenDay(orderview::DefaultHost& host, ListKind kind)
{
    const bool deals = kind == ListKind::Deal;
    return orderview::RecordFile(host.s_PathGetSysPath(0) + (deals ? "\\deals.csv" : "\\orders.csv"),
                                 deals ? "deals.csv" : "orders.csv",
                                 deals ? orderview::RecordFile::Kind::Deals : orderview::RecordFile::Kind::Orders);
}

OrderList::OrderList(orderview::DefaultHost& host, ListKind kind, int mode, std::vector<CString> columns,
                     Progress* scan, bool stream)
    : host_(host), kind_(kind), mode_(mode), columns_(std::move(columns)), file_(OpenDay(host, kind))
{
    for (const CString& key : columns_) headings_.push_back(host_.LangGetLangString(key));
    if (stream) {
        scan_ = scan;
        return;
    }
    // The deal list, and the modes that admit every order, need no row to decide.
    const bool showsAll = kind_ == ListKind::Deal ||
                          ((mode_ & 0xFF) == 255 && (kind_ == ListKind::Simple || (mode_ & 0x4ff00) == 0x4ff00));
    CBaseOrderItemGroup scratch;
    for (;;) {
        const std::uint64_t offset = file_.Tell();
        if (scan) scan->Step(static_cast<std::size_t>(offset));
        if (!showsAll) scratch.vClear();
        if (!ReadAndFill(scratch, !showsAll)) {
            if (file_.Tell() == offset) break;  // the end of the day
            continue;                            // hidden by the list mode
        }
        shown_.push_back(offset);
    }
    scanned_ = true;
    if (scan) scan->Clear();
}

int OrderList::GetItemCount() const
{
    if (!scanned_) ReachRow(std::numeric_limits<int>::max());
    return static_cast<int>(shown_.size());
}

bool OrderList::ReachRow(int row) const
{
    // Straight through the file, so that every malformed line is reported with its line.
    while (!scanned_ && row >= static_cast<int>(shown_.size())) {
        const std::uint64_t offset = file_.Tell();
        if (scan_) scan_->Step(static_cast<std::size_t>(offset));
        row_.vClear();
        if (ReadAndFill(row_)) {
            shown_.push_back(offset);
            KeepCells(static_cast<int>(shown_.size()) - 1);
        } else if (file_.Tell() == offset) {
            scanned_ = true;
            if (scan_) scan_->Clear();
        }
    }
    return row >= 0 && row < static_cast<int>(shown_.size());
}

bool OrderList::ReadAndFill(CBaseOrderItemGroup& row, bool fill) const
{
    if (kind_ == ListKind::Deal)
        return fill ? file_.NextDeal(record_) &&
                          g_bAddODOI2OIG_DealRet2FullOrderListCtrl(&row, &record_, 0, true, false, true)
                    : file_.SkipDeal();
    std::string list;
    // Only the day's list of orders; the error list is another screen's.
    if (!(fill ? file_.NextOrder(record_, list) : file_.SkipOrder(list)) || list != "today") return false;
    if (!fill) return true;
    if (kind_ == ListKind::Simple) return g_bAddODOI2OIG_SimpleOrderListCtrl(&row, &record_, mode_);
    return g_bAddODOI2OIG_QueryOrderRet2FullOrderListCtrl(&row, &record_, mode_, true, false, true);
}

void OrderList::Load(int row) const
{
    LibraryWriteGuard::Poll();  // a signal during a write ends the program here
    if (row == cachedRow_) return;
    if (!scanned_) ReachRow(std::numeric_limits<int>::max());  // going back: finish the pass first
    row_.vClear();
    file_.Seek(shown_[static_cast<size_t>(row)]);
    ReadAndFill(row_);
    KeepCells(row);
}

void OrderList::KeepCells(int row) const
{
    spare_.resize(columns_.size());  // sized once: the views into it stay put
    cells_.clear();
    for (size_t c = 0; c < columns_.size(); ++c) cells_.push_back(ItemText(row_.pGetItem(columns_[c]), spare_[c]));
    cachedRow_ = row;
    if (progress_) progress_->Step(static_cast<size_t>(row) + 1);
}

CString OrderList::GetColumnText(int column) const
{
    return column >= 0 && column < GetColumnCount() ? headings_[static_cast<size_t>(column)] : CString();
}

int OrderList::GetColumnFormat(int column) const
{
    return column >= 0 && column < GetColumnCount() && IsNumberColumn(columns_[static_cast<size_t>(column)])
               ? kFormatRight
               : kFormatLeft;
}

int OrderList::GetColumnWidth(int column) const
{
    if (column < 0 || column >= GetColumnCount()) return 0;
    if (widths_.empty()) {
        // As a screen sizes its columns at its 9-point font: about 7 pixels a character (two for a
        // wide one) of the heading or of the widest of the first rows, and a margin. Row by row,
        // since a row is filled whole to give one of its texts.
        std::vector<int> characters;
        for (const CString& heading : headings_) characters.push_back(Characters(heading));
        for (int row = 0; row < std::min(GetItemCount(), 200); ++row)
            for (int c = 0; c < GetColumnCount(); ++c)
                characters[static_cast<size_t>(c)] =
                    std::max(characters[static_cast<size_t>(c)], Characters(GetItemText(row, c)));
        for (int count : characters) widths_.push_back(7 * count + 12);
    }
    return widths_[static_cast<size_t>(column)];
}

std::string_view OrderList::CellText(int row, int column) const
{
    if (!ReachRow(row) || column < 0 || column >= GetColumnCount()) return {};
    Load(row);
    return cells_[static_cast<size_t>(column)];
}

CString OrderList::GetItemText(int row, int column) const
{
    const std::string_view text = CellText(row, column);
    return CString(text.data(), static_cast<int>(text.size()));
}

bool OrderList::SetItemText(int, int, const CString&) { return false; }  // the records are read-only here

bool OrderList::GetItemSelected(int) const { return false; }

}  // namespace ovcli
