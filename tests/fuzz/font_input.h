// Feeds one input to the TrueType reader as a font file: parse it, map a few characters, write
// a subset of their glyphs, and read the subset back: it must map the same characters to its
// glyphs 1, 2, ... with the same widths. Shared by the fuzz target and the regression test of
// its findings; returns "" when all holds, or what did not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/detail/truetype_font.h"

namespace font_input {

inline std::string Check(const std::uint8_t* data, std::size_t size)
{
    const auto font = orderview::TrueTypeFont::FromMemory(data, size);
    if (!font) return "";
    std::vector<char32_t> asked = {U'A', 0x4E2D, 0x9673, 0x53F0, 0xFFFD, 0x1F600};
    // Two more from the input's last bytes, so that the fuzzer steers them.
    if (size >= 4) asked.push_back((char32_t(data[size - 4]) << 8) | data[size - 3]);
    if (size >= 4) asked.push_back((char32_t(data[size - 2] & 0x1F) << 16) | (char32_t(data[size - 1]) << 8));
    std::vector<std::uint16_t> glyphs;
    std::vector<char32_t> codePoints;
    for (const char32_t cp : asked) {
        if (cp == 0 || cp > 0x10FFFF) continue;  // not characters: the subset's cmap leaves them out
        const std::uint16_t glyph = font->GlyphOf(cp);
        if (glyph >= font->GlyphCount() && glyph != 0) return "a glyph past the font's glyphs";
        font->Advance(glyph);
        if (glyph == 0) continue;
        bool seen = false;
        for (const char32_t known : codePoints) seen |= known == cp;
        if (seen) continue;
        glyphs.push_back(glyph);
        codePoints.push_back(cp);
    }
    std::string subset;
    if (!font->WriteSubset(glyphs, codePoints, subset)) return "no subset from memory";
    const auto again =
        orderview::TrueTypeFont::FromMemory(reinterpret_cast<const std::uint8_t*>(subset.data()), subset.size());
    if (!again) return "the subset does not read back";
    for (std::size_t k = 0; k < glyphs.size(); ++k) {
        if (again->GlyphOf(codePoints[k]) != k + 1) return "the subset maps a character elsewhere";
        if (again->Advance(static_cast<std::uint16_t>(k + 1)) != font->Advance(glyphs[k]))
            return "the subset changed a width";
    }
    return "";
}

}  // namespace font_input
