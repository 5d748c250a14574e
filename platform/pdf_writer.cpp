#include "platform/detail/pdf_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "platform/narrow_text.h"

namespace orderview {

namespace {

// Object numbers fixed before the pages: the catalog, the page tree (written last, when its
// kids are known) and the two standard fonts. Page content streams, pages and the embedded
// font's objects follow as they come.
constexpr int kCatalog = 1, kPageTree = 2, kFontRegular = 3, kFontBold = 4, kFirstPageObject = 5;

// Unicode code points of WinAnsi 0x80-0x9F (0 where the encoding has no character).
constexpr char16_t kWinAnsiHigh[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

// Standard advance widths of Helvetica and Helvetica-Bold for WinAnsi 0x20-0xFF.
constexpr short kRegular[224] = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,    // 0x20
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,    // 0x30
    1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,   // 0x40
    667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,    // 0x50
    333, 556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,    // 0x60
    556, 556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584, 0,      // 0x70
    556, 0, 222, 556, 333, 1000, 556, 556, 333, 1000, 667, 333, 1000, 0, 611, 0,       // 0x80
    0, 222, 222, 333, 333, 350, 556, 1000, 333, 1000, 500, 333, 944, 0, 500, 667,      // 0x90
    278, 333, 556, 556, 556, 556, 260, 556, 333, 737, 370, 556, 584, 333, 737, 333,    // 0xA0
    400, 584, 333, 333, 333, 556, 537, 278, 333, 333, 365, 556, 834, 834, 834, 611,    // 0xB0
    667, 667, 667, 667, 667, 667, 1000, 722, 667, 667, 667, 667, 278, 278, 278, 278,   // 0xC0
    722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722, 722, 667, 667, 611,    // 0xD0
    556, 556, 556, 556, 556, 556, 889, 500, 556, 556, 556, 556, 278, 278, 278, 278,    // 0xE0
    556, 556, 556, 556, 556, 556, 556, 584, 611, 556, 556, 556, 556, 500, 556, 500,    // 0xF0
};
constexpr short kBold[224] = {
    278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278, 278,    // 0x20
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584, 584, 611,    // 0x30
    975, 722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611, 833, 722, 778,    // 0x40
    667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 333, 278, 333, 584, 556,    // 0x50
    333, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556, 278, 889, 611, 611,    // 0x60
    611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500, 389, 280, 389, 584, 0,      // 0x70
    556, 0, 278, 556, 500, 1000, 556, 556, 333, 1000, 667, 333, 1000, 0, 611, 0,       // 0x80
    0, 278, 278, 500, 500, 350, 556, 1000, 333, 1000, 556, 333, 944, 0, 500, 667,      // 0x90
    278, 333, 556, 556, 556, 556, 280, 556, 333, 737, 370, 556, 584, 333, 737, 333,    // 0xA0
    400, 584, 333, 333, 333, 611, 556, 278, 333, 333, 365, 556, 834, 834, 834, 611,    // 0xB0
    722, 722, 722, 722, 722, 722, 1000, 722, 667, 667, 667, 667, 278, 278, 278, 278,   // 0xC0
    722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722, 722, 667, 667, 611,    // 0xD0
    556, 556, 556, 556, 556, 556, 889, 556, 556, 556, 556, 556, 278, 278, 278, 278,    // 0xE0
    611, 611, 611, 611, 611, 611, 611, 584, 611, 611, 611, 611, 611, 556, 611, 556,    // 0xF0
};

// Calls `emit` with the WinAnsi byte of each character of narrow text ('?' for the others).
template <class Emit>
void ForEachWinAnsi(const char* text, std::size_t length, Emit emit)
{
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    std::size_t ascii = 0;
    while (ascii < length && p[ascii] < 0x80) ++ascii;
    for (std::size_t i = 0; i < ascii; ++i) emit(static_cast<char>(p[i]));
    if (ascii == length) return;
    ForEachCodePoint(std::string_view(text + ascii, length - ascii), [&emit](char32_t cp) {
        const unsigned char code = WinAnsiOf(cp);
        emit(static_cast<char>(code ? code : '?'));
    });
}

int GlyphWidth(unsigned char code, bool bold)
{
    return code < 0x20 ? 0 : (bold ? kBold : kRegular)[code - 0x20];
}

}  // namespace

unsigned char WinAnsiOf(char32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
    for (int i = 0; i < 32; ++i)
        if (kWinAnsiHigh[i] != 0 && kWinAnsiHigh[i] == cp) return static_cast<unsigned char>(0x80 + i);
    return 0;
}

int HelveticaWidth(unsigned char code, bool bold) { return GlyphWidth(code, bold); }

bool AsciiWidth(const char* text, std::size_t length, bool bold, long& units)
{
    const short* widths = bold ? kBold : kRegular;
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    long sum = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char c = p[i];
        if (c >= 0x80) return false;
        if (c >= 0x20) sum += widths[c - 0x20];
    }
    units = sum;
    return true;
}

long HelveticaTextWidth(const char* text, std::size_t length, bool bold)
{
    long units = 0;
    ForEachWinAnsi(text, length, [&units, bold](char c) { units += GlyphWidth(static_cast<unsigned char>(c), bold); });
    return units;
}

bool EmbeddedFont::Glyph(char32_t cp, std::uint16_t& cid, int& width)
{
    const auto found = known_.find(cp);
    if (found != known_.end()) {
        cid = found->second.cid;
        width = found->second.width;
        return cid != 0;
    }
    if (!tried_) {
        tried_ = true;
        font_ = load_ ? load_() : nullptr;
    }
    Known known{0, 0};
    const std::uint16_t glyph = font_ && cp != 0xFFFD ? font_->GlyphOf(cp) : 0;
    if (glyph != 0) {
        const auto seen = cidOf_.find(glyph);
        if (seen != cidOf_.end()) {
            known = Known{seen->second, font_->Advance(glyph)};
        } else if (glyphs_.size() < 0xFFF0) {
            glyphs_.push_back(glyph);
            codePoints_.push_back(cp);
            known = Known{static_cast<std::uint16_t>(glyphs_.size()), font_->Advance(glyph)};
            cidOf_.emplace(glyph, known.cid);
        }
    }
    known_.emplace(cp, known);
    cid = known.cid;
    width = known.width;
    return cid != 0;
}

namespace {

void AppendHex4(std::string& out, std::uint32_t value)
{
    static const char digits[] = "0123456789ABCDEF";
    for (int shift = 12; shift >= 0; shift -= 4) out += digits[(value >> shift) & 15];
}

void AppendUtf16Hex(std::string& out, char32_t cp)
{
    if (cp >= 0x10000) {
        AppendHex4(out, 0xD800 + ((cp - 0x10000) >> 10));
        AppendHex4(out, 0xDC00 + ((cp - 0x10000) & 0x3FF));
    } else {
        AppendHex4(out, cp);
    }
}

}  // namespace

void EmbeddedFont::Write(PdfWriter& writer, int fontObject) const
{
    std::string subset;
    const bool embedded = font_ && font_->WriteSubset(glyphs_, codePoints_, subset);
    const int descendant = writer.ReserveObject(), descriptor = writer.ReserveObject();
    const int toUnicode = writer.ReserveObject(), file = embedded ? writer.ReserveObject() : 0;

    // The subset's tag: six capitals from a hash of its glyphs, so that two documents with
    // other subsets of the font name them apart.
    std::uint64_t hash = 1469598103934665603ull;
    for (const std::uint16_t g : glyphs_) hash = (hash ^ g) * 1099511628211ull;
    std::string name;
    for (int i = 0; i < 6; ++i, hash /= 26) name += static_cast<char>('A' + hash % 26);
    name += '+';
    name += font_ ? font_->PostScriptName() : std::string("Font");

    std::string body = "<< /Type /Font /Subtype /Type0 /BaseFont /" + name +
                       " /Encoding /Identity-H /DescendantFonts [" + std::to_string(descendant) +
                       " 0 R] /ToUnicode " + std::to_string(toUnicode) + " 0 R >>";
    writer.WriteObject(fontObject, body);

    body = "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /" + name +
           " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> /FontDescriptor " +
           std::to_string(descriptor) + " 0 R /DW 1000 /CIDToGIDMap /Identity\n/W [1 [";
    for (std::size_t i = 0; i < glyphs_.size(); ++i) {
        body += i % 16 ? " " : "\n";
        body += std::to_string(font_ ? font_->Advance(glyphs_[i]) : 1000);
    }
    body += "]] >>";
    writer.WriteObject(descendant, body);

    const FontMetrics metrics = font_ ? font_->Metrics() : FontMetrics();
    body = "<< /Type /FontDescriptor /FontName /" + name + " /Flags 4 /FontBBox [" +
           std::to_string(metrics.iBox[0]) + " " + std::to_string(metrics.iBox[1]) + " " +
           std::to_string(metrics.iBox[2]) + " " + std::to_string(metrics.iBox[3]) + "] /ItalicAngle " +
           std::to_string(metrics.iItalicAngle) + " /Ascent " + std::to_string(metrics.iAscent) + " /Descent " +
           std::to_string(metrics.iDescent) + " /CapHeight " + std::to_string(metrics.iCapHeight) + " /StemV 80";
    if (embedded) body += " /FontFile2 " + std::to_string(file) + " 0 R";
    body += " >>";
    writer.WriteObject(descriptor, body);

    std::string cmap =
        "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
        "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
        "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
        "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    for (std::size_t i = 0; i < codePoints_.size(); i += 100) {
        const std::size_t end = std::min(codePoints_.size(), i + 100);
        cmap += std::to_string(end - i) + " beginbfchar\n";
        for (std::size_t k = i; k < end; ++k) {
            cmap += '<';
            AppendHex4(cmap, static_cast<std::uint32_t>(k + 1));
            cmap += "> <";
            AppendUtf16Hex(cmap, codePoints_[k]);
            cmap += ">\n";
        }
        cmap += "endbfchar\n";
    }
    cmap += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    writer.WriteObject(toUnicode, "<< /Length " + std::to_string(cmap.size()) + " >>\nstream\n" + cmap +
                                      "\nendstream");
    if (embedded) {
        const std::string length = std::to_string(subset.size());
        writer.WriteObject(file, "<< /Length " + length + " /Length1 " + length + " >>\nstream\n" + subset +
                                     "\nendstream");
    }
}

void AppendPdfString(std::string& out, const std::string& bytes)
{
    out += '(';
    for (const char ch : bytes) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == '(' || c == ')' || c == '\\') {
            out += '\\';
            out += ch;
        } else if (c < 0x20 || c == 0x7F) {
            const char octal[4] = {'\\', static_cast<char>('0' + (c >> 6)), static_cast<char>('0' + ((c >> 3) & 7)),
                                   static_cast<char>('0' + (c & 7))};
            out.append(octal, 4);
        } else {
            out += ch;
        }
    }
    out += ')';
}

void AppendPdfNumber(std::string& out, double value)
{
    if (!(value > -1e9)) value = value != value ? 0 : -1e9;  // NaN prints as 0
    if (!(value < 1e9)) value = 1e9;
    const bool negative = value < 0;
    long long hundredths = static_cast<long long>((negative ? -value : value) * 100 + 0.5);
    // Built backwards in a buffer: the sign, up to ten digits, the point and two decimals.
    char buffer[24];
    char* end = buffer + sizeof buffer;
    char* p = end;
    const int cents = static_cast<int>(hundredths % 100);
    if (cents) {
        if (cents % 10) *--p = static_cast<char>('0' + cents % 10);
        *--p = static_cast<char>('0' + cents / 10);
        *--p = '.';
    }
    hundredths /= 100;
    do {
        *--p = static_cast<char>('0' + hundredths % 10);
        hundredths /= 10;
    } while (hundredths);
    if (negative && (p[0] != '0' || p + 1 != end)) *--p = '-';
    out.append(p, static_cast<std::size_t>(end - p));
}

PdfWriter::PdfWriter(const CString& path) : file_(path)
{
    offsets_.assign(kFirstPageObject, 0);
    // The binary comment line marks the file as binary for transfer programs.
    file_.Write(std::string("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n"));
    BeginObject(kCatalog);
    file_.Write(std::string("<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"));
    BeginObject(kFontRegular);
    file_.Write(std::string("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>\nendobj\n"));
    BeginObject(kFontBold);
    file_.Write(std::string("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding >>\nendobj\n"));
}

int PdfWriter::ReserveObject()
{
    offsets_.push_back(0);
    return static_cast<int>(offsets_.size() - 1);
}

void PdfWriter::WriteObject(int number, const std::string& body)
{
    BeginObject(number);
    file_.Write(body);
    file_.Write(std::string("\nendobj\n"));
}

void PdfWriter::BeginObject(int number)
{
    if (offsets_.size() <= static_cast<std::size_t>(number)) offsets_.resize(static_cast<std::size_t>(number) + 1, 0);
    offsets_[static_cast<std::size_t>(number)] = file_.Size();
    char head[32];
    const int n = std::snprintf(head, sizeof head, "%d 0 obj\n", number);
    file_.Write(head, static_cast<std::size_t>(n));
}

bool PdfWriter::AddPage(double width, double height, const std::string& content)
{
    if (!IsGood()) return false;
    const int contents = ReserveObject();
    BeginObject(contents);
    char head[64];
    int n = std::snprintf(head, sizeof head, "<< /Length %zu >>\nstream\n", content.size());
    file_.Write(head, static_cast<std::size_t>(n));
    file_.Write(content);
    file_.Write(std::string("\nendstream\nendobj\n"));

    const int page = ReserveObject();
    pageObjects_.push_back(page);
    BeginObject(page);
    scratch_ = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 ";
    AppendPdfNumber(scratch_, width);
    scratch_ += ' ';
    AppendPdfNumber(scratch_, height);
    n = std::snprintf(head, sizeof head, "] /Contents %d 0 R", contents);
    scratch_.append(head, static_cast<std::size_t>(n));
    scratch_ += " /Resources << /Font << /F1 3 0 R /F2 4 0 R";
    if (thirdFont_) {
        n = std::snprintf(head, sizeof head, " /F3 %d 0 R", thirdFont_);
        scratch_.append(head, static_cast<std::size_t>(n));
    }
    scratch_ += " >> >> >>\nendobj\n";
    ++pages_;
    return file_.Write(scratch_);
}

bool PdfWriter::Finish(const CString& title)
{
    if (!IsGood() || pages_ == 0) {
        file_.Discard();
        return false;
    }
    BeginObject(kPageTree);
    file_.Write(std::string("<< /Type /Pages /Kids ["));
    char ref[32];
    for (int i = 0; i < pages_; ++i) {
        const int n = std::snprintf(ref, sizeof ref, "%s%d 0 R", i % 10 ? " " : "\n", pageObjects_[static_cast<std::size_t>(i)]);
        file_.Write(ref, static_cast<std::size_t>(n));
    }
    const int n = std::snprintf(ref, sizeof ref, "]\n/Count %d >>\nendobj\n", pages_);
    file_.Write(ref, static_cast<std::size_t>(n));

    // The title goes into the document information: printable ASCII as it is, any other title
    // as a UTF-16BE text string with its byte order mark; control characters become '?'.
    const int info = ReserveObject();
    BeginObject(info);
    const std::string& narrow = title.str();
    scratch_ = "<< /Title ";
    if (std::all_of(narrow.begin(), narrow.end(), [](char ch) { return static_cast<unsigned char>(ch) < 0x80; })) {
        std::string ascii;
        for (const char ch : narrow) ascii += (ch >= 0x20 && ch < 0x7F) ? ch : '?';
        AppendPdfString(scratch_, ascii);
    } else {
        scratch_ += "<FEFF";
        for (char16_t unit : NarrowToUtf16(narrow)) AppendHex4(scratch_, unit < 0x20 || unit == 0x7F ? u'?' : unit);
        scratch_ += '>';
    }
    scratch_ += " /Producer (orderview) >>\nendobj\n";
    file_.Write(scratch_);

    const std::uint64_t xref = file_.Size();
    scratch_.clear();
    char line[48];
    std::snprintf(line, sizeof line, "xref\n0 %zu\n0000000000 65535 f \n", offsets_.size());
    scratch_ += line;
    for (std::size_t i = 1; i < offsets_.size(); ++i) {
        std::snprintf(line, sizeof line, "%010llu 00000 n \n", static_cast<unsigned long long>(offsets_[i]));
        scratch_ += line;
        if (scratch_.size() > 60000) {
            file_.Write(scratch_);
            scratch_.clear();
        }
    }
    std::snprintf(line, sizeof line, "trailer\n<< /Size %zu /Root 1 0 R", offsets_.size());
    scratch_ += line;
    std::snprintf(line, sizeof line, " /Info %d 0 R >>\nstartxref\n", info);
    scratch_ += line;
    std::snprintf(line, sizeof line, "%llu\n%%%%EOF\n", static_cast<unsigned long long>(xref));
    scratch_ += line;
    file_.Write(scratch_);
    return file_.Commit();
}

}  // namespace orderview
