#include <gtest/gtest.h>

#include <filesystem>

#include "support/substitute_host.h"
#include "settings/client_log.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace {

class ClientLog : public ::testing::Test {
protected:
    ovtest::TempFolder folder;
    ovtest::SubstituteHost host{folder.MainPath()};
    ovtest::InstalledHost installed{host};
    ovtest::FakePlatform platform;
};

// The debug log gets the text between line feeds; the daily files follow the clock, and without
// the log folder a line is dropped, the folder not created.
TEST_F(ClientLog, DebugLogAndDailyFilesFollowingTheClock)
{
    CString text = "order sent";
    EXPECT_TRUE(g_ClientbWriteLog(text));
    EXPECT_EQ(host.vecDebugLog, (std::vector<CString>{"\norder sent\n"}));
    platform.SetDate(2026, 11, 21, 23, 59, 59);
    AppendDailyLog("first");
    AppendDailyLog("second");
    platform.SetDate(2026, 11, 22, 0, 0, 1);
    AppendDailyLog("after midnight");
    AppendDailyLog(nullptr);
    EXPECT_EQ(folder.Read("Log/20261121.log"), "first\nsecond\n");
    EXPECT_EQ(folder.Read("Log/20261122.log"), "after midnight\n\n");
    std::filesystem::remove_all(folder.path() + "/Log");
    AppendDailyLog("dropped");
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "/Log"));
}

}  // namespace
