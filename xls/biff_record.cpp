#include "xls/biff_record.h"

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
    const std::size_t unit = wide ? 2 : 1;
    if (count > left() / unit) {
        ok_ = false;
        count = left() / unit;
    }
    std::u16string text(count, u'\0');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = wide ? static_cast<char16_t>(biff::U16(data_ + at_ + 2 * i)) : static_cast<char16_t>(data_[at_ + i]);
    at_ += count * unit;
    return text;
}

void Builder::Chars(const std::u16string& text, bool wide)
{
    for (char16_t c : text) {
        out_.push_back(static_cast<std::uint8_t>(c));
        if (wide) out_.push_back(static_cast<std::uint8_t>(c >> 8));
    }
}

bool FitsCompressed(const std::u16string& text)
{
    for (char16_t c : text)
        if (c > 0xFF) return false;
    return true;
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

std::size_t Record::DataSize() { return data.size(); }

std::size_t Record::PartsSize(std::size_t size) const
{
    if (!continueIndices.empty()) return size + 4 * (continueIndices.size() + 1);
    const std::size_t parts = size == 0 ? 1 : (size + kMaxRecordData - 1) / kMaxRecordData;
    return size + 4 * parts;
}

std::size_t Record::RecordSize() { return PartsSize(DataSize()); }

std::size_t Record::WriteData(char* stream) const
{
    auto* out = reinterpret_cast<std::uint8_t*>(stream);
    std::vector<std::size_t> cuts = continueIndices;
    if (cuts.empty())
        for (std::size_t at = kMaxRecordData; at < data.size(); at += kMaxRecordData) cuts.push_back(at);
    std::size_t written = 0, from = 0;
    for (std::size_t i = 0; i <= cuts.size(); ++i) {
        const std::size_t to = i < cuts.size() ? cuts[i] : data.size();
        biff::Put16(out + written, i == 0 ? code : kContinue);
        biff::Put16(out + written + 2, static_cast<std::uint16_t>(to - from));
        if (to > from) std::memcpy(out + written + 4, data.data() + from, to - from);
        written += 4 + (to - from);
        from = to;
    }
    return written;
}

std::size_t Record::Write(char* stream) { return WriteData(stream); }

BOF::BOF() : Record(0x0809) {}

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

std::size_t BOF::DataSize() { return 16; }
std::size_t BOF::RecordSize() { return 20; }

std::size_t BOF::Write(char* stream)
{
    data.clear();
    continueIndices.clear();
    biff::Builder b(data);
    b.U16(version);
    b.U16(type);
    b.U16(buildIdentifier);
    b.U16(buildYear);
    b.U32(fileHistoryFlags);
    b.U32(lowestExcelVersion);
    return WriteData(stream);
}

Eof::Eof() : Record(0x000A) {}
std::size_t Eof::Read(const char* stream) { return Record::Read(stream); }
std::size_t Eof::DataSize() { return 0; }
std::size_t Eof::RecordSize() { return 4; }

std::size_t Eof::Write(char* stream)
{
    data.clear();
    continueIndices.clear();
    return WriteData(stream);
}

}  // namespace xls
