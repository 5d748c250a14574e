#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/table_host.h"
#include "platform/file_system.h"
#include "platform/narrow_text.h"
#include "platform/platform.h"
#include "platform/print.h"
#include "support/environment.h"
#include "support/substitute_host.h"
#include "support/temp_folder.h"

namespace {

// Narrow text (the process's code page) from UTF-16.
std::string Narrow(const std::u16string& text) { return orderview::Utf16ToNarrow(text); }

using orderview::PrintAlign;

std::unique_ptr<orderview::IPrintJob> Start(const std::string& path, const char* name = "doc")
{
    orderview::PrintRequest request;
    request.csDocName = name;
    return orderview::StartPdfPrintJob(CString(path), request);
}

std::size_t FilesIn(const std::string& folder)
{
    std::size_t n = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) n += entry.is_regular_file();
    return n;
}

// Reads the PDF's cross-reference table and checks that each offset starts its object.
::testing::AssertionResult XrefPointsAtObjects(const std::string& pdf)
{
    const std::size_t at = pdf.rfind("startxref\n");
    if (at == std::string::npos) return ::testing::AssertionFailure() << "no startxref";
    const std::size_t xref = std::stoul(pdf.substr(at + 10));
    if (pdf.compare(xref, 5, "xref\n") != 0) return ::testing::AssertionFailure() << "startxref misses xref";
    std::size_t pos = pdf.find('\n', xref + 5) + 1;
    const int count = std::stoi(pdf.substr(xref + 7));
    pos += 20;  // the free entry of object 0
    for (int object = 1; object < count; ++object, pos += 20) {
        const std::size_t offset = std::stoul(pdf.substr(pos, 10));
        const std::string head = std::to_string(object) + " 0 obj\n";
        if (pdf.compare(offset, head.size(), head) != 0)
            return ::testing::AssertionFailure() << "object " << object << " not at " << offset;
    }
    return ::testing::AssertionSuccess();
}

// Whether the process's narrow code page holds the Chinese characters these tests print (UTF-8
// and Big5 do; Windows-1252 does not).
bool Holds(const std::u16string& text) { return orderview::NarrowToUtf16(Narrow(text)) == text; }
bool HoldsChinese() { return Holds(u"\u9673\u5927\u6587\u671F\u8CA8\u53F0\u7A4D\u96FB\u59D4\u8A17"); }

// Points ORDERVIEW_PRINT_FONT at a file while it lives.
class PrintFont {
public:
    explicit PrintFont(const std::string& path) { ovtest::SetEnvironment("ORDERVIEW_PRINT_FONT", path.c_str()); }
    ~PrintFont() { ovtest::SetEnvironment("ORDERVIEW_PRINT_FONT", nullptr); }
};

const char kUming[] = "/usr/share/fonts/truetype/arphic/uming.ttc";

// Each PDF job test writes into a temporary folder of its own.
class PdfPrintJob : public ::testing::Test {
protected:
    ovtest::TempFolder folder;
};

std::size_t Count(const std::string& text, const std::string& what)
{
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST_F(PdfPrintJob, EscapesAndEncodesTexts)
{
    const PrintFont none(folder.File("no-such-font.ttf"));
    const std::string path = folder.File("escape.pdf");
    auto job = Start(path);
    ASSERT_TRUE(job);
    struct Case { std::string text; const char* written; };
    std::vector<Case> cases = {
        {"a(b)c\\d", "(a\\(b\\)c\\\\d)"},
        {"x\r\ny\x01\x7F", "(x\\015\\012y\\001\\177)"},
#ifndef _WIN32
        {"\x80\xFF", "(\?\?)"},
#endif
    };
    if (Holds(u"\u00E9\u20AC")) cases.push_back({Narrow(u"\u00E9\u20AC\u4E2D!"), "(\xE9\x80?!)"});
    for (const Case& c : cases)
        job->DrawText({40, 40, 500, 20}, CString(c.text), orderview::PrintFont{}, PrintAlign::kLeft);
    ASSERT_TRUE(job->Finish());
    std::string pdf;
    ASSERT_TRUE(orderview::ReadWholeFile(CString(path), pdf));
    for (const Case& c : cases) EXPECT_NE(pdf.find(std::string(c.written) + " Tj"), std::string::npos) << c.written;
    EXPECT_EQ(pdf.compare(0, 9, "%PDF-1.4\n"), 0);
    EXPECT_EQ(pdf.substr(pdf.size() - 6), "%%EOF\n");
    EXPECT_TRUE(XrefPointsAtObjects(pdf));
}

TEST_F(PdfPrintJob, EmbedsTheChineseGlyphsUsedOnceForTheDocument)
{
    if (!std::filesystem::exists(kUming)) GTEST_SKIP() << kUming << " is not installed (fonts-arphic-uming)";
    if (!HoldsChinese()) GTEST_SKIP() << "the process's code page has no Chinese characters";
    const PrintFont font(kUming);
    orderview::TableHost host;
    ovtest::InstalledHost guard(host);
    const std::string path = folder.File("chinese.pdf");
    // 陳大文期貨 on every page, 台積電 on the second, Latin before and after.
    const CString chen(Narrow(u"A\u9673\u5927\u6587\u671F\u8CA8z"));
    const CString tsmc(Narrow(u"\u53F0\u7A4D\u96FB"));
    orderview::PrintRequest request;
    request.csDocName = Narrow(u"\u59D4\u8A17 Orders");  // 委託 Orders
    auto job = orderview::StartPdfPrintJob(CString(path), request);
    ASSERT_TRUE(job);
    const orderview::PrintFont size10{10, false};
    // Each ideograph is one em of UMing: 10 points at size 10; A and z in Helvetica.
    EXPECT_NEAR(job->MeasureText(chen, size10), 6.67 + 50 + 5, 1e-9);
    EXPECT_NEAR(job->MeasureText(tsmc, size10), 30, 1e-9);
    job->DrawText({40, 40, 500, 20}, chen, size10, orderview::PrintAlign::kRight);
    ASSERT_TRUE(job->NextPage());
    job->DrawText({40, 40, 500, 20}, chen, orderview::PrintFont{10, true}, orderview::PrintAlign::kLeft);
    job->DrawText({40, 80, 500, 20}, tsmc, size10, orderview::PrintAlign::kLeft);
    ASSERT_TRUE(job->Finish());
    EXPECT_TRUE(host.vecDebugLog.empty());

    const std::string pdf = folder.Read("chinese.pdf");
    EXPECT_TRUE(XrefPointsAtObjects(pdf));
    // Right-aligned at 540 - 61.67; the Latin runs in Helvetica, the ideographs by CID.
    EXPECT_NE(pdf.find("BT /F1 10 Tf 478.33 788.41 Td (A) Tj /F3 10 Tf <00010002000300040005> Tj /F1 10 Tf (z) Tj ET"),
              std::string::npos);
    EXPECT_NE(pdf.find("BT /F2 10 Tf 40 788.41 Td (A) Tj /F3 10 Tf <00010002000300040005> Tj /F2 10 Tf (z) Tj ET"),
              std::string::npos) << "bold shares the glyphs";
    EXPECT_NE(pdf.find("BT /F3 10 Tf 40 748.41 Td <000600070008> Tj ET"), std::string::npos);
    EXPECT_EQ(Count(pdf, "/Subtype /Type0"), 1u);
    EXPECT_EQ(Count(pdf, "/FontFile2"), 1u);
    EXPECT_EQ(Count(pdf, "/Encoding /Identity-H"), 1u);
    EXPECT_EQ(Count(pdf, "/CIDToGIDMap /Identity"), 1u);
    EXPECT_NE(pdf.find("/W [1 [\n1000 1000 1000 1000 1000 1000 1000 1000]]"), std::string::npos);
    EXPECT_NE(pdf.find("8 beginbfchar\n<0001> <9673>\n<0002> <5927>"), std::string::npos);
    EXPECT_NE(pdf.find("<0008> <96FB>\nendbfchar"), std::string::npos);
    const std::size_t base = pdf.find("/BaseFont /", pdf.find("/Subtype /Type0"));
    ASSERT_NE(base, std::string::npos);
    const std::string name = pdf.substr(base + 11, 15);
    EXPECT_EQ(name.substr(6), "+UMingTW ") << "a six-letter subset tag";
    for (int i = 0; i < 6; ++i) EXPECT_TRUE(name[static_cast<std::size_t>(i)] >= 'A' && name[static_cast<std::size_t>(i)] <= 'Z');
    EXPECT_NE(pdf.find("/Title <FEFF59D48A170020004F00720064006500720073>"), std::string::npos);
    // Pages name the font only once it is used: the first page's resources already do.
    EXPECT_EQ(Count(pdf, "/F3 5 0 R"), 2u);
}

TEST_F(PdfPrintJob, WithoutAFontChineseIsAQuestionMarkAndTheLogSaysSoOnce)
{
    if (!HoldsChinese()) GTEST_SKIP() << "the process's code page has no Chinese characters";
    folder.Write("not-a-font.ttf", "plain text, not a font");
    for (const std::string& named : {folder.File("not-a-font.ttf"), folder.File("missing.ttc")}) {
        SCOPED_TRACE(named);
        const PrintFont font(named);
        orderview::TableHost host;
        ovtest::InstalledHost guard(host);
        auto latin = Start(folder.File("latin.pdf"));
#ifdef _WIN32
        const CString accented(Narrow(Holds(u"\u00E9") ? u"caf\u00E9 ??" : u"cafe ??"));
#else
        const CString accented("caf\xC3\xA9 \x80\xFF");  // two bytes that are not UTF-8
#endif
        EXPECT_NEAR(latin->MeasureText(accented, orderview::PrintFont{10, false}), 32.8, 1e-9);
        latin->DrawText({40, 40, 500, 20}, accented, orderview::PrintFont{}, orderview::PrintAlign::kLeft);
        ASSERT_TRUE(latin->Finish());
        EXPECT_TRUE(host.vecDebugLog.empty()) << "Latin text and bad bytes read no font";
        EXPECT_NE(folder.Read("latin.pdf").find(Holds(u"\u00E9") ? "(caf\xE9 \?\?) Tj" : "(cafe \?\?) Tj"), std::string::npos);
        auto job = Start(folder.File("none.pdf"), "doc");
        ASSERT_TRUE(job);
        const CString chen(Narrow(u"\u9673\u5927"));
        EXPECT_NEAR(job->MeasureText(chen, orderview::PrintFont{10, false}), 11.12, 1e-9) << "two '?'";
        for (int i = 0; i < 3; ++i) {
            job->DrawText({40, 40, 500, 20}, chen, orderview::PrintFont{}, orderview::PrintAlign::kLeft);
            ASSERT_TRUE(job->NextPage());
        }
        ASSERT_TRUE(job->Finish());
        ASSERT_EQ(host.vecDebugLog.size(), 1u);
        EXPECT_NE(host.vecDebugLog[0].Find("ORDERVIEW_PRINT_FONT"), -1);
        const std::string pdf = folder.Read("none.pdf");
        EXPECT_EQ(Count(pdf, "(\?\?) Tj"), 3u);
        EXPECT_EQ(pdf.find("/F3"), std::string::npos);
        EXPECT_TRUE(XrefPointsAtObjects(pdf));
    }
}

TEST_F(PdfPrintJob, AlignsAndClipsInTheBox)
{
    auto job = Start(folder.File("align.pdf"));
    ASSERT_TRUE(job);
    // "WW" is 18.88 points at size 10 on a box 100 wide at x=100, y=100 on an 842 high page.
    job->DrawText({100, 100, 100, 20}, "WW", orderview::PrintFont{10, false}, PrintAlign::kLeft);
    job->DrawText({100, 100, 100, 20}, "WW", orderview::PrintFont{10, false}, PrintAlign::kRight);
    job->DrawText({100, 100, 100, 20}, "WW", orderview::PrintFont{10, true}, PrintAlign::kCenter);
    job->DrawText({100, 100, 10, 20}, "WW", orderview::PrintFont{10, true}, PrintAlign::kRight);
    // Bold has widths of its own; the euro sign is one WinAnsi character.
    EXPECT_NEAR(job->MeasureText(CString(Narrow(u"A\u20AC")), orderview::PrintFont{10, true}), 7.22 + 5.56, 1e-9);
    ASSERT_TRUE(job->Finish());
    const std::string pdf = folder.Read("align.pdf");
    // Baseline: 842 - (100 + 10 + 3.59) = 728.41.
    EXPECT_NE(pdf.find("BT /F1 10 Tf 100 728.41 Td (WW) Tj ET"), std::string::npos);
    EXPECT_NE(pdf.find("BT 181.12 728.41 Td (WW) Tj ET"), std::string::npos);
    EXPECT_NE(pdf.find("BT /F2 10 Tf 140.56 728.41 Td (WW) Tj ET"), std::string::npos);
    // Too wide: drawn from the left edge inside a clipping box.
    EXPECT_NE(pdf.find("q 100 722 10 20 re W n\nBT 100 728.41 Td (WW) Tj ET\nQ\n"), std::string::npos);
}

TEST_F(PdfPrintJob, TurnsOnlyBeforeDrawing)
{
    auto job = Start(folder.File("turn.pdf"));
    ASSERT_TRUE(job);
    EXPECT_FALSE(job->GetPaper().bLandscape);
    EXPECT_TRUE(job->SetLandscape(true));
    EXPECT_EQ(job->GetPaper().dWidth, 842);
    EXPECT_EQ(job->GetPaper().dHeight, 595);
    job->DrawLine(36, 36, 100, 36);
    EXPECT_FALSE(job->SetLandscape(false));
    EXPECT_TRUE(job->GetPaper().bLandscape);
    job->DrawRect({36, 36, 50, 20}, true);
    EXPECT_FALSE(std::filesystem::exists(folder.File("turn.pdf"))) << "the file appears only when finished";
    ASSERT_TRUE(job->Finish());
    const std::string pdf = folder.Read("turn.pdf");
    EXPECT_NE(pdf.find("/MediaBox [0 0 842 595]"), std::string::npos);
    EXPECT_NE(pdf.find("36 559 m 100 559 l S"), std::string::npos);
    EXPECT_NE(pdf.find("0.85 g 36 539 50 20 re B 0 g"), std::string::npos);
    EXPECT_FALSE(job->Finish()) << "a second Finish";
}

TEST_F(PdfPrintJob, FailureLeavesNothingAndKeepsTheOldFile)
{
    EXPECT_FALSE(Start(folder.File("missing/x.pdf")));
    EXPECT_FALSE(Start(""));
    {
        folder.Write("old.pdf", "old content");
        auto job = Start(folder.File("old.pdf"));
        ASSERT_TRUE(job);
        job->DrawText({36, 36, 100, 10}, "abandoned", orderview::PrintFont{}, PrintAlign::kLeft);
    }  // destroyed without Finish
    EXPECT_EQ(folder.Read("old.pdf"), "old content");
    // A folder in the way: no job starts, and nothing is written beside it.
    std::filesystem::create_directories(folder.File("taken.pdf/inside"));
    EXPECT_FALSE(Start(folder.File("taken.pdf")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("taken.pdf/inside")));
    EXPECT_EQ(FilesIn(folder.path()), 1u);
}

TEST(SystemPlatform, PrintsToThePathInTheEnvironment)
{
    ovtest::TempFolder folder;
    orderview::SystemPlatform platform;
    orderview::PrintRequest request;
#ifndef _WIN32
    // Without the variable the system's dialog answers: on Windows it would show.
    ovtest::SetEnvironment("ORDERVIEW_PRINT_TO", nullptr);
    EXPECT_FALSE(platform.StartPrintJob(request));
    ovtest::SetEnvironment("ORDERVIEW_PRINT_TO", "");
    EXPECT_FALSE(platform.StartPrintJob(request));
#endif
    ovtest::SetEnvironment("ORDERVIEW_PRINT_TO", folder.File("env.pdf").c_str());
    auto job = platform.StartPrintJob(request);
    ovtest::SetEnvironment("ORDERVIEW_PRINT_TO", nullptr);
    ASSERT_TRUE(job);
    EXPECT_EQ(job->GetPaper().dWidth, 595);
    EXPECT_EQ(job->GetPaper().dHeight, 842);
    EXPECT_TRUE(job->Finish());
    EXPECT_NE(folder.Read("env.pdf").find("/Count 1 >>"), std::string::npos);
}

}  // namespace
