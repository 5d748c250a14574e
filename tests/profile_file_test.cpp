#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/profile_file.h"
#include "support/temp_folder.h"

namespace {

using orderview::GetPrivateProfileIntA;
using orderview::GetPrivateProfileStringA;
using orderview::WritePrivateProfileStringA;

struct Read {
    std::string text;
    uint32_t count;
};

class ProfileFile : public ::testing::Test {
protected:
    std::string Path() const { return folder.File("sys/test.ini"); }
    void Put(const std::string& content) const { folder.Write("sys/test.ini", content); }
    std::string Content() const { return folder.Read("sys/test.ini"); }
    Read Get(const char* app, const char* key, const char* def, uint32_t size = 256) const
    {
        std::string buffer(size + 1, '#');
        const uint32_t n = GetPrivateProfileStringA(app, key, def, &buffer[0], size, Path().c_str());
        return {buffer.substr(0, n), n};
    }
    std::string List(const char* app, uint32_t size = 256) const
    {
        std::string buffer(size, '#');
        const uint32_t n = GetPrivateProfileStringA(app, nullptr, "", &buffer[0], size, Path().c_str());
        return buffer.substr(0, n + 1);
    }
    ovtest::TempFolder folder;
};

// Reading vectors 1-13 of the platform fact sheet, with CRLF line breaks.
TEST_F(ProfileFile, ReadsLikeTheSystem)
{
    struct Case { const char* file; const char* app; const char* key; const char* def; const char* value; uint32_t n; };
    const Case cases[] = {
        {"[section1]\r\nname1=val1\r\n", "section1", "name1", "default", "val1", 4},
        {"[section1]\r\nname1=val1\r\n", "section1", "NaMe1", "default", "val1", 4},
        {"[SectionName]\r\nTestKey=TestValue\r\n", "sectionname", "TestKey", "", "TestValue", 9},
        {"[s]\r\nname2=\"val2\"\r\n", "s", "name2", "", "val2", 4},
        {"[s]\r\nk=  '   v   '  \r\n", "s", "k", "", "   v   ", 7},
        {"[s]\r\nk=  \"  v  '  \r\n", "s", "k", "", "\"  v  '", 7},
        {"[s]\r\n  k\t=\tv\t\r\n", "s", "k", "", "v", 1},
        {"[s]\r\n\vk \v=\vv \r\n", "s", "k", "", "v", 1},
        {"[s]\r\nk=;nocomment\r\n", "s", "k", "", ";nocomment", 10},
        {"[s]\r\n;k=v\r\n", "s", "k", "def", "def", 3},
        {"[s]\r\n;k=v\r\n", "s", ";k", "def", "def", 3},
        {"[s]\r\nk=1\r\nk=2\r\n", "s", "k", "", "1", 1},
        {"[s]\r\n[s]\r\nk=v\r\n", "s", "k", "def", "def", 3},
        {"[s]\r\nk=v\r\n", "s", "missing", "default  ", "default", 7},
        {"[s]\r\nk=v\r\n", "s", "missing", nullptr, "", 0},
        {"[s]\r\nk=\r\n", "s", "k", "def", "", 0},
        {"[s]\r\n=empty name\r\n", "s", "", "def", "empty name", 10},
        {"[ section1 ]\r\nk=v\r\n", "section1", "k", "", "v", 1},
        {"[s] trailing text\r\nk=v\r\n", "s", "k", "", "v", 1},
        {"[s\r\nk=v\r\n", "s", "k", "", "v", 1},
        {"k=top\r\n[s]\r\n", "", "k", "def", "def", 3},
        {"[]\r\nk=under empty\r\n", "", "k", "def", "under empty", 11},
        {"[s]\r\nk=v\r\n", "  s ", " k  ", "", "v", 1},
        {"[s]\r\nk=v\r\n", "\ts", "k", "def", "def", 3},
        {"[s]\r\nk = a = b \r\n", "s", "k", "", "a = b", 5},
        {"[s]\r\nk=''x''\r\n", "s", "k", "", "'x'", 3},
        {"[s]\r\nk=v ;c\r\n", "s", "k", "", "v ;c", 4},
        {"[s]\r\nk#=v\r\n", "s", "k#", "", "v", 1},
        {"[s]\r\nname3\r\n", "s", "name3", "def", "def", 3},
        {"[s]\r\nk=x\r\n", "s", "k", "  lead\t ", "x", 1},
        {"[s]\r\n", "s", "k", "  lead\t ", "  lead\t", 7},
        // A line without '=' hides a later key of its name.
        {"[s]\r\nk\r\nk=v\r\n", "s", "k", "def", "def", 3},
        // A key list of a section that is missing or has no keys is the default, spaces kept.
        {"[s]\r\n[t]\r\nk=v\r\n", "s", nullptr, "default  ", "default  ", 9},
        {"[t]\r\nk=v\r\n", "s", nullptr, "def", "def", 3},
        // A byte order mark is not interpreted: it spoils the first header.
        {"\xEF\xBB\xBF[s]\r\nk=v\r\n[t]\r\nk=w\r\n", "s", "k", "def", "def", 3},
        {"\xEF\xBB\xBF[s]\r\nk=v\r\n[t]\r\nk=w\r\n", "t", "k", "def", "w", 1},
    };
    for (const auto& c : cases) {
        Put(c.file);
        const Read r = Get(c.app, c.key, c.def);
        EXPECT_EQ(r.text, c.value) << c.file;
        EXPECT_EQ(r.count, c.n) << c.file;
    }
}

TEST_F(ProfileFile, LineBreaksCrLfLfAndLoneCr)
{
    for (const char* eol : {"\r\n", "\n", "\r"}) {
        const std::string e = eol;
        Put("[section1]" + e + "name1=val1" + e + "name2=\"val2\"" + e + "name3" + e + "name4=a" + e + "[section2]" + e);
        EXPECT_EQ(Get("section1", "name1", "default").text, "val1");
        EXPECT_EQ(List("section1"), std::string("name1\0name2\0name4\0\0", 19));
        EXPECT_EQ(List(nullptr), std::string("section1\0section2\0\0", 19));
    }
}

TEST_F(ProfileFile, BufferLimits)
{
    Put("[s]\r\nname1=val1\r\n");
    EXPECT_EQ(Get("s", "name1", "", 4).text, "val");
    EXPECT_EQ(Get("s", "name1", "", 5).text, "val1");
    EXPECT_EQ(Get("s", "name1", "", 1).count, 0u);
    char untouched[4] = {'x', 'y', 'z', '\0'};
    EXPECT_EQ(GetPrivateProfileStringA("s", "name1", "", untouched, 0, Path().c_str()), 0u);
    EXPECT_STREQ(untouched, "xyz");

    // With the settings buffer of 256 bytes, 255 characters and anything longer both give 255.
    Put("[s]\r\nexact=" + std::string(255, 'a') + "\r\nlong=" + std::string(3000, 'b') + "\r\n");
    EXPECT_EQ(Get("s", "exact", "").count, 255u);
    EXPECT_EQ(Get("s", "long", "").count, 255u);
    EXPECT_EQ(orderview::ProfileString("s", "long", "", Path().c_str()).GetLength(), 255);
    EXPECT_EQ(Get("s", "long", "", 5000).count, 3000u);

    // A value of 65536 characters wraps to nothing, as the system's 16-bit counter does.
    Put("[s]\r\nhuge=" + std::string(65536, 'c') + "\r\nhuger=" + std::string(65538, 'c') + "\r\n");
    EXPECT_EQ(Get("s", "huge", "def", 70000).count, 0u);
    EXPECT_EQ(Get("s", "huger", "def", 70000).count, 2u);
}

TEST_F(ProfileFile, TruncatedListsEndInTwoNuls)
{
    Put("[alpha]\r\n[beta]\r\n[gamma]\r\n");
    char buffer[8];
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buffer, sizeof buffer, Path().c_str()), 6u);
    EXPECT_EQ(std::string(buffer, 8), std::string("alpha\0\0\0", 8));
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buffer, 2, Path().c_str()), 0u);
    EXPECT_EQ(List("nosuch"), std::string("\0", 1));
    // A list that fills the buffer exactly counts as cut.
    Put("[ab]\r\n");
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buffer, 4, Path().c_str()), 2u);
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buffer, 5, Path().c_str()), 3u);
}

TEST_F(ProfileFile, IntegersParseLikeTheSystem)
{
    struct Case { const char* value; int def; unsigned expected; };
    const Case cases[] = {
        {"-1", 1, 4294967295u},   {"+1", -1, 1u},        {"4294967297", -1, 1u}, {"4294967296", -1, 0u},
        {"42A94967297", -1, 42u}, {"B4294967297", -1, 0u}, {"\"12\"", -1, 12u},    {"", 5, 5u},
        {"  7 apples", -1, 7u},   {"0x10", -1, 16u},     {"0o17", -1, 15u},      {"0b101", -1, 5u},
        {"0X10", -1, 0u},         {"--3", -1, 0u},       {"-0x10", -1, 4294967280u}, {"0x", -1, 0u},
        {"007", -1, 7u},          {"99999999999999999999", -1, 1661992959u},
    };
    for (const auto& c : cases) {
        Put(std::string("[s]\r\nk=") + c.value + "\r\n");
        EXPECT_EQ(GetPrivateProfileIntA("s", "k", c.def, Path().c_str()), c.expected) << c.value;
    }
}

TEST_F(ProfileFile, WritesLikeTheSystem)
{
    EXPECT_TRUE(WritePrivateProfileStringA("App", "key", "string", Path().c_str()));
    EXPECT_EQ(Content(), "[App]\r\nkey=string\r\n");

    std::filesystem::remove(Path());
    for (const char* key : {"key1", "key2", "key3"})
        WritePrivateProfileStringA("App1", key, (std::string("string") + key[3]).c_str(), Path().c_str());
    WritePrivateProfileStringA("App2", "key4", "string4", Path().c_str());
    WritePrivateProfileStringA("App3", "key5", "string5", Path().c_str());
    EXPECT_EQ(Content(), "[App1]\r\nkey1=string1\r\nkey2=string2\r\nkey3=string3\r\n[App2]\r\nkey4=string4\r\n"
                         "[App3]\r\nkey5=string5\r\n");
    EXPECT_TRUE(WritePrivateProfileStringA("App1", "key2", nullptr, Path().c_str()));
    const std::string once = Content();
    EXPECT_EQ(once, "[App1]\r\nkey1=string1\r\nkey3=string3\r\n[App2]\r\nkey4=string4\r\n[App3]\r\nkey5=string5\r\n");
    EXPECT_TRUE(WritePrivateProfileStringA("App1", "key2", nullptr, Path().c_str()));
    EXPECT_EQ(Content(), once);

    Put("[App3]\r\nkey5=string5\r\n");
#ifndef _WIN32
    // A write replaces the file whole, never in place: a reader that opened it before still reads
    // the old bytes, and a writer killed half-way leaves the file as it was.
    std::ifstream opened(Path(), std::ios::binary);
#endif
    WritePrivateProfileStringA("App3", "key5", nullptr, Path().c_str());
    EXPECT_EQ(Content(), "[App3]\r\n");
#ifndef _WIN32
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(opened), {}), "[App3]\r\nkey5=string5\r\n");
#endif

    Put("[SectionName]\r\nTestKey=TestValue");
    WritePrivateProfileStringA("SECTIONNAME", "TESTKEY", "TestValue2", Path().c_str());
    EXPECT_EQ(Content(), "[SectionName]\r\nTestKey=TestValue2\r\n");

    Put("[s]\r\nb=value\r\na=value\r\n");
    for (const char* key : {"z", "b", "y", "a"}) WritePrivateProfileStringA("s", key, "", Path().c_str());
    EXPECT_EQ(Content(), "[s]\r\nb=\r\na=\r\nz=\r\ny=\r\n");
}

TEST_F(ProfileFile, WritesKeepUntouchedLinesByteForByte)
{
    Put("; head comment\n[s]\n  k = old \n\nother line\n[t]\nx=1\n");
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", "new", Path().c_str()));
    EXPECT_EQ(Content(), "; head comment\n[s]\nk=new\n\nother line\n[t]\nx=1\n");
    EXPECT_TRUE(WritePrivateProfileStringA("s", "added", "v", Path().c_str()));
    EXPECT_EQ(Content(), "; head comment\n[s]\nk=new\n\nother line\nadded=v\r\n[t]\nx=1\n");
    Put("[s]\nk=1\n; keep me\n[t]\nx=1\n");
    EXPECT_TRUE(WritePrivateProfileStringA("s", nullptr, nullptr, Path().c_str()));
    EXPECT_EQ(Content(), "; keep me\n[t]\nx=1\n");
    Put("[s]\nk=1\n");
    WritePrivateProfileStringA("s", "crlf", "a\r\nb", Path().c_str());
    EXPECT_EQ(Content(), "[s]\nk=1\ncrlf=a\r\nb\r\n");
    Put("[s]\nk=1");
    WritePrivateProfileStringA("new", "k", "v", Path().c_str());
    EXPECT_EQ(Content(), "[s]\nk=1\r\n[new]\r\nk=v\r\n");
    // Junk before a section: NUL, high bytes, brackets and a lone CR.
    const std::string junk("\xFF\0\x80[\r=\x01]\n", 9);
    Put(junk + "[s]\nk=found\n");
    EXPECT_EQ(Get("s", "k", "def").text, "found");
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k2", "v", Path().c_str()));
    EXPECT_EQ(Content().substr(0, junk.size()), junk);
}

TEST_F(ProfileFile, RefusedWritesChangeNothing)
{
    Put("[s]\r\nk=v\r\n");
    EXPECT_FALSE(WritePrivateProfileStringA(nullptr, "k", "v", Path().c_str()));
    EXPECT_FALSE(WritePrivateProfileStringA(nullptr, nullptr, nullptr, Path().c_str()));
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", ""));
    EXPECT_FALSE(WritePrivateProfileStringA("s", "k", "v", (folder.path() + "/missing/x.ini").c_str()));
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "/missing"));
    EXPECT_EQ(Content(), "[s]\r\nk=v\r\n");
    // A missing file reads as the defaults; deleting from it leaves an empty file, as the system
    // does.
    const std::string fresh = folder.File("sys/fresh.ini");
    EXPECT_EQ(orderview::ProfileString("s", "k", "fallback", fresh.c_str()), "fallback");
    EXPECT_EQ(GetPrivateProfileIntA("s", "k", 77, fresh.c_str()), 77u);
    EXPECT_TRUE(WritePrivateProfileStringA("s", "k", nullptr, fresh.c_str()));
    EXPECT_TRUE(std::filesystem::exists(fresh));
    EXPECT_EQ(std::filesystem::file_size(fresh), 0u);
}

}  // namespace
