#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "xls/biff_record.h"
#include "xls/workbook_records.h"
#include "xls/worksheet_records.h"

namespace {

using xls::Record;

std::vector<std::uint16_t> PartSizes(const std::vector<char>& stream)
{
    std::vector<std::uint16_t> sizes;
    for (std::size_t at = 0; at + 4 <= stream.size();) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(stream.data() + at);
        sizes.push_back(xls::biff::U16(p + 2));
        at += 4 + sizes.back();
    }
    return sizes;
}

TEST(Record, LongDataIsSplitIntoContinueParts)
{
    struct Case { std::size_t size; std::vector<std::uint16_t> parts; };
    const Case cases[] = {
        {0, {0}}, {8224, {8224}}, {8225, {8224, 1}}, {16448, {8224, 8224}}, {20000, {8224, 8224, 3552}},
    };
    for (const auto& c : cases) {
        Record record(0x00FC);
        record.data.assign(c.size, 0x5A);
        std::vector<char> stream(record.RecordSize());
        EXPECT_EQ(record.Write(stream.data()), stream.size());
        EXPECT_EQ(PartSizes(stream), c.parts) << c.size;
        Record back;
        EXPECT_EQ(back.ReadFrom(stream.data(), stream.size()), stream.size());
        EXPECT_EQ(back.data, record.data);
        EXPECT_EQ(back.continueIndices.size(), c.parts.size() - 1);
    }
}

TEST(Record, ReadBoundariesAreKeptForWriting)
{
    // A record read with parts of 10 and 20 bytes is written with the same parts.
    std::vector<char> stream = {0x34, 0x12, 10, 0};
    stream.insert(stream.end(), 10, 'a');
    stream.insert(stream.end(), {0x3C, 0x00, 20, 0});
    stream.insert(stream.end(), 20, 'b');
    Record record;
    ASSERT_EQ(record.ReadFrom(stream.data(), stream.size()), stream.size());
    EXPECT_EQ(record.code, 0x1234);
    EXPECT_EQ(record.continueIndices, std::vector<std::size_t>{10});
    std::vector<char> out(record.RecordSize());
    record.Write(out.data());
    EXPECT_EQ(out, stream);
}

TEST(Record, LengthsPastTheStreamAreRefused)
{
    const char header[] = {0x34, 0x12, 100, 0, 1, 2, 3};
    Record record;
    EXPECT_EQ(record.ReadFrom(header, sizeof header), 0u);
    EXPECT_EQ(record.ReadFrom(header, 3), 0u);
    const char withContinue[] = {0x34, 0x12, 1, 0, 7, 0x3C, 0x00, 50, 0, 1};
    EXPECT_EQ(record.ReadFrom(withContinue, sizeof withContinue), 0u);
}

TEST(SharedStringTable, ContinuationsRoundTripWithTheirFlags)
{
    xls::Workbook::SharedStringTable sst;
    for (int i = 0; i < 3000; ++i) {
        std::u16string text = u"string number " + std::u16string(static_cast<std::size_t>(i % 17), u'x');
        if (i % 5 == 0) text += u"\u4e2d\u6587";  // some need 16 bits
        sst.strings.push_back(text);
        sst.wide.push_back(i % 5 == 0);
    }
    sst.strings.push_back(std::u16string(20000, u'L'));  // longer than a part: split mid-characters
    sst.wide.push_back(false);
    sst.totalStrings = static_cast<std::uint32_t>(sst.strings.size());
    std::vector<char> stream(sst.RecordSize());
    ASSERT_EQ(sst.Write(stream.data()), stream.size());
    for (std::uint16_t size : PartSizes(stream)) EXPECT_LE(size, 8224);

    xls::Workbook::SharedStringTable back;
    ASSERT_EQ(back.ReadFrom(stream.data(), stream.size()), stream.size());
    EXPECT_TRUE(back.complete);
    EXPECT_EQ(back.strings, sst.strings);
    EXPECT_EQ(back.wide, sst.wide);
    // Written again, the parts fall where they fell.
    std::vector<char> again(back.Record::RecordSize());
    back.Record::Write(again.data());
    EXPECT_EQ(again, stream);
}

TEST(SharedStringTable, CountsPastTheDataStopCleanly)
{
    std::vector<char> stream = {static_cast<char>(0xFC), 0x00, 13, 0, 5, 0, 0, 0, static_cast<char>(0xFF),
                                static_cast<char>(0xFF), static_cast<char>(0xFF), 0x7F, 2, 0, 0, 'h', 'i'};
    xls::Workbook::SharedStringTable sst;
    ASSERT_EQ(sst.ReadFrom(stream.data(), stream.size()), stream.size());
    EXPECT_FALSE(sst.complete);
    EXPECT_EQ(sst.strings, std::vector<std::u16string>{u"hi"});
}

TEST(RK, DecodesAllFourForms)
{
    using RK = xls::Worksheet::CellTable::RowBlock::CellBlock::RK;
    struct Case { std::uint32_t rk; double value; bool integral; };
    std::uint32_t encoded = 0;
    ASSERT_TRUE(RK::EncodeInteger(-123456, encoded));
    const Case cases[] = {
        {encoded, -123456, true},
        {(100u << 2) | 3, 1.0, true},       // integer 100 in hundredths
        {(150u << 2) | 3, 1.5, false},
        {0x3FF00000u, 1.0, true},           // the double 1.0
        {0x3FF00001u, 0.01, false},         // the double 1.0 in hundredths
        {0x40240000u, 10.0, true},
    };
    for (const auto& c : cases) {
        bool integral = false;
        std::int32_t asInt = 0;
        EXPECT_DOUBLE_EQ(RK::Decode(c.rk, integral, asInt), c.value) << std::hex << c.rk;
        EXPECT_EQ(integral, c.integral) << std::hex << c.rk;
        if (integral) EXPECT_EQ(asInt, static_cast<std::int32_t>(c.value));
    }
    EXPECT_FALSE(RK::EncodeInteger(1 << 29, encoded));
    EXPECT_TRUE(RK::EncodeInteger((1 << 29) - 1, encoded));
    EXPECT_TRUE(RK::EncodeInteger(-(1 << 29), encoded));
}

TEST(Workbook, ExtSSTIsDroppedOnReadAndRebuiltOnWrite)
{
    xls::Workbook book;
    for (int i = 0; i < 100; ++i) {
        book.sst.strings.push_back(u"s" + std::u16string(static_cast<std::size_t>(i), u'a'));
        book.sst.wide.push_back(false);
    }
    book.AdjustExtSSTPositions(book.SharedStringTableOffset());
    ASSERT_EQ(book.extSST.buckets.size(), 13u);  // 8 strings a bucket
    std::vector<char> stream(book.RecordSize());
    ASSERT_EQ(book.Write(stream.data()), stream.size());
    // Every bucket points at its string's character count in the stream.
    for (std::size_t k = 0; k < book.extSST.buckets.size(); ++k) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(stream.data() + book.extSST.buckets[k].streamPosition);
        EXPECT_EQ(xls::biff::U16(p), 1 + 8 * k) << k;
    }
    xls::Workbook read;
    ASSERT_EQ(read.Read(stream.data(), stream.size()), stream.size());
    EXPECT_TRUE(read.extSST.buckets.empty());
    EXPECT_EQ(read.sst.strings.size(), 100u);
    EXPECT_EQ(read.fonts.size(), 4u);
    EXPECT_EQ(read.xfs.size(), 21u);
    EXPECT_EQ(read.styles.size(), 6u);
    EXPECT_EQ(read.boundSheets.size(), 1u);
}

}  // namespace
