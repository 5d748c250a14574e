// The GDI print jobs, read back from the enhanced metafiles they draw: the text records
// (EMR_EXTTEXTOUTW) give each text in UTF-16 with its position, clipping box and font.
#include <windows.h>
#undef DrawText

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "print/list_print.h"
#include "print/list_print_layout.h"
#include "platform/list_control.h"
#include "platform/narrow_text.h"
#include "platform/print.h"
#include "support/fake_platform.h"
#include "support/print_recorder.h"

namespace {

using orderview::PrintAlign;
using orderview::PrintBox;
using orderview::PrintFont;

struct PrintedText {
    std::wstring text;
    POINTL reference;  // where the text starts (top-left alignment)
    RECTL clip;
    DWORD options;
    LOGFONTW font;     // the font selected when it was drawn
};

struct Reading {
    std::map<DWORD, LOGFONTW> fonts;  // by object index
    LOGFONTW current = {};
    std::vector<PrintedText> texts;
};

int CALLBACK ReadRecord(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM data)
{
    Reading& reading = *reinterpret_cast<Reading*>(data);
    if (record->iType == EMR_EXTCREATEFONTINDIRECTW &&
        record->nSize >= offsetof(EMREXTCREATEFONTINDIRECTW, elfw) + sizeof(LOGFONTW)) {
        const auto* create = reinterpret_cast<const EMREXTCREATEFONTINDIRECTW*>(record);
        reading.fonts[create->ihFont] = create->elfw.elfLogFont;
    } else if (record->iType == EMR_SELECTOBJECT) {
        const auto* select = reinterpret_cast<const EMRSELECTOBJECT*>(record);
        const auto font = reading.fonts.find(select->ihObject);
        if (font != reading.fonts.end()) reading.current = font->second;
    } else if (record->iType == EMR_EXTTEXTOUTW) {
        const auto* text = reinterpret_cast<const EMREXTTEXTOUTW*>(record);
        const DWORD offset = text->emrtext.offString, chars = text->emrtext.nChars;
        if (offset > record->nSize || chars > (record->nSize - offset) / 2) {
            ADD_FAILURE() << "a text record longer than its record";
            return 0;
        }
        const auto* start = reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(record) + offset);
        reading.texts.push_back({std::wstring(start, chars), text->emrtext.ptlReference, text->emrtext.rcl,
                                 text->emrtext.fOptions, reading.current});
    }
    return 1;
}

std::vector<PrintedText> TextsOf(HENHMETAFILE page)
{
    Reading reading;
    EXPECT_TRUE(::EnumEnhMetaFile(nullptr, page, ReadRecord, &reading, nullptr));
    return reading.texts;
}

// Narrow text (the process's ANSI code page) as the UTF-16 the jobs must draw.
std::wstring Wide(const std::string& narrow)
{
    const std::u16string wide = orderview::NarrowToUtf16(narrow);
    return std::wstring(wide.begin(), wide.end());
}

// The pages a metafile job delivers, deleted with the test.
struct Pages {
    std::vector<HENHMETAFILE> metafiles;

    ~Pages()
    {
        for (HENHMETAFILE page : metafiles) ::DeleteEnhMetaFile(page);
    }
    orderview::MetafilePageSink Sink()
    {
        return [this](void* page) { metafiles.push_back(static_cast<HENHMETAFILE>(page)); };
    }
};

// The metafiles' resolution: the screen's.
int ScreenDpi(int index)
{
    const HDC screen = ::CreateCompatibleDC(nullptr);
    const int dpi = ::GetDeviceCaps(screen, index);
    ::DeleteDC(screen);
    return dpi;
}

long Device(double points, int dpi) { return std::lround(points * dpi / 72.0); }

// A stock name in the ANSI code page (its characters are '?' where the code page lacks them): in
// code page 950 the Big5 bytes of 台積電.
const std::string kCjkName = orderview::Utf16ToNarrow(u"\u53F0\u7A4D\u96FB");

TEST(MetafilePrintJob, ListTextsComeBackInRowOrderOnTheirPages)
{
    ovtest::FakePlatform fake;
    fake.SetDate(2026, 11, 21, 9, 30, 5);
    Pages pages;
    fake.printDialog = [&](const orderview::PrintRequest& request) {
        return orderview::StartMetafilePrintJob(request, orderview::A4Paper(), pages.Sink());
    };
    orderview::MemoryListCtrl list;
    list.InsertColumn("Code", CListCtrl::kFormatLeft, 80);
    list.InsertColumn("Name", CListCtrl::kFormatLeft, 160);
    list.InsertColumn("Qty", CListCtrl::kFormatRight, 70);
    list.InsertColumn("Price", CListCtrl::kFormatCenter, 90);
    const int kRows = 120;
    for (int r = 0; r < kRows; ++r) {
        const std::string n = std::to_string(r);
        list.InsertItem({CString(std::to_string(7000 + r)), CString(r == 57 ? kCjkName : "Stock " + n),
                         CString(std::to_string(r * 100)), CString(n + ".5")});
    }
    ASSERT_TRUE(g_vPrintListCtrl(list, "Orders"));

    // The layout does not depend on text widths: lay the list out again on the same paper.
    ovtest::PrintRecord scratch;
    ovtest::PrintRecorder recorder(scratch, orderview::A4Paper());
    std::vector<int> rows;
    for (int r = 0; r < kRows; ++r) rows.push_back(r);
    orderview::ListPrintLayout layout;
    ASSERT_TRUE(orderview::LayOutListPrint(recorder, list, rows, orderview::ListPrintStyle::kPlain, layout));
    ASSERT_EQ(layout.groups.size(), 1u);
    ASSERT_GE(layout.PageCount(), 2);
    ASSERT_EQ(pages.metafiles.size(), static_cast<std::size_t>(layout.PageCount()));

    bool sawCjk = false;
    for (int page = 0; page < layout.PageCount(); ++page) {
        std::vector<std::wstring> expected = {L"Orders", L"2026/11/21 09:30:05", L"Code", L"Name", L"Qty", L"Price"};
        const int first = page * layout.iRowsPerPage;
        const int end = std::min(kRows, first + layout.iRowsPerPage);
        for (int r = first; r < end; ++r)
            for (int c = 0; c < 4; ++c) expected.push_back(Wide(list.GetItemText(r, c).str()));
        expected.push_back(std::to_wstring(page + 1) + L" / " + std::to_wstring(layout.PageCount()));

        const std::vector<PrintedText> printed = TextsOf(pages.metafiles[static_cast<std::size_t>(page)]);
        std::vector<std::wstring> texts;
        for (const PrintedText& t : printed) texts.push_back(t.text);
        ASSERT_EQ(texts, expected) << "page " << page + 1;

        // The headings and each row on one line, every line below the one before it.
        const std::size_t lines = (printed.size() - 3) / 4;  // without the title, the date and the foot
        for (std::size_t line = 0; line < lines; ++line) {
            const std::size_t first = 2 + 4 * line;
            for (std::size_t c = 1; c < 4; ++c)
                EXPECT_EQ(printed[first + c].reference.y, printed[first].reference.y) << "page " << page + 1;
            if (line > 0) {
                EXPECT_GT(printed[first].reference.y, printed[first - 4].reference.y) << "page " << page + 1;
            }
        }
        EXPECT_GT(printed.back().reference.y, printed[printed.size() - 5].reference.y) << "the foot is at the foot";
        for (const PrintedText& t : printed) sawCjk |= t.text == Wide(kCjkName);
        EXPECT_EQ(printed[2].font.lfWeight, FW_BOLD) << "headings are bold";
        EXPECT_EQ(printed[6].font.lfWeight, FW_NORMAL) << "cells are not";
    }
    EXPECT_TRUE(sawCjk) << "the stock name in UTF-16, from the code page";
    if (::GetACP() == 950) {
        EXPECT_EQ(kCjkName, "\xA5\x78\xBF\x6E\xB9\x71");  // Big5
        EXPECT_EQ(Wide(kCjkName), L"\u53F0\u7A4D\u96FB");
    }
}

TEST(MetafilePrintJob, AlignsClipsAndSizesTextInItsBox)
{
    Pages pages;
    auto job = orderview::StartMetafilePrintJob({}, orderview::A4Paper(), pages.Sink());
    ASSERT_TRUE(job);
    const int dpiX = ScreenDpi(LOGPIXELSX), dpiY = ScreenDpi(LOGPIXELSY);
    struct Case {
        PrintBox box;
        const char* text;
        PrintFont font;
        PrintAlign align;
        double start;  // where the text should start, in points: a negative value is measured from the right
    };
    // "1,234.50" is about 39 points wide at size 10.
    const Case cases[] = {
        {{100, 100, 150, 20}, "1,234.50", {10, false}, PrintAlign::kLeft, 100},
        {{100, 130, 150, 20}, "1,234.50", {10, false}, PrintAlign::kRight, -250},
        {{100, 160, 150, 20}, "1,234.50", {12, true}, PrintAlign::kRight, -250},
        {{300, 190, 10, 20}, "1,234.50", {10, false}, PrintAlign::kRight, 300},  // too wide: from the left, cut
        {{300, 220, 10, 20}, "1,234.50", {10, false}, PrintAlign::kCenter, 300},
    };
    std::vector<double> widths;
    for (const Case& c : cases) {
        widths.push_back(job->MeasureText(c.text, c.font));
        job->DrawText(c.box, c.text, c.font, c.align);
    }
    job->DrawText({100, 250, 150, 20}, "", PrintFont{}, PrintAlign::kLeft);   // nothing to draw
    job->DrawText({100, 250, 150, 20}, "x", PrintFont{0, false}, PrintAlign::kLeft);
    ASSERT_TRUE(job->Finish());
    ASSERT_EQ(pages.metafiles.size(), 1u);

    const std::vector<PrintedText> printed = TextsOf(pages.metafiles[0]);
    ASSERT_EQ(printed.size(), std::size(cases));
    // A 10-point "1,234.50" in Arial is 38.9 points (digits 0.556 em, comma and point 0.278), less
    // the rounding of every glyph to whole pixels of the screen.
    EXPECT_NEAR(widths[0], 38.9, 2.0);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const Case& c = cases[i];
        const PrintedText& t = printed[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(t.text, Wide(c.text));
        const long start = c.start >= 0 ? Device(c.start, dpiX) : Device(-c.start, dpiX) - Device(widths[i], dpiX);
        EXPECT_NEAR(t.reference.x, start, 2);
        EXPECT_TRUE(t.options & ETO_CLIPPED);
        EXPECT_NEAR(t.clip.left, Device(c.box.dLeft, dpiX), 1);
        EXPECT_NEAR(t.clip.right, Device(c.box.dLeft + c.box.dWidth, dpiX), 1);
        EXPECT_NEAR(t.clip.top, Device(c.box.dTop, dpiY), 1);
        EXPECT_NEAR(t.clip.bottom, Device(c.box.dTop + c.box.dHeight, dpiY), 1);
        // Vertically centred: the line's top is below the box's top and the text inside it.
        EXPECT_GT(t.reference.y, t.clip.top);
        EXPECT_LT(t.reference.y + Device(c.font.dSize, dpiY), t.clip.bottom);
        EXPECT_EQ(t.font.lfHeight, -Device(c.font.dSize, dpiY));
        EXPECT_EQ(t.font.lfWeight, c.font.bBold ? FW_BOLD : FW_NORMAL);
    }
}

TEST(MetafilePrintJob, TurnsBeforeDrawingAndDeliversOnlyWhenFinished)
{
    Pages pages;
    {
        auto job = orderview::StartMetafilePrintJob({}, orderview::A4Paper(), pages.Sink());
        ASSERT_TRUE(job);
        job->DrawText({36, 36, 200, 20}, "abandoned", PrintFont{}, PrintAlign::kLeft);
        ASSERT_TRUE(job->NextPage());
        job->DrawText({36, 36, 200, 20}, "abandoned too", PrintFont{}, PrintAlign::kLeft);
    }
    EXPECT_TRUE(pages.metafiles.empty()) << "a job destroyed without Finish delivers nothing";

    auto job = orderview::StartMetafilePrintJob({}, orderview::A4Paper(), pages.Sink());
    ASSERT_TRUE(job);
    ASSERT_TRUE(job->SetLandscape(true));
    EXPECT_EQ(job->GetPaper().dWidth, 842);
    job->DrawLine(36, 36, 100, 36);
    EXPECT_FALSE(job->SetLandscape(false));
    ASSERT_TRUE(job->NextPage());
    ASSERT_TRUE(job->Finish());  // an empty last page is still a page
    EXPECT_FALSE(job->Finish());
    EXPECT_FALSE(job->NextPage());
    ASSERT_EQ(pages.metafiles.size(), 2u);
    for (HENHMETAFILE page : pages.metafiles) {
        ENHMETAHEADER header = {};
        ASSERT_TRUE(::GetEnhMetaFileHeader(page, sizeof header, &header));
        // The frame, in hundredths of a millimetre, is the turned A4 sheet.
        EXPECT_NEAR(header.rclFrame.right - header.rclFrame.left, 29704, 30);
        EXPECT_NEAR(header.rclFrame.bottom - header.rclFrame.top, 20990, 30);
    }
    EXPECT_FALSE(orderview::StartMetafilePrintJob({}, orderview::PrintPaper(), pages.Sink()));
    EXPECT_FALSE(orderview::StartMetafilePrintJob({}, orderview::A4Paper(), nullptr));
}

TEST(DeviceContextPrintJob, NeedsAPrinter)
{
    EXPECT_FALSE(orderview::StartDeviceContextPrintJob(nullptr, {}));
    // A memory device context has no document to start.
    const HDC memory = ::CreateCompatibleDC(nullptr);
    ASSERT_TRUE(memory);
    EXPECT_FALSE(orderview::StartDeviceContextPrintJob(memory, {}));
    ::DeleteDC(memory);
}

}  // namespace
