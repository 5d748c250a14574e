#include "format/normalize.h"

#include <cmath>
#include <string>

#include "order_data/detail/number_text.h"
#include "order_data/host_api.h"

namespace {

// The result string shared by the three normalisation functions.
CString& SharedResult()
{
    static CString buffer;
    return buffer;
}

// Groups the integral part of a numeric text in threes; the '-' sign, when first, stays in front.
std::string GroupDigits(const std::string& s)
{
    const size_t dot = s.find('.');
    const bool negative = !s.empty() && s[0] == '-';
    const size_t fractionLength = (dot != std::string::npos && dot > 0) ? s.size() - dot : 0;
    const std::string digits = negative ? s.substr(1) : s;
    if (digits.empty() || digits.size() - fractionLength < 4) return s;

    const size_t n = digits.size() - fractionLength;
    std::string out;
    out.reserve(s.size() + n / 3 + 1);
    if (negative) out += '-';
    size_t i = n % 3;
    out.append(digits, 0, i);
    if (i > 0) out += ',';
    for (; i < n; i += 3) {
        out.append(digits, i, 3);
        if (i + 3 < n) out += ',';
    }
    out.append(digits, n, std::string::npos);
    return out;
}

// Grouping of one part that holds no separator: a fraction text such as "101 12/32" keeps
// everything from its first blank on.
std::string NormalizePart(const std::string& s)
{
    const size_t blank = s.find(' ', 1);
    if (blank != std::string::npos && s.find('/', 1) != std::string::npos) {
        const size_t first = s.find(' ');
        return GroupDigits(s.substr(0, first)) + s.substr(first);
    }
    return GroupDigits(s);
}

// Parts separated by '|' or a line feed are grouped one by one. The parts are walked in a loop,
// not by recursion, and the separator tests use the last position of each character, so a text
// of any length is handled in linear time without exhausting the stack.
std::string Normalize(const std::string& text)
{
    const size_t lastComma = text.rfind(',');
    const size_t lastPipe = text.rfind('|');
    const size_t lastFeed = text.rfind('\n');
    auto laterThan = [](size_t last, size_t pos) { return last != std::string::npos && last > pos; };
    std::string out;
    size_t start = 0;  // the part still to do is text[start..]
    for (;;) {
        if (laterThan(lastComma, start)) return out.append(text, start, std::string::npos);
        char separator = '|';
        size_t cut = std::string::npos;
        if (laterThan(lastPipe, start)) {
            cut = text.find('|', start);
        } else if (laterThan(lastFeed, start)) {
            cut = text.find('\n', start);
            separator = '\n';
        }
        if (cut == std::string::npos) return out + NormalizePart(text.substr(start));
        out += Normalize(text.substr(start, cut - start));  // holds no '|' (or no line feed): shallow
        out += separator;
        start = cut + 1;
    }
}

int HexValue(unsigned char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return c;
}

bool IsHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

unsigned long Channel(unsigned long colour, int shift, double factor)
{
    const double v = static_cast<double>((colour >> shift) & 0xFF) * factor;
    if (!(v > 0)) return 0;  // also NaN
    if (v >= 255) return 255;
    return static_cast<unsigned long>(v);
}

}  // namespace

const CString& g_cszNormalizDouble(const double& value)
{
    CString& out = SharedResult();
    if (value == 0.0) {
        out = "0";
        return out;
    }
    out.Empty();
    orderview::detail::AppendFixed(out, value, 8);
    out.TrimRight('0');
    out.TrimRight('.');
    return out;
}

const CString& g_cszNormalizDoubleByDigit(const double& value, const int& digits)
{
    CString& out = SharedResult();
    out.Empty();
    orderview::detail::AppendFixed(out, value, digits < 0 ? 0 : (digits > 999999 ? 999999 : digits));
    return out;
}

const CString& g_cszNormalizCstring(const CString& text)
{
    if (text.Find(',', 1) >= 1) return text;
    CString& out = SharedResult();
    if (text.GetLength() < 4) {  // too short to hold four digits in a row: nothing to group
        out = text;
        return out;
    }
    std::string result = Normalize(text.str());  // `text` may be the shared result itself
    out = CString(std::move(result));
    return out;
}

CString g_cszURLDecode(CString& text)
{
    text.Replace('+', ' ');
    const std::string& s = text.str();
    std::string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '%') {
            out += s[i];
        } else if (i + 2 < s.size() && IsHexDigit(s[i + 1]) && IsHexDigit(s[i + 2])) {
            unsigned char pair[2] = {static_cast<unsigned char>(s[i + 1]), static_cast<unsigned char>(s[i + 2])};
            out += static_cast<char>(g_IntFromHex(pair));
            i += 2;
        }
    }
    return CString(std::move(out));
}

CString g_csTransShowString(const CString& account) { return CApi_AccountHideCode(account, '*', 3, 5); }

int g_IntFromHex(unsigned char* p)
{
    if (!p) return 0;
    return 16 * HexValue(p[0]) + HexValue(p[1]);
}

unsigned long g_ColorDarker(unsigned long colour, const double& factor)
{
    if (factor < 0.0) return colour;
    const unsigned long red = Channel(colour, 0, factor);
    const unsigned long green = Channel(colour, 8, factor);
    const unsigned long blue = Channel(colour, 16, factor);
    return blue * 65536 + green * 256 + red;
}
