#include "platform/pdf_writer.h"

#include <cmath>
#include <cstdio>

namespace orderview {

namespace {

// Object numbers fixed before the pages: the catalog, the page tree (written last, when its
// kids are known) and the two fonts. Page content streams and pages follow in pairs.
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

char ToWinAnsi(std::uint32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
    for (int i = 0; i < 32; ++i)
        if (kWinAnsiHigh[i] != 0 && kWinAnsiHigh[i] == cp) return static_cast<char>(0x80 + i);
    return '?';
}

// Length of the valid UTF-8 sequence at `p` (at most `left` bytes) and its code point; 0 when
// the bytes are not a valid, shortest-form sequence.
std::size_t DecodeUtf8(const unsigned char* p, std::size_t left, std::uint32_t& cp)
{
    const unsigned char b = p[0];
    std::size_t n;
    std::uint32_t min;
    if (b >= 0xC2 && b <= 0xDF) n = 2, cp = b & 0x1Fu, min = 0x80;
    else if (b >= 0xE0 && b <= 0xEF) n = 3, cp = b & 0x0Fu, min = 0x800;
    else if (b >= 0xF0 && b <= 0xF4) n = 4, cp = b & 0x07u, min = 0x10000;
    else return 0;
    if (n > left) return 0;
    for (std::size_t i = 1; i < n; ++i) {
        if ((p[i] & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (p[i] & 0x3Fu);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return n;
}

// Calls `emit` with the WinAnsi byte of each character of UTF-8 text.
template <class Emit>
void ForEachWinAnsi(const char* text, std::size_t length, Emit emit)
{
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    std::size_t i = 0;
    while (i < length) {
        if (p[i] < 0x80) {
            emit(static_cast<char>(p[i++]));
            continue;
        }
        std::uint32_t cp = 0;
        const std::size_t n = DecodeUtf8(p + i, length - i, cp);
        emit(n ? ToWinAnsi(cp) : '?');
        i += n ? n : 1;
    }
}

}  // namespace

namespace {

int GlyphWidth(unsigned char code, bool bold)
{
    return code < 0x20 ? 0 : (bold ? kBold : kRegular)[code - 0x20];
}

}  // namespace

long AppendWinAnsi(std::string& out, const char* text, std::size_t length, bool bold)
{
    long units = 0;
    ForEachWinAnsi(text, length, [&out, &units, bold](char c) {
        out += c;
        units += GlyphWidth(static_cast<unsigned char>(c), bold);
    });
    return units;
}

long HelveticaTextWidth(const char* text, std::size_t length, bool bold)
{
    long units = 0;
    ForEachWinAnsi(text, length, [&units, bold](char c) { units += GlyphWidth(static_cast<unsigned char>(c), bold); });
    return units;
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
    const int contents = kFirstPageObject + 2 * pages_;
    BeginObject(contents);
    char head[64];
    int n = std::snprintf(head, sizeof head, "<< /Length %zu >>\nstream\n", content.size());
    file_.Write(head, static_cast<std::size_t>(n));
    file_.Write(content);
    file_.Write(std::string("\nendstream\nendobj\n"));

    BeginObject(contents + 1);
    scratch_ = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 ";
    AppendPdfNumber(scratch_, width);
    scratch_ += ' ';
    AppendPdfNumber(scratch_, height);
    n = std::snprintf(head, sizeof head, "] /Contents %d 0 R", contents);
    scratch_.append(head, static_cast<std::size_t>(n));
    scratch_ += " /Resources << /Font << /F1 3 0 R /F2 4 0 R >> >> >>\nendobj\n";
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
        const int n = std::snprintf(ref, sizeof ref, "%s%d 0 R", i % 10 ? " " : "\n", kFirstPageObject + 2 * i + 1);
        file_.Write(ref, static_cast<std::size_t>(n));
    }
    const int n = std::snprintf(ref, sizeof ref, "]\n/Count %d >>\nendobj\n", pages_);
    file_.Write(ref, static_cast<std::size_t>(n));

    // The title goes into the document information as printable ASCII; the rest is '?'.
    const int info = static_cast<int>(offsets_.size());
    BeginObject(info);
    std::string ascii;
    for (const char ch : title.str()) ascii += (ch >= 0x20 && ch < 0x7F) ? ch : '?';
    scratch_ = "<< /Title ";
    AppendPdfString(scratch_, ascii);
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
