// A TrueType font read for printing: the code points it maps, the advance widths of its glyphs,
// and a subset of its glyphs written as a font file of their own, for embedding in a PDF. Reads
// single fonts (.ttf) and collections (.ttc, choosing the face that suits Chinese text best);
// only TrueType outlines (glyf/loca): a font with CFF outlines only is not usable. Every read is
// bounds-checked: a damaged file gives no font, or a glyph with no outline, never a crash.
// Internal to the library (the PDF print job uses it); the file is also compiled into its tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace orderview {

// Metrics of a face, in 1/1000 of the font size (the PDF's glyph space).
struct FontMetrics {
    int iAscent = 0;
    int iDescent = 0;
    int iCapHeight = 0;
    int iBox[4] = {0, 0, 0, 0};  // xMin, yMin, xMax, yMax
    int iItalicAngle = 0;
};

class TrueTypeFont {
public:
    // The best face of a font in memory (the bytes are copied as needed); null when no face is
    // usable. A face is usable with TrueType outlines, the tables head, hhea, hmtx, maxp, loca
    // and glyf, and a Unicode cmap (format 4 or 12). Faces that map Chinese ideographs come
    // first, then Traditional Chinese ones (a zh-TW name, "TW" in the name, the Big5 code page).
    static std::unique_ptr<TrueTypeFont> FromMemory(const std::uint8_t* data, std::size_t size);
    // The same from a file through the file layer: the small tables are read at once, the
    // glyphs' outlines only when a subset is written.
    static std::unique_ptr<TrueTypeFont> FromFile(const FilePath& path);
    ~TrueTypeFont();
    TrueTypeFont(const TrueTypeFont&) = delete;
    TrueTypeFont& operator=(const TrueTypeFont&) = delete;

    // The glyph of a code point; 0 (the missing glyph) when the font has none.
    std::uint16_t GlyphOf(char32_t codePoint) const;
    // The advance width of a glyph in 1/1000 of the font size.
    int Advance(std::uint16_t glyph) const;
    int GlyphCount() const { return glyphCount_; }
    // The face's PostScript name, as characters a PDF name may hold ("Font" when it has none).
    const std::string& PostScriptName() const { return postScriptName_; }
    const FontMetrics& Metrics() const { return metrics_; }

    // Writes a font of the given glyphs: glyph k of `glyphs` becomes glyph k + 1 of the subset,
    // glyph 0 stays the missing glyph, and the components of composite glyphs follow at the end.
    // `codePoints[k]` (0 for none) is what glyph k of `glyphs` shows: the subset's cmap maps it.
    // A glyph whose outline is damaged is written empty. False when the outlines cannot be read.
    bool WriteSubset(const std::vector<std::uint16_t>& glyphs, const std::vector<char32_t>& codePoints,
                     std::string& out) const;

private:
    TrueTypeFont() = default;
    bool Load(const std::uint8_t* data, std::size_t size, std::size_t faceOffset);
    bool ReadGlyph(std::uint16_t glyph, std::string& out) const;

    std::vector<std::uint8_t> head_, hhea_, maxp_, hmtx_, loca_, cmap_, cvt_, fpgm_, prep_;
    std::size_t cmapFormat_ = 0;  // 4 or 12: the subtable cmap_ holds
    std::vector<std::uint8_t> glyfMemory_;     // the glyf table, when read from memory
    mutable std::unique_ptr<FileReader> file_;  // the font file, when read from a file
    std::uint64_t glyfOffset_ = 0, glyfLength_ = 0;
    int glyphCount_ = 0;
    int metricCount_ = 0;   // hhea's numberOfHMetrics
    int unitsPerEm_ = 1000;
    bool longLoca_ = false;
    std::string postScriptName_;
    FontMetrics metrics_;
};

}  // namespace orderview
