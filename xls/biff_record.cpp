#include "xls/biff_record.h"

#include <algorithm>
#include <cstring>

namespace xls {

namespace biff {

bool Cursor::Skip(std::size_t n)
{
    if (n > left()) {
        ok_ = false;
        at_ = size_;
        return false;
    }
    at_ += n;
    return true;
}

std::u16string Cursor::Chars(std::size_t count, bool wide)
{
    std::u16string text;
    AppendChars(text, count, wide);
    return text;
}

void Cursor::AppendChars(std::u16string& text, std::size_t count, bool wide)
{
    const std::size_t unit = wide ? 2 : 1;
    if (count > left() / unit) {
        ok_ = false;
        count = left() / unit;
    }
    const std::size_t start = text.size();
    text.resize(start + count);
    char16_t* out = &text[0] + start;
    for (std::size_t i = 0; i < count; ++i)
        out[i] = wide ? static_cast<char16_t>(biff::U16(data_ + at_ + 2 * i)) : static_cast<char16_t>(data_[at_ + i]);
    at_ += count * unit;
}

void Builder::Chars(const std::u16string& text, bool wide)
{
    for (char16_t c : text) {
        out_.push_back(static_cast<std::uint8_t>(c));
        if (wide) out_.push_back(static_cast<std::uint8_t>(c >> 8));
    }
}

bool FitsCompressed(std::u16string_view text)
{
    for (char16_t c : text)
        if (c > 0xFF) return false;
    return true;
}

void ContinuedChars(Cursor& c, std::size_t count, bool wide, const std::vector<std::size_t>& cuts, bool& anyWide,
                    std::u16string& text)
{
    text.reserve(text.size() + std::min<std::size_t>(count, c.left()));
    std::size_t k = 0;
    while (count > 0 && c.ok()) {
        while (k < cuts.size() && cuts[k] < c.at()) ++k;
        if (k < cuts.size() && cuts[k] == c.at()) {
            // On a part boundary: the flag byte of the part. A zero-length part has none, so
            // equal boundaries are passed together.
            while (k < cuts.size() && cuts[k] == c.at()) ++k;
            if (c.left() == 0) break;
            wide = (c.U8() & 1) != 0;
            continue;
        }
        const std::size_t end = k < cuts.size() ? cuts[k] : c.at() + c.left();
        const std::size_t unit = wide ? 2 : 1;
        const std::size_t take = std::min(count, (end - c.at()) / unit);
        if (take == 0) {
            // A byte left over before the next part (half a 16-bit unit): the part's characters
            // end there, as other readers take it. With no part after it, characters are missing.
            if (k >= cuts.size() || !c.Skip(end - c.at())) break;
            continue;
        }
        c.AppendChars(text, take, wide);
        count -= take;
        anyWide = anyWide || wide;
    }
    if (count > 0) c.Skip(c.left() + 1);  // characters missing: the cursor fails
}

void AppendContinuedChars(std::vector<std::uint8_t>& data, std::vector<std::size_t>& cuts, std::size_t& partStart,
                          std::u16string_view text, bool wide)
{
    Builder b(data);
    const std::size_t unit = wide ? 2 : 1;
    std::size_t done = 0;
    while (done < text.size()) {
        std::size_t space = (kMaxRecordData - (data.size() - partStart)) / unit;
        if (space == 0) {
            cuts.push_back(data.size());
            partStart = data.size();
            b.U8(wide ? 1 : 0);
            continue;
        }
        const std::size_t take = std::min(text.size() - done, space);
        for (std::size_t i = done; i < done + take; ++i) {
            data.push_back(static_cast<std::uint8_t>(text[i]));
            if (wide) data.push_back(static_cast<std::uint8_t>(text[i] >> 8));
        }
        done += take;
    }
}

}  // namespace biff

Record::~Record() = default;

std::size_t Record::ReadFrom(const char* stream, std::size_t available)
{
    available_ = available;
    const std::size_t consumed = Read(stream);
    available_ = static_cast<std::size_t>(-1);
    return consumed;
}

std::size_t Record::Read(const char* stream)
{
    const auto* p = reinterpret_cast<const std::uint8_t*>(stream);
    data.clear();
    continueIndices.clear();
    if (available_ < 4) return 0;
    code = biff::U16(p);
    std::size_t size = biff::U16(p + 2);
    if (4 + size > available_) return 0;
    // Sized once: a shared string table can run to thousands of CONTINUE parts.
    std::size_t joined = size;
    for (std::size_t at = 4 + size; at + 4 <= available_ && biff::U16(p + at) == kContinue;) {
        const std::size_t part = biff::U16(p + at + 2);
        joined += part;
        at += 4 + part;
    }
    data.reserve(joined);
    data.assign(p + 4, p + 4 + size);
    std::size_t at = 4 + size;
    // Join the CONTINUE records that follow, remembering each boundary.
    while (at + 4 <= available_ && biff::U16(p + at) == kContinue) {
        const std::size_t part = biff::U16(p + at + 2);
        if (at + 4 + part > available_) return 0;
        continueIndices.push_back(data.size());
        data.insert(data.end(), p + at + 4, p + at + 4 + part);
        at += 4 + part;
    }
    dataSize = data.size();
    recordSize = at;
    return at;
}

void Record::Serialize() {}

std::size_t Record::Emit(std::uint8_t* out) const
{
    const std::size_t size = data.size();
    std::size_t written = 0, from = 0, k = 0;
    do {
        // The next kept boundary past this part's start, else the end; never more than a part
        // may hold.
        while (k < continueIndices.size() && continueIndices[k] <= from) ++k;
        std::size_t to = k < continueIndices.size() && continueIndices[k] < size ? continueIndices[k] : size;
        if (to - from > kMaxRecordData) to = from + kMaxRecordData;
        if (out) {
            biff::Put16(out + written, written == 0 ? code : kContinue);
            biff::Put16(out + written + 2, static_cast<std::uint16_t>(to - from));
            if (to > from) std::memcpy(out + written + 4, data.data() + from, to - from);
        }
        written += 4 + (to - from);
        from = to;
    } while (from < size);
    return written;
}

std::size_t Record::DataSize()
{
    Serialize();
    return data.size();
}

std::size_t Record::RecordSize()
{
    Serialize();
    return Emit(nullptr);
}

std::size_t Record::Write(char* stream, std::size_t capacity)
{
    Serialize();
    if (Emit(nullptr) > capacity) return 0;
    return Emit(reinterpret_cast<std::uint8_t*>(stream));
}

std::size_t Record::Write(char* stream) { return Write(stream, static_cast<std::size_t>(-1)); }

BOF::BOF() : Record(kBOF) {}

std::size_t BOF::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    biff::Cursor c(data.data(), data.size());
    version = c.U16();
    type = c.U16();
    buildIdentifier = c.U16();
    buildYear = c.U16();
    fileHistoryFlags = c.U32();
    lowestExcelVersion = c.U32();
    return consumed;
}

void BOF::Serialize()
{
    biff::Builder b = biff::Fields(data, continueIndices);
    b.U16(version);
    b.U16(type);
    b.U16(buildIdentifier);
    b.U16(buildYear);
    b.U32(fileHistoryFlags);
    b.U32(lowestExcelVersion);
}

Eof::Eof() : Record(kEOF) {}
std::size_t Eof::Read(const char* stream) { return Record::Read(stream); }
void Eof::Serialize() { biff::Fields(data, continueIndices); }

}  // namespace xls
