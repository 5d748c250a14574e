#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file_system.h"
#include "support/temp_folder.h"

namespace {

using orderview::ReplacingFile;

std::vector<std::string> Names(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(ReplacingFile, CommitReplacesTheWholeFile)
{
    ovtest::TempFolder folder;
    folder.Write("a.txt", std::string(200000, 'o'));
    // Small writes gathered in the buffer, and writes larger than it, keep their order.
    std::string expected;
    {
        ReplacingFile file(CString(folder.File("a.txt")));
        ASSERT_TRUE(file.IsOpen());
        for (int i = 0; i < 3000; ++i) {
            const std::string piece = std::to_string(i) + ",";
            ASSERT_TRUE(file.Write(piece));
            expected += piece;
        }
        const std::string big(150000, 'b');
        ASSERT_TRUE(file.Write(big));
        expected += big;
        ASSERT_TRUE(file.Write("end", 3));
        expected += "end";
        EXPECT_EQ(folder.Read("a.txt"), std::string(200000, 'o'));  // untouched until Commit
        ASSERT_TRUE(file.Commit());
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(file.Write("late", 4));
    }
    EXPECT_EQ(folder.Read("a.txt"), expected);
    EXPECT_EQ(Names(folder.path()), (std::vector<std::string>{"Log", "a.txt", "sys"}));
}

TEST(ReplacingFile, UncommittedOrFailedLeavesTheTargetAsItWas)
{
    ovtest::TempFolder folder;
    folder.Write("keep.txt", "keep");
    {
        ReplacingFile file(CString(folder.File("keep.txt")));
        ASSERT_TRUE(file.IsOpen());
        file.Write("new", 3);
    }
    {
        ReplacingFile file(CString(folder.File("keep.txt")));
        file.Write("new", 3);
        file.Discard();
        EXPECT_FALSE(file.Commit());
    }
    // Only regular files are replaced: not a folder, not a device.
    EXPECT_FALSE(ReplacingFile(CString(folder.File("sys"))).IsOpen());
#ifndef _WIN32  // Windows has no device in the file tree to try (Wine maps /dev to the host's)
    EXPECT_FALSE(ReplacingFile(CString("/dev/null")).IsOpen());
#endif
    EXPECT_FALSE(ReplacingFile(CString(folder.File("missing/x.txt"))).IsOpen());
    EXPECT_FALSE(ReplacingFile(CString("")).IsOpen());
    EXPECT_EQ(folder.Read("keep.txt"), "keep");
    EXPECT_EQ(Names(folder.path()), (std::vector<std::string>{"Log", "keep.txt", "sys"}));
    EXPECT_TRUE(Names(folder.File("sys")).empty());
}

TEST(ReplacingFile, WritesBesideTheTarget)
{
    ovtest::TempFolder folder;
    ReplacingFile file(CString(folder.MainPath() + "\\sys\\b.ini"));
    ASSERT_TRUE(file.IsOpen());
    ASSERT_TRUE(file.Write("in place"));
    // Until Commit the bytes live under a temporary name in the target's own folder.
    const auto names = Names(folder.File("sys"));
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0].rfind("b.ini.tmp", 0), 0u) << names[0];
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(folder.Read("sys/b.ini"), "in place");
    EXPECT_EQ(Names(folder.File("sys")), (std::vector<std::string>{"b.ini"}));
}

}  // namespace
