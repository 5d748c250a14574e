// The operating system beneath the platform seam, on Windows: printing with GDI (the print
// dialog, printer device contexts and enhanced metafiles). Texts are narrow text in the ANSI
// code page and are drawn in UTF-16.
#ifdef _WIN32

#include <windows.h>
#include <commdlg.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>
// windows.h names DrawText as a macro; the library uses the name.
#undef DrawText

#include "platform/detail/native.h"
#include "platform/narrow_text.h"

namespace orderview {
namespace native {

// Printing with GDI. A GdiPrintJob converts points to device units and draws; a PageSurface
// gives it the device context of each page: a printer's document, or one metafile a page.
namespace {

// Texts are narrow text in the process's code page.
std::wstring WideFromNarrow(const CString& text)
{
    const std::u16string wide = orderview::NarrowToUtf16(text.str());
    return std::wstring(wide.begin(), wide.end());
}

// Device units per inch and where the device's (0, 0) lies from the paper's corner.
struct DeviceScale {
    int dpiX = 0;
    int dpiY = 0;
    int offsetX = 0;
    int offsetY = 0;
};

// The shortest DEVMODEA that has dmOrientation (older drivers write shorter ones).
constexpr std::size_t kDevModeWithOrientation = offsetof(DEVMODEA, dmOrientation) + sizeof(short);

class PageSurface {
public:
    virtual ~PageSurface() = default;  // an unfinished surface is abandoned
    // Measures texts; it has the resolution of the pages and lives as long as the surface.
    virtual HDC MeasuringDc() const = 0;
    virtual DeviceScale Scale() const = 0;
    virtual PrintPaper Paper() const = 0;
    // Turns the paper before the first page; false when the device cannot.
    virtual bool Turn(bool landscape) = 0;
    // The device context of a new page, null on failure.
    virtual HDC BeginPage() = 0;
    virtual bool EndPage() = 0;
    // Delivers the document after its last page.
    virtual bool Finish() = 0;
};

// A document on a printer device context.
class PrinterSurface : public PageSurface {
public:
    PrinterSurface(HDC dc, bool ownsDc, std::vector<char> devMode) : dc_(dc), ownsDc_(ownsDc), devMode_(std::move(devMode))
    {
        ReadDevice();
    }

    ~PrinterSurface() override
    {
        if (started_ && !finished_) ::AbortDoc(dc_);
        if (ownsDc_) ::DeleteDC(dc_);
    }

    bool Start(const PrintRequest& request)
    {
        if (scale_.dpiX <= 0 || scale_.dpiY <= 0 || paper_.dWidth <= 0 || paper_.dHeight <= 0) return false;
        const std::wstring name = WideFromNarrow(request.csDocName);
        DOCINFOW info = {};
        info.cbSize = sizeof info;
        info.lpszDocName = name.empty() ? L"orderview" : name.c_str();
        started_ = ::StartDocW(dc_, &info) > 0;
        return started_;
    }

    HDC MeasuringDc() const override { return dc_; }
    DeviceScale Scale() const override { return scale_; }
    PrintPaper Paper() const override { return paper_; }

    bool Turn(bool landscape) override
    {
        if (landscape == paper_.bLandscape) return true;
        if (devMode_.empty()) return false;
        std::vector<char> turned = devMode_;
        DEVMODEA* mode = reinterpret_cast<DEVMODEA*>(turned.data());
        mode->dmFields |= DM_ORIENTATION;
        mode->dmOrientation = static_cast<short>(landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT);
        if (!::ResetDCA(dc_, mode)) return false;
        ReadDevice();
        return paper_.bLandscape == landscape;
    }

    HDC BeginPage() override { return ::StartPage(dc_) > 0 ? dc_ : nullptr; }
    bool EndPage() override { return ::EndPage(dc_) > 0; }

    bool Finish() override
    {
        finished_ = true;
        return ::EndDoc(dc_) > 0;
    }

private:
    // The physical page and the printable area's offset; the margins are half an inch or the
    // unprintable edge, whichever is wider.
    void ReadDevice()
    {
        scale_.dpiX = ::GetDeviceCaps(dc_, LOGPIXELSX);
        scale_.dpiY = ::GetDeviceCaps(dc_, LOGPIXELSY);
        scale_.offsetX = ::GetDeviceCaps(dc_, PHYSICALOFFSETX);
        scale_.offsetY = ::GetDeviceCaps(dc_, PHYSICALOFFSETY);
        if (scale_.dpiX <= 0 || scale_.dpiY <= 0) return;
        const int printableX = ::GetDeviceCaps(dc_, HORZRES), printableY = ::GetDeviceCaps(dc_, VERTRES);
        int width = ::GetDeviceCaps(dc_, PHYSICALWIDTH), height = ::GetDeviceCaps(dc_, PHYSICALHEIGHT);
        if (width <= 0) width = printableX;
        if (height <= 0) height = printableY;
        const double x = 72.0 / scale_.dpiX, y = 72.0 / scale_.dpiY;
        paper_ = PrintPaper();
        paper_.dWidth = width * x;
        paper_.dHeight = height * y;
        paper_.dMarginLeft = std::max(36.0, scale_.offsetX * x);
        paper_.dMarginTop = std::max(36.0, scale_.offsetY * y);
        paper_.dMarginRight = std::max(36.0, (width - scale_.offsetX - printableX) * x);
        paper_.dMarginBottom = std::max(36.0, (height - scale_.offsetY - printableY) * y);
        paper_.bLandscape = width > height;
    }

    HDC dc_;
    bool ownsDc_;
    std::vector<char> devMode_;  // the printer's DEVMODEA, empty when unknown
    DeviceScale scale_;
    PrintPaper paper_;
    bool started_ = false;
    bool finished_ = false;
};

// One enhanced metafile a page, referenced to the screen.
class MetafileSurface : public PageSurface {
public:
    MetafileSurface(const PrintRequest& request, const PrintPaper& paper, MetafilePageSink sink)
        : measuring_(::CreateCompatibleDC(nullptr)), paper_(paper), sink_(std::move(sink))
    {
        // "application\0document\0\0"
        description_ = L"orderview";
        description_.push_back(L'\0');
        description_ += WideFromNarrow(request.csDocName);
        description_.push_back(L'\0');
        if (measuring_) {
            scale_.dpiX = ::GetDeviceCaps(measuring_, LOGPIXELSX);
            scale_.dpiY = ::GetDeviceCaps(measuring_, LOGPIXELSY);
        }
    }

    ~MetafileSurface() override
    {
        if (page_) ::DeleteEnhMetaFile(::CloseEnhMetaFile(page_));
        for (HENHMETAFILE done : pages_) ::DeleteEnhMetaFile(done);
        if (measuring_) ::DeleteDC(measuring_);
    }

    bool IsGood() const { return measuring_ && scale_.dpiX > 0 && scale_.dpiY > 0; }

    HDC MeasuringDc() const override { return measuring_; }
    DeviceScale Scale() const override { return scale_; }
    PrintPaper Paper() const override { return paper_; }

    bool Turn(bool landscape) override
    {
        paper_ = TurnedPaper(paper_, landscape);
        return true;
    }

    HDC BeginPage() override
    {
        // The frame is in hundredths of a millimetre.
        const auto hundredths = [](double points) {
            return static_cast<LONG>(std::lround(std::min(points, 1e6) * 2540.0 / 72.0));
        };
        const RECT frame = {0, 0, hundredths(paper_.dWidth), hundredths(paper_.dHeight)};
        page_ = ::CreateEnhMetaFileW(nullptr, nullptr, &frame, description_.c_str());
        return page_;
    }

    bool EndPage() override
    {
        const HENHMETAFILE done = ::CloseEnhMetaFile(page_);
        page_ = nullptr;
        if (!done) return false;
        pages_.push_back(done);
        return true;
    }

    bool Finish() override
    {
        std::vector<HENHMETAFILE> pages;
        pages.swap(pages_);
        for (HENHMETAFILE page : pages) sink_(page);
        return true;
    }

private:
    HDC measuring_;
    PrintPaper paper_;
    MetafilePageSink sink_;
    std::wstring description_;
    DeviceScale scale_;
    HDC page_ = nullptr;                // the page being drawn
    std::vector<HENHMETAFILE> pages_;   // finished pages, not yet delivered
};

constexpr double kLineWidthPoints = 0.5;
constexpr COLORREF kShade = RGB(217, 217, 217);  // 85% grey, as the PDF job shades

class GdiPrintJob : public IPrintJob {
public:
    explicit GdiPrintJob(std::unique_ptr<PageSurface> surface) : surface_(std::move(surface)) {}

    ~GdiPrintJob() override
    {
        if (dc_) ::RestoreDC(dc_, saved_);
        surface_.reset();  // abandons an unfinished document; our objects are selected nowhere now
        for (const auto& font : fonts_) ::DeleteObject(font.second);
        if (pen_) ::DeleteObject(pen_);
        if (shade_) ::DeleteObject(shade_);
    }

    PrintPaper GetPaper() const override { return surface_->Paper(); }

    bool SetLandscape(bool landscape) override
    {
        if (begun_ || finished_) return false;
        return surface_->Turn(landscape);
    }

    double MeasureText(const CString& text, const PrintFont& font) const override
    {
        const std::wstring wide = WideFromNarrow(text);
        const HFONT handle = FontFor(font);
        if (wide.empty() || !handle) return 0;
        const HDC dc = surface_->MeasuringDc();
        const HGDIOBJ old = ::SelectObject(dc, handle);
        SIZE size = {};
        const BOOL ok = ::GetTextExtentPoint32W(dc, wide.data(), static_cast<int>(wide.size()), &size);
        ::SelectObject(dc, old);
        return ok ? size.cx * 72.0 / surface_->Scale().dpiX : 0;
    }

    void DrawText(const PrintBox& box, const CString& text, const PrintFont& font, PrintAlign align) override
    {
        const HDC dc = Page();
        const std::wstring wide = WideFromNarrow(text);
        const HFONT handle = FontFor(font);
        if (!dc || wide.empty() || !handle) return;
        ::SelectObject(dc, handle);
        SIZE size = {};
        TEXTMETRICW metrics = {};
        const int count = static_cast<int>(wide.size());
        if (!::GetTextExtentPoint32W(dc, wide.data(), count, &size) || !::GetTextMetricsW(dc, &metrics)) return;
        const RECT clip = {X(box.dLeft), Y(box.dTop), X(box.dLeft + box.dWidth), Y(box.dTop + box.dHeight)};
        const LONG room = clip.right - clip.left;
        LONG x = clip.left;  // a text wider than the box starts at its left edge and is cut at its right
        if (size.cx <= room) {
            if (align == PrintAlign::kRight) x = clip.right - size.cx;
            if (align == PrintAlign::kCenter) x = clip.left + (room - size.cx) / 2;
        }
        const LONG y = clip.top + (clip.bottom - clip.top - metrics.tmHeight) / 2;
        ::ExtTextOutW(dc, x, y, ETO_CLIPPED, &clip, wide.data(), static_cast<UINT>(count), nullptr);
    }

    void DrawLine(double x1, double y1, double x2, double y2) override
    {
        const HDC dc = Page();
        if (!dc) return;
        ::MoveToEx(dc, X(x1), Y(y1), nullptr);
        ::LineTo(dc, X(x2), Y(y2));
    }

    void DrawRect(const PrintBox& box, bool shaded) override
    {
        const HDC dc = Page();
        if (!dc) return;
        if (shaded && !shade_) shade_ = ::CreateSolidBrush(kShade);
        ::SelectObject(dc, shaded && shade_ ? static_cast<HGDIOBJ>(shade_) : ::GetStockObject(NULL_BRUSH));
        ::Rectangle(dc, X(box.dLeft), Y(box.dTop), X(box.dLeft + box.dWidth), Y(box.dTop + box.dHeight));
        ::SelectObject(dc, ::GetStockObject(NULL_BRUSH));
    }

    bool NextPage() override
    {
        if (finished_ || !Page()) return false;
        return EndCurrentPage();
    }

    bool Finish() override
    {
        if (finished_) return false;
        const bool ended = Page() && EndCurrentPage();
        finished_ = true;
        return ended && surface_->Finish();
    }

private:
    // The current page's device context, beginning the page when none is open; null once the
    // job has failed or finished.
    HDC Page()
    {
        if (dc_) return dc_;
        if (failed_ || finished_) return nullptr;
        begun_ = true;
        dc_ = surface_->BeginPage();
        if (!dc_) {
            failed_ = true;
            return nullptr;
        }
        saved_ = ::SaveDC(dc_);
        ::SetMapMode(dc_, MM_TEXT);
        ::SetBkMode(dc_, TRANSPARENT);
        ::SetTextColor(dc_, RGB(0, 0, 0));
        ::SetTextAlign(dc_, TA_LEFT | TA_TOP | TA_NOUPDATECP);
        if (!pen_) {
            const int width = static_cast<int>(std::lround(kLineWidthPoints * surface_->Scale().dpiX / 72.0));
            pen_ = ::CreatePen(PS_SOLID, std::max(1, width), RGB(0, 0, 0));
        }
        if (pen_) ::SelectObject(dc_, pen_);
        ::SelectObject(dc_, ::GetStockObject(NULL_BRUSH));
        return dc_;
    }

    bool EndCurrentPage()
    {
        ::RestoreDC(dc_, saved_);
        dc_ = nullptr;
        if (!surface_->EndPage()) failed_ = true;
        return !failed_;
    }

    // Points from the paper's corner to device units; anything not finite, or far off the paper,
    // is held to a range that GDI takes.
    static LONG ToDevice(double points, int dpi, int offset)
    {
        const double units = points * dpi / 72.0 - offset;
        if (std::isnan(units)) return 0;
        return static_cast<LONG>(std::lround(std::clamp(units, -1e7, 1e7)));
    }
    LONG X(double points) const { return ToDevice(points, surface_->Scale().dpiX, surface_->Scale().offsetX); }
    LONG Y(double points) const { return ToDevice(points, surface_->Scale().dpiY, surface_->Scale().offsetY); }

    // Arial at the size in points (bold or not); null for a size that is not a positive number.
    HFONT FontFor(const PrintFont& font) const
    {
        if (!(font.dSize > 0 && font.dSize <= 1000)) return nullptr;
        const int height = static_cast<int>(std::lround(font.dSize * surface_->Scale().dpiY / 72.0));
        if (height < 1) return nullptr;
        const auto key = std::make_pair(height, font.bBold);
        const auto found = fonts_.find(key);
        if (found != fonts_.end()) return found->second;
        // A negative height asks for the character height, the font size proper.
        const HFONT created = ::CreateFontW(-height, 0, 0, 0, font.bBold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                            DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                            VARIABLE_PITCH | FF_SWISS, L"Arial");
        if (created) fonts_.emplace(key, created);
        return created;
    }

    std::unique_ptr<PageSurface> surface_;
    mutable std::map<std::pair<int, bool>, HFONT> fonts_;  // by height in device units and weight
    HPEN pen_ = nullptr;
    HBRUSH shade_ = nullptr;
    HDC dc_ = nullptr;    // the open page
    int saved_ = 0;       // the page's state before the job's objects were selected
    bool begun_ = false;  // a page has been begun: the paper can no longer turn
    bool failed_ = false;
    bool finished_ = false;
};

// A copy of a DEVMODEA with its driver's data; empty when it is too short to hold an orientation.
std::vector<char> CopyDevMode(const void* devMode)
{
    if (!devMode) return {};
    const DEVMODEA* mode = static_cast<const DEVMODEA*>(devMode);
    if (mode->dmSize < kDevModeWithOrientation) return {};
    const char* bytes = static_cast<const char*>(devMode);
    return std::vector<char>(bytes, bytes + mode->dmSize + mode->dmDriverExtra);
}

std::unique_ptr<IPrintJob> StartPrinterJob(HDC dc, bool ownsDc, std::vector<char> devMode, const PrintRequest& request)
{
    auto surface = std::make_unique<PrinterSurface>(dc, ownsDc, std::move(devMode));
    if (!surface->Start(request)) return nullptr;
    return std::make_unique<GdiPrintJob>(std::move(surface));
}

}  // namespace

std::vector<FilePath> PrintFontFiles()
{
    // The Fonts folder of Windows: Microsoft JhengHei and MingLiU (Traditional Chinese) first.
    wchar_t windows[MAX_PATH] = {};
    const UINT n = ::GetWindowsDirectoryW(windows, MAX_PATH);
    if (n == 0 || n >= MAX_PATH) return {};
    std::vector<FilePath> files;
    for (const wchar_t* name : {L"msjh.ttc", L"mingliu.ttc", L"msjhl.ttc", L"kaiu.ttf", L"mingliub.ttc",
                                L"simsun.ttc", L"msyh.ttc", L"arialuni.ttf"})
        files.push_back(FilePath(std::wstring(windows) + L"\\Fonts\\" + name));
    return files;
}

std::unique_ptr<IPrintJob> ShowPrintDialog(const PrintRequest& request)
{
    // The default printer first, without a dialog: with no printer installed, no dialog shows.
    PRINTDLGA defaults = {};
    defaults.lStructSize = sizeof defaults;
    defaults.Flags = PD_RETURNDEFAULT;
    if (!::PrintDlgA(&defaults)) return nullptr;

    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hDevMode = defaults.hDevMode;
    dialog.hDevNames = defaults.hDevNames;
    dialog.Flags = PD_RETURNDC | PD_NOSELECTION | PD_NOPAGENUMS | PD_USEDEVMODECOPIESANDCOLLATE;
    dialog.nCopies = 1;
    const bool chosen = ::PrintDlgA(&dialog) && dialog.hDC;
    std::vector<char> devMode;
    if (dialog.hDevMode) {
        if (const void* mode = ::GlobalLock(dialog.hDevMode)) {
            devMode = CopyDevMode(mode);
            ::GlobalUnlock(dialog.hDevMode);
        }
        ::GlobalFree(dialog.hDevMode);
    }
    if (dialog.hDevNames) ::GlobalFree(dialog.hDevNames);
    if (!chosen) {
        if (dialog.hDC) ::DeleteDC(dialog.hDC);
        return nullptr;
    }
    return StartPrinterJob(dialog.hDC, true, std::move(devMode), request);
}

std::unique_ptr<IPrintJob> StartDeviceContextJob(void* printerDc, const PrintRequest& request, const void* devMode)
{
    return StartPrinterJob(static_cast<HDC>(printerDc), false, CopyDevMode(devMode), request);
}

std::unique_ptr<IPrintJob> StartMetafileJob(const PrintRequest& request, const PrintPaper& paper, MetafilePageSink sink)
{
    auto surface = std::make_unique<MetafileSurface>(request, paper, std::move(sink));
    if (!surface->IsGood()) return nullptr;
    return std::make_unique<GdiPrintJob>(std::move(surface));
}

}  // namespace native
}  // namespace orderview

#endif  // _WIN32
