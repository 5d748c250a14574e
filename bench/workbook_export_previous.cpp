// The workbook export as it stood before texts that are not ASCII went to UTF-16 and long lists
// to further sheets: every text stored as 8-bit bytes, one sheet. The benchmark's baseline for
// the export's Latin path, measured in the same run.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "export/detail/list_cells.h"
#include "export/list_export.h"
#include "platform/file_system.h"
#include "xls/book.h"

namespace {

// The longest text a worksheet cell holds.
constexpr std::size_t kMaxCellText = 32767;

void SetText(xls::Cell* cell, const CString& text)
{
    cell->SetString(text.GetString(), std::min(std::strlen(text.GetString()), kMaxCellText));
}

}  // namespace

bool PreviousDataExportWorkbook(CListCtrl& list, const CString& sheetName)
{
    const int columns = list.GetColumnCount();
    orderview::SaveFileRequest request;
    request.csDefaultExt = ".xls";
    request.csFilter = "(*.xls)|*.xls||";
    request.bOverwritePrompt = true;
    CString path;
    if (!orderview::AskSavePath(request, path)) return false;
    if (columns > static_cast<int>(xls::Sheet::kMaxCols)) return false;

    xls::Book book;
    book.New(1);
    if (!book.RenameWorksheet(0, sheetName.GetString())) return false;
    xls::Sheet* sheet = book.GetWorksheet(0);
    // The heading row and one row per item: a big list takes the sheet's memory in large blocks.
    sheet->Reserve(static_cast<std::size_t>(std::max(0, list.GetItemCount())) + 1, static_cast<std::size_t>(columns));
    const std::vector<CString> styles = orderview::ColumnStyles(list);
    for (int column = 0; column < columns; ++column) SetText(sheet->Cell(0, column), orderview::ColumnHeading(list, column));
    for (int row = 0; row < list.GetItemCount(); ++row) {
        if (static_cast<std::size_t>(row) + 1 >= xls::Sheet::kMaxRows) return false;
        for (int column = 0; column < columns; ++column) {
            const CString text = list.GetItemText(row, column);
            xls::Cell* cell = sheet->Cell(static_cast<std::size_t>(row) + 1, static_cast<std::size_t>(column));
            double value = 0;
            if (orderview::IsNumberCell(styles[column], text) && orderview::NumberValue(text, value))
                cell->SetDouble(value);
            else
                SetText(cell, text);
        }
    }

    std::vector<std::uint8_t> image;
    if (!book.SaveToMemory(image)) return false;
    orderview::ReplacingFile file(path);
    return file.Write(image.data(), image.size()) && file.Commit();
}
