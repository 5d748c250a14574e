#include "support/print_recorder.h"

#include <functional>

namespace ovtest {

std::vector<std::string> PrintRecord::Texts(std::size_t page) const
{
    std::vector<std::string> texts;
    if (page < pages.size())
        for (const RecordedText& t : pages[page].texts) texts.push_back(t.text);
    return texts;
}

PrintRecorder::PrintRecorder(PrintRecord& record, const orderview::PrintPaper& paper, bool canTurn)
    : record_(record), canTurn_(canTurn)
{
    record_ = PrintRecord();
    record_.paper = paper;
    record_.pages.emplace_back();
}

bool PrintRecorder::SetLandscape(bool landscape)
{
    if (landscape == record_.paper.bLandscape) return true;
    if (!canTurn_ || record_.pages.size() > 1 || !record_.pages[0].texts.empty()) return false;
    std::swap(record_.paper.dWidth, record_.paper.dHeight);
    record_.paper.bLandscape = landscape;
    return true;
}

double PrintRecorder::MeasureText(const CString& text, const orderview::PrintFont& font) const
{
    return orderview::MeasureHelvetica(text, font);
}

// Allows a hundredth of a point for rounding.
void PrintRecorder::Check(double x, double y)
{
    const orderview::PrintPaper& p = record_.paper;
    if (x < p.dMarginLeft - 0.01 || x > p.dWidth - p.dMarginRight + 0.01 || y < p.dMarginTop - 0.01 ||
        y > p.dHeight - p.dMarginBottom + 0.01)
        record_.outsidePaper = true;
}

void PrintRecorder::DrawText(const orderview::PrintBox& box, const CString& text, const orderview::PrintFont& font,
                             orderview::PrintAlign align)
{
    Check(box.dLeft, box.dTop);
    Check(box.dLeft + box.dWidth, box.dTop + box.dHeight);
    record_.pages.back().texts.push_back({box, text.str(), font, align});
}

void PrintRecorder::DrawLine(double x1, double y1, double x2, double y2)
{
    Check(x1, y1);
    Check(x2, y2);
    record_.pages.back().lines.push_back({x1, y1, x2, y2});
}

void PrintRecorder::DrawRect(const orderview::PrintBox& box, bool shaded)
{
    Check(box.dLeft, box.dTop);
    Check(box.dLeft + box.dWidth, box.dTop + box.dHeight);
    record_.pages.back().rects.push_back(box);
    if (shaded) ++record_.pages.back().shadedRects;
}

bool PrintRecorder::NextPage()
{
    record_.pages.emplace_back();
    return true;
}

bool PrintRecorder::Finish()
{
    record_.finished = true;
    return true;
}

std::function<std::unique_ptr<orderview::IPrintJob>(const orderview::PrintRequest&)>
RecordInto(PrintRecord& record, const orderview::PrintPaper& paper, bool canTurn)
{
    return [&record, paper, canTurn](const orderview::PrintRequest&) {
        return std::make_unique<PrintRecorder>(record, paper, canTurn);
    };
}

}  // namespace ovtest
