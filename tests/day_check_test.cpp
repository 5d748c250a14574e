// A list into a pipe holds its rows until the check of the whole day has passed: a malformed day
// gets nothing written, whether the rows stayed under the hold's limit or reached it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "day_check.h"
#include "support/temp_folder.h"

namespace {

using orderview::RecordFile;
using ovcli::DayCheck;
using ovcli::HeldOutput;

class DayCheckTest : public ::testing::Test {
protected:
    RecordFile Day(const std::string& lines)
    {
        folder.Write("sys/orders.csv", "list,csOrderNo,dwOrderQty\n" + lines);
        return RecordFile(CString(folder.File("sys/orders.csv")), "orders.csv", RecordFile::Kind::Orders);
    }
    // Puts `rows` lines through a hold of `limit` bytes into a file; what each put answered, then
    // the flush, and the file's content.
    std::string Written(DayCheck& check, std::size_t limit, int rows, std::string& answers)
    {
        std::FILE* file = std::fopen(folder.File("out.txt").c_str(), "wb");
        {
            HeldOutput out(file, check, limit);
            for (int r = 0; r < rows; ++r) answers += out.Put("row " + std::to_string(r) + "\n") ? '1' : '0';
            answers += out.Flush() ? '1' : '0';
            answers += out.Refused() ? 'R' : '-';
        }
        std::fclose(file);
        return folder.Read("out.txt");
    }
    ovtest::TempFolder folder;
};

TEST_F(DayCheckTest, AWellFormedDayLetsEveryRowOutInOrder)
{
    for (std::size_t limit : {std::size_t{1}, std::size_t{12}, HeldOutput::kDefaultLimit}) {
        DayCheck check(Day("today,A1,5\nerror,A2,7\ntoday,A3,9\n"), false);
        std::string answers;
        EXPECT_EQ(Written(check, limit, 4, answers), "row 0\nrow 1\nrow 2\nrow 3\n") << limit;
        EXPECT_EQ(answers, "11111-") << limit;
        EXPECT_TRUE(check.Diagnostics().empty());
    }
}

TEST_F(DayCheckTest, AMalformedDayGetsNothingWritten)
{
    // Rows that reach the limit wait for the check and are refused at once; under it, each put
    // is held or refused, depending on whether the check has ended ('?'), and the flush refuses.
    const struct {
        std::size_t limit;
        const char* answers;
    } cases[] = {{1, "0000R"}, {HeldOutput::kDefaultLimit, "???0R"}};
    for (const auto& c : cases) {
        DayCheck check(Day("today,A1,5\ntoday,A2,many\ntoday,A3,9\n"), false);
        std::string answers;
        EXPECT_EQ(Written(check, c.limit, 3, answers), "") << c.limit;
        ASSERT_EQ(answers.size(), 5u);
        for (std::size_t i = 0; i < answers.size(); ++i)
            if (c.answers[i] != '?') EXPECT_EQ(answers[i], c.answers[i]) << c.limit << " " << answers;
        EXPECT_EQ(answers.find("01"), std::string::npos) << "a put held after one refused: " << answers;
        ASSERT_EQ(check.Diagnostics().size(), 1u);
        EXPECT_NE(check.Diagnostics()[0].Find("orders.csv:3:"), -1) << check.Diagnostics()[0].GetString();
    }
}

}  // namespace
