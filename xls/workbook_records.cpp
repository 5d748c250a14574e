#include "xls/workbook_records.h"

#include <algorithm>
#include <cstring>

namespace xls {

namespace {
constexpr std::size_t kMaxNameLength = 255;  // font, style and sheet names
}  // namespace

using biff::Builder;
using biff::Cursor;
using biff::ReadFields;

// Only the shared string table continues its data in CONTINUE parts here; every other record
// of the globals keeps within one part, trimmed to what its fields may hold (names of at most
// 255 characters), so an oversized record read from a file is written back legal.

// --- Window1 ---
Workbook::Window1::Window1() : Record(kWindow1) {}

std::size_t Workbook::Window1::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        left = c.U16();
        top = c.U16();
        width = c.U16();
        height = c.U16();
        options = c.U16();
        activeSheet = c.U16();
        firstVisibleTab = c.U16();
        selectedTabs = c.U16();
        tabRatio = c.U16();
    });
}

void Workbook::Window1::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {left, top, width, height, options, activeSheet, firstVisibleTab, selectedTabs, tabRatio})
        b.U16(v);
}

// --- Font ---
Workbook::Font::Font() : Record(kFont) {}

std::size_t Workbook::Font::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
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
    });
}

void Workbook::Font::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    for (std::uint16_t v : {height, options, colorIndex, weight, escapement}) b.U16(v);
    for (std::uint8_t v : {underline, family, charset, reserved}) b.U8(v);
    const std::u16string shown = name.substr(0, kMaxNameLength);
    const bool wide = !biff::FitsCompressed(shown);
    b.U8(static_cast<std::uint8_t>(shown.size()));
    b.U8(wide ? 1 : 0);
    b.Chars(shown, wide);
}

// --- XF ---
Workbook::XF::XF() : Record(kXF) {}

std::size_t Workbook::XF::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        fontIndex = c.U16();
        formatIndex = c.U16();
        std::memset(attributes, 0, sizeof attributes);
        if (data.size() > 4) std::memcpy(attributes, data.data() + 4, std::min(sizeof attributes, data.size() - 4));
    });
}

void Workbook::XF::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(fontIndex);
    b.U16(formatIndex);
    b.Bytes(attributes, sizeof attributes);
}

// --- Style ---
Workbook::Style::Style() : Record(kStyle) {}

std::size_t Workbook::Style::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
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
    });
}

void Workbook::Style::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(xfIndex);
    if (xfIndex & 0x8000) {
        b.U8(builtinId);
        b.U8(level);
    } else {
        const std::u16string shown = name.substr(0, kMaxNameLength);
        const bool wide = !biff::FitsCompressed(shown);
        b.U16(static_cast<std::uint16_t>(shown.size()));
        b.U8(wide ? 1 : 0);
        b.Chars(shown, wide);
    }
}

// --- BoundSheet ---
Workbook::BoundSheet::BoundSheet() : Record(kBoundSheet) {}

std::size_t Workbook::BoundSheet::Read(const char* stream)
{
    return ReadFields(*this, stream, [this](Cursor& c) {
        streamPosition = c.U32();
        visibility = c.U8();
        sheetType = c.U8();
        const std::uint8_t length = c.U8();
        const bool wide = (c.U8() & 1) != 0;
        name = c.Chars(length, wide);
    });
}

void Workbook::BoundSheet::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U32(streamPosition);
    b.U8(visibility);
    b.U8(sheetType);
    const std::u16string shown = name.substr(0, kMaxNameLength);
    const bool wide = !biff::FitsCompressed(shown);
    b.U8(static_cast<std::uint8_t>(shown.size()));
    b.U8(wide ? 1 : 0);
    b.Chars(shown, wide);
}

// --- SharedStringTable ---
Workbook::SharedStringTable::SharedStringTable() : Record(kSST) {}

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
    // Each string takes 3 bytes or more, and each byte holds a character at most.
    strings.reserve(std::min<std::size_t>(unique, c.left() / 3), c.left());
    for (std::uint32_t i = 0; i < unique; ++i) {
        if (c.left() < 3) {
            complete = false;  // the stored count runs past the data
            break;
        }
        const std::uint16_t count = c.U16();
        const std::uint8_t flags = c.U8();
        const std::uint16_t runs = (flags & 0x08) ? c.U16() : 0;
        const std::uint32_t extSize = (flags & 0x04) ? c.U32() : 0;
        bool anyWide = false;
        biff::ContinuedChars(c, count, (flags & 1) != 0, continueIndices, anyWide, strings.Open());
        c.Skip(4u * runs);
        c.Skip(extSize);
        if (!c.ok()) {
            strings.Abandon();
            complete = false;
            break;
        }
        strings.Close();
        wide.push_back(anyWide);
    }
    // The strings hold the table now; its bytes are laid out again when it is written.
    std::vector<std::uint8_t>().swap(data);
    std::vector<std::size_t>().swap(continueIndices);
    return consumed;
}

void Workbook::SharedStringTable::Layout()
{
    continueIndices.clear();
    Builder b = biff::Fields(data, continueIndices);
    stringOffsets.clear();
    stringOffsets.reserve(strings.size());
    b.U32(totalStrings);
    b.U32(static_cast<std::uint32_t>(strings.size()));
    std::size_t partStart = 0;
    for (std::size_t i = 0; i < strings.size(); ++i) {
        const std::u16string_view text = strings[i];
        const bool sixteen = (i < wide.size() && wide[i]) || !biff::FitsCompressed(text);
        const std::size_t unit = sixteen ? 2 : 1;
        // Keep a string's header and first character in one part.
        if (data.size() - partStart + 3 + (text.empty() ? 0 : unit) > kMaxRecordData) {
            continueIndices.push_back(data.size());
            partStart = data.size();
        }
        stringOffsets.push_back(data.size());
        const std::size_t length = std::min<std::size_t>(text.size(), 0xFFFF);
        b.U16(static_cast<std::uint16_t>(length));
        b.U8(sixteen ? 1 : 0);
        biff::AppendContinuedChars(data, continueIndices, partStart,
                                   length == text.size() ? text : text.substr(0, length), sixteen);
    }
    dataSize = data.size();
    laidOut_ = true;
}

void Workbook::SharedStringTable::Serialize()
{
    if (!laidOut_) Layout();
}

// --- ExtSST ---
Workbook::ExtSST::ExtSST() : Record(kExtSST) {}

void Workbook::ExtSST::Serialize()
{
    Builder b = biff::Fields(data, continueIndices);
    b.U16(stringsPerBucket);
    // At most the buckets one record holds (a table of any size needs no more than 128).
    const std::size_t count = std::min(buckets.size(), (kMaxRecordData - 2) / 8);
    for (std::size_t i = 0; i < count; ++i) {
        b.U32(buckets[i].streamPosition);
        b.U16(buckets[i].recordOffset);
        b.U16(0);
    }
}

// --- Workbook ---
Workbook::Workbook() { Reset(); }

void Workbook::Reset()
{
    bof = BOF();
    bof.type = kGlobalsSubstream;
    window1 = Window1();
    fonts.assign(4, Font());
    // The default formats: 15 style formats, the cell format, and the formats of the five
    // built-in number styles.
    static const std::uint8_t kStyle0[16] = {0xF5, 0xFF, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kStyleN[16] = {0xF5, 0xFF, 0x20, 0, 0, 0xF4, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kCell[16] = {0x01, 0x00, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    static const std::uint8_t kNumberStyle[16] = {0xF5, 0xFF, 0x20, 0, 0, 0xF8, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0x20};
    xfs.assign(21, XF());
    for (std::size_t i = 0; i < xfs.size(); ++i) {
        const std::uint8_t* attributes = i == 0 ? kStyle0 : i < 15 ? kStyleN : i == 15 ? kCell : kNumberStyle;
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
    layout.clear();
    others.clear();
}

std::size_t Workbook::Read(const char* stream, std::size_t size)
{
    fonts.clear();
    xfs.clear();
    styles.clear();
    boundSheets.clear();
    sst = SharedStringTable();
    layout.clear();
    others.clear();
    std::size_t at = 0;
    bool first = true;
    bool seen[kGroups] = {};
    while (at < size) {
        const auto* p = reinterpret_cast<const std::uint8_t*>(stream + at);
        if (size - at < 4) return 0;
        const std::uint16_t code = biff::U16(p);
        Record* target = nullptr;
        Record scratch;
        Group group = Group::Other;
        switch (code) {
        case kBOF: target = &bof; break;
        case kWindow1: target = &window1; group = Group::Window1; break;
        case kFont: fonts.emplace_back(); target = &fonts.back(); group = Group::Fonts; break;
        case kXF: xfs.emplace_back(); target = &xfs.back(); group = Group::XFs; break;
        case kStyle: styles.emplace_back(); target = &styles.back(); group = Group::Styles; break;
        case kBoundSheet: boundSheets.emplace_back(); target = &boundSheets.back(); group = Group::BoundSheets; break;
        case kSST: target = &sst; group = Group::SST; break;
        case kExtSST: target = &scratch; group = Group::ExtSST; break;  // rebuilt on write
        case kEOF: target = &eof; break;
        case kContinue: target = &scratch; break;  // a stray part: dropped
        default:  // not understood: kept as it is, in its place
            others.emplace_back();
            target = &others.back();
            layout.push_back({Group::Other, others.size() - 1});
            break;
        }
        if (first && code != kBOF) return 0;  // the globals start with a BOF
        first = false;
        if (group != Group::Other && !seen[static_cast<int>(group)]) {
            seen[static_cast<int>(group)] = true;
            layout.push_back({group, 0});
        }
        const std::size_t consumed = target->ReadFrom(stream + at, size - at);
        if (consumed == 0) return 0;
        at += consumed;
        if (code == kEOF) return at;
    }
    return 0;  // no EOF
}

template <class Visit>
void Workbook::ForEachRecord(Visit visit)
{
    bool done[kGroups] = {};
    auto group = [&](Group g) {
        // Groups keep their usual order: any earlier one missing from the layout comes first.
        for (int k = 0; k <= static_cast<int>(g); ++k) {
            if (done[k]) continue;
            done[k] = true;
            switch (static_cast<Group>(k)) {
            case Group::Window1: visit(window1); break;
            case Group::Fonts: for (auto& r : fonts) visit(r); break;
            case Group::XFs: for (auto& r : xfs) visit(r); break;
            case Group::Styles: for (auto& r : styles) visit(r); break;
            case Group::BoundSheets: for (auto& r : boundSheets) visit(r); break;
            case Group::SST: visit(sst); break;
            case Group::ExtSST: visit(extSST); break;
            case Group::Other: break;
            }
        }
    };
    visit(bof);
    for (const Slot& slot : layout) {
        if (slot.group == Group::Other) {
            if (slot.other < others.size()) visit(others[slot.other]);
        } else {
            group(slot.group);
        }
    }
    group(Group::ExtSST);
    visit(eof);
}

std::size_t Workbook::SharedStringTableOffset()
{
    std::size_t at = 0;
    bool found = false;
    ForEachRecord([&](Record& r) {
        if (&r == &sst) found = true;
        if (!found) at += r.RecordSize();
    });
    return at;
}

std::size_t Workbook::RecordSize()
{
    std::size_t size = 0;
    ForEachRecord([&](Record& r) { size += r.RecordSize(); });
    return size;
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

std::size_t Workbook::Write(char* stream, std::size_t capacity)
{
    biff::Output out(stream, capacity);
    ForEachRecord([&](Record& r) { out.Put(r); });
    return out.result();
}

}  // namespace xls
