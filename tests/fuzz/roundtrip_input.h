// Round trips of a workbook through SaveToMemory and LoadFromMemory: what a book holds must come
// back with the same sheets, names and cell values (numbers compared as numbers, texts by their
// characters whatever their width). Shared by the fuzz targets and the regression test of their
// findings; a non-empty result describes the first difference.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "xls/book.h"
#include "xls/utf16.h"

namespace roundtrip {

inline bool IsNumber(const xls::Cell& cell)
{
    return cell.Type() == xls::Cell::kInteger || cell.Type() == xls::Cell::kDouble;
}

inline std::u16string Characters(const xls::Cell& cell)
{
    if (cell.Type() == xls::Cell::kWString) return xls::ToUtf16(std::wstring(cell.GetWString(), cell.GetStringLength()));
    std::u16string text;
    for (std::size_t i = 0; i < cell.GetStringLength(); ++i)
        text += static_cast<char16_t>(static_cast<unsigned char>(cell.GetString()[i]));
    return text;
}

inline bool SameCell(const xls::Cell& a, const xls::Cell& b)
{
    if (IsNumber(a) || IsNumber(b)) {
        if (!IsNumber(a) || !IsNumber(b)) return false;
        const double x = a.GetDouble(), y = b.GetDouble();
        return x == y || (std::isnan(x) && std::isnan(y));
    }
    const bool textA = a.Type() == xls::Cell::kString || a.Type() == xls::Cell::kWString;
    const bool textB = b.Type() == xls::Cell::kString || b.Type() == xls::Cell::kWString;
    if (textA != textB) return false;
    return !textA || Characters(a) == Characters(b);
}

// Every defined cell of `from` is in `to` with the same value.
inline std::string CellsOf(xls::Sheet& from, xls::Sheet& to, const char* direction)
{
    for (const auto& row : from.Rows())
        for (std::size_t c = 0; c < row.cells.size(); ++c) {
            const xls::Cell& cell = row.cells[c];
            if (cell.Type() == xls::Cell::kUndefined) continue;
            const xls::Cell* other = to.Cell(row.number, c);
            if (!other || !SameCell(cell, *other))
                return std::string(direction) + " cell " + std::to_string(row.number) + "," + std::to_string(c);
        }
    return std::string();
}

inline std::string Check(xls::Book& book)
{
    std::vector<std::uint8_t> image;
    if (!book.SaveToMemory(image)) return "SaveToMemory failed";
    xls::Book again;
    if (!again.LoadFromMemory(image.data(), image.size())) return "the saved image does not load";
    if (again.GetTotalWorkSheets() != book.GetTotalWorkSheets()) return "sheet count";
    for (std::size_t s = 0; s < book.GetTotalWorkSheets(); ++s) {
        const std::wstring name = book.GetUnicodeSheetName(s);
        if (name != again.GetUnicodeSheetName(s)) return "sheet name " + std::to_string(s);
        xls::Sheet* before = book.GetWorksheet(s);
        xls::Sheet* after = again.GetWorksheet(s);
        std::string difference = CellsOf(*before, *after, "lost");
        if (difference.empty()) difference = CellsOf(*after, *before, "gained");
        if (!difference.empty()) return difference + " of sheet " + std::to_string(s);
    }
    return std::string();
}

// A plain round trip of whatever loads.
inline std::string RoundTrip(const std::uint8_t* data, std::size_t size)
{
    xls::Book book;
    if (!book.LoadFromMemory(data, size)) return std::string();
    return Check(book);
}

// Reads small numbers from a script of bytes, 0 once it runs out.
class Script {
public:
    Script(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    unsigned Byte() { return at_ < size_ ? data_[at_++] : 0; }
    unsigned Word() { return Byte() | (Byte() << 8); }
    bool done() const { return at_ >= size_; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// The input as a workbook (a new one when it does not load), edited through the Book, Sheet and
// Cell interface by a script read from its last bytes, then round-tripped.
inline std::string EditedRoundTrip(const std::uint8_t* data, std::size_t size)
{
    xls::Book book;
    const std::size_t scriptSize = size < 96 ? size : 96;
    Script script(data + size - scriptSize, scriptSize);
    if (!book.LoadFromMemory(data, size)) book.New(1 + static_cast<int>(script.Byte() % 3));
    for (int step = 0; step < 24 && !script.done(); ++step) {
        const unsigned op = script.Byte() % 9;
        const std::size_t sheets = book.GetTotalWorkSheets();
        xls::Sheet* sheet = sheets ? book.GetWorksheet(script.Byte() % sheets) : nullptr;
        const std::size_t row = script.Word(), col = script.Byte();
        xls::Cell* cell = sheet && op <= 3 ? sheet->Cell(row, col) : nullptr;
        switch (op) {
        case 0: if (cell) cell->Set(static_cast<int>(script.Word() << 16 | script.Word())); break;
        case 1: if (cell) cell->Set(static_cast<double>(script.Word()) / (script.Byte() + 1) - 1000.0); break;
        case 2:
            if (cell) {  // up to 10,200 8-bit characters: past one record part
                const std::string text(script.Byte() * 40, static_cast<char>(script.Byte()));
                cell->SetString(text.data(), text.size());
            }
            break;
        case 3:
            if (cell) {
                std::wstring text(script.Byte() * 40, L'x');
                for (wchar_t& c : text) c = static_cast<wchar_t>(0x4E00 + (&c - text.data()) % 64);
                if (!text.empty()) text[0] = static_cast<wchar_t>(script.Word() % 0xD800);
                cell->SetWString(text.c_str(), text.size());
            }
            break;
        case 4: if (sheet) sheet->EraseCell(row, col); break;
        case 5: book.AddWorksheet(("Added" + std::to_string(script.Byte())).c_str(), static_cast<int>(script.Byte() % 4) - 1); break;
        case 6: book.AddWorksheet(); break;
        case 7: if (sheet) sheet->Rename((L"\u540d" + std::to_wstring(script.Byte())).c_str()); break;
        case 8: if (sheets > 1) book.DeleteWorksheet(script.Byte() % sheets); break;
        }
    }
    return Check(book);
}

}  // namespace roundtrip
