#include <gtest/gtest.h>

#include "export/export_file.h"
#include "support/export_setup.h"

namespace {

using orderview::ExportFile;

const char kPrologue[] =
    "<html xmlns:v=\"urn:schemas-microsoft-com:vml\"\n"
    "xmlns:o=\"urn:schemas-microsoft-com:office:office\"\n"
    "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"\n"
    "xmlns=\"http://www.w3.org/TR/REC-html40\">\n";
const char kTableStart[] =
    "\n<body>\n<table x:str border=0 cellpadding=0 cellspacing=0 "
    "style='border-collapse:collapse;table-layout:fixed;'>\n";

class ExportFileTest : public ::testing::Test {
protected:
    CString Path(const char* name) const { return CString(setup.folder.File(name)); }
    ovtest::ExportSetup setup;
};

TEST_F(ExportFileTest, UnknownNumberKindsWriteThePlainIntegerTemplate)
{
    for (int kind : {0, 5, -1}) {
        ExportFile file;
        ASSERT_EQ(file.Open(Path("n.xls")), ExportFile::kOk);
        file.NumberCell(kind, "7", "##");
        file.Line("<!-- end -->");
        ASSERT_EQ(file.Close(), ExportFile::kOk);
        EXPECT_NE(setup.folder.Read("n.xls").find(
                      std::string(kTableStart) +
                      "<td class=align_border x:num style='text-align:right ; mso-number-format:\"\\#,\\#\\#0\"'>7</td>\n"
                      "<!-- end -->\n</table>\n"),
                  std::string::npos)
            << kind;
    }
}

TEST_F(ExportFileTest, TemplateIsCopiedWithOneLineFeedAfterIt)
{
    struct Case { std::string head; std::string copied; };
    const Case cases[] = {
        {"", "\n"},
        {"<style>", "<style>\n"},
        {"<style>\r\n", "<style>\r\n\n"},
        {std::string("\xff\x00\xfe", 3), std::string("\xff\x00\xfe\n", 4)},  // any byte, NUL and 0xFF too
    };
    for (const Case& c : cases) {
        setup.folder.Write("sys/xls_head.txt", c.head);
        ExportFile file;
        ASSERT_EQ(file.Open(Path("t.xls")), ExportFile::kOk);
        ASSERT_EQ(file.Close(), ExportFile::kOk);
        EXPECT_EQ(setup.folder.Read("t.xls"),
                  std::string(kPrologue) + c.copied + kTableStart + "</table>\n</body>\n</html>\n");
    }
}

TEST_F(ExportFileTest, MissingTemplateLeavesThePrologueOnly)
{
    std::remove(setup.folder.File("sys/xls_head.txt").c_str());
    setup.folder.Write("old.xls", "old content");
    ExportFile file;
    EXPECT_EQ(file.Open(Path("old.xls")), ExportFile::kNoTemplate);
    EXPECT_TRUE(file.IsOpen());
    file.Abandon();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(setup.folder.Read("old.xls"), kPrologue);
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

TEST_F(ExportFileTest, OpeningAgainPutsTheFirstFileInPlaceAsItIs)
{
    ExportFile file;
    ASSERT_EQ(file.Open(Path("first.xls")), ExportFile::kOk);
    file.Line("first");
    ASSERT_EQ(file.Open(Path("second.xls")), ExportFile::kOk);
    EXPECT_EQ(file.Close(), ExportFile::kOk);
    const std::string first = setup.folder.Read("first.xls");
    EXPECT_EQ(first.substr(first.size() - std::string(kTableStart).size() - 6), std::string(kTableStart) + "first\n");
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "first.xls", "second.xls", "sys"}));
}

}  // namespace
