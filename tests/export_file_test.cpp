#include <gtest/gtest.h>

#include <functional>

#include "export/export_file.h"
#include "support/export_setup.h"

namespace {

using orderview::ExportFile;

class ExportFileTest : public ::testing::Test {
protected:
    CString Path(const char* name) const { return CString(setup.folder.File(name)); }
    // What a file holds after Open, `write`, and Close (or Abandon).
    std::string Written(const std::function<void(ExportFile&)>& write, bool close = true)
    {
        ExportFile file;
        EXPECT_EQ(file.Open(Path("w.xls")), ExportFile::kOk);
        write(file);
        if (close)
            EXPECT_EQ(file.Close(), ExportFile::kOk);
        else
            file.Abandon();
        return setup.folder.Read("w.xls");
    }
    ovtest::ExportSetup setup;
};

// The style sheet template is copied between what is written without one and the table, with
// one line feed after it: any bytes, NUL and 0xFF too.
TEST_F(ExportFileTest, TemplateIsCopiedWithOneLineFeedAfterIt)
{
    std::remove(setup.folder.File("sys/xls_head.txt").c_str());
    setup.folder.Write("w.xls", "old content");
    std::string prologue;
    {
        ExportFile file;
        EXPECT_EQ(file.Open(Path("w.xls")), ExportFile::kNoTemplate);
        EXPECT_TRUE(file.IsOpen());
        file.Abandon();
        EXPECT_FALSE(file.IsOpen());
        prologue = setup.folder.Read("w.xls");
    }
    EXPECT_EQ(prologue.compare(0, 5, "<html"), 0);
    std::string tail;
    for (const std::string& head : {std::string(), std::string("<style>"), std::string("<style>\r\n"),
                                    std::string("\xff\x00\xfe", 3), ovtest::ExportSetup::SampleHead()}) {
        setup.folder.Write("sys/xls_head.txt", head);
        const std::string file = Written([](ExportFile&) {});
        ASSERT_GT(file.size(), prologue.size() + head.size() + 1) << head;
        EXPECT_EQ(file.substr(0, prologue.size() + head.size() + 1), prologue + head + "\n");
        const std::string after = file.substr(prologue.size() + head.size() + 1);
        if (tail.empty()) tail = after;
        EXPECT_EQ(after, tail) << "the same table whatever the template";
    }
}

// Kinds outside the four write the plain integer cell; the four write cells of their own.
TEST_F(ExportFileTest, UnknownNumberKindsWriteThePlainIntegerCell)
{
    const auto number = [this](int kind, const char* decimals) {
        return Written([&](ExportFile& file) {
            file.NumberCell(kind, "7", decimals);
            file.Line("<!-- end -->");
        });
    };
    const std::string integer = number(ExportFile::kInteger, "");
    EXPECT_NE(integer.find(">7</td>\n<!-- end -->\n"), std::string::npos);
    for (int kind : {0, 5, -1}) EXPECT_EQ(number(kind, "##"), integer) << kind;
    for (int kind : {ExportFile::kDecimals, ExportFile::kPercent, ExportFile::kPercentDecimals})
        EXPECT_NE(number(kind, "##"), integer) << kind;
}

TEST_F(ExportFileTest, FilesThatCannotBeCreated)
{
    setup.folder.Write("keep.xls", "keep");
    ExportFile file;
    EXPECT_EQ(file.Open(Path("missing/out.xls")), ExportFile::kCannotWrite);
    EXPECT_EQ(file.Open(""), ExportFile::kCannotWrite);
    EXPECT_EQ(file.Open(Path("sys")), ExportFile::kCannotWrite);  // a folder in the way
#ifndef _WIN32  // Windows has no device in the file tree to try (Wine maps /dev to the host's)
    EXPECT_EQ(file.Open("/dev/null"), ExportFile::kCannotWrite);  // devices are not replaced
#endif
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "keep.xls", "sys"}));
    EXPECT_EQ(setup.Names("sys"), (std::vector<std::string>{"xls_head.txt"}));
}

TEST_F(ExportFileTest, OperationsWithoutAFileDoNothing)
{
    ExportFile file;
    file.BeginRow();
    file.Cell("<td>", "x");
    file.NumberCell(1, "1", "");
    file.Line("x");
    file.EndRow();
    file.Abandon();
    EXPECT_EQ(file.Close(), ExportFile::kNotOpen);
    ASSERT_EQ(file.Open(Path("a.xls")), ExportFile::kOk);
    EXPECT_EQ(file.Close(), ExportFile::kOk);
    EXPECT_EQ(file.Close(), ExportFile::kNotOpen);
}

// Opening another file puts the first in place as it is, as Abandon would.
TEST_F(ExportFileTest, OpeningAgainPutsTheFirstFileInPlaceAsItIs)
{
    const std::string abandoned = Written([](ExportFile& file) { file.Line("first"); }, false);
    EXPECT_EQ(abandoned.substr(abandoned.size() - 6), "first\n");
    ExportFile file;
    ASSERT_EQ(file.Open(Path("first.xls")), ExportFile::kOk);
    file.Line("first");
    ASSERT_EQ(file.Open(Path("second.xls")), ExportFile::kOk);
    EXPECT_EQ(file.Close(), ExportFile::kOk);
    EXPECT_EQ(setup.folder.Read("first.xls"), abandoned);
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "first.xls", "second.xls", "sys", "w.xls"}));
}

}  // namespace
