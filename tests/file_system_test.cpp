#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

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

// Paths reach the system in its own form: on POSIX systems '/' between folders and wide names as
// UTF-8; on Windows UTF-16, narrow names through the ANSI code page.
TEST(FilePath, NarrowAndWideNamesInTheSystemsForm)
{
    using orderview::FilePath;
#ifdef _WIN32
    EXPECT_EQ(FilePath(L"C:\\d\\\u6CE8.xls").Native(), L"C:\\d\\\u6CE8.xls");
    EXPECT_EQ(FilePath("C:\\d\\a.ini").Native(), L"C:\\d\\a.ini");
#else
    EXPECT_EQ(FilePath("main\\sys\\a.ini").Native(), "main/sys/a.ini");
    EXPECT_EQ(FilePath(L"d\\\u00E9\u6CE8\U0001F600").Native(), "d/\xC3\xA9\xE6\xB3\xA8\xF0\x9F\x98\x80");
    EXPECT_EQ(FilePath(std::wstring(1, static_cast<wchar_t>(0xD800))).Native(), "\xEF\xBF\xBD");  // no code point
#endif
    // A narrow name in the local code page reaches the system as the wide name it stands for.
    const std::wstring accented = L"\u00C4nderung \u00E9t\u00E9 R\u00E9glages \u00DF.ini";
    EXPECT_EQ(FilePath(FilePath(accented).Narrow()).Native(), FilePath(accented).Native());
    EXPECT_EQ(FilePath("a.ini").WithSuffix(".tmp").Narrow(), "a.ini.tmp");
    EXPECT_EQ(FilePath(L"b.xls").WithSuffix(".tmp").Narrow(), "b.xls.tmp");
    EXPECT_TRUE(FilePath(static_cast<const char*>(nullptr)).IsEmpty());
    EXPECT_TRUE(FilePath(static_cast<const wchar_t*>(nullptr)).IsEmpty());
}

// A mapped file and a reader show the file's bytes; what cannot be mapped says so, and a file
// let go of can be replaced again (on Windows a file stays locked while a view of it is open).
TEST(MappedFile, MappedAndReadPartsShowTheBytesAndLetGo)
{
    ovtest::TempFolder folder;
    std::string content(70000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7 + i / 300);
    folder.Write("data.bin", content);
    folder.Write("empty.bin", "");
    for (const bool readAll : {true, false}) {  // pages mapped at once, or as they are read
        const orderview::MappedFile mapped(CString(folder.File("data.bin")), readAll);
        ASSERT_TRUE(mapped.IsOpen());
        ASSERT_EQ(mapped.Size(), content.size());
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(mapped.Data()), mapped.Size()), content);
    }
    for (const char* name : {"empty.bin", "missing.bin", ""}) {
        const orderview::MappedFile mapped(CString(folder.File(name)));
        EXPECT_FALSE(mapped.IsOpen()) << name;
        EXPECT_EQ(mapped.Data(), nullptr) << name;
    }
    {
        orderview::FileReader reader(CString(folder.File("data.bin")));
        ASSERT_TRUE(reader.IsOpen());
        const struct {
            std::uint64_t offset;
            std::size_t size;
            bool read;
        } cases[] = {
            {0, 100, true},
            {100, 4096, true},      // on from where the last read ended
            {65000, 5000, true},    // up to the end exactly
            {10, 10, true},         // back
            {69990, 11, false},     // one byte past the end
            {40000, 30, true},      // after a failed read
            {70000, 0, true},       // nothing, at the end
            {80000, 1, false},      // past the end
        };
        for (const auto& c : cases) {
            std::string part(c.size, '\xAA');
            EXPECT_EQ(reader.ReadAt(c.offset, &part[0], c.size), c.read) << c.offset;
            if (c.read) EXPECT_EQ(part, content.substr(static_cast<std::size_t>(c.offset), c.size)) << c.offset;
        }
        orderview::FileReader missing(CString(folder.File("missing.bin")));
        EXPECT_FALSE(missing.IsOpen());
        char byte = 0;
        EXPECT_FALSE(missing.ReadAt(0, &byte, 1));
    }
    ASSERT_TRUE(orderview::ReplaceFileAtomically(CString(folder.File("data.bin")), "new"));
    EXPECT_EQ(folder.Read("data.bin"), "new");
}

TEST(ReplacingFile, UncommittedOrFailedLeavesTheTargetAsItWas)
{
    ovtest::TempFolder folder;
    folder.Write("keep.txt", "keep");
    {
        ReplacingFile file(CString(folder.File("keep.txt")));
        ASSERT_TRUE(file.IsOpen());
        file.Write("new", 3);
        // The bytes live under a temporary name in the target's own folder.
        EXPECT_EQ(Names(folder.path()).at(2).rfind("keep.txt.tmp", 0), 0u);
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

// Every line break is one: LF, CR LF and CR alone, also when a CR LF straddles two of the
// reader's parts (64 KiB); a NUL byte is text like any other; and coming back to any offset Tell
// gave reads the same lines again.
TEST(LineReader, EveryKindOfLineBreakAndEveryOffsetToComeBackTo)
{
    struct Case {
        const char* what;
        std::string content;
        std::vector<std::string> lines;
        std::vector<std::string> breaks;
    };
    const std::string part(65535, 'p');
    const std::vector<Case> cases = {
        {"LF", "a\nb\n", {"a", "b"}, {"\n", "\n"}},
        {"CR LF", "a\r\nb", {"a", "b"}, {"\r\n", ""}},
        {"CR", "a\rb\r\r", {"a", "b", ""}, {"\r", "\r", "\r"}},
        {"mixed, LF CR is two", "a\n\rb\r\n\nc", {"a", "", "b", "", "c"}, {"\n", "\r", "\r\n", "\n", ""}},
        {"CR LF across parts", part + "\r\nz", {part, "z"}, {"\r\n", ""}},
        {"CR at the very end", "a\r", {"a"}, {"\r"}},
        {"NUL and a line longer than a part", std::string("with\0nul\n", 9) + part + "pp\nlast",
         {std::string("with\0nul", 8), part + "pp", "last"}, {"\n", "\n", ""}},
    };
    ovtest::TempFolder folder;
    for (const auto& c : cases) {
        folder.Write("sys/lines.txt", c.content);
        orderview::LineReader reader(CString(folder.File("sys/lines.txt")));
        ASSERT_TRUE(reader.IsOpen());
        std::vector<std::string> lines, breaks;
        std::vector<std::uint64_t> offsets;
        std::string line;
        for (std::uint64_t at = reader.Tell(); reader.ReadLine(line); at = reader.Tell()) {
            lines.push_back(line);
            breaks.push_back(reader.LastBreak());
            offsets.push_back(at);
        }
        EXPECT_EQ(lines, c.lines) << c.what;
        EXPECT_EQ(breaks, c.breaks) << c.what;
        EXPECT_EQ(reader.Tell(), c.content.size()) << c.what;
        for (size_t i = offsets.size(); i-- > 0;) {
            ASSERT_TRUE(reader.Seek(offsets[i])) << c.what;
            ASSERT_TRUE(reader.ReadLine(line)) << c.what;
            EXPECT_EQ(line, c.lines[i]) << c.what << " line " << i;
        }
    }
    EXPECT_FALSE(orderview::LineReader(CString(folder.File("sys/none.txt"))).IsOpen());
}

}  // namespace
