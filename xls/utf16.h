// UTF-16 as stored in workbook files, to and from wchar_t (16-bit on Windows, 32-bit on Linux)
// and UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "order_data/visibility.h"

namespace xls {

// wchar_t text to UTF-16: 32-bit code points above U+FFFF become surrogate pairs.
ORDERVIEW_API std::u16string ToUtf16(const std::wstring& text);
// UTF-16 to wchar_t: with a 32-bit wchar_t, surrogate pairs join into one code point; a lone
// surrogate is kept as it is.
ORDERVIEW_API std::wstring FromUtf16(std::u16string_view text);
// UTF-8 to UTF-16 and back; malformed UTF-8 bytes become U+FFFD.
ORDERVIEW_API std::u16string Utf8ToUtf16(const std::string& text);
ORDERVIEW_API std::string Utf16ToUtf8(const std::u16string& text);
// Equal when ASCII letters are compared without regard to case (other code units exactly), the
// way stream and sheet names are matched.
ORDERVIEW_API bool EqualIgnoringAsciiCase(const std::u16string& a, const std::u16string& b);

}  // namespace xls
