#include <gtest/gtest.h>

#include "export/export_file.h"
#include "support/export_setup.h"

namespace {

using orderview::ExportFile;

class ExportFileTest : public ::testing::Test {
protected:
    CString Path(const char* name) const { return CString(setup.folder.File(name)); }
    ovtest::ExportSetup setup;
};

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
    EXPECT_EQ(file.Open(""), ExportFile::kCannotWrite);
#ifndef _WIN32  // Windows has no device in the file tree to try (Wine maps /dev to the host's)
    EXPECT_EQ(file.Open("/dev/null"), ExportFile::kCannotWrite);  // devices are not replaced
#endif
}

// Opening another file puts the first in place as it is, as Abandon would. The style sheet
// template, any bytes, is copied between the prologue and the body with one line feed after it.
TEST_F(ExportFileTest, OpeningAgainPutsTheFirstFileInPlaceAsItIs)
{
    const std::string head("\xff\x00\xfe\r\n", 5);
    setup.folder.Write("sys/xls_head.txt", head);
    ExportFile file;
    ASSERT_EQ(file.Open(Path("w.xls")), ExportFile::kOk);
    file.Line("first");
    file.Abandon();
    const std::string abandoned = setup.folder.Read("w.xls");
    EXPECT_NE(abandoned.find("html40\">\n" + head + "\n\n<body>\n"), std::string::npos);
    EXPECT_EQ(abandoned.substr(abandoned.size() - 6), "first\n");
    ASSERT_EQ(file.Open(Path("first.xls")), ExportFile::kOk);
    file.Line("first");
    ASSERT_EQ(file.Open(Path("second.xls")), ExportFile::kOk);
    EXPECT_EQ(file.Close(), ExportFile::kOk);
    EXPECT_EQ(setup.folder.Read("first.xls"), abandoned);
    EXPECT_EQ(setup.Names(), (std::vector<std::string>{"Log", "first.xls", "second.xls", "sys", "w.xls"}));
}

}  // namespace
