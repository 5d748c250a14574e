#include "platform/print.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "order_data/host_api.h"
#include "platform/detail/native.h"
#include "platform/detail/pdf_writer.h"

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

void WriteDebugLog(const std::string& text)
{
    char category[] = "print";
    BKOrderInterface::GetBKInterface().vWriteDebugLog(category, 0, text.c_str());
}

// The font for the characters WinAnsi lacks: the file ORDERVIEW_PRINT_FONT names when it is set,
// otherwise the first usable one of the system's usual Chinese fonts. Says so on the host's
// debug log when there is none: those characters then print as '?'.
std::unique_ptr<TrueTypeFont> LoadPrintFont()
{
    const char* named = std::getenv("ORDERVIEW_PRINT_FONT");
    if (named && *named) {
        auto font = TrueTypeFont::FromFile(FilePath(named));
        if (!font)
            WriteDebugLog(std::string("print: ORDERVIEW_PRINT_FONT (") + named +
                          ") is not a usable TrueType font: characters the standard fonts lack print as '?'");
        return font;
    }
    for (const FilePath& path : native::PrintFontFiles())
        if (auto font = TrueTypeFont::FromFile(path)) return font;
    WriteDebugLog("print: no TrueType font for Chinese text was found (ORDERVIEW_PRINT_FONT names one): characters "
                  "the standard fonts lack print as '?'");
    return nullptr;
}

class PdfPrintJob : public IPrintJob {
public:
    PdfPrintJob(const CString& path, const PrintRequest& request, const PrintPaper& paper)
        : writer_(path), paper_(paper), name_(request.csDocName), font_(new EmbeddedFont(LoadPrintFont))
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
        long units = 0;
        if (AsciiWidth(text.GetString(), static_cast<std::size_t>(text.GetLength()), font.bBold, units))
            return static_cast<double>(units) * font.dSize / 1000.0;
        ForEachCodePoint(text.str(), [&](char32_t cp) {
            std::uint16_t cid = 0;
            int width = 0;
            const int code = Latin(cp);
            if (code >= 0 || !font_->Glyph(cp, cid, width))
                width = HelveticaWidth(static_cast<unsigned char>(code >= 0 ? code : '?'), font.bBold);
            units += width;
        });
        return static_cast<double>(units) * font.dSize / 1000.0;
    }

    void DrawText(const PrintBox& box, const CString& text, const PrintFont& font, PrintAlign align) override
    {
        drawn_ = true;
        runs_.clear();
        const int face = font.bBold ? 2 : 1;
        long units = 0;
        if (AsciiWidth(text.GetString(), static_cast<std::size_t>(text.GetLength()), font.bBold, units)) {
            if (text.IsEmpty()) return;  // an ASCII text is its own WinAnsi bytes
        } else {
            units = SplitRuns(text, font.bBold, face);
            if (runs_.empty()) return;
        }
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
        page_ += "BT";
        SelectFont(runs_.empty() ? face : runs_.front().face, font.dSize);
        page_ += ' ';
        AppendPdfNumber(page_, x);
        page_ += ' ';
        AppendPdfNumber(page_, paper_.dHeight - (box.dTop + box.dHeight / 2 + font.dSize * kCapHeight / 2));
        page_ += " Td";
        if (runs_.empty()) {
            page_ += ' ';
            AppendPdfString(page_, text.str());
            page_ += " Tj ET\n";
        } else {
            for (const Run& run : runs_) {
                SelectFont(run.face, font.dSize);
                page_ += ' ';
                if (run.face == 3) page_ += '<' + run.bytes + '>';
                else AppendPdfString(page_, run.bytes);
                page_ += " Tj";
            }
            page_ += " ET\n";
        }
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
        if (!writer_.AddPage(paper_.dWidth, paper_.dHeight, page_)) return false;
        if (fontObject_) font_->Write(writer_, fontObject_);
        return writer_.Finish(name_);
    }

private:
    // A piece of a text in one font: WinAnsi bytes for Helvetica (faces 1 and 2), hexadecimal
    // CIDs for the embedded font (face 3).
    struct Run {
        int face;
        std::string bytes;
    };

    // The WinAnsi byte a character prints as in Helvetica: its own, or '?' for a byte that is not
    // valid narrow text (U+FFFD); -1 when WinAnsi lacks it and the embedded font may have it.
    static int Latin(char32_t cp)
    {
        if (cp < 0x80) return static_cast<int>(cp);
        if (cp == 0xFFFD) return '?';
        const unsigned char code = WinAnsiOf(cp);
        return code ? code : -1;
    }

    // Splits a text that is not all ASCII into runs_; returns its width in 1/1000 of the size.
    long SplitRuns(const CString& text, bool bold, int face)
    {
        long units = 0;
        ForEachCodePoint(text.str(), [&](char32_t cp) {
            std::uint16_t cid = 0;
            int width = 0;
            const int code = Latin(cp);
            const bool embedded = code < 0 && font_->Glyph(cp, cid, width);
            const int want = embedded ? 3 : face;
            if (runs_.empty() || runs_.back().face != want) runs_.push_back(Run{want, std::string()});
            if (embedded) {
                static const char digits[] = "0123456789ABCDEF";
                for (int shift = 12; shift >= 0; shift -= 4) runs_.back().bytes += digits[(cid >> shift) & 15];
            } else {
                const auto byte = static_cast<unsigned char>(code >= 0 ? code : '?');
                runs_.back().bytes += static_cast<char>(byte);
                width = HelveticaWidth(byte, bold);
            }
            units += width;
        });
        if (!fontObject_ && std::any_of(runs_.begin(), runs_.end(), [](const Run& r) { return r.face == 3; })) {
            fontObject_ = writer_.ReserveObject();
            writer_.SetThirdFont(fontObject_);
        }
        return units;
    }

    void SelectFont(int face, double size)
    {
        if (face == face_ && size == size_) return;
        page_ += face == 3 ? " /F3 " : face == 2 ? " /F2 " : " /F1 ";
        AppendPdfNumber(page_, size);
        page_ += " Tf";
        face_ = face;
        size_ = size;
    }

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
    std::vector<Run> runs_;  // scratch: a text that is not all ASCII
    std::unique_ptr<EmbeddedFont> font_;  // measuring a text may add glyphs: held by pointer
    int fontObject_ = 0;  // the embedded font's object, once a page shows it
    int face_ = 0;       // font selected in the content stream (1 regular, 2 bold, 3 embedded, 0 none)
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
