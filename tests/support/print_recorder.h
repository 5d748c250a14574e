// A print job that records what is drawn, page by page, for tests; it measures text with the
// PDF printer's font metrics, so texts are cut exactly as in a PDF.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/print.h"

namespace ovtest {

struct RecordedText {
    orderview::PrintBox box;
    std::string text;
    orderview::PrintFont font;
    orderview::PrintAlign align;
};

struct RecordedLine {
    double x1, y1, x2, y2;
};

struct RecordedPage {
    std::vector<RecordedText> texts;
    std::vector<RecordedLine> lines;
    std::vector<orderview::PrintBox> rects;
    int shadedRects = 0;
};

struct PrintRecord {
    orderview::PrintPaper paper;  // as it was when printing finished
    std::vector<RecordedPage> pages;
    bool finished = false;
    bool outsidePaper = false;  // something was drawn beyond the printable area

    // The texts of a page in drawing order.
    std::vector<std::string> Texts(std::size_t page) const;
};

class PrintRecorder : public orderview::IPrintJob {
public:
    // Records into `record` on `paper`; a recorder that cannot turn refuses SetLandscape(true).
    PrintRecorder(PrintRecord& record, const orderview::PrintPaper& paper, bool canTurn = true);

    orderview::PrintPaper GetPaper() const override { return record_.paper; }
    bool SetLandscape(bool landscape) override;
    double MeasureText(const CString& text, const orderview::PrintFont& font) const override;
    void DrawText(const orderview::PrintBox& box, const CString& text, const orderview::PrintFont& font,
                  orderview::PrintAlign align) override;
    void DrawLine(double x1, double y1, double x2, double y2) override;
    void DrawRect(const orderview::PrintBox& box, bool shaded) override;
    bool NextPage() override;
    bool Finish() override;

private:
    void Check(double x, double y);

    PrintRecord& record_;
    bool canTurn_;
};

// A print dialog answer for FakePlatform::printDialog that prints into `record`.
std::function<std::unique_ptr<orderview::IPrintJob>(const orderview::PrintRequest&)>
RecordInto(PrintRecord& record, const orderview::PrintPaper& paper, bool canTurn = true);

}  // namespace ovtest
