#include "xls/utf16.h"

namespace xls {

namespace {

void AppendCodePoint(std::u16string& out, char32_t cp)
{
    if (cp >= 0x10000 && cp <= 0x10FFFF) {
        cp -= 0x10000;
        out += static_cast<char16_t>(0xD800 + (cp >> 10));
        out += static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
    } else if (cp > 0x10FFFF) {
        out += u'\xFFFD';
    } else {
        out += static_cast<char16_t>(cp);
    }
}

// The code point at `i` (advancing it); a lone surrogate stands for itself.
char32_t NextCodePoint(std::u16string_view text, size_t& i)
{
    const char32_t unit = text[i++];
    if (unit >= 0xD800 && unit <= 0xDBFF && i < text.size() && text[i] >= 0xDC00 && text[i] <= 0xDFFF)
        return 0x10000 + ((unit - 0xD800) << 10) + (text[i++] - 0xDC00);
    return unit;
}

}  // namespace

std::u16string ToUtf16(const std::wstring& text)
{
    std::u16string out;
    out.reserve(text.size());
    for (wchar_t ch : text) AppendCodePoint(out, static_cast<char32_t>(ch));
    return out;
}

std::wstring FromUtf16(std::u16string_view text)
{
    std::wstring out;
    out.reserve(text.size());
    if (sizeof(wchar_t) == 2) {
        for (char16_t unit : text) out += static_cast<wchar_t>(unit);
        return out;
    }
    for (size_t i = 0; i < text.size();) out += static_cast<wchar_t>(NextCodePoint(text, i));
    return out;
}

std::u16string Utf8ToUtf16(const std::string& text)
{
    std::u16string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        int extra = 0;
        char32_t cp = 0;
        if (lead < 0x80) {
            cp = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            extra = 1;
            cp = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            extra = 2;
            cp = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            extra = 3;
            cp = lead & 0x07;
        } else {
            out += u'\xFFFD';
            ++i;
            continue;
        }
        if (extra > 0 && i + static_cast<size_t>(extra) >= text.size()) {  // cut short
            out += u'\xFFFD';
            ++i;
            continue;
        }
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            const unsigned char c = static_cast<unsigned char>(text[i + static_cast<size_t>(k)]);
            if ((c & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            cp = (cp << 6) | (c & 0x3F);
        }
        const char32_t minimum[] = {0, 0x80, 0x800, 0x10000};
        if (!ok || cp < minimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            out += u'\xFFFD';
            ++i;
            continue;
        }
        AppendCodePoint(out, cp);
        i += static_cast<size_t>(extra) + 1;
    }
    return out;
}

std::string Utf16ToUtf8(const std::u16string& text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        char32_t cp = NextCodePoint(text, i);
        if (cp >= 0xD800 && cp <= 0xDFFF) cp = 0xFFFD;  // a lone surrogate has no UTF-8 form
        if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x800) {
            out += static_cast<char>(0xC0 | (cp >> 6));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            out += static_cast<char>(0xE0 | (cp >> 12));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (cp >> 18));
            out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        }
    }
    return out;
}

bool EqualIgnoringAsciiCase(const std::u16string& a, const std::u16string& b)
{
    auto fold = [](char16_t c) { return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (fold(a[i]) != fold(b[i])) return false;
    return true;
}

}  // namespace xls
