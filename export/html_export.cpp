// HTML table export of list controls, opened by spreadsheet programs as a worksheet.
#include <vector>

#include "export/export_file.h"
#include "export/detail/list_cells.h"
#include "export/list_export.h"
#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"
#include "platform/profile_file.h"
#include "settings/order_settings.h"

namespace {

using orderview::ExportFile;

using orderview::detail::LangText;

// Asks for the file and starts it; false when there is nothing more to write.
bool StartExport(ExportFile& file)
{
    const orderview::SaveFileRequest request = orderview::ExportSaveRequest(".xls", "(*.xls)|*.xls||");
    CString path;
    if (!orderview::AskSavePath(request, path)) return false;
    const int opened = file.Open(path);
    if (opened == ExportFile::kNoTemplate) file.Abandon();  // the prologue stays, as written
    return opened == ExportFile::kOk;
}

// One row of "default" cells: name, branch, main branch (when there is one) and account.
// Each label is the language text followed by ":" and the value.
void WriteAccountBlock(ExportFile& file, const CBaseOrder_UserInfo* user)
{
    if (!user) {
        const CBaseOrderBK* base = BK_pGetBaseOrder(0);
        user = base ? &base->userInfo : nullptr;
    }
    const CBaseOrder_UserInfo empty;
    if (!user) user = &empty;
    const CString open = ExportFile::CellOpen("default", "");
    file.BeginRow();
    file.Cell(open, LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_NAME") + ":" + user->csName);
    file.Cell(open, LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_BHNO") + ":" + user->csBranchNo);
    if (!user->csMainBranchNo.IsEmpty())
        file.Cell(open, LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_MAINBHNO") + ":" + user->csMainBranchNo);
    file.Cell(open, LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_CSEQ") + ":" + user->csBranchNo + user->csAccount);
    file.EndRow();
}

void WriteUnoffsetHeading(ExportFile& file)
{
    const CString center = "text-align:center";
    file.BeginRow();
    file.Cell(ExportFile::CellOpen("align_border", ""), "");
    file.Cell(ExportFile::CellOpenSpan(6, "align_border", center), LangText("IDS_ORDER-TAB-FINANCE_STATIC_TYPE2"));
    file.Cell(ExportFile::CellOpenSpan(7, "align_border", center), LangText("IDS_ORDER-TAB-FINANCE_STATIC_RZ"));
    file.Cell(ExportFile::CellOpenSpan(7, "align_border", center), LangText("IDS_ORDER-TAB-FINANCE_STATIC_RG"));
    file.Cell(ExportFile::CellOpenSpan(6, "align_border", center), LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_ODD_STKNUM"));
    file.EndRow();
}

// The heading row and one row per list row.
void WriteList(ExportFile& file, const CListCtrl& list)
{
    const std::vector<CString> styles = orderview::ColumnStyles(list);
    std::vector<CString> opens;
    for (const CString& style : styles) opens.push_back(ExportFile::CellOpen("align_border", style));
    const int columns = static_cast<int>(styles.size());

    file.BeginRow();
    for (int column = 0; column < columns; ++column) file.Cell(opens[column], orderview::ColumnHeading(list, column));
    file.EndRow();

    CString decimals;
    for (int row = 0; row < list.GetItemCount(); ++row) {
        file.BeginRow();
        for (int column = 0; column < columns; ++column) {
            const CString text = list.GetItemText(row, column);
            if (orderview::IsNumberCell(styles[column], text))
                file.NumberCell(orderview::NumberKind(text, decimals), text, decimals);
            else
                file.Cell(opens[column], text);
        }
        file.EndRow();
    }
}

}  // namespace

void g_DataExportXls(CListCtrl& list, const CString& title, const CString&, CBaseOrder_UserInfo* user)
{
    ExportFile file;
    if (!StartExport(file)) return;
    WriteAccountBlock(file, user);
    if (title.Find(LangText("IDS_ORDER-EXT-TAB_STOCK_UNOFFSET")) >= 0 &&
        orderview::GetPrivateProfileIntA("ORDER_SETTING", "USE_NEWSTOCKUNOFFSET", 0, g_vGetOrderCfgFileName()) == 1)
        WriteUnoffsetHeading(file);
    WriteList(file, list);
    file.Close();
}

void g_UnoffsetDataExportXls(CListCtrl& list, CListCtrl& secondList, const CString&, const CString&,
                             CBaseOrder_UserInfo* user, bool withSecondList)
{
    ExportFile file;
    if (!StartExport(file)) return;
    WriteAccountBlock(file, user);
    WriteList(file, list);
    if (withSecondList) {
        file.BeginRow();
        file.Cell(ExportFile::CellOpen("default", ""), LangText("IDS_QWORDERVIEW_GLOABLDATAPROC_SECURITY_LENDING"));
        file.EndRow();
        WriteList(file, secondList);
    }
    file.Close();
}
