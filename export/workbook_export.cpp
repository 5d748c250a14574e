// Binary workbook export of a list control.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "export/detail/list_cells.h"
#include "export/list_export.h"
#include "platform/file_system.h"
#include "platform/narrow_text.h"
#include "xls/book.h"
#include "xls/utf16.h"

namespace {

// The longest text a worksheet cell holds, in UTF-16 code units.
constexpr std::size_t kMaxCellText = 32767;
// The longest sheet name spreadsheet programs accept.
constexpr std::size_t kMaxSheetName = 31;
// Data rows of one sheet: every sheet starts with the heading row.
constexpr std::size_t kRowsPerSheet = xls::Sheet::kMaxRows - 1;

// The longest prefix of `text` of at most `units` code units that does not split a surrogate pair.
std::size_t Utf16CutPoint(const std::u16string& text, std::size_t units)
{
    if (text.size() <= units) return text.size();
    const char16_t last = units > 0 ? text[units - 1] : 0;
    return (last >= 0xD800 && last <= 0xDBFF) ? units - 1 : units;
}

void SetWide(xls::Cell* cell, const std::u16string& text)
{
    const std::wstring wide = xls::FromUtf16(std::u16string_view(text).substr(0, Utf16CutPoint(text, kMaxCellText)));
    cell->SetWString(wide.data(), wide.size());
}

// Plain ASCII is stored as 8-bit text, as it always was; any other narrow text is read in the
// front end's code page and stored as UTF-16, so that readers show the characters and not the
// code page's bytes.
void SetText(xls::Cell* cell, const CString& text)
{
    const char* bytes = text.GetString();
    const std::size_t length = std::strlen(bytes);
    bool ascii = true;
    for (std::size_t i = 0; i < length && ascii; ++i) ascii = static_cast<unsigned char>(bytes[i]) < 0x80;
    if (ascii)
        cell->SetString(bytes, std::min(length, kMaxCellText));
    else
        SetWide(cell, orderview::NarrowToUtf16(std::string_view(bytes, length)));
}

// The name of the sheet `index` (0 the first) of a list: the given name, then "name (2)",
// "name (3)", ... with the name cut, between characters, so that the whole stays within 31.
std::u16string SheetName(const std::u16string& base, std::size_t index)
{
    if (index == 0) return base;
    const std::string suffix = " (" + std::to_string(index + 1) + ")";
    std::u16string name = base.substr(0, Utf16CutPoint(base, kMaxSheetName - suffix.size()));
    for (char c : suffix) name += static_cast<char16_t>(c);
    return name;
}

}  // namespace

bool g_DataExportWorkbook(CListCtrl& list, const CString& sheetName)
{
    const int columns = list.GetColumnCount();
    const orderview::SaveFileRequest request = orderview::ExportSaveRequest(".xls", "(*.xls)|*.xls||");
    CString path;
    if (!orderview::AskSavePath(request, path)) return false;
    if (columns > static_cast<int>(xls::Sheet::kMaxCols)) return false;

    xls::Book book;
    book.New(1);
    const std::u16string baseName = orderview::NarrowToUtf16(sheetName.GetString());
    if (!book.RenameWorksheet(0, xls::FromUtf16(baseName).c_str())) return false;
    std::vector<CString> headings;
    for (int column = 0; column < columns; ++column) headings.push_back(orderview::ColumnHeading(list, column));
    const std::vector<CString> styles = orderview::ColumnStyles(list);

    // A list longer than a sheet goes on over further sheets, each with the heading row.
    xls::Sheet* sheet = nullptr;
    std::size_t sheetIndex = 0, sheetRow = 0;
    const auto startSheet = [&](std::size_t remaining) -> bool {
        if (sheetIndex > 0) {
            const std::wstring name = xls::FromUtf16(SheetName(baseName, sheetIndex));
            if (!book.AddWorksheet(name.c_str())) return false;
        }
        sheet = book.GetWorksheet(sheetIndex);
        if (!sheet) return false;
        // The heading row and the sheet's rows: a big list takes the sheet's memory in large blocks.
        sheet->Reserve(std::min(remaining, kRowsPerSheet) + 1, static_cast<std::size_t>(columns));
        for (int column = 0; column < columns; ++column)
            SetText(sheet->Cell(0, static_cast<std::size_t>(column)), headings[static_cast<std::size_t>(column)]);
        sheetRow = 0;
        ++sheetIndex;
        return true;
    };
    if (!startSheet(static_cast<std::size_t>(std::max(0, list.GetItemCount())))) return false;
    for (int row = 0; row < list.GetItemCount(); ++row) {
        if (sheetRow == kRowsPerSheet &&
            !startSheet(static_cast<std::size_t>(list.GetItemCount()) - static_cast<std::size_t>(row)))
            return false;
        ++sheetRow;
        for (int column = 0; column < columns; ++column) {
            const CString text = list.GetItemText(row, column);
            xls::Cell* cell = sheet->Cell(sheetRow, static_cast<std::size_t>(column));
            double value = 0;
            if (orderview::IsNumberCell(styles[static_cast<std::size_t>(column)], text) &&
                orderview::NumberValue(text, value))
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
