// Narrow text: the bytes a CString holds, in the front end's code page. That is the process's
// ANSI code page on Windows (950, Big5, on a Taiwanese system) and UTF-8 elsewhere. Wherever
// text leaves the narrow world (UTF-16 in a workbook, glyphs on a page, columns in a terminal)
// it goes through this one pair of conversions, and texts are cut between characters only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "order_data/visibility.h"

namespace orderview {

// Narrow text as UTF-16. Bytes that are not valid in the code page become U+FFFD, one for each
// byte that starts no valid character; nothing is dropped.
ORDERVIEW_API std::u16string NarrowToUtf16(std::string_view narrow);
// UTF-16 as narrow text; a character the code page cannot hold becomes '?', and a lone surrogate
// U+FFFD where the code page has it (UTF-8), else '?'.
ORDERVIEW_API std::string Utf16ToNarrow(std::u16string_view text);

// The length in bytes of the character that starts `text` (0 when `text` is empty). A byte that
// starts no valid character counts as a character of its own, so stepping by this length walks
// any bytes to their end.
ORDERVIEW_API std::size_t NarrowCharLength(std::string_view text);
// The longest prefix of `text` of at most `maxBytes` bytes that ends between two characters.
ORDERVIEW_API std::size_t NarrowCutPoint(std::string_view text, std::size_t maxBytes);

namespace detail {
// UTF-8, as the narrow code page of every system but Windows: the code point that starts `text`
// and its length; an invalid, overlong, surrogate or cut-short sequence reads as U+FFFD of length 1.
char32_t DecodeUtf8(std::string_view text, std::size_t& length);
// UTF-8 to UTF-16 and back; a lone surrogate becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::u16string_view text);
// The code point at text[i], advancing `i` past it: a surrogate pair joins into one, a lone
// surrogate reads as U+FFFD, or as itself with `keepLone`.
char32_t NextCodePoint(std::u16string_view text, std::size_t& i, bool keepLone = false);
}  // namespace detail

}  // namespace orderview
