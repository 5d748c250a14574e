// The HTML table writer behind the spreadsheet exports: an HTML page with the site's style
// sheet, one table, rows of text cells and number cells that spreadsheet programs open as a
// worksheet. The file is written under a temporary name beside the chosen path and put in place
// when it is closed or abandoned, so a write that fails half-way never costs the file that was
// there.
#pragma once

#include <memory>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

namespace orderview {

class ReplacingFile;

class ORDERVIEW_API ExportFile {
public:
    // Results of Open and Close.
    // (Enumerators, not static members: a DLL exports no storage for them.)
    enum : int {
        kOk = 0,
        kCannotWrite = 1,  // the file cannot be created (or, at Close, written)
        kNoTemplate = 2,   // "xls_head.txt" cannot be read; the file stays open
        kNotOpen = 4,      // Close with no file open
    };
    // Number cell kinds; any other kind writes a plain integer cell.
    enum : int { kInteger = 1, kDecimals = 2, kPercent = 3, kPercentDecimals = 4 };

    ExportFile();
    ~ExportFile();  // abandons a file left open
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    // Starts the file at `path` (abandoning one left open): the html start tag, the main
    // folder's "sys\xls_head.txt" copied with a line feed after it, the body and table tags.
    int Open(const CString& path);
    bool IsOpen() const { return file_ != nullptr; }

    void BeginRow();
    // The opening of a cell, returned for Cell: "<td class=C  style=' S'>\n ".
    static CString CellOpen(const CString& cellClass, const CString& style);
    static CString CellOpenSpan(int span, const CString& cellClass, const CString& style);
    // `open`, the text as it is (no escaping), the closing tag.
    void Cell(const CString& open, const CString& text);
    // A right-aligned number cell of class "align_border" whose number format keeps the
    // text's grouping, `decimals` ("##") and percent sign.
    void NumberCell(int kind, const CString& text, const CString& decimals);
    void Line(const CString& text);
    void EndRow();
    // Writes the closing tags and puts the file in place: kOk, kCannotWrite when a write
    // failed (the old file stays), kNotOpen.
    int Close();
    // Puts the file in place as it is, without the closing tags (nothing when a write failed).
    void Abandon();

private:
    void Put(const char* text, std::size_t size);
    void Put(const char* text);

    std::unique_ptr<ReplacingFile> file_;
};

}  // namespace orderview
