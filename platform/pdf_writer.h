// A streaming PDF 1.4 writer: each page's content stream is written as soon as the page is
// done, so memory holds one page and the offsets of the objects, never the document. Text uses
// the standard Helvetica and Helvetica-Bold fonts in WinAnsi encoding (no embedded fonts).
// Internal to the library; the print seam (platform/print.h) is its interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "order_data/cstring.h"
#include "platform/file_system.h"

namespace orderview {

// Appends the WinAnsi bytes of UTF-8 text: ASCII as it is (control bytes included), other
// characters by their WinAnsi code, '?' for characters WinAnsi lacks and for invalid bytes.
// Returns their width in Helvetica (Helvetica-Bold when `bold`), in 1/1000 of the font size.
long AppendWinAnsi(std::string& out, const char* text, std::size_t length, bool bold);

// Advance width of UTF-8 text as AppendWinAnsi turns it into WinAnsi, in 1/1000 of the font size.
long HelveticaTextWidth(const char* text, std::size_t length, bool bold);

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
    // Writes the page tree, the document information, the cross-reference table and the
    // trailer, then puts the file at its path. False (nothing left behind) on any failure.
    bool Finish(const CString& title);
    int PageCount() const { return pages_; }

private:
    void BeginObject(int number);

    ReplacingFile file_;
    std::vector<std::uint64_t> offsets_;  // by object number; 0 for object 0
    std::string scratch_;
    int pages_ = 0;
};

}  // namespace orderview
