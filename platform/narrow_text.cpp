#include "platform/narrow_text.h"

#include "platform/detail/native.h"

namespace orderview {

std::u16string NarrowToUtf16(std::string_view narrow) { return native::NarrowToUtf16(narrow); }
std::string Utf16ToNarrow(std::u16string_view text) { return native::Utf16ToNarrow(text); }
std::size_t NarrowCharLength(std::string_view text) { return text.empty() ? 0 : native::NarrowCharLength(text); }

std::size_t NarrowCutPoint(std::string_view text, std::size_t maxBytes)
{
    if (text.size() <= maxBytes) return text.size();
    std::size_t cut = 0;
    while (cut < maxBytes) {
        const std::size_t next = cut + NarrowCharLength(text.substr(cut));
        if (next > maxBytes) break;
        cut = next;
    }
    return cut;
}

namespace detail {

char32_t DecodeUtf8(std::string_view text, std::size_t& length)
{
    length = text.empty() ? 0 : 1;
    if (text.empty()) return 0;
    const unsigned char lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return lead;
    std::size_t extra;
    char32_t cp;
    if (lead >= 0xC2 && lead <= 0xDF) {
        extra = 1;
        cp = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        extra = 2;
        cp = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        extra = 3;
        cp = lead & 0x07;
    } else {
        return 0xFFFD;  // a continuation byte, an overlong two-byte lead, or past U+10FFFF
    }
    if (text.size() <= extra) return 0xFFFD;
    for (std::size_t k = 1; k <= extra; ++k) {
        const unsigned char c = static_cast<unsigned char>(text[k]);
        if ((c & 0xC0) != 0x80) return 0xFFFD;
        cp = (cp << 6) | (c & 0x3F);
    }
    static const char32_t kMinimum[] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0xFFFD;
    length = extra + 1;
    return cp;
}

std::u16string Utf8ToUtf16(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::size_t length = 0;
        const char32_t cp = DecodeUtf8(text.substr(i), length);
        i += length;
        if (cp < 0x10000) {
            out += static_cast<char16_t>(cp);
        } else {
            out += static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF));
        }
    }
    return out;
}

char32_t NextCodePoint(std::u16string_view text, std::size_t& i, bool keepLone)
{
    const char32_t unit = text[i++];
    if (unit >= 0xD800 && unit <= 0xDBFF && i < text.size() && text[i] >= 0xDC00 && text[i] <= 0xDFFF)
        return 0x10000 + ((unit - 0xD800) << 10) + (text[i++] - 0xDC00);
    return !keepLone && unit >= 0xD800 && unit <= 0xDFFF ? 0xFFFD : unit;
}

std::string Utf16ToUtf8(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const char32_t cp = NextCodePoint(text, i);  // a lone surrogate has no UTF-8 form
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

}  // namespace detail
}  // namespace orderview
