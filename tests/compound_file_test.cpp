#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "support/temp_folder.h"
#include "xls/detail/cfb_format.h"
#include "xls/compound_file.h"

namespace {

using xls::CompoundFile;

std::vector<std::uint8_t> Pattern(std::size_t size, int seed)
{
    std::vector<std::uint8_t> data(size);
    for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<std::uint8_t>(i * 13 + seed + i / 251);
    return data;
}

std::vector<std::uint8_t> ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

class CompoundFileTest : public ::testing::Test {
protected:
    std::string Path() const { return folder.File("test.cfb"); }
    // A file with the given streams, returned as bytes.
    std::vector<std::uint8_t> Build(const std::vector<std::pair<std::wstring, std::size_t>>& streams)
    {
        CompoundFile cf;
        EXPECT_TRUE(cf.Create(Path()));
        int seed = 0;
        for (const auto& s : streams) {
            EXPECT_EQ(cf.MakeFile(s.first), CompoundFile::kOk);
            const auto data = Pattern(s.second, ++seed);
            EXPECT_TRUE(cf.WriteStream(s.first, data.data(), data.size()));
        }
        cf.Close();
        return ReadFile(Path());
    }
    ovtest::TempFolder folder;
};

TEST_F(CompoundFileTest, StreamsOfEverySizeRoundTrip)
{
    const std::vector<std::pair<std::wstring, std::size_t>> streams = {
        {L"\\s0", 0},       {L"\\s1", 1},       {L"\\s63", 63},      {L"\\s64", 64},
        {L"\\s4095", 4095}, {L"\\s4096", 4096}, {L"\\s4097", 4097}, {L"\\big", 3 * 1024 * 1024 + 7},
    };
    Build(streams);
    CompoundFile cf;
    ASSERT_TRUE(cf.Open(Path()));
    int seed = 0;
    for (const auto& s : streams) {
        std::vector<std::uint8_t> data;
        ASSERT_TRUE(cf.ReadStream(s.first, data));
        EXPECT_EQ(data, Pattern(s.second, ++seed));
        std::uint64_t size = 0;
        EXPECT_TRUE(cf.StreamSize(s.first, size));
        EXPECT_EQ(size, s.second);
    }
}

// A file made with its one stream in a single write reads back as Create, MakeFile and
// WriteStream would have left it; an unusable name writes nothing.
TEST_F(CompoundFileTest, CreateWithOneStream)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{70000}}) {
        CompoundFile cf;
        ASSERT_TRUE(cf.Create(Path(), L"Workbook", Pattern(size, 3)));
        std::vector<std::uint8_t> data;
        ASSERT_TRUE(cf.ReadStream(L"\\Workbook", data));  // the open object holds it too
        EXPECT_EQ(data, Pattern(size, 3));
        cf.Close();
        ASSERT_TRUE(cf.Open(Path()));
        ASSERT_EQ(cf.List().size(), 1u);
        EXPECT_EQ(cf.List()[0].path, L"\\Workbook");
        ASSERT_TRUE(cf.ReadStream(L"\\Workbook", data));
        EXPECT_EQ(data, Pattern(size, 3)) << size;
    }
    const auto before = ReadFile(Path());
    for (const wchar_t* name : {L"a\\b", L"abcdefghijklmnopqrstuvwxyz0123456"}) {
        CompoundFile cf;
        EXPECT_FALSE(cf.Create(Path(), name, Pattern(10, 1))) << name;
        EXPECT_FALSE(cf.IsOpen());
    }
    EXPECT_EQ(ReadFile(Path()), before);
}

// A stream made in pieces while the file is written is the same file as one held whole; a maker
// that fails, or makes more or fewer bytes than it said, leaves the old file as it was.
TEST_F(CompoundFileTest, WriteSingleStreamMakesTheStreamWhileWriting)
{
    const std::string held = folder.File("held.cfb");
    for (const std::size_t size : {std::size_t{1}, std::size_t{4095}, std::size_t{4096}, std::size_t{70001}}) {
        const auto data = Pattern(size, 5);
        const auto inPieces = [&data](const auto& put) {
            for (std::size_t at = 0; at < data.size(); at += 1000)
                if (!put(data.data() + at, std::min<std::size_t>(1000, data.size() - at))) return false;
            return true;
        };
        ASSERT_TRUE(CompoundFile::WriteSingleStream(Path(), L"Workbook", size, inPieces));
        CompoundFile cf;
        ASSERT_TRUE(cf.Create(held, L"Workbook", std::vector<std::uint8_t>(data)));
        EXPECT_EQ(ReadFile(Path()), ReadFile(held)) << size;
    }
    const auto before = ReadFile(Path());
    const auto data = Pattern(5000, 1);
    const std::vector<std::pair<std::size_t, bool>> wrong = {{4999, true}, {5001, true}, {5000, false}};
    for (const auto& [stated, succeedsAsStated] : wrong) {
        const bool succeeds = succeedsAsStated;  // a lambda may not capture a structured binding before C++20
        EXPECT_FALSE(CompoundFile::WriteSingleStream(Path(), L"Workbook", stated, [&](const auto& put) {
            return put(data.data(), data.size()) && succeeds;
        })) << stated;
        EXPECT_EQ(ReadFile(Path()), before) << stated;
    }
}

TEST_F(CompoundFileTest, RewritingKeepsOtherStreams)
{
    Build({{L"\\Workbook", 5000}, {L"\\Other", 10}});
    CompoundFile cf;
    ASSERT_TRUE(cf.Open(Path(), CompoundFile::Mode::ReadWrite));
    const auto shorter = Pattern(100, 9);
    ASSERT_TRUE(cf.WriteStream(L"Workbook", shorter.data(), shorter.size()));
    cf.Close();
    ASSERT_TRUE(cf.Open(Path()));
    std::vector<std::uint8_t> data;
    ASSERT_TRUE(cf.ReadStream(L"\\Workbook", data));
    EXPECT_EQ(data, shorter);
    ASSERT_TRUE(cf.ReadStream(L"\\Other", data));
    EXPECT_EQ(data, Pattern(10, 2));
    EXPECT_FALSE(cf.WriteStream(L"\\Other", "x", 1));  // opened read-only
}

TEST_F(CompoundFileTest, EntryCreationResults)
{
    CompoundFile cf;
    ASSERT_TRUE(cf.Create(Path()));
    EXPECT_EQ(cf.MakeFile(L"Workbook"), CompoundFile::kOk);
    EXPECT_EQ(cf.MakeFile(L"Workbook"), CompoundFile::kNameExists);
    EXPECT_EQ(cf.MakeFile(L""), CompoundFile::kBadPath);
    EXPECT_EQ(cf.MakeFile(L"\\a\\\\b"), CompoundFile::kBadPath);
    EXPECT_EQ(cf.MakeFile(L"Workbook\\inside"), CompoundFile::kBadPath);  // a stream is no storage
    EXPECT_EQ(cf.MakeFile(std::wstring(31, L'n')), CompoundFile::kOk);
    EXPECT_EQ(cf.MakeFile(std::wstring(32, L'n')), CompoundFile::kNameTooLong);
    EXPECT_EQ(cf.MakeFile(L"\\new\\" + std::wstring(40, L'x')), CompoundFile::kNameTooLong);
    std::uint64_t size;
    EXPECT_FALSE(cf.StreamSize(L"\\new", size));  // a refused path creates no parent either
    EXPECT_EQ(cf.MakeFile(L"\\A\\B\\leaf"), CompoundFile::kOk);  // parents are made as storages
    EXPECT_EQ(cf.MakeDirectory(L"\\A"), CompoundFile::kNameExists);
    EXPECT_TRUE(cf.ChangeDirectory(L"\\A\\B"));
    cf.PushDirectory();
    EXPECT_TRUE(cf.StreamSize(L"leaf", size));
    EXPECT_TRUE(cf.ChangeDirectory(L"\\"));
    EXPECT_FALSE(cf.StreamSize(L"leaf", size));
    EXPECT_TRUE(cf.PopDirectory());
    EXPECT_TRUE(cf.StreamSize(L"leaf", size));
    EXPECT_FALSE(cf.PopDirectory());
    EXPECT_FALSE(cf.ChangeDirectory(L"\\A\\B\\leaf"));
}

TEST_F(CompoundFileTest, ChildrenInDirectoryOrder)
{
    CompoundFile cf;
    ASSERT_TRUE(cf.Create(Path()));
    // A name outside the BMP is two UTF-16 units long, whatever the width of wchar_t.
    const std::wstring emoji = sizeof(wchar_t) == 4
                                   ? std::wstring(1, static_cast<wchar_t>(0x1F600))
                                   : std::wstring{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    const std::wstring cjk = L"\u5de5\u4f5c\u8868";
    const std::vector<std::wstring> made = {L"B", L"AA", L"A", L"b", L"\u00C4",
                                            cjk, L"ZZZ", emoji, L"a"};
    for (const std::wstring& name : made) cf.MakeFile(name);
    const auto names = [&cf] {
        std::vector<std::wstring> paths;
        for (const auto& entry : cf.List()) paths.push_back(entry.path);
        return paths;
    };
    const std::vector<std::wstring> expected = {L"\\A", L"\\B", L"\\a", L"\\b", L"\\\u00C4",
                                                L"\\AA", L"\\" + emoji, L"\\ZZZ", L"\\" + cjk};
    EXPECT_EQ(names(), expected);
    cf.Close();
    ASSERT_TRUE(cf.Open(Path()));  // the sibling tree read back gives the same order
    EXPECT_EQ(names(), expected);
    // A lookup that ignores case finds the stored name; exact lookups stay exact.
    std::wstring actual;
    ASSERT_TRUE(cf.FindStreamNoCase(L"zzz", actual));
    EXPECT_EQ(actual, L"ZZZ");
    EXPECT_FALSE(cf.FindStreamNoCase(L"ZZ", actual));
    std::uint64_t size;
    EXPECT_FALSE(cf.StreamSize(L"\\zzz", size));
    EXPECT_TRUE(cf.StreamSize(L"\\" + emoji, size));
}

// Damaged images: each must be refused at Open or at the stream read, never crash or hang.
class DamagedImage : public CompoundFileTest {
protected:
    void SetUp() override
    {
        image = Build({{L"\\small", 100}, {L"\\large", 5000}});
        ASSERT_EQ(image.size() % 512, 0u);
    }
    static std::uint8_t* Sector(std::vector<std::uint8_t>& bytes, std::uint32_t n) { return bytes.data() + (n + 1) * 512; }
    // Directory entry `index` of the written image (the directory is one sector here).
    std::uint8_t* DirEntry(std::vector<std::uint8_t>& bytes, int index)
    {
        return Sector(bytes, xls::cfb::Get32(bytes.data() + 48)) + 128 * index;
    }
    int Find(std::vector<std::uint8_t>& bytes, const char* name)
    {
        for (int i = 0; i < 4; ++i) {
            std::uint8_t* e = DirEntry(bytes, i);
            bool same = true;
            for (std::size_t k = 0; k <= std::strlen(name); ++k) same = same && xls::cfb::Get16(e + 2 * k) == static_cast<std::uint8_t>(name[k]);
            if (same) return i;
        }
        return -1;
    }
    // Open result and whether both streams read.
    std::pair<bool, bool> Try(const std::vector<std::uint8_t>& bytes)
    {
        CompoundFile cf;
        if (!cf.OpenMemory(bytes.data(), bytes.size())) return {false, false};
        std::vector<std::uint8_t> a, b;
        return {true, cf.ReadStream(L"\\small", a) && cf.ReadStream(L"\\large", b)};
    }
    std::vector<std::uint8_t> image;
};

TEST_F(DamagedImage, HeaderFields)
{
    EXPECT_EQ(Try(image), std::make_pair(true, true));
    EXPECT_EQ(xls::cfb::Get16(image.data() + 24), 0x3B);  // the minor version
    EXPECT_EQ(xls::cfb::Get32(Sector(image, 0)), xls::cfb::kFatSector);  // the table's own sector
    struct Case { std::size_t offset; std::uint16_t value; };
    for (const Case c : {Case{30, 10}, Case{30, 0}, Case{30, 40}, Case{32, 7}, Case{32, 0}}) {
        auto bytes = image;
        xls::cfb::Put16(bytes.data() + c.offset, c.value);
        EXPECT_FALSE(Try(bytes).first) << c.offset << "=" << c.value;
    }
    auto bytes = image;
    bytes[7] ^= 1;  // signature
    EXPECT_FALSE(Try(bytes).first);
    EXPECT_FALSE(Try(std::vector<std::uint8_t>(image.begin(), image.begin() + 300)).first);
}

TEST_F(DamagedImage, ChainsThatLoopOrLeaveTheTable)
{
    const int large = Find(image, "large");
    ASSERT_GE(large, 0);
    const std::uint32_t start = xls::cfb::Get32(DirEntry(image, large) + 116);
    for (std::uint32_t next : {start, 0x7FFFFFF0u, xls::cfb::kFree, xls::cfb::kEndOfChain}) {
        auto bytes = image;
        xls::cfb::Put32(Sector(bytes, 0) + 4 * start, next);  // loops to itself, leaves, or ends early
        EXPECT_EQ(Try(bytes), std::make_pair(true, false)) << next;
    }
    // A size larger than any chain, and the root's stream shrunk below the mini stream.
    for (const auto& [entry, size] : {std::make_pair(large, 0xFFFFFFF0u), std::make_pair(0, 64u)}) {
        auto bytes = image;
        xls::cfb::Put32(DirEntry(bytes, entry) + 120, size);
        EXPECT_EQ(Try(bytes), std::make_pair(true, false)) << entry;
    }
}

TEST_F(DamagedImage, DirectoryLinks)
{
    // "small" is the root's child with "large" on its left; entry 3 is unused.
    const int small = Find(image, "small");
    ASSERT_EQ(small, 1);
    for (std::uint32_t link : {0u, 1u, 2u, 99u, 0x7FFFFFFFu}) {
        auto bytes = image;
        xls::cfb::Put32(DirEntry(bytes, small) + 68, link);  // back into the tree, or outside it
        xls::cfb::Put32(DirEntry(bytes, small) + 72, link);
        EXPECT_FALSE(Try(bytes).first) << link;
    }
    auto bytes = image;
    xls::cfb::Put32(DirEntry(bytes, small) + 68, 3);  // an unused entry counts as no link
    CompoundFile cf;
    ASSERT_TRUE(cf.OpenMemory(bytes.data(), bytes.size()));
    ASSERT_EQ(cf.List().size(), 1u);
    EXPECT_EQ(cf.List()[0].path, L"\\small");
    // An entry losing its name ends its sector: it and the filled entries after it are not read.
    std::memset(DirEntry(bytes, 1), 0, 66);
    CompoundFile unnamed;
    ASSERT_TRUE(unnamed.OpenMemory(bytes.data(), bytes.size()));
    EXPECT_TRUE(unnamed.List().empty());
}

// A stream read in place (a container opened as a view) must hold what ReadStream copies,
// wherever its sectors lie: "large" with each neighbouring pair of its 10 sectors swapped, the
// chain with them, and cut short.
TEST_F(DamagedImage, ViewsHoldWhatReadsCopy)
{
    const int large = Find(image, "large");
    ASSERT_GE(large, 0);
    const std::uint32_t start = xls::cfb::Get32(DirEntry(image, large) + 116);
    std::vector<std::vector<std::uint8_t>> images{image};
    for (std::uint32_t k = 0; k + 1 < 10; ++k) {  // chain positions k and k + 1 swapped
        auto bytes = image;
        const std::uint32_t a = start + k, b = start + k + 1;
        std::swap_ranges(Sector(bytes, a), Sector(bytes, b), Sector(bytes, b));
        std::uint8_t* fat = Sector(bytes, 0);
        if (k == 0)
            xls::cfb::Put32(DirEntry(bytes, large) + 116, b);
        else
            xls::cfb::Put32(fat + 4 * (a - 1), b);
        xls::cfb::Put32(fat + 4 * b, a);
        xls::cfb::Put32(fat + 4 * a, k + 2 < 10 ? b + 1 : xls::cfb::kEndOfChain);
        CompoundFile cf;
        std::vector<std::uint8_t> read;
        ASSERT_TRUE(cf.OpenMemory(bytes.data(), bytes.size()));
        ASSERT_TRUE(cf.ReadStream(L"\\large", read));
        ASSERT_EQ(read, Pattern(5000, 2)) << k;
        images.push_back(bytes);
    }
    images.push_back(image);
    images.back().resize(image.size() - 700);
    for (std::size_t i = 0; i < images.size(); ++i) {
        const auto& bytes = images[i];
        CompoundFile cf;
        ASSERT_TRUE(cf.OpenView(bytes.data(), bytes.size())) << i;
        for (const wchar_t* name : {L"\\small", L"\\large"}) {
            std::vector<std::uint8_t> read, copy;
            ASSERT_TRUE(cf.ReadStream(name, read));
            const std::uint8_t* data = nullptr;
            std::size_t size = 0;
            ASSERT_TRUE(cf.ViewStream(name, data, size, copy));
            EXPECT_EQ(std::vector<std::uint8_t>(data, data + size), read) << i << " " << name;
            // Cut short: what the file lost reads as zeros.
            if (i + 1 == images.size() && name[1] == L'l') {
                const auto expected = Pattern(5000, 2);
                ASSERT_EQ(read.size(), 5000u);
                EXPECT_TRUE(std::equal(read.begin(), read.begin() + 4000, expected.begin()));
                EXPECT_EQ(std::count(read.begin() + 4500, read.end(), 0), 500);
            }
            // In place exactly when the sectors lie in order and the file holds them all ("small"
            // lives in the mini stream, which is never in place).
            const bool inPlace = copy.empty();
            EXPECT_EQ(inPlace, i == 0 && name[1] == L'l') << i << " " << name;
        }
    }
}

}  // namespace
