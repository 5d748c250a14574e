#include "platform/detail/truetype_font.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <utility>

namespace orderview {

namespace {

// Big-endian reads that answer 0 past the end of the bytes.
struct Bytes {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;

    bool Has(std::uint64_t offset, std::uint64_t length) const { return offset <= size && length <= size - offset; }
    std::uint32_t U8(std::uint64_t at) const { return Has(at, 1) ? data[at] : 0; }
    std::uint32_t U16(std::uint64_t at) const { return Has(at, 2) ? (std::uint32_t(data[at]) << 8) | data[at + 1] : 0; }
    int S16(std::uint64_t at) const { return static_cast<std::int16_t>(static_cast<std::uint16_t>(U16(at))); }
    std::uint32_t U32(std::uint64_t at) const { return (U16(at) << 16) | U16(at + 2); }
    Bytes Part(std::uint64_t offset, std::uint64_t length) const
    {
        return Has(offset, length) ? Bytes{data + offset, static_cast<std::size_t>(length)} : Bytes{};
    }
};

Bytes Of(const std::vector<std::uint8_t>& v) { return Bytes{v.data(), v.size()}; }

constexpr std::uint32_t Tag(const char (&t)[5])
{
    return (std::uint32_t(std::uint8_t(t[0])) << 24) | (std::uint32_t(std::uint8_t(t[1])) << 16) |
           (std::uint32_t(std::uint8_t(t[2])) << 8) | std::uint32_t(std::uint8_t(t[3]));
}

constexpr std::uint32_t kMaxFaces = 256;
constexpr std::uint32_t kMaxTables = 512;

// A face's table directory: where each table lies in the file.
struct Face {
    Bytes file;
    std::size_t offset = 0;

    // The table's bytes; empty when it is missing or does not fit in the file.
    Bytes Table(std::uint32_t tag) const
    {
        const std::uint32_t count = std::min(file.U16(offset + 4), kMaxTables);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint64_t record = offset + 12 + 16ull * i;
            if (file.U32(record) == tag) return file.Part(file.U32(record + 8), file.U32(record + 12));
        }
        return Bytes{};
    }
    // Where the table starts in the file and how long it is (false when it is not whole).
    bool Locate(std::uint32_t tag, std::uint64_t& at, std::uint64_t& length) const
    {
        const Bytes table = Table(tag);
        if (!table.data) return false;
        at = static_cast<std::uint64_t>(table.data - file.data);
        length = table.size;
        return true;
    }
};

// The faces of a font file: one, or each of a collection's.
std::vector<std::size_t> FaceOffsets(Bytes file)
{
    std::vector<std::size_t> faces;
    if (file.U32(0) == Tag("ttcf")) {
        const std::uint32_t count = std::min(file.U32(8), kMaxFaces);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t at = file.U32(12 + 4ull * i);
            if (file.Has(at, 12)) faces.push_back(at);
        }
    } else if (file.Has(0, 12)) {
        faces.push_back(0);
    }
    return faces;
}

// The best Unicode subtable of a cmap table (format 12 before format 4); its format, or 0.
std::size_t PickCmap(Bytes cmap, Bytes& sub)
{
    std::size_t best = 0;
    int bestRank = 0;
    const std::uint32_t count = std::min(cmap.U16(2), 1024u);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t record = 4 + 8ull * i;
        const std::uint32_t platform = cmap.U16(record), encoding = cmap.U16(record + 2);
        const std::uint32_t at = cmap.U32(record + 4);
        const bool unicode = platform == 0 || (platform == 3 && (encoding == 1 || encoding == 10));
        if (!unicode || !cmap.Has(at, 8)) continue;
        const std::uint32_t format = cmap.U16(at);
        Bytes candidate;
        int rank = 0;
        if (format == 4) {
            candidate = cmap.Part(at, cmap.U16(at + 2));
            const std::uint32_t segX2 = candidate.U16(6);
            if (segX2 == 0 || segX2 % 2 || !candidate.Has(16, 4ull * segX2)) continue;
            rank = 1;
        } else if (format == 12) {
            candidate = cmap.Part(at, cmap.U32(at + 4));
            const std::uint64_t groups = candidate.U32(12);
            if (!candidate.Has(16, 12 * groups)) continue;
            rank = 2;
        }
        if (rank > bestRank) {
            bestRank = rank;
            best = format;
            sub = candidate;
        }
    }
    return best;
}

std::uint32_t LookUp(Bytes sub, std::size_t format, char32_t cp)
{
    if (format == 12) {
        std::uint32_t low = 0, high = sub.U32(12);
        while (low < high) {
            const std::uint32_t mid = low + (high - low) / 2;
            const std::uint64_t group = 16 + 12ull * mid;
            if (sub.U32(group + 4) < cp) low = mid + 1;
            else high = mid;
        }
        const std::uint64_t group = 16 + 12ull * low;
        if (low >= sub.U32(12) || sub.U32(group) > cp || sub.U32(group + 4) < cp) return 0;
        const std::uint64_t glyph = std::uint64_t(sub.U32(group + 8)) + (cp - sub.U32(group));
        return glyph > 0xFFFF ? 0 : static_cast<std::uint32_t>(glyph);
    }
    if (format != 4 || cp > 0xFFFF) return 0;
    const std::uint32_t segX2 = sub.U16(6), segs = segX2 / 2;
    std::uint32_t low = 0, high = segs;
    while (low < high) {
        const std::uint32_t mid = low + (high - low) / 2;
        if (sub.U16(14 + 2ull * mid) < cp) low = mid + 1;
        else high = mid;
    }
    if (low >= segs) return 0;
    const std::uint32_t start = sub.U16(16 + segX2 + 2ull * low);
    if (start > cp) return 0;
    const std::uint32_t delta = sub.U16(16 + 2ull * segX2 + 2ull * low);
    const std::uint64_t rangeAt = 16 + 3ull * segX2 + 2ull * low;
    const std::uint32_t range = sub.U16(rangeAt);
    if (range == 0) return (cp + delta) & 0xFFFF;
    const std::uint64_t at = rangeAt + range + 2ull * (cp - start);
    const std::uint32_t glyph = sub.U16(at);
    return glyph == 0 ? 0 : (glyph + delta) & 0xFFFF;
}

// Text of a name record as ASCII (UTF-16 code units above 0x7F dropped).
std::string NameText(std::uint32_t platform, Bytes text)
{
    std::string out;
    if (platform == 0 || platform == 3) {
        for (std::size_t i = 0; i + 1 < text.size; i += 2) {
            const std::uint32_t c = text.U16(i);
            if (c < 0x80) out += static_cast<char>(c);
        }
    } else {
        for (std::size_t i = 0; i < text.size; ++i)
            if (text.data[i] < 0x80) out += static_cast<char>(text.data[i]);
    }
    return out;
}

// Calls `each(platform, language, nameId, text)` for every record of a name table.
template <class Each>
void ForEachName(Bytes name, Each each)
{
    const std::uint32_t count = std::min(name.U16(2), 4096u);
    const std::uint32_t storage = name.U16(4);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t record = 6 + 12ull * i;
        if (!name.Has(record, 12)) break;
        const Bytes text = name.Part(std::uint64_t(storage) + name.U16(record + 10), name.U16(record + 8));
        each(name.U16(record), name.U16(record + 4), name.U16(record + 6), text);
    }
}

// How well a face suits Chinese text; -1 when it is not usable at all.
int FaceScore(const Face& face)
{
    for (const char* required : {"head", "hhea", "hmtx", "maxp", "loca", "glyf"}) {
        const std::uint32_t tag = (std::uint32_t(std::uint8_t(required[0])) << 24) |
                                  (std::uint32_t(std::uint8_t(required[1])) << 16) |
                                  (std::uint32_t(std::uint8_t(required[2])) << 8) | std::uint8_t(required[3]);
        if (!face.Table(tag).data) return -1;
    }
    Bytes sub;
    const std::size_t format = PickCmap(face.Table(Tag("cmap")), sub);
    if (!format) return -1;
    int score = 0;
    // One, middle, of: ideographs every Chinese font maps.
    if (LookUp(sub, format, 0x4E00) && LookUp(sub, format, 0x4E2D) && LookUp(sub, format, 0x7684)) score += 8;
    bool traditional = false;
    ForEachName(face.Table(Tag("name")), [&](std::uint32_t platform, std::uint32_t language, std::uint32_t id, Bytes text) {
        if (platform == 3 && language == 0x0404) traditional = true;
        if (id == 1 || id == 4) {
            const std::string s = NameText(platform, text);
            if (s.find(" TW") != std::string::npos || s.find("Traditional") != std::string::npos) traditional = true;
        }
    });
    if (traditional) score += 4;
    const Bytes os2 = face.Table(Tag("OS/2"));
    if (os2.U16(0) >= 1 && (os2.U32(78) & (1u << 20))) score += 2;  // code page 950 (Big5)
    return score;
}

std::vector<std::uint8_t> Copy(Bytes b) { return std::vector<std::uint8_t>(b.data, b.data + b.size); }

std::string PdfSafeName(const std::string& name)
{
    std::string out;
    for (const char c : name) {
        const bool delimiter = std::strchr("()<>[]{}/%#", c) != nullptr;
        if (c > 0x20 && c < 0x7F && !delimiter) out += c;
        if (out.size() >= 100) break;
    }
    return out.empty() ? "Font" : out;
}

// Outline checks: a simple glyph's points fit its bytes; a composite glyph's components are
// whole and name glyphs of the font. Components go to `components` as byte offsets of their
// glyph index within the glyph.
bool SimpleGlyphFits(Bytes g)
{
    const int contours = g.S16(0);
    std::uint64_t at = 10 + 2ull * contours;
    if (!g.Has(0, at + 2)) return false;
    const std::uint64_t points = contours ? std::uint64_t(g.U16(at - 2)) + 1 : 0;
    at += 2 + g.U16(at);  // instructions
    std::uint64_t xBytes = 0, yBytes = 0;
    for (std::uint64_t n = 0; n < points;) {
        if (!g.Has(at, 1)) return false;
        const std::uint32_t flag = g.U8(at++);
        std::uint64_t repeat = 1;
        if (flag & 8) {
            if (!g.Has(at, 1)) return false;
            repeat += g.U8(at++);
        }
        xBytes += repeat * ((flag & 2) ? 1 : (flag & 16) ? 0 : 2);
        yBytes += repeat * ((flag & 4) ? 1 : (flag & 32) ? 0 : 2);
        n += repeat;
    }
    return g.Has(at, xBytes + yBytes);
}

bool CompositeComponents(Bytes g, int glyphCount, std::vector<std::size_t>& components)
{
    std::uint64_t at = 10;
    for (int guard = 0; guard < 4096; ++guard) {
        if (!g.Has(at, 4)) return false;
        const std::uint32_t flags = g.U16(at);
        if (static_cast<int>(g.U16(at + 2)) >= glyphCount) return false;
        components.push_back(static_cast<std::size_t>(at + 2));
        at += 4 + ((flags & 1) ? 4 : 2);
        if (flags & 8) at += 2;
        else if (flags & 0x40) at += 4;
        else if (flags & 0x80) at += 8;
        if (!g.Has(0, at)) return false;
        if (!(flags & 0x20)) {
            if (flags & 0x100) {  // instructions after the last component
                if (!g.Has(at, 2) || !g.Has(at + 2, g.U16(at))) return false;
            }
            return true;
        }
    }
    return false;
}

void Put16(std::string& out, std::uint32_t v)
{
    out += static_cast<char>((v >> 8) & 0xFF);
    out += static_cast<char>(v & 0xFF);
}
void Put32(std::string& out, std::uint32_t v)
{
    Put16(out, v >> 16);
    Put16(out, v & 0xFFFF);
}
void Set16(std::string& out, std::size_t at, std::uint32_t v)
{
    if (at + 2 > out.size()) return;
    out[at] = static_cast<char>((v >> 8) & 0xFF);
    out[at + 1] = static_cast<char>(v & 0xFF);
}

std::uint32_t CheckSum(const std::string& table)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); i += 4) {
        std::uint32_t word = 0;
        for (std::size_t k = 0; k < 4; ++k)
            word = (word << 8) | (i + k < table.size() ? static_cast<std::uint8_t>(table[i + k]) : 0u);
        sum += word;
    }
    return sum;
}

// The subset's cmap: format 4 (Windows BMP) for the code points below U+10000 and format 12
// (Windows full repertoire) for all, each code point its own run.
std::string BuildCmap(const std::vector<std::pair<char32_t, std::uint16_t>>& map)
{
    std::vector<std::pair<char32_t, std::uint16_t>> bmp;
    for (const auto& m : map)
        if (m.first < 0xFFFF) bmp.push_back(m);
    const std::uint32_t segs = static_cast<std::uint32_t>(bmp.size()) + 1;
    std::string f4;
    Put16(f4, 4);
    Put16(f4, 0);  // length, set below
    Put16(f4, 0);
    Put16(f4, segs * 2);
    std::uint32_t pow2 = 1, log2 = 0;
    while (pow2 * 2 <= segs) pow2 *= 2, ++log2;
    Put16(f4, pow2 * 2);
    Put16(f4, log2);
    Put16(f4, segs * 2 - pow2 * 2);
    for (const auto& m : bmp) Put16(f4, m.first);
    Put16(f4, 0xFFFF);
    Put16(f4, 0);
    for (const auto& m : bmp) Put16(f4, m.first);
    Put16(f4, 0xFFFF);
    for (const auto& m : bmp) Put16(f4, (m.second - m.first) & 0xFFFF);
    Put16(f4, 1);
    for (std::uint32_t i = 0; i < segs; ++i) Put16(f4, 0);
    if (f4.size() > 0xFFFF) f4.clear();  // too many for format 4: format 12 alone
    else Set16(f4, 2, static_cast<std::uint32_t>(f4.size()));

    std::string f12;
    Put16(f12, 12);
    Put16(f12, 0);
    Put32(f12, 16 + 12 * static_cast<std::uint32_t>(map.size()));
    Put32(f12, 0);
    Put32(f12, static_cast<std::uint32_t>(map.size()));
    for (const auto& m : map) {
        Put32(f12, m.first);
        Put32(f12, m.first);
        Put32(f12, m.second);
    }

    std::string cmap;
    const std::uint32_t tables = f4.empty() ? 1 : 2;
    Put16(cmap, 0);
    Put16(cmap, tables);
    std::uint32_t at = 4 + 8 * tables;
    if (!f4.empty()) {
        Put16(cmap, 3);
        Put16(cmap, 1);
        Put32(cmap, at);
        at += static_cast<std::uint32_t>(f4.size());
    }
    Put16(cmap, 3);
    Put16(cmap, 10);
    Put32(cmap, at);
    return cmap + f4 + f12;
}

}  // namespace

TrueTypeFont::~TrueTypeFont() = default;

bool TrueTypeFont::Load(const std::uint8_t* data, std::size_t size, std::size_t faceOffset)
{
    const Face face{Bytes{data, size}, faceOffset};
    if (FaceScore(face) < 0) return false;
    head_ = Copy(face.Table(Tag("head")));
    hhea_ = Copy(face.Table(Tag("hhea")));
    maxp_ = Copy(face.Table(Tag("maxp")));
    hmtx_ = Copy(face.Table(Tag("hmtx")));
    loca_ = Copy(face.Table(Tag("loca")));
    cvt_ = Copy(face.Table(Tag("cvt ")));
    fpgm_ = Copy(face.Table(Tag("fpgm")));
    prep_ = Copy(face.Table(Tag("prep")));
    Bytes sub;
    cmapFormat_ = PickCmap(face.Table(Tag("cmap")), sub);
    cmap_ = Copy(sub);
    if (!face.Locate(Tag("glyf"), glyfOffset_, glyfLength_)) return false;

    const Bytes head = Of(head_), hhea = Of(hhea_), maxp = Of(maxp_);
    if (head.size < 54 || hhea.size < 36 || maxp.size < 6) return false;
    unitsPerEm_ = static_cast<int>(head.U16(18));
    if (unitsPerEm_ < 16 || unitsPerEm_ > 16384) return false;
    longLoca_ = head.S16(50) != 0;
    const std::size_t entries = loca_.size() / (longLoca_ ? 4 : 2);
    const std::size_t glyphs = entries ? std::min<std::size_t>(maxp.U16(4), entries - 1) : 0;
    glyphCount_ = static_cast<int>(glyphs);
    metricCount_ = static_cast<int>(std::min<std::size_t>({hhea.U16(34), hmtx_.size() / 4, glyphs}));
    if (glyphCount_ == 0 || metricCount_ == 0) return false;

    const auto scaled = [this](int units) { return static_cast<int>(units * 1000L / unitsPerEm_); };
    metrics_.iAscent = scaled(hhea.S16(4));
    metrics_.iDescent = scaled(hhea.S16(6));
    for (int i = 0; i < 4; ++i) metrics_.iBox[i] = scaled(head.S16(36 + 2 * i));
    const Bytes os2 = face.Table(Tag("OS/2"));
    metrics_.iCapHeight = os2.U16(0) >= 2 && os2.size >= 90 ? scaled(os2.S16(88)) : metrics_.iAscent;
    metrics_.iItalicAngle = face.Table(Tag("post")).S16(4);

    std::string postScript;
    ForEachName(face.Table(Tag("name")), [&](std::uint32_t platform, std::uint32_t, std::uint32_t id, Bytes text) {
        if (id == 6 && postScript.empty()) postScript = NameText(platform, text);
    });
    postScriptName_ = PdfSafeName(postScript);
    return true;
}

namespace {

// The offset of the file's best face (a collection's, or the one face of a font file); false when
// no face is usable.
bool BestFace(const Bytes& file, std::size_t& bestOffset)
{
    int best = -1;
    for (const std::size_t offset : FaceOffsets(file)) {
        const int score = FaceScore(Face{file, offset});
        if (score > best) best = score, bestOffset = offset;
    }
    return best >= 0;
}

}  // namespace

std::unique_ptr<TrueTypeFont> TrueTypeFont::FromMemory(const std::uint8_t* data, std::size_t size)
{
    const Bytes file{data, data ? size : 0};
    std::size_t bestOffset = 0;
    if (!BestFace(file, bestOffset)) return nullptr;
    std::unique_ptr<TrueTypeFont> font(new TrueTypeFont());
    if (!font->Load(file.data, file.size, bestOffset)) return nullptr;
    font->glyfMemory_ = Copy(file.Part(font->glyfOffset_, font->glyfLength_));
    font->glyfOffset_ = 0;
    return font;
}

std::unique_ptr<TrueTypeFont> TrueTypeFont::FromFile(const FilePath& path)
{
    std::vector<std::uint8_t> whole;
    Bytes file;
    std::unique_ptr<MappedFile> mapped(new MappedFile(path, false));
    if (mapped->IsOpen()) {
        file = Bytes{mapped->Data(), mapped->Size()};
    } else {
        mapped.reset();
        if (!ReadWholeFile(path, whole)) return nullptr;
        file = Of(whole);
    }
    std::size_t bestOffset = 0;
    if (!BestFace(file, bestOffset)) return nullptr;
    std::unique_ptr<TrueTypeFont> font(new TrueTypeFont());
    if (!font->Load(file.data, file.size, bestOffset)) return nullptr;
    // The outlines are read from the file when a subset is written: the mapping ends here.
    font->file_.reset(new FileReader(path));
    if (!font->file_->IsOpen()) return nullptr;
    return font;
}

std::uint16_t TrueTypeFont::GlyphOf(char32_t codePoint) const
{
    const std::uint32_t glyph = LookUp(Of(cmap_), cmapFormat_, codePoint);
    return glyph < static_cast<std::uint32_t>(glyphCount_) ? static_cast<std::uint16_t>(glyph) : 0;
}

int TrueTypeFont::Advance(std::uint16_t glyph) const
{
    const int index = std::min<int>(glyph, metricCount_ - 1);
    return static_cast<int>(Of(hmtx_).U16(4ull * index) * 1000L / unitsPerEm_);
}

bool TrueTypeFont::ReadGlyph(std::uint16_t glyph, std::string& out) const
{
    out.clear();
    if (glyph >= glyphCount_) return true;
    const Bytes loca = Of(loca_);
    const std::uint64_t start = longLoca_ ? loca.U32(4ull * glyph) : 2ull * loca.U16(2ull * glyph);
    const std::uint64_t end = longLoca_ ? loca.U32(4ull * glyph + 4) : 2ull * loca.U16(2ull * glyph + 2);
    if (end <= start || end > glyfLength_ || end - start > (1u << 20)) return true;  // empty or damaged
    out.resize(static_cast<std::size_t>(end - start));
    if (!file_) {
        std::memcpy(&out[0], glyfMemory_.data() + start, out.size());
        return true;
    }
    if (file_->ReadAt(glyfOffset_ + start, &out[0], out.size())) return true;
    out.clear();
    return false;
}

bool TrueTypeFont::WriteSubset(const std::vector<std::uint16_t>& glyphs, const std::vector<char32_t>& codePoints,
                               std::string& out) const
{
    out.clear();
    std::vector<std::uint16_t> order{0};
    std::unordered_map<std::uint16_t, std::uint16_t> newOf{{0, 0}};
    std::vector<std::pair<char32_t, std::uint16_t>> map;
    for (std::size_t k = 0; k < glyphs.size() && order.size() < 0xFFFF; ++k) {
        const std::uint16_t glyph = glyphs[k] < glyphCount_ ? glyphs[k] : 0;
        const auto now = static_cast<std::uint16_t>(order.size());
        newOf.emplace(glyph, now);
        if (k < codePoints.size() && codePoints[k] && codePoints[k] <= 0x10FFFF) map.emplace_back(codePoints[k], now);
        order.push_back(glyph);
    }

    std::string glyf, loca, hmtx, bytes;
    std::vector<std::size_t> components;
    const Bytes metrics = Of(hmtx_);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (!ReadGlyph(order[i], bytes)) return false;
        Bytes g{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
        components.clear();
        if (!bytes.empty()) {
            const bool ok = g.size >= 10 && (g.S16(0) >= 0 ? SimpleGlyphFits(g) : CompositeComponents(g, glyphCount_, components));
            if (!ok) bytes.clear();
        }
        for (const std::size_t at : bytes.empty() ? std::vector<std::size_t>() : components) {
            const auto component = static_cast<std::uint16_t>(g.U16(at));
            auto found = newOf.find(component);
            if (found == newOf.end()) {
                if (order.size() >= 0xFFFF) {
                    bytes.clear();
                    break;
                }
                found = newOf.emplace(component, static_cast<std::uint16_t>(order.size())).first;
                order.push_back(component);
            }
            Set16(bytes, at, found->second);
        }
        Put32(loca, static_cast<std::uint32_t>(glyf.size()));
        glyf += bytes;
        while (glyf.size() % 4) glyf += '\0';
        const int index = order[i];
        const int metric = std::min(index, metricCount_ - 1);
        Put16(hmtx, metrics.U16(4ull * metric));
        const std::uint64_t lsbAt = index < metricCount_ ? 4ull * index + 2 : 4ull * metricCount_ + 2ull * (index - metricCount_);
        Put16(hmtx, metrics.U16(lsbAt));
    }
    Put32(loca, static_cast<std::uint32_t>(glyf.size()));
    const std::uint32_t count = static_cast<std::uint32_t>(order.size());

    std::string head(head_.begin(), head_.end()), hhea(hhea_.begin(), hhea_.end()), maxp(maxp_.begin(), maxp_.end());
    Set16(head, 8, 0);  // checkSumAdjustment, set last
    Set16(head, 10, 0);
    Set16(head, 50, 1);  // long offsets in loca
    Set16(hhea, 34, count);
    Set16(maxp, 4, count);
    std::string post;
    Put32(post, 0x00030000);  // no glyph names
    Put32(post, static_cast<std::uint32_t>(metrics_.iItalicAngle) << 16);
    for (int i = 0; i < 6; ++i) Put32(post, 0);
    std::sort(map.begin(), map.end());
    map.erase(std::unique(map.begin(), map.end(), [](const auto& a, const auto& b) { return a.first == b.first; }),
              map.end());

    std::vector<std::pair<std::string, std::string>> tables = {
        {"cmap", BuildCmap(map)}, {"glyf", glyf}, {"head", head}, {"hhea", hhea}, {"hmtx", hmtx},
        {"loca", loca},          {"maxp", maxp}, {"post", post},
    };
    if (!cvt_.empty()) tables.emplace_back("cvt ", std::string(cvt_.begin(), cvt_.end()));
    if (!fpgm_.empty()) tables.emplace_back("fpgm", std::string(fpgm_.begin(), fpgm_.end()));
    if (!prep_.empty()) tables.emplace_back("prep", std::string(prep_.begin(), prep_.end()));
    std::sort(tables.begin(), tables.end());

    const std::uint32_t n = static_cast<std::uint32_t>(tables.size());
    std::uint32_t pow2 = 1, log2 = 0;
    while (pow2 * 2 <= n) pow2 *= 2, ++log2;
    Put32(out, 0x00010000);
    Put16(out, n);
    Put16(out, pow2 * 16);
    Put16(out, log2);
    Put16(out, n * 16 - pow2 * 16);
    std::uint32_t at = 12 + 16 * n;
    std::size_t headAt = 0;
    for (const auto& table : tables) {
        out += table.first;
        Put32(out, CheckSum(table.second));
        Put32(out, at);
        Put32(out, static_cast<std::uint32_t>(table.second.size()));
        if (table.first == "head") headAt = at;
        at += static_cast<std::uint32_t>((table.second.size() + 3) / 4 * 4);
    }
    for (const auto& table : tables) {
        out += table.second;
        while (out.size() % 4) out += '\0';
    }
    const std::uint32_t adjustment = 0xB1B0AFBAu - CheckSum(out);
    Set16(out, headAt + 8, adjustment >> 16);
    Set16(out, headAt + 10, adjustment & 0xFFFF);
    return true;
}

}  // namespace orderview
