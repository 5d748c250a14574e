// The print seam: a print job as the library draws on it. The platform's print dialog
// (IPlatform::StartPrintJob) hands out a job; the library lays a document out on the job's
// paper and draws text, lines and rectangles page by page. Coordinates and sizes are in
// points (1/72 inch) from the top-left corner of the paper.
//
// Texts are narrow text (platform/narrow_text.h: the ANSI code page on Windows, UTF-8 elsewhere).
//
// The library's own printer writes a PDF 1.4 file. Characters of the WinAnsi encoding print in
// the standard Helvetica and Helvetica-Bold fonts; any other character (Chinese, for one) prints
// from a subset of a TrueType font embedded in the file, with a map back to Unicode so that the
// text can be searched and copied. That font is read when a job first meets such a character:
// the file the environment variable ORDERVIEW_PRINT_FONT names (.ttf or .ttc) when it is set,
// otherwise the first of the system's usual Chinese fonts found (AR PL UMing, Droid Sans
// Fallback on Linux; Microsoft JhengHei, MingLiU in the Windows Fonts folder). Without one, or
// for a character the font lacks, and for bytes that are not valid narrow text, '?' prints; the
// job then says so once on the host's debug log (vWriteDebugLog). A document title that is not
// ASCII goes into the file's information in UTF-16.
//
// On Windows the library also draws with GDI, on a printer or into enhanced metafiles: texts
// go to ExtTextOutW in UTF-16 (every character kept; a byte that is not valid narrow text becomes
// U+FFFD) in Arial, measured by the device itself.
#pragma once

#include <functional>
#include <memory>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

namespace orderview {

// What the print dialog is asked to print.
struct PrintRequest {
    CString csDocName;  // the document's name (the list's title)
};

// The paper of a job in its current orientation, in points.
struct PrintPaper {
    double dWidth = 0;
    double dHeight = 0;
    double dMarginLeft = 0;
    double dMarginTop = 0;
    double dMarginRight = 0;
    double dMarginBottom = 0;
    bool bLandscape = false;
};

// A box on the page, in points from the paper's top-left corner.
struct PrintBox {
    double dLeft = 0;
    double dTop = 0;
    double dWidth = 0;
    double dHeight = 0;
};

enum class PrintAlign { kLeft, kRight, kCenter };

struct PrintFont {
    double dSize = 9;
    bool bBold = false;
};

// One print job. The first page begins with the job; drawing goes to the current page.
// A job destroyed without Finish is abandoned and leaves nothing behind.
class ORDERVIEW_API IPrintJob {
public:
    virtual ~IPrintJob();
    virtual PrintPaper GetPaper() const = 0;
    // Turns the paper; only before anything is drawn. False when the job cannot.
    virtual bool SetLandscape(bool landscape) = 0;
    // Width of a text in points as DrawText would print it.
    virtual double MeasureText(const CString& text, const PrintFont& font) const = 0;
    // A text on one line, vertically centred in the box, aligned within it and clipped to it.
    virtual void DrawText(const PrintBox& box, const CString& text, const PrintFont& font, PrintAlign align) = 0;
    virtual void DrawLine(double x1, double y1, double x2, double y2) = 0;
    // A rectangle outline; filled light grey first when `shaded`.
    virtual void DrawRect(const PrintBox& box, bool shaded) = 0;
    // Ends the current page and begins the next; false when the job has failed.
    virtual bool NextPage() = 0;
    // Ends the document and delivers it; false when it could not be delivered (nothing is left).
    virtual bool Finish() = 0;
};

// A4 portrait with half-inch margins.
ORDERVIEW_API PrintPaper A4Paper();

// The paper in the given orientation: a quarter turn swaps width and height and moves each
// margin to the next edge; the paper as it is when already so.
ORDERVIEW_API PrintPaper TurnedPaper(const PrintPaper& paper, bool landscape);

// A job that writes a PDF file to `path` on `paper` (A4 when omitted). Null when the file cannot
// be created (a missing folder, an unwritable path). The file appears only when Finish succeeds;
// an existing file at the path is replaced then, and kept as it was on any failure.
ORDERVIEW_API std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request);
ORDERVIEW_API std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request,
                                                          const PrintPaper& paper);

// Width in points of a text in Helvetica (Helvetica-Bold when `font.bBold`): standard glyph
// widths of the WinAnsi characters, '?' for the others. The PDF job measures the same, but for
// characters it prints from its embedded font, which it measures by that font's widths.
ORDERVIEW_API double MeasureHelvetica(const CString& text, const PrintFont& font);

// The GDI jobs (Windows only: elsewhere they answer null). Handles are passed as void*.
//
// A job on a printer device context the host already has (`printerDc`, an HDC from its own print
// dialog or CreateDC). The document starts (StartDoc) with the job, a page with its first
// drawing; Finish ends the document (EndDoc), and an abandoned job aborts it (AbortDoc). The
// paper is the device's physical page; the margins are half an inch, or the printer's unprintable
// edge when wider. `devMode`, the printer's DEVMODEA, lets SetLandscape turn the paper
// (ResetDC); without it the job keeps the device context's orientation. The host keeps the
// device context and deletes it after the job. Null when `printerDc` is null or the document
// cannot start (not a printer, a spooler error).
ORDERVIEW_API std::unique_ptr<IPrintJob> StartDeviceContextPrintJob(void* printerDc, const PrintRequest& request,
                                                                    const void* devMode = nullptr);

// Receives a page of a metafile job: an HENHMETAFILE, which the receiver then owns and deletes
// with DeleteEnhMetaFile.
using MetafilePageSink = std::function<void(void* metafile)>;

// A job that draws each page into an enhanced metafile, at the screen's resolution (its
// LOGPIXELSX/Y; the screen is the metafiles' reference device) and with the paper as the frame:
// for previews, and for reading back what was printed. Finish hands the pages to `sink`, first to
// last; an abandoned or failed job deletes them. Null when `paper` has no area or `sink` is empty.
ORDERVIEW_API std::unique_ptr<IPrintJob> StartMetafilePrintJob(const PrintRequest& request, const PrintPaper& paper,
                                                               MetafilePageSink sink);

}  // namespace orderview
