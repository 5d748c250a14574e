#include "platform/print.h"

#include <utility>

#include "platform/native.h"
#include "platform/pdf_writer.h"

namespace orderview {

IPrintJob::~IPrintJob() = default;

PrintPaper A4Paper()
{
    PrintPaper paper;
    paper.dWidth = 595;
    paper.dHeight = 842;
    paper.dMarginLeft = paper.dMarginTop = paper.dMarginRight = paper.dMarginBottom = 36;
    return paper;
}

PrintPaper TurnedPaper(const PrintPaper& paper, bool landscape)
{
    if (landscape == paper.bLandscape) return paper;
    PrintPaper turned = paper;
    turned.dWidth = paper.dHeight;
    turned.dHeight = paper.dWidth;
    turned.dMarginLeft = paper.dMarginTop;
    turned.dMarginTop = paper.dMarginRight;
    turned.dMarginRight = paper.dMarginBottom;
    turned.dMarginBottom = paper.dMarginLeft;
    turned.bLandscape = landscape;
    return turned;
}

namespace {

// Height of Helvetica's capitals over the font size: centres the capitals in a box.
constexpr double kCapHeight = 0.718;
constexpr double kShadeGrey = 0.85;
constexpr double kLineWidth = 0.5;

class PdfPrintJob : public IPrintJob {
public:
    PdfPrintJob(const CString& path, const PrintRequest& request, const PrintPaper& paper)
        : writer_(path), paper_(paper), name_(request.csDocName)
    {
        BeginPage();
    }

    bool IsGood() const { return writer_.IsGood(); }

    PrintPaper GetPaper() const override { return paper_; }

    bool SetLandscape(bool landscape) override
    {
        if (drawn_) return false;
        paper_ = TurnedPaper(paper_, landscape);
        return true;
    }

    double MeasureText(const CString& text, const PrintFont& font) const override
    {
        return MeasureHelvetica(text, font);
    }

    void DrawText(const PrintBox& box, const CString& text, const PrintFont& font, PrintAlign align) override
    {
        drawn_ = true;
        bytes_.clear();
        const long units = AppendWinAnsi(bytes_, text.GetString(), static_cast<std::size_t>(text.GetLength()), font.bBold);
        if (bytes_.empty()) return;
        const double width = static_cast<double>(units) * font.dSize / 1000.0;
        double x = box.dLeft;
        if (align == PrintAlign::kRight) x = box.dLeft + box.dWidth - width;
        if (align == PrintAlign::kCenter) x = box.dLeft + (box.dWidth - width) / 2;
        const bool clip = width > box.dWidth || font.dSize > box.dHeight;
        if (clip) {
            // An overflowing text starts at the box's left edge and is cut at its right.
            x = box.dLeft;
            page_ += "q ";
            AppendBox(box);
            page_ += " re W n\n";
        }
        const int face = font.bBold ? 2 : 1;
        page_ += "BT";
        if (face != face_ || font.dSize != size_) {
            page_ += face == 2 ? " /F2 " : " /F1 ";
            AppendPdfNumber(page_, font.dSize);
            page_ += " Tf";
            face_ = face;
            size_ = font.dSize;
        }
        page_ += ' ';
        AppendPdfNumber(page_, x);
        page_ += ' ';
        AppendPdfNumber(page_, paper_.dHeight - (box.dTop + box.dHeight / 2 + font.dSize * kCapHeight / 2));
        page_ += " Td ";
        AppendPdfString(page_, bytes_);
        page_ += " Tj ET\n";
        if (clip) {
            page_ += "Q\n";
            face_ = 0;  // the font belongs to the graphics state that Q restored
        }
    }

    void DrawLine(double x1, double y1, double x2, double y2) override
    {
        drawn_ = true;
        AppendPoint(x1, y1);
        page_ += " m ";
        AppendPoint(x2, y2);
        page_ += " l S\n";
    }

    void DrawRect(const PrintBox& box, bool shaded) override
    {
        drawn_ = true;
        if (shaded) {
            AppendPdfNumber(page_, kShadeGrey);
            page_ += " g ";
        }
        AppendBox(box);
        page_ += shaded ? " re B 0 g\n" : " re S\n";
    }

    bool NextPage() override
    {
        drawn_ = true;
        const bool ok = writer_.AddPage(paper_.dWidth, paper_.dHeight, page_);
        BeginPage();
        return ok;
    }

    bool Finish() override
    {
        if (finished_) return false;
        finished_ = true;
        return writer_.AddPage(paper_.dWidth, paper_.dHeight, page_) && writer_.Finish(name_);
    }

private:
    void BeginPage()
    {
        page_.clear();
        AppendPdfNumber(page_, kLineWidth);
        page_ += " w\n";
        face_ = 0;
        size_ = 0;
    }

    void AppendPoint(double x, double y)
    {
        AppendPdfNumber(page_, x);
        page_ += ' ';
        AppendPdfNumber(page_, paper_.dHeight - y);
    }

    // "x y w h" of a box in the page's bottom-up coordinates.
    void AppendBox(const PrintBox& box)
    {
        AppendPoint(box.dLeft, box.dTop + box.dHeight);
        page_ += ' ';
        AppendPdfNumber(page_, box.dWidth);
        page_ += ' ';
        AppendPdfNumber(page_, box.dHeight);
    }

    PdfWriter writer_;
    PrintPaper paper_;
    CString name_;
    std::string page_;   // the current page's content stream
    std::string bytes_;  // scratch: a text in WinAnsi
    int face_ = 0;       // font selected in the content stream (1 regular, 2 bold, 0 none)
    double size_ = 0;
    bool drawn_ = false;
    bool finished_ = false;
};

}  // namespace

std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request)
{
    return StartPdfPrintJob(path, request, A4Paper());
}

std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request, const PrintPaper& paper)
{
    if (!(paper.dWidth > 0 && paper.dHeight > 0)) return nullptr;
    auto job = std::make_unique<PdfPrintJob>(path, request, paper);
    if (!job->IsGood()) return nullptr;
    return job;
}

std::unique_ptr<IPrintJob> StartDeviceContextPrintJob(void* printerDc, const PrintRequest& request, const void* devMode)
{
    if (!printerDc) return nullptr;
    return native::StartDeviceContextJob(printerDc, request, devMode);
}

std::unique_ptr<IPrintJob> StartMetafilePrintJob(const PrintRequest& request, const PrintPaper& paper,
                                                 MetafilePageSink sink)
{
    if (!(paper.dWidth > 0 && paper.dHeight > 0) || !sink) return nullptr;
    return native::StartMetafileJob(request, paper, std::move(sink));
}

double MeasureHelvetica(const CString& text, const PrintFont& font)
{
    const long units = HelveticaTextWidth(text.GetString(), static_cast<std::size_t>(text.GetLength()), font.bBold);
    return static_cast<double>(units) * font.dSize / 1000.0;
}

}  // namespace orderview
