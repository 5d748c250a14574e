// The print seam: a print job as the library draws on it. The platform's print dialog
// (IPlatform::StartPrintJob) hands out a job; the library lays a document out on the job's
// paper and draws text, lines and rectangles page by page. Coordinates and sizes are in
// points (1/72 inch) from the top-left corner of the paper.
//
// The library's own printer writes a PDF 1.4 file with the standard Helvetica and
// Helvetica-Bold fonts in WinAnsi encoding. Texts are read as UTF-8; a character WinAnsi cannot
// show (any CJK character, for one) and a byte that is not valid UTF-8 print as '?'.
#pragma once

#include <memory>

#include "order_data/cstring.h"
#include "order_data/export.h"

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

// A job that writes a PDF file to `path` on `paper` (A4 when omitted). Null when the file cannot
// be created (a missing folder, an unwritable path). The file appears only when Finish succeeds;
// an existing file at the path is replaced then, and kept as it was on any failure.
ORDERVIEW_API std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request);
ORDERVIEW_API std::unique_ptr<IPrintJob> StartPdfPrintJob(const CString& path, const PrintRequest& request,
                                                          const PrintPaper& paper);

// Width in points of a text in Helvetica (Helvetica-Bold when `font.bBold`) as the PDF job
// prints it: standard glyph widths of the WinAnsi characters, '?' for the others.
ORDERVIEW_API double MeasureHelvetica(const CString& text, const PrintFont& font);

}  // namespace orderview
