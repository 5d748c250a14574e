#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "xls/biff_record.h"
#include "xls/workbook_records.h"
#include "xls/worksheet_records.h"

namespace {

using xls::Record;

// The strings of a table, each as a string of its own.
std::vector<std::u16string> Strings(const xls::StringList& list)
{
    std::vector<std::u16string> out;
    for (std::size_t i = 0; i < list.size(); ++i) out.emplace_back(list[i]);
    return out;
}

// The code (`code`) or the data size of each record header in a stream.
std::vector<std::uint16_t> Headers(const std::vector<char>& stream, bool code = false)
{
    std::vector<std::uint16_t> out;
    for (std::size_t at = 0; at + 4 <= stream.size();) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(stream.data() + at);
        out.push_back(xls::biff::U16(code ? p : p + 2));
        at += 4 + xls::biff::U16(p + 2);
    }
    return out;
}

// A stream of records, each given as its code and data.
std::vector<char> Records(const std::vector<std::pair<std::uint16_t, std::vector<std::uint8_t>>>& records)
{
    std::vector<char> stream;
    for (const auto& r : records) {
        const auto size = static_cast<std::uint16_t>(r.second.size());
        stream.insert(stream.end(), {static_cast<char>(r.first & 0xFF), static_cast<char>(r.first >> 8),
                                     static_cast<char>(size & 0xFF), static_cast<char>(size >> 8)});
        stream.insert(stream.end(), r.second.begin(), r.second.end());
    }
    return stream;
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

// Every record class, read from a record of `size` data bytes filled with `fill` (in one part
// when the header can say so, as a damaged file carries it; otherwise in legal parts), must
// write exactly RecordSize() bytes as legal parts, and nothing at all into a byte less.
using Block = xls::Worksheet::CellTable::RowBlock;
using Cells = Block::CellBlock;
struct RecordClass {
    const char* name;
    std::function<std::unique_ptr<Record>()> make;
};
template <class T>
RecordClass Class(const char* name)
{
    return {name, [] { return std::unique_ptr<Record>(new T()); }};
}

// A record of `size` bytes of `fill`: in one part when the header can say so, else in parts of
// the largest size a header holds.
std::vector<char> SourceRecord(std::uint16_t code, std::size_t size, std::uint8_t fill)
{
    std::vector<std::pair<std::uint16_t, std::vector<std::uint8_t>>> parts;
    std::size_t done = 0;
    do {
        parts.push_back({parts.empty() ? code : xls::kContinue, std::vector<std::uint8_t>(std::min<std::size_t>(size - done, 0xFFFF), fill)});
        done += parts.back().second.size();
    } while (done < size);
    return Records(parts);
}

TEST(Record, EveryClassWritesExactlyItsSizeAsLegalParts)
{
    const RecordClass classes[] = {
        Class<Record>("Record"), Class<xls::BOF>("BOF"), Class<xls::Eof>("Eof"),
        Class<xls::Workbook::Window1>("Window1"), Class<xls::Workbook::Font>("Font"),
        Class<xls::Workbook::XF>("XF"), Class<xls::Workbook::Style>("Style"),
        Class<xls::Workbook::BoundSheet>("BoundSheet"), Class<xls::Workbook::SharedStringTable>("SST"),
        Class<xls::Workbook::ExtSST>("ExtSST"), Class<xls::Worksheet::Index>("Index"),
        Class<xls::Worksheet::Dimensions>("Dimensions"), Class<xls::Worksheet::Window2>("Window2"),
        Class<Block::Row>("Row"), Class<Block::DBCell>("DBCell"), Class<Cells::Blank>("Blank"),
        Class<Cells::BoolErr>("BoolErr"), Class<Cells::LabelSST>("LabelSST"), Class<Cells::MulBlank>("MulBlank"),
        Class<Cells::MulRK>("MulRK"), Class<Cells::Number>("Number"), Class<Cells::RK>("RK"),
        Class<Cells::Formula>("Formula"), Class<Cells::Formula::Array>("Array"),
        Class<Cells::Formula::ShrFmla>("ShrFmla"), Class<Cells::Formula::ShrFmla1>("ShrFmla1"),
        Class<Cells::Formula::Table>("Table"), Class<Cells::Formula::String>("String"),
    };
    for (const RecordClass& cls : classes) {
        for (std::size_t size : {0, 8223, 8224, 8225, 16449, 46085, 70000}) {
            for (std::uint8_t fill : {0x00, 0x01, 0xFF}) {
                SCOPED_TRACE(std::string(cls.name) + " size " + std::to_string(size) + " fill " + std::to_string(fill));
                std::unique_ptr<Record> record = cls.make();
                const std::uint16_t code = record->code;
                const std::vector<char> source = SourceRecord(code, size, fill);
                ASSERT_EQ(record->ReadFrom(source.data(), source.size()), source.size());
                const std::size_t expected = record->RecordSize();
                std::vector<char> out(expected + 8, '\x5A');
                EXPECT_EQ(record->Write(out.data(), expected - 1), 0u);
                EXPECT_EQ(std::count(out.begin(), out.end(), '\x5A'), static_cast<std::ptrdiff_t>(out.size()));
                ASSERT_EQ(record->Write(out.data(), expected), expected);
                EXPECT_EQ(std::count(out.end() - 8, out.end(), '\x5A'), 8);  // nothing past the size
                out.resize(expected);
                std::size_t data = 0, at = 0;
                const std::vector<std::uint16_t> parts = Headers(out);
                for (std::uint16_t part : parts) {
                    EXPECT_LE(part, xls::kMaxRecordData);
                    EXPECT_EQ(xls::biff::U16(reinterpret_cast<const std::uint8_t*>(out.data() + at)),
                              at == 0 ? code : xls::kContinue);
                    at += 4 + part;
                    data += part;
                }
                EXPECT_EQ(at, expected);
                EXPECT_EQ(data, record->DataSize());
                // Bytes of 0x01 make a style of 257 16-bit characters: the name is cut to 255.
                if (std::string(cls.name) == "Style" && fill == 0x01 && size > 0)
                    EXPECT_EQ(record->DataSize(), 5u + 2 * 255);
                // The plain record keeps every byte it read, in full parts but the last unless it
                // read boundaries of its own, and reads back as it was.
                if (std::string(cls.name) != "Record") continue;
                EXPECT_EQ(data, size);
                if (size <= 0xFFFF)  // read in one part: no boundary of its own to keep
                    for (std::size_t k = 0; k + 1 < parts.size(); ++k) EXPECT_EQ(parts[k], xls::kMaxRecordData);
                Record back;
                ASSERT_EQ(back.ReadFrom(out.data(), out.size()), out.size());
                EXPECT_EQ(back.data, record->data);
                EXPECT_EQ(back.continueIndices.size(), parts.size() - 1);
            }
        }
    }
}

// Shared string tables as other programs write them: the data of each part given whole.
std::vector<char> SstStream(const std::vector<std::vector<std::uint8_t>>& parts)
{
    std::vector<std::pair<std::uint16_t, std::vector<std::uint8_t>>> records;
    for (const auto& part : parts) records.push_back({records.empty() ? 0x00FC : xls::kContinue, part});
    return Records(records);
}

TEST(SharedStringTable, CharactersAfterAPartBoundaryStartWithTheirFlagByte)
{
    // Two strings, "abcdef" and "hi"; the parts after the first hold the rest of the table.
    using Part = std::vector<std::uint8_t>;
    const Part head = {2, 0, 0, 0, 2, 0, 0, 0, 6, 0, 0};
    Part firstTwo = head;
    firstTwo.insert(firstTwo.end(), {'a', 'b'});
    Part whole = head;
    whole.insert(whole.end(), {'a', 'b', 'c', 'd', 'e', 'f'});
    struct Case {
        const char* layout;
        std::vector<Part> parts;
        std::vector<bool> wide;
        bool complete = true;
    };
    const Case cases[] = {
        {"header ends the first part", {head, {0, 'a', 'b', 'c', 'd', 'e', 'f', 2, 0, 0, 'h', 'i'}}, {false, false}},
        {"a part starts with a string's header: no flag byte", {whole, {2, 0, 0, 'h', 'i'}},
         {false, false}},
        {"a part of nothing but the flag byte", {firstTwo, {1}, {0, 'c', 'd', 'e', 'f', 2, 0, 0, 'h', 'i'}}, {false, false}},
        {"two such parts", {firstTwo, {1}, {0}, {0, 'c', 'd', 'e', 'f', 2, 0, 0, 'h', 'i'}}, {false, false}},
        {"a zero-length part", {firstTwo, {}, {0, 'c', 'd', 'e', 'f', 2, 0, 0, 'h', 'i'}}, {false, false}},
        {"16-bit after a flag-only part", {firstTwo, {0}, {1, 'c', 0, 'd', 0, 'e', 0, 'f', 0, 2, 0, 0, 'h', 'i'}}, {true, false}},
        {"a byte left over after 16-bit characters",
         {firstTwo, {}, {1, 'c', 0, 'd', 0, 0}, {1, 'e', 0, 'f', 0, 2, 0, 0, 'h', 'i'}}, {true, false}},
        {"a count past the data, the string it cuts short dropped",
         {{2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F, 6, 0, 0, 'a', 'b', 'c', 'd', 'e', 'f',
           2, 0, 0, 'h', 'i', 5, 0, 0, 'x', 'y'}},
         {false, false}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.layout);
        const std::vector<char> stream = SstStream(c.parts);
        xls::Workbook::SharedStringTable sst;
        ASSERT_EQ(sst.ReadFrom(stream.data(), stream.size()), stream.size());
        EXPECT_EQ(sst.complete, c.complete);
        EXPECT_EQ(Strings(sst.strings), (std::vector<std::u16string>{u"abcdef", u"hi"}));
        EXPECT_EQ(sst.wide, c.wide);
        sst.strings.push_back(u"new");  // nothing of a string dropped half-read comes before it
        EXPECT_EQ(sst.strings[2], u"new");
    }
}

TEST(SharedStringTable, AStringSplitAtEveryBoundaryPositionReadsWhole)
{
    // Three strings (8-bit, 16-bit, 8-bit); the table is cut once at every place the format
    // allows: between strings, after a header, between characters. A cut with characters left
    // starts the next part with a flag byte, written once plainly, once after an empty part with
    // the other width, and once switching an 8-bit string to 16-bit characters.
    struct Piece { std::u16string text; bool wide; };
    const Piece pieces[] = {{u"alpha", false}, {u"\u4e2d\u6587\u5b57", true}, {u"omega!", false}};
    std::vector<std::u16string> expected;
    for (const Piece& p : pieces) expected.push_back(p.text);
    for (int style = 0; style < 3; ++style) {
        for (std::size_t piece = 0; piece < 3; ++piece) {
            for (std::size_t cutAt = 0; cutAt <= pieces[piece].text.size(); ++cutAt) {
                SCOPED_TRACE("style " + std::to_string(style) + " string " + std::to_string(piece) + " cut after " +
                             std::to_string(cutAt) + " characters");
                std::vector<std::vector<std::uint8_t>> parts(1, {3, 0, 0, 0, 3, 0, 0, 0});
                for (std::size_t k = 0; k < 3; ++k) {
                    const Piece& p = pieces[k];
                    auto put = [&](std::vector<std::uint8_t>& out, std::size_t from, std::size_t to, bool wide) {
                        for (std::size_t i = from; i < to; ++i) {
                            out.push_back(static_cast<std::uint8_t>(p.text[i]));
                            if (wide) out.push_back(static_cast<std::uint8_t>(p.text[i] >> 8));
                        }
                    };
                    parts.back().insert(parts.back().end(), {static_cast<std::uint8_t>(p.text.size()), 0,
                                                             static_cast<std::uint8_t>(p.wide ? 1 : 0)});
                    if (k != piece) {
                        put(parts.back(), 0, p.text.size(), p.wide);
                        continue;
                    }
                    put(parts.back(), 0, cutAt, p.wide);
                    if (cutAt == p.text.size()) {  // between strings: no flag byte
                        parts.emplace_back();
                        continue;
                    }
                    const bool later = style == 2 ? true : p.wide;
                    if (style == 1) parts.push_back({static_cast<std::uint8_t>(p.wide ? 0 : 1)});
                    parts.push_back({static_cast<std::uint8_t>(later ? 1 : 0)});
                    put(parts.back(), cutAt, p.text.size(), later);
                }
                const std::vector<char> stream = SstStream(parts);
                xls::Workbook::SharedStringTable sst;
                ASSERT_EQ(sst.ReadFrom(stream.data(), stream.size()), stream.size());
                EXPECT_TRUE(sst.complete);
                EXPECT_EQ(Strings(sst.strings), expected);
            }
        }
    }
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

TEST(Workbook, RecordsNotUnderstoodKeepTheirPlaces)
{
    // BOF, CODEPAGE, WINDOW1, DATEMODE, FONT, FORMAT, XF, STYLE, BOUNDSHEET, COUNTRY, SST, EXTSST, EOF
    const std::vector<std::uint8_t> bof = {0, 6, 5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0};
    const std::vector<std::uint8_t> font = {200, 0, 0, 0, 0xFF, 0x7F, 0x90, 1, 0, 0, 0, 0, 0, 0, 1, 0, 'A'};
    const std::vector<std::uint8_t> format = {0xA4, 0, 3, 0, 0, 'y', 'y', 'y'};
    const std::vector<std::uint8_t> xf(20, 0), window1(18, 0), style = {0, 0x80, 0, 0xFF};
    const std::vector<std::uint8_t> sheet = {0, 0, 0, 0, 0, 0, 1, 0, 'S'};
    const std::vector<char> stream = Records({{0x0809, bof}, {0x0042, {0xE4, 0x04}}, {0x003D, window1},
                                              {0x0022, {1, 0}}, {0x0031, font}, {0x041E, format}, {0x00E0, xf},
                                              {0x0293, style}, {0x0085, sheet}, {0x008C, {1, 0, 1, 0}},
                                              {0x00FC, {0, 0, 0, 0, 0, 0, 0, 0}}, {0x00FF, {8, 0}}, {0x000A, {}}});
    xls::Workbook book;
    ASSERT_EQ(book.Read(stream.data(), stream.size()), stream.size());
    EXPECT_EQ(book.others.size(), 4u);
    std::vector<char> out(book.RecordSize());
    ASSERT_EQ(book.Write(out.data(), out.size()), out.size());
    EXPECT_EQ(Headers(out, true), Headers(stream, true));
    EXPECT_EQ(out, stream);  // the kept records byte for byte, the others as they were read
    // With strings added, the ExtSST read is rebuilt: each bucket of 8 strings points at its
    // first string's character count in the stream.
    for (int i = 0; i < 100; ++i) {
        book.sst.strings.push_back(u"s" + std::u16string(static_cast<std::size_t>(i), u'a'));
        book.sst.wide.push_back(false);
    }
    book.AdjustExtSSTPositions(book.SharedStringTableOffset());
    ASSERT_EQ(book.extSST.buckets.size(), 13u);
    out.resize(book.RecordSize());
    ASSERT_EQ(book.Write(out.data(), out.size()), out.size());
    for (std::size_t k = 0; k < book.extSST.buckets.size(); ++k) {
        const std::size_t at = book.extSST.buckets[k].streamPosition;
        EXPECT_EQ(xls::biff::U16(reinterpret_cast<const std::uint8_t*>(out.data() + at)), 1 + 8 * k) << k;
    }
}

TEST(Worksheet, RecordsNotUnderstoodAreKeptBeforeAndAfterTheCells)
{
    const std::vector<std::uint8_t> bof = {0, 6, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0};
    const std::vector<std::uint8_t> colinfo = {0, 0, 0, 0, 0, 0x20, 15, 0, 0, 0, 0, 0};
    const std::vector<std::uint8_t> number = {0, 0, 0, 0, 21, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
    const std::vector<std::uint8_t> row = {0, 0, 0, 0, 1, 0, 0x2C, 1, 0, 0, 0, 0, 0xC0, 0x01, 15, 0};
    const std::vector<std::uint8_t> merged = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0};
    const std::vector<char> stream = Records({{0x0809, bof}, {0x0055, {8, 0}}, {0x007D, colinfo},
                                              {0x0200, std::vector<std::uint8_t>(14, 0)}, {0x0208, row},
                                              {0x0203, number}, {0x001C, {1, 2, 3}}, {0x023E, std::vector<std::uint8_t>(18, 0)},
                                              {0x00E5, merged}, {0x000A, {}}});
    struct Sink : xls::CellSink {
        void Integer(std::uint16_t, std::uint16_t, std::uint16_t, std::int32_t) override {}
        void Double(std::uint16_t r, std::uint16_t c, std::uint16_t f, double v) override { seen.push_back({r, c, f, v}); }
        void Text(std::uint16_t, std::uint16_t, std::uint16_t, const std::u16string&, bool) override {}
        struct Value { std::uint16_t row, col, xf; double value; };
        std::vector<Value> seen;
    } sink;
    xls::Worksheet sheet;
    ASSERT_EQ(sheet.Read(stream.data(), stream.size(), &sink), stream.size());
    ASSERT_EQ(sink.seen.size(), 1u);
    EXPECT_EQ(sink.seen[0].xf, 21);
    EXPECT_EQ(sink.seen[0].value, 1.0);
    ASSERT_EQ(sheet.rowFormats.count(0), 1u);
    EXPECT_EQ(sheet.rowFormats[0].height, 300);
    ASSERT_EQ(sheet.head.size(), 2u);
    ASSERT_EQ(sheet.tail.size(), 2u);
    EXPECT_EQ(sheet.window2At, 1u);  // the note stood before the Window2, the merged cells after
    sheet.AdjustDBCellPositions(1000);
    EXPECT_EQ(sheet.index.defColWidthPosition, 1000u + 20 + 20);  // after the BOF and the Index
    std::vector<char> out(sheet.RecordSize());
    ASSERT_EQ(sheet.Write(out.data(), out.size()), out.size());
    EXPECT_EQ(Headers(out, true), (std::vector<std::uint16_t>{0x0809, 0x020B, 0x0055, 0x007D, 0x0200, 0x001C, 0x023E,
                                                      0x00E5, 0x000A}));
}

}  // namespace
