#include "display_width.h"

#include <algorithm>
#include <iterator>

#include "platform/narrow_text.h"

namespace ovcli {

namespace {

struct Range {
    char32_t first, last;
};

// Code points that take no column: combining marks, variation selectors and zero-width
// formatting characters (the blocks terminals draw over the character before).
constexpr Range kZeroWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x05BF, 0x05BF}, {0x05C1, 0x05C2},
    {0x05C4, 0x05C5}, {0x05C7, 0x05C7}, {0x0610, 0x061A}, {0x064B, 0x065F}, {0x0670, 0x0670},
    {0x06D6, 0x06DC}, {0x06DF, 0x06E4}, {0x06E7, 0x06E8}, {0x06EA, 0x06ED}, {0x0E31, 0x0E31},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
    {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF}, {0x302A, 0x302D}, {0x3099, 0x309A},
    {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF},
};

// East Asian Wide (W) and Fullwidth (F) code points, from Unicode's EastAsianWidth.txt.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},
    {0x27B0, 0x27B0},   {0x27BF, 0x27BF},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},
    {0x2E80, 0x2E99},   {0x2E9B, 0x2EF3},   {0x2F00, 0x2FD5},   {0x2FF0, 0x2FFB},   {0x3000, 0x303E},
    {0x3041, 0x3096},   {0x3099, 0x30FF},   {0x3105, 0x312F},   {0x3131, 0x318E},   {0x3190, 0x31E3},
    {0x31F0, 0x321E},   {0x3220, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA48C},   {0xA490, 0xA4C6},
    {0xA960, 0xA97C},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE52},
    {0xFE54, 0xFE66},   {0xFE68, 0xFE6B},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x16FE4},
    {0x16FF0, 0x16FF1}, {0x17000, 0x187F7}, {0x18800, 0x18CD5}, {0x18D00, 0x18D08}, {0x1AFF0, 0x1AFF3},
    {0x1AFF5, 0x1AFFB}, {0x1AFFD, 0x1AFFE}, {0x1B000, 0x1B122}, {0x1B150, 0x1B152}, {0x1B164, 0x1B167},
    {0x1B170, 0x1B2FB}, {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A},
    {0x1F200, 0x1F202}, {0x1F210, 0x1F23B}, {0x1F240, 0x1F248}, {0x1F250, 0x1F251}, {0x1F260, 0x1F265},
    {0x1F300, 0x1F320}, {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA},
    {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440},
    {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A},
    {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC},
    {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6D7}, {0x1F6DC, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC},
    {0x1F7E0, 0x1F7EB}, {0x1F7F0, 0x1F7F0}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF},
    {0x1FA70, 0x1FA7C}, {0x1FA80, 0x1FA88}, {0x1FA90, 0x1FABD}, {0x1FABF, 0x1FAC5}, {0x1FACE, 0x1FADB},
    {0x1FAE0, 0x1FAE8}, {0x1FAF0, 0x1FAF8}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD},
};

template <std::size_t N>
bool InRanges(const Range (&ranges)[N], char32_t cp)
{
    const Range* it = std::upper_bound(std::begin(ranges), std::end(ranges), cp,
                                       [](char32_t c, const Range& r) { return c < r.first; });
    return it != std::begin(ranges) && cp <= (it - 1)->last;
}

// The code point at units[i] (a surrogate pair joined), advancing `i` past it; U+FFFD past the end.
char32_t NextCodePoint(std::u16string_view units, std::size_t& i)
{
    if (i >= units.size()) return 0xFFFD;
    const char32_t unit = units[i++];
    if (unit >= 0xD800 && unit <= 0xDBFF && i < units.size() && units[i] >= 0xDC00 && units[i] <= 0xDFFF)
        return 0x10000 + ((unit - 0xD800) << 10) + (units[i++] - 0xDC00);
    return unit;
}

// The code point of one narrow character's UTF-16 form.
char32_t CodePointOf(const std::u16string& units)
{
    std::size_t i = 0;
    return NextCodePoint(units, i);
}

// Walks narrow text a character at a time with its columns; stops when `visit` says so.
template <typename Visit>
void EachCharacter(std::string_view narrow, Visit visit)
{
    for (std::size_t at = 0; at < narrow.size();) {
        const unsigned char lead = static_cast<unsigned char>(narrow[at]);
        // ASCII is the same in every narrow code page: one byte, and printable characters take
        // one column.
        const std::size_t length = lead < 0x80 ? 1 : orderview::NarrowCharLength(narrow.substr(at));
        const int width = lead < 0x80 ? (lead >= 0x20 && lead != 0x7F ? 1 : 0)
                                      : CodePointWidth(CodePointOf(orderview::NarrowToUtf16(narrow.substr(at, length))));
        if (!visit(at, length, width)) return;
        at += length;
    }
}

}  // namespace

int CodePointWidth(char32_t cp)
{
    if (cp < 0x20 || (cp >= 0x7F && cp < 0xA0)) return 0;  // control characters
    if (cp < 0x300) return 1;
    if (cp >= 0x4E00 && cp <= 0x9FFF) return 2;  // CJK ideographs, most of a Chinese text
    if (InRanges(kZeroWidth, cp)) return 0;
    return InRanges(kWide, cp) ? 2 : 1;
}

namespace {

// The length of the run of printable ASCII `narrow` starts with: one column a byte.
std::size_t PlainPrefix(std::string_view narrow)
{
    std::size_t n = 0;
    while (n < narrow.size() && static_cast<unsigned char>(narrow[n]) - 0x20u < 0x5Fu) ++n;
    return n;
}

}  // namespace

std::size_t DisplayWidth(std::string_view narrow)
{
    const std::size_t plain = PlainPrefix(narrow);
    if (plain == narrow.size()) return plain;
    // The rest in one conversion: each character becomes its own UTF-16 form, and each byte that
    // starts no character one U+FFFD, just as when they are converted one at a time.
    const std::u16string units = orderview::NarrowToUtf16(narrow.substr(plain));
    std::size_t total = plain;
    for (std::size_t i = 0; i < units.size();) total += static_cast<std::size_t>(CodePointWidth(NextCodePoint(units, i)));
    return total;
}

std::size_t CutToWidth(std::string_view narrow, std::size_t columns, std::size_t& width)
{
    // Most texts fit whole; only a text wider than `columns` is walked a character at a time.
    width = DisplayWidth(narrow);
    if (width <= columns) return narrow.size();
    std::size_t cut = 0;
    width = 0;
    EachCharacter(narrow, [&](std::size_t at, std::size_t length, int w) {
        if (width + static_cast<std::size_t>(w) > columns) return false;
        width += static_cast<std::size_t>(w);
        cut = at + length;
        return true;
    });
    return cut;
}

std::string PadToWidth(std::string_view narrow, std::size_t columns)
{
    std::string out(narrow);
    const std::size_t width = DisplayWidth(narrow);
    if (width < columns) out.append(columns - width, ' ');
    return out;
}

}  // namespace ovcli
