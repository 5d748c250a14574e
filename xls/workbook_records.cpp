#include "xls/workbook_records.h"

#include <algorithm>
#include <cstring>

namespace xls {

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;
using biff::WriteFields;

// --- Window1 ---
Workbook::Window1::Window1() : Record(0x003D) {}

std::size_t Workbook::Window1::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    Cursor c(data.data(), data.size());
    left = c.U16();
    top = c.U16();
    width = c.U16();
    height = c.U16();
    options = c.U16();
    activeSheet = c.U16();
    firstVisibleTab = c.U16();
    selectedTabs = c.U16();
    tabRatio = c.U16();
    return consumed;
}

std::size_t Workbook::Window1::DataSize() { return 18; }
std::size_t Workbook::Window1::RecordSize() { return 22; }

std::size_t Workbook::Window1::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        for (std::uint16_t v : {left, top, width, height, options, activeSheet, firstVisibleTab, selectedTabs, tabRatio})
            b.U16(v);
    });
}

// --- Font ---
Workbook::Font::Font() : Record(0x0031) {}

std::size_t Workbook::Font::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    Cursor c(data.data(), data.size());
    height = c.U16();
    options = c.U16();
    colorIndex = c.U16();
    weight = c.U16();
    escapement = c.U16();
    underline = c.U8();
    family = c.U8();
    charset = c.U8();
    reserved = c.U8();
    const std::uint8_t length = c.U8();
    const bool wideName = (c.U8() & 1) != 0;
    name = c.Chars(length, wideName);
    return consumed;
}

std::size_t Workbook::Font::DataSize() { return 16 + name.size() * (biff::FitsCompressed(name) ? 1 : 2); }
std::size_t Workbook::Font::RecordSize() { return 4 + DataSize(); }

std::size_t Workbook::Font::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        for (std::uint16_t v : {height, options, colorIndex, weight, escapement}) b.U16(v);
        for (std::uint8_t v : {underline, family, charset, reserved}) b.U8(v);
        const bool wide = !biff::FitsCompressed(name);
        b.U8(static_cast<std::uint8_t>(std::min<std::size_t>(name.size(), 255)));
        b.U8(wide ? 1 : 0);
        b.Chars(name.substr(0, 255), wide);
    });
}

// --- XF ---
Workbook::XF::XF() : Record(0x00E0) {}

std::size_t Workbook::XF::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    Cursor c(data.data(), data.size());
    fontIndex = c.U16();
    formatIndex = c.U16();
    std::memset(attributes, 0, sizeof attributes);
    if (data.size() > 4) std::memcpy(attributes, data.data() + 4, std::min(sizeof attributes, data.size() - 4));
    return consumed;
}

std::size_t Workbook::XF::DataSize() { return 20; }
std::size_t Workbook::XF::RecordSize() { return 24; }

std::size_t Workbook::XF::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(fontIndex);
        b.U16(formatIndex);
        b.Bytes(attributes, sizeof attributes);
    });
}

// --- Style ---
Workbook::Style::Style() : Record(0x0293) {}

std::size_t Workbook::Style::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    Cursor c(data.data(), data.size());
    xfIndex = c.U16();
    name.clear();
    if (xfIndex & 0x8000) {
        builtinId = c.U8();
        level = c.U8();
    } else {
        const std::uint16_t length = c.U16();
        wideName = (c.U8() & 1) != 0;
        name = c.Chars(length, wideName);
    }
    return consumed;
}

std::size_t Workbook::Style::DataSize()
{
    return (xfIndex & 0x8000) ? 4 : 5 + name.size() * (biff::FitsCompressed(name) ? 1 : 2);
}

std::size_t Workbook::Style::RecordSize() { return 4 + DataSize(); }

std::size_t Workbook::Style::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(xfIndex);
        if (xfIndex & 0x8000) {
            b.U8(builtinId);
            b.U8(level);
        } else {
            const bool wide = !biff::FitsCompressed(name);
            b.U16(static_cast<std::uint16_t>(name.size()));
            b.U8(wide ? 1 : 0);
            b.Chars(name, wide);
        }
    });
}

// --- BoundSheet ---
Workbook::BoundSheet::BoundSheet() : Record(0x0085) {}

std::size_t Workbook::BoundSheet::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    Cursor c(data.data(), data.size());
    streamPosition = c.U32();
    visibility = c.U8();
    sheetType = c.U8();
    const std::uint8_t length = c.U8();
    const bool wide = (c.U8() & 1) != 0;
    name = c.Chars(length, wide);
    return consumed;
}

std::size_t Workbook::BoundSheet::DataSize()
{
    return 8 + std::min<std::size_t>(name.size(), 255) * (biff::FitsCompressed(name) ? 1 : 2);
}

std::size_t Workbook::BoundSheet::RecordSize() { return 4 + DataSize(); }

std::size_t Workbook::BoundSheet::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U32(streamPosition);
        b.U8(visibility);
        b.U8(sheetType);
        const bool wide = !biff::FitsCompressed(name);
        b.U8(static_cast<std::uint8_t>(std::min<std::size_t>(name.size(), 255)));
        b.U8(wide ? 1 : 0);
        b.Chars(name.substr(0, 255), wide);
    });
}

// --- SharedStringTable ---
Workbook::SharedStringTable::SharedStringTable() : Record(0x00FC) {}

std::size_t Workbook::SharedStringTable::Read(const char* stream)
{
    const std::size_t consumed = Record::Read(stream);
    strings.clear();
    wide.clear();
    laidOut_ = false;
    complete = true;
    Cursor c(data.data(), data.size());
    totalStrings = c.U32();
    const std::uint32_t unique = c.U32();
    // A string's characters may run on into the next CONTINUE part, which then starts with a
    // flag byte giving the width of the characters that follow.
    std::size_t boundary = 0;
    auto nextBoundary = [&](std::size_t at) {
        while (boundary < continueIndices.size() && continueIndices[boundary] <= at) ++boundary;
        return boundary < continueIndices.size() ? continueIndices[boundary] : data.size();
    };
    for (std::uint32_t i = 0; i < unique; ++i) {
        if (c.left() < 3) {
            complete = false;  // the stored count runs past the data
            break;
        }
        std::size_t remaining = c.U16();
        const std::uint8_t flags = c.U8();
        bool sixteen = (flags & 1) != 0, anySixteen = sixteen;
        const std::uint16_t runs = (flags & 0x08) ? c.U16() : 0;
        const std::uint32_t extSize = (flags & 0x04) ? c.U32() : 0;
        std::u16string text;
        text.reserve(remaining);
        while (remaining > 0 && c.ok()) {
            const std::size_t limit = nextBoundary(c.at());
            const std::size_t fit = (limit > c.at() ? limit - c.at() : 0) / (sixteen ? 2 : 1);
            const std::size_t take = std::min(remaining, fit);
            text += c.Chars(take, sixteen);
            remaining -= take;
            if (remaining == 0) break;
            if (c.at() != limit || limit == data.size()) {  // the characters do not reach a part boundary
                complete = false;
                break;
            }
            sixteen = (c.U8() & 1) != 0;
            anySixteen = anySixteen || sixteen;
        }
        c.Skip(4u * runs);
        c.Skip(extSize);
        if (!c.ok() || remaining > 0) {
            complete = false;
            break;
        }
        strings.push_back(std::move(text));
        wide.push_back(anySixteen);
    }
    return consumed;
}

void Workbook::SharedStringTable::Layout()
{
    data.clear();
    continueIndices.clear();
    stringOffsets.clear();
    stringOffsets.reserve(strings.size());
    Builder b(data);
    b.U32(totalStrings);
    b.U32(static_cast<std::uint32_t>(strings.size()));
    std::size_t partStart = 0;
    auto cut = [&]() {
        continueIndices.push_back(data.size());
        partStart = data.size();
    };
    for (std::size_t i = 0; i < strings.size(); ++i) {
        const std::u16string& text = strings[i];
        const bool sixteen = i < wide.size() ? wide[i] || !biff::FitsCompressed(text) : !biff::FitsCompressed(text);
        const std::size_t unit = sixteen ? 2 : 1;
        // Keep a string's header and first character in one part.
        if (data.size() - partStart + 3 + (text.empty() ? 0 : unit) > kMaxRecordData) cut();
        stringOffsets.push_back(data.size());
        b.U16(static_cast<std::uint16_t>(std::min<std::size_t>(text.size(), 0xFFFF)));
        b.U8(sixteen ? 1 : 0);
        std::size_t done = 0;
        const std::size_t length = std::min<std::size_t>(text.size(), 0xFFFF);
        while (done < length) {
            const std::size_t space = (kMaxRecordData - (data.size() - partStart)) / unit;
            const std::size_t take = std::min(length - done, space);
            b.Chars(text.substr(done, take), sixteen);
            done += take;
            if (done < length) {
                cut();
                b.U8(sixteen ? 1 : 0);
            }
        }
    }
    dataSize = data.size();
    laidOut_ = true;
}

std::size_t Workbook::SharedStringTable::DataSize()
{
    if (!laidOut_) Layout();
    return data.size();
}

std::size_t Workbook::SharedStringTable::RecordSize()
{
    if (!laidOut_) Layout();
    return data.size() + 4 * (continueIndices.size() + 1);
}

std::size_t Workbook::SharedStringTable::Write(char* stream)
{
    if (!laidOut_) Layout();
    return WriteData(stream);
}

// --- ExtSST ---
Workbook::ExtSST::ExtSST() : Record(0x00FF) {}
std::size_t Workbook::ExtSST::DataSize() { return 2 + 8 * buckets.size(); }
std::size_t Workbook::ExtSST::RecordSize() { return PartsSize(DataSize()); }

std::size_t Workbook::ExtSST::Write(char* stream)
{
    return WriteFields(*this, stream, [this](Builder& b) {
        b.U16(stringsPerBucket);
        for (const Bucket& bucket : buckets) {
            b.U32(bucket.streamPosition);
            b.U16(bucket.recordOffset);
            b.U16(0);
        }
    });
}

// --- Workbook ---
Workbook::Workbook() { Reset(); }

void Workbook::Reset()
{
    bof = BOF();
    bof.type = 0x0005;
    window1 = Window1();
    fonts.assign(4, Font());
    // The default formats: 15 style formats, the cell format, and the formats of the five
    // built-in number styles.
    static const std::uint8_t kStyle0[16] = {0xF5, 0xFF, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kStyleN[16] = {0xF5, 0xFF, 0x20, 0, 0, 0xF4, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kCell[16] = {0x01, 0x00, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kNumber[16] = {0xF5, 0xFF, 0x20, 0, 0, 0xF8, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    xfs.assign(21, XF());
    for (std::size_t i = 0; i < xfs.size(); ++i) {
        const std::uint8_t* attributes = i == 0 ? kStyle0 : i < 15 ? kStyleN : i == 15 ? kCell : kNumber;
        std::memcpy(xfs[i].attributes, attributes, 16);
        xfs[i].fontIndex = (i == 1 || i == 2) ? 1 : (i == 3 || i == 4) ? 2 : i >= 16 ? 1 : 0;
    }
    const std::uint16_t numberFormats[] = {0x2B, 0x29, 0x2C, 0x2A, 0x09};
    for (std::size_t i = 0; i < 5; ++i) xfs[16 + i].formatIndex = numberFormats[i];
    // Built-in styles: Comma, Comma [0], Currency, Currency [0], Normal, Percent.
    const std::uint16_t styleXF[] = {0x8010, 0x8011, 0x8012, 0x8013, 0x8000, 0x8014};
    const std::uint8_t styleId[] = {3, 6, 4, 7, 0, 5};
    styles.assign(6, Style());
    for (std::size_t i = 0; i < 6; ++i) {
        styles[i].xfIndex = styleXF[i];
        styles[i].builtinId = styleId[i];
    }
    boundSheets.assign(1, BoundSheet());
    sst = SharedStringTable();
    extSST = ExtSST();
}

std::size_t Workbook::Read(const char* stream, std::size_t size)
{
    fonts.clear();
    xfs.clear();
    styles.clear();
    boundSheets.clear();
    sst = SharedStringTable();
    std::size_t at = 0;
    bool first = true;
    while (at < size) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(stream + at);
        if (size - at < 4) return 0;
        const std::uint16_t code = biff::U16(p);
        Record* target = nullptr;
        Record scratch;
        switch (code) {
        case 0x0809: target = &bof; break;
        case 0x003D: target = &window1; break;
        case 0x0031: fonts.emplace_back(); target = &fonts.back(); break;
        case 0x00E0: xfs.emplace_back(); target = &xfs.back(); break;
        case 0x0293: styles.emplace_back(); target = &styles.back(); break;
        case 0x0085: boundSheets.emplace_back(); target = &boundSheets.back(); break;
        case 0x00FC: target = &sst; break;
        case 0x000A: target = &eof; break;
        default: target = &scratch; break;  // not understood: read and dropped
        }
        if (first && code != 0x0809) return 0;  // the globals start with a BOF
        first = false;
        const std::size_t consumed = target->ReadFrom(stream + at, size - at);
        if (consumed == 0) return 0;
        at += consumed;
        if (code == 0x000A) return at;
    }
    return 0;  // no EOF
}

std::size_t Workbook::SharedStringTableOffset()
{
    std::size_t at = bof.RecordSize() + window1.RecordSize();
    for (auto& r : fonts) at += r.RecordSize();
    for (auto& r : xfs) at += r.RecordSize();
    for (auto& r : styles) at += r.RecordSize();
    for (auto& r : boundSheets) at += r.RecordSize();
    return at;
}

std::size_t Workbook::RecordSize()
{
    return SharedStringTableOffset() + sst.RecordSize() + extSST.RecordSize() + eof.RecordSize();
}

void Workbook::AdjustExtSSTPositions(std::size_t sstStreamPosition)
{
    sst.Layout();
    const std::size_t count = sst.strings.size();
    extSST.stringsPerBucket = static_cast<std::uint16_t>(std::max<std::size_t>(8, (count + 127) / 128));
    extSST.buckets.clear();
    std::size_t part = 0, partStart = 0;
    for (std::size_t i = 0; i < count; i += extSST.stringsPerBucket) {
        const std::size_t offset = sst.stringOffsets[i];
        while (part < sst.continueIndices.size() && sst.continueIndices[part] <= offset) partStart = sst.continueIndices[part++];
        // Each part before this one added a 4-byte header to the stream.
        const std::size_t streamPosition = sstStreamPosition + 4 * (part + 1) + offset;
        extSST.buckets.push_back({static_cast<std::uint32_t>(streamPosition), static_cast<std::uint16_t>(4 + offset - partStart)});
    }
}

std::size_t Workbook::Write(char* stream)
{
    std::size_t at = 0;
    at += bof.Write(stream + at);
    at += window1.Write(stream + at);
    for (auto& r : fonts) at += r.Write(stream + at);
    for (auto& r : xfs) at += r.Write(stream + at);
    for (auto& r : styles) at += r.Write(stream + at);
    for (auto& r : boundSheets) at += r.Write(stream + at);
    at += sst.Write(stream + at);
    at += extSST.Write(stream + at);
    at += eof.Write(stream + at);
    return at;
}

}  // namespace xls
