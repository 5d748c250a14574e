#include <gtest/gtest.h>

#include <algorithm>

#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace {

TEST(Wildcard, MatchesLikeTheSystemShell)
{
    struct Case { const char* pattern; const char* name; bool match; };
    const Case cases[] = {
        {"*.ord", "F123.ord", true},  {"*.ord", "F123.ORD", true},  {"*.ord", "F123.ord.bak", false},
        {"*.ord", ".ord", true},      {"?.ord", "a.ord", true},     {"?.ord", "ab.ord", false},
        {"*", "", true},              {"", "", true},               {"", "x", false},
        {"a*b*c", "aXbYc", true},     {"a*b*c", "aXbY", false},     {"**x", "yyx", true},
    };
    for (const auto& c : cases) EXPECT_EQ(orderview::MatchWildcard(c.pattern, c.name), c.match) << c.pattern << " " << c.name;
    // Long runs of stars against a long name stay fast and correct.
    EXPECT_FALSE(orderview::MatchWildcard(std::string(5000, '*').append("b").c_str(), std::string(5000, 'a').c_str()));
}

TEST(SystemPlatform, ListsFilesInBackslashFolders)
{
    ovtest::TempFolder folder;
    folder.Write("sys/F1.ord", "x");
    folder.Write("sys/F2.ORD", "x");
    folder.Write("sys/OrderCfg.ini", "x");
    orderview::SystemPlatform platform;
    std::vector<CString> names = platform.FindFiles(folder.MainPath() + "\\sys\\*.ord");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<CString>{"F1.ord", "F2.ORD"}));
    EXPECT_TRUE(platform.FindFiles(folder.MainPath() + "\\nowhere\\*.ord").empty());
}

TEST(SystemPlatform, ClockIsPlausible)
{
    const orderview::LocalTime now = orderview::SystemPlatform().GetLocalTime();
    EXPECT_GE(now.wYear, 2024);
    EXPECT_GE(now.wMonth, 1);
    EXPECT_LE(now.wMonth, 12);
    EXPECT_LE(now.wMilliseconds, 999);
}

TEST(FakePlatform, IsInstalledAndRecordsBoxes)
{
    {
        ovtest::FakePlatform fake;
        fake.SetDate(2030, 1, 2);
        fake.answers = {orderview::kIdNo};
        orderview::IPlatform& platform = orderview::GetPlatform();
        EXPECT_EQ(platform.GetLocalTime().wYear, 2030);
        EXPECT_EQ(platform.MessageBox("first", "cap", orderview::kMbYesNo), orderview::kIdNo);
        EXPECT_EQ(platform.MessageBox("second", "cap", orderview::kMbOk), orderview::kIdOk);
        ASSERT_EQ(fake.boxes.size(), 2u);
        EXPECT_EQ(fake.boxes[1].text, "second");
    }
    EXPECT_NE(dynamic_cast<orderview::SystemPlatform*>(&orderview::GetPlatform()), nullptr);
}

TEST(SaveFilterIndex, FirstFilterMatchingTheChosenName)
{
    orderview::SaveFileRequest request;
    request.csFilter = "(*.csv)|*.csv|(*.txt)|*.txt||";
    struct Case { const char* path; int index; };
    const Case cases[] = {
        {"C:\\out\\list.csv", 1}, {"/tmp/list.TXT", 2}, {"list.txt", 2}, {"list.xls", 1}, {"", 1},
        {"C:\\dir.txt\\list", 1},
    };
    orderview::SystemPlatform platform;
    for (const Case& c : cases) EXPECT_EQ(platform.GetSaveFilterIndex(request, c.path), c.index) << c.path;
    request.csFilter = "";
    EXPECT_EQ(platform.GetSaveFilterIndex(request, "a.txt"), 1);
    request.csFilter = "|||*.txt";
    EXPECT_EQ(platform.GetSaveFilterIndex(request, "a.txt"), 1);
}

}  // namespace
