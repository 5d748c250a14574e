// CSV and text table export of a list control.
#include <cstring>
#include <string>

#include "export/detail/list_cells.h"
#include "export/list_export.h"
#include "order_data/host_api.h"
#include "platform/file_system.h"

namespace {

constexpr int kCsvFilter = 1;

// Writes fields left-aligned and padded to a width with blanks, never cut.
class FieldWriter {
public:
    explicit FieldWriter(orderview::ReplacingFile& file) : file_(file) {}
    void Field(const char* text, std::size_t size, int width, char after)
    {
        line_.append(text, size);
        if (size < static_cast<std::size_t>(width)) line_.append(static_cast<std::size_t>(width) - size, ' ');
        line_ += after;
        if (line_.size() >= 4096) Flush();
    }
    void EndLine()
    {
        line_ += "\r\n";
        Flush();
    }

private:
    void Flush()
    {
        file_.Write(line_);
        line_.clear();
    }
    orderview::ReplacingFile& file_;
    std::string line_;
};

}  // namespace

void g_DataExport(CListCtrl& list)
{
    const int columns = list.GetColumnCount();
    const orderview::SaveFileRequest request = orderview::ExportSaveRequest(".csv", "(*.csv)|*.csv|(*.txt)|*.txt||");
    CString path;
    if (!orderview::AskSavePath(request, path)) return;
    orderview::ReplacingFile file(path);
    if (!file.IsOpen()) return;
    const bool csv = orderview::GetPlatform().GetSaveFilterIndex(request, path) == kCsvFilter;
    const char separator = csv ? ',' : ' ';
    const CString commodityText = BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_COMMODITY");
    const CString avePriceText = BKOrderInterface::GetBKInterface().LangGetLangString("IDS_ORDER-ITEM_AVEPRICE");
    int commodityColumn = columns - 1;
    int avePriceColumn = columns - 1;
    FieldWriter out(file);

    for (int column = 0; column < columns; ++column) {
        const CString heading = orderview::ColumnHeading(list, column);
        int width = 20;
        if (csv) {
            if (heading == commodityText) commodityColumn = column;
            if (heading == avePriceText) avePriceColumn = column;
        } else if (heading == commodityText) {
            width = 50;
            commodityColumn = column;
        } else if (heading == avePriceText) {
            width = 30;
            avePriceColumn = column;
        }
        out.Field(heading.GetString(), static_cast<std::size_t>(heading.GetLength()), csv ? 0 : width,
                  column == columns - 1 ? ' ' : separator);
    }
    out.EndLine();

    for (int row = 0; row < list.GetItemCount(); ++row) {
        for (int column = 0; column < columns; ++column) {
            const CString cell = list.GetItemText(row, column);
            const char* text = cell.GetString();
            const std::size_t length = std::strlen(text);
            const char after = column == columns - 1 ? ' ' : separator;
            if (column != commodityColumn && column != avePriceColumn) {
                out.Field(text, length, csv ? 0 : 20, after);
                continue;
            }
            const char* lineFeed = static_cast<const char*>(std::memchr(text, '\n', length));
            if (!lineFeed || lineFeed == text) {
                out.Field(text, length, csv ? 0 : 50, after);
                continue;
            }
            // Two lines of equal length around a two-character break: keep each half without
            // its share of the break.
            const std::size_t half = length / 2;
            std::string joined(text, half - 1);
            joined += ';';
            joined.append(text + half + 1, half - 1);
            out.Field(joined.data(), joined.size(), csv ? 0 : 50, after);
        }
        out.EndLine();
    }
    file.Commit();
}
