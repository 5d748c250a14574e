// How many terminal columns narrow text takes: East Asian Wide and Fullwidth characters take two,
// combining marks and zero-width characters none, every other character one. Text is read in
// the narrow code page (platform/narrow_text.h), so a Big5 or a UTF-8 name measures the same.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ovcli {

// The columns one code point takes: 0, 1 or 2.
int CodePointWidth(char32_t cp);
// The columns narrow text takes.
std::size_t DisplayWidth(std::string_view narrow);
// The longest prefix of narrow text that takes at most `columns` columns, cut between characters;
// `width` receives the columns it takes.
std::size_t CutToWidth(std::string_view narrow, std::size_t columns, std::size_t& width);
// Narrow text followed by blanks up to `columns` columns (a longer text is kept whole).
std::string PadToWidth(std::string_view narrow, std::size_t columns);

}  // namespace ovcli
