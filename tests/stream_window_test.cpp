// A workbook stream read from its file in parts must read as the same stream held whole: the
// window's bytes and the record chains it holds. Sheets and whole workbooks read through it are
// compared with their bytes by the stream-parts check of the fuzz regression test.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "fuzz/stream_parts_input.h"
#include "support/temp_folder.h"
#include "xls/detail/stream_window.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

using stream_parts::WriteFile;

// Records of random codes and lengths, a fifth of them CONTINUE parts, the last one cut short.
Bytes RecordStream(std::mt19937& random)
{
    Bytes stream;
    for (int i = 0; i < 400; ++i) {
        const std::uint16_t code = random() % 5 == 0 ? 0x003C : static_cast<std::uint16_t>(random() % 0x300);
        const std::size_t length = random() % 10 == 0 ? 2000 + random() % 6000 : random() % 120;
        stream.push_back(static_cast<std::uint8_t>(code));
        stream.push_back(static_cast<std::uint8_t>(code >> 8));
        stream.push_back(static_cast<std::uint8_t>(length));
        stream.push_back(static_cast<std::uint8_t>(length >> 8));
        for (std::size_t k = 0; k < length; ++k) stream.push_back(static_cast<std::uint8_t>(random()));
    }
    stream.resize(stream.size() - 3);
    return stream;
}

// Where the record at `at` ends with the CONTINUE parts after it; 0 when one runs past the end.
std::size_t ChainEnd(const Bytes& stream, std::size_t at)
{
    std::size_t end = at;
    for (bool first = true; end + 4 <= stream.size(); first = false) {
        if (!first && (stream[end] | (stream[end + 1] << 8)) != 0x003C) break;
        const std::size_t next = end + 4 + (stream[end + 2] | (stream[end + 3] << 8));
        if (next > stream.size()) return 0;
        end = next;
    }
    return end == at ? 0 : end;
}

TEST(StreamWindow, AFileReadInPartsHoldsWhatMemoryHolds)
{
    std::mt19937 random(5);
    const Bytes stream = RecordStream(random);
    const Bytes prefix(37, 0xEE);  // the stream starts inside the file
    Bytes file = prefix;
    file.insert(file.end(), stream.begin(), stream.end());
    ovtest::TempFolder folder;
    WriteFile(folder.File("stream.bin"), file);

    for (const std::size_t part : {std::size_t{1}, std::size_t{3}, std::size_t{64}, std::size_t{5000}, std::size_t{1} << 20}) {
        SCOPED_TRACE(part);
        orderview::FileReader reader(orderview::FilePath(folder.File("stream.bin")));
        ASSERT_TRUE(reader.IsOpen());
        xls::StreamWindow whole(stream.data(), stream.size());
        xls::StreamWindow parts(reader, prefix.size(), stream.size(), part);
        std::size_t at = 0, records = 0;
        while (whole.Hold(at, 4)) {
            ASSERT_TRUE(parts.Hold(at, 4)) << at;
            const std::size_t length = whole.At(at)[2] | (whole.At(at)[3] << 8);
            const std::size_t end = ChainEnd(stream, at);
            ASSERT_EQ(whole.HoldRecordChain(at), end) << at;
            ASSERT_EQ(parts.HoldRecordChain(at), end) << at;
            // What a record reader is then shown: the chain and the header after it.
            const std::size_t shown = std::min(whole.HeldFrom(at), (end ? end : at) + 4 - at);
            ASSERT_GE(parts.HeldFrom(at), shown) << at;
            ASSERT_EQ(0, std::memcmp(whole.At(at), parts.At(at), shown)) << at;
            at += 4 + length;
            ++records;
        }
        EXPECT_GE(records, 399u);  // the walk went through (the last header may be cut)
        // Past the end: refused, with the stream's last bytes held.
        const std::size_t last = stream.size() - 10;
        EXPECT_FALSE(parts.Hold(last, 11));
        ASSERT_EQ(parts.HeldFrom(last), 10u);
        EXPECT_EQ(0, std::memcmp(parts.At(last), stream.data() + last, 10));
        // Back to the start: read again.
        ASSERT_TRUE(parts.Hold(0, 100));
        EXPECT_EQ(0, std::memcmp(parts.At(0), stream.data(), 100));
    }
}

TEST(StreamWindow, AFileShorterThanTheStreamFailsTheHold)
{
    ovtest::TempFolder folder;
    WriteFile(folder.File("short.bin"), Bytes(1000, 7));
    orderview::FileReader reader(orderview::FilePath(folder.File("short.bin")));
    xls::StreamWindow window(reader, 0, 5000, 256);
    EXPECT_TRUE(window.Hold(0, 256));
    EXPECT_FALSE(window.Hold(900, 200));  // the file ends at 1000
    EXPECT_FALSE(window.Hold(4000, 4));
    EXPECT_EQ(window.HoldRecordChain(4000), 0u);
    EXPECT_TRUE(window.Hold(0, 4));  // the window recovers
}

}  // namespace
