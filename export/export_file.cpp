#include "export/export_file.h"

#include <cstring>
#include <string>

#include "order_data/host_api.h"
#include "platform/file_system.h"

namespace orderview {

namespace {

const char kPrologue[] =
    "<html xmlns:v=\"urn:schemas-microsoft-com:vml\"\n"
    "xmlns:o=\"urn:schemas-microsoft-com:office:office\"\n"
    "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"\n"
    "xmlns=\"http://www.w3.org/TR/REC-html40\">\n";
const char kTableStart[] =
    "\n<body>\n"
    "<table x:str border=0 cellpadding=0 cellspacing=0 style='border-collapse:collapse;table-layout:fixed;'>\n";
const char kNumberOpen[] = "<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0";
const char kNumberFormatEnd[] = "\"'>";
const char kCellEnd[] = "</td>\n";

}  // namespace

ExportFile::ExportFile() = default;

ExportFile::~ExportFile() { Abandon(); }

void ExportFile::Put(const char* text, std::size_t size)
{
    if (file_) file_->Write(text, size);
}

void ExportFile::Put(const char* text) { Put(text, std::strlen(text)); }

int ExportFile::Open(const CString& path)
{
    Abandon();
    auto file = std::make_unique<ReplacingFile>(path);
    if (!file->IsOpen()) return kCannotWrite;
    file_ = std::move(file);
    Put(kPrologue, sizeof kPrologue - 1);
    CString templatePath = BKOrderInterface::GetBKInterface().PathGetMainPath();
    templatePath.AppendFormat("\\sys\\xls_head.txt");
    std::string head;
    if (!ReadWholeFile(templatePath, head)) return kNoTemplate;
    // The copied head always ends in a line feed of its own, whatever its last byte.
    head += '\n';
    file_->Write(head);
    Put(kTableStart, sizeof kTableStart - 1);
    return kOk;
}

void ExportFile::BeginRow() { Put(" <tr style='mso-height-source:userset;height:16.5pt'>\n"); }

CString ExportFile::CellOpen(const CString& cellClass, const CString& style)
{
    return "<td class=" + cellClass + "  style=' " + style + "'>\n ";
}

CString ExportFile::CellOpenSpan(int span, const CString& cellClass, const CString& style)
{
    CString open;
    open.Format("<td colspan=%d class=", span);
    return open + cellClass + "  style=' " + style + "'>\n ";
}

void ExportFile::Cell(const CString& open, const CString& text)
{
    if (!file_) return;
    Put(open.GetString());
    Put(text.GetString());
    Put(kCellEnd, sizeof kCellEnd - 1);
}

void ExportFile::NumberCell(int kind, const CString& text, const CString& decimals)
{
    if (!file_) return;
    Put(kNumberOpen, sizeof kNumberOpen - 1);
    if (kind == kDecimals || kind == kPercentDecimals) {
        Put(".", 1);
        Put(decimals.GetString());
    }
    if (kind == kPercent || kind == kPercentDecimals) Put("%", 1);
    Put(kNumberFormatEnd, sizeof kNumberFormatEnd - 1);
    Put(text.GetString());
    Put(kCellEnd, sizeof kCellEnd - 1);
}

void ExportFile::Line(const CString& text)
{
    if (!file_) return;
    Put(text.GetString());
    Put("\n", 1);
}

void ExportFile::EndRow() { Put(" </tr>\n"); }

int ExportFile::Close()
{
    if (!file_) return kNotOpen;
    Put("</table>\n</body>\n</html>\n");
    const bool written = file_->Commit();
    file_.reset();
    return written ? kOk : kCannotWrite;
}

void ExportFile::Abandon()
{
    if (!file_) return;
    file_->Commit();
    file_.reset();
}

}  // namespace orderview
