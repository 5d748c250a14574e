// A streaming PDF 1.4 writer: each page's content stream is written as soon as the page is
// done, so memory holds one page and the offsets of the objects, never the document. Text uses
// the standard Helvetica and Helvetica-Bold fonts in WinAnsi encoding; characters WinAnsi lacks
// use an embedded subset of a TrueType font (EmbeddedFont), written once at the document's end.
// Internal to the library; the print seam (platform/print.h) is its interface.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "order_data/cstring.h"
#include "platform/file_system.h"
#include "platform/narrow_text.h"
#include "platform/detail/truetype_font.h"

namespace orderview {

class PdfWriter;

// Calls `each` with every character of narrow text as Unicode (NarrowToUtf16): a surrogate
// pair as one code point, a lone surrogate as U+FFFD.
template <class Each>
void ForEachCodePoint(std::string_view narrow, Each each)
{
    const std::u16string text = NarrowToUtf16(narrow);
    for (std::size_t i = 0; i < text.size();) each(detail::NextCodePoint(text, i));
}

// The WinAnsi code of a Unicode character; 0 when WinAnsi lacks it.
unsigned char WinAnsiOf(char32_t cp);
// Helvetica's (Helvetica-Bold's) advance width of a WinAnsi code, in 1/1000 of the font size.
int HelveticaWidth(unsigned char code, bool bold);

// The width of a text of ASCII bytes in Helvetica (Helvetica-Bold when `bold`), in 1/1000 of the
// font size; false, at the first byte that is not ASCII, for any other text.
bool AsciiWidth(const char* text, std::size_t length, bool bold, long& units);

// Advance width of narrow text in Helvetica (Helvetica-Bold when `bold`), in 1/1000 of the font
// size: each character by its WinAnsi code; '?' for characters WinAnsi lacks and for bytes that
// are not valid narrow text.
long HelveticaTextWidth(const char* text, std::size_t length, bool bold);

// The glyphs a document uses from a TrueType font, embedded as a Type0 font (Identity-H, a
// CIDFontType2 whose CIDs are the glyphs of the subset) with a ToUnicode map, so its text can be
// searched and copied. The font is loaded by `load` the first time a character asks for it.
class EmbeddedFont {
public:
    using Loader = std::unique_ptr<TrueTypeFont> (*)();
    explicit EmbeddedFont(Loader load) : load_(load) {}

    // The CID and the advance width (1/1000 of the font size) of a character; false when no
    // font could be loaded, the font has no glyph for it, or the subset is full.
    bool Glyph(char32_t cp, std::uint16_t& cid, int& width);
    bool IsUsed() const { return !glyphs_.empty(); }
    // Writes the font's objects; `fontObject` is the Type0 font the pages name.
    void Write(PdfWriter& writer, int fontObject) const;

private:
    struct Known {
        std::uint16_t cid;
        int width;
    };
    Loader load_;
    bool tried_ = false;
    std::unique_ptr<TrueTypeFont> font_;
    std::unordered_map<char32_t, Known> known_;              // by code point (cid 0: none)
    std::unordered_map<std::uint16_t, std::uint16_t> cidOf_;  // by glyph of the font
    std::vector<std::uint16_t> glyphs_;                      // glyph of the font, by CID - 1
    std::vector<char32_t> codePoints_;                       // first character shown, by CID - 1
};

// Appends a PDF literal string "(...)" of WinAnsi bytes: parentheses and backslashes escaped,
// control bytes and 0x7F written as octal escapes.
void AppendPdfString(std::string& out, const std::string& bytes);

// Appends a number with at most two decimals and no exponent (content stream coordinates).
void AppendPdfNumber(std::string& out, double value);

class PdfWriter {
public:
    // Opens the output beside `path`; IsGood() is false when that fails.
    explicit PdfWriter(const CString& path);

    bool IsGood() const { return file_.IsGood(); }
    // Writes one page of the given size in points whose content stream is `content`.
    bool AddPage(double width, double height, const std::string& content);
    // A number for an object written later with WriteObject; every one must be written before
    // Finish.
    int ReserveObject();
    // "N 0 obj", the body, "endobj".
    void WriteObject(int number, const std::string& body);
    // Pages added from now on name `object` as their font /F3.
    void SetThirdFont(int object) { thirdFont_ = object; }
    // Writes the page tree, the document information, the cross-reference table and the
    // trailer, then puts the file at its path. False (nothing left behind) on any failure.
    bool Finish(const CString& title);
    int PageCount() const { return pages_; }

private:
    void BeginObject(int number);

    ReplacingFile file_;
    std::vector<std::uint64_t> offsets_;  // by object number; 0 for object 0
    std::vector<int> pageObjects_;
    std::string scratch_;
    int pages_ = 0;
    int thirdFont_ = 0;
};

}  // namespace orderview
