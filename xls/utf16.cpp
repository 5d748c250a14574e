#include "xls/utf16.h"

#include "platform/narrow_text.h"

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
    // A lone surrogate stands for itself.
    for (size_t i = 0; i < text.size();) out += static_cast<wchar_t>(orderview::detail::NextCodePoint(text, i, true));
    return out;
}

std::u16string Utf8ToUtf16(const std::string& text) { return orderview::detail::Utf8ToUtf16(text); }

std::string Utf16ToUtf8(const std::u16string& text) { return orderview::detail::Utf16ToUtf8(text); }

bool EqualIgnoringAsciiCase(const std::u16string& a, const std::u16string& b)
{
    auto fold = [](char16_t c) { return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (fold(a[i]) != fold(b[i])) return false;
    return true;
}

}  // namespace xls
