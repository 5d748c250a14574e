// orderview xls: reads and writes binary workbooks (.xls).
//
//   orderview xls dump FILE    the sheets and their cells as JSON:
//                              {"sheets": [{"name": ..., "cells": [[row, col, kind, value], ...]}]}
//                              kind is "int", "double", "text" (8-bit) or "wtext" (wide)
//   orderview xls make OUT PLAN  a workbook from a JSON plan of the same shape
//   orderview xls resave IN OUT  loads IN and saves it as OUT
//
// 8-bit text is shown with each byte as the character of that code (Latin-1).
// Exit status: 0 done, 1 failed, 2 usage.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

#include "xls/book.h"
#include "xls/utf16.h"

namespace {

using nlohmann::json;

std::string Latin1ToUtf8(const char* text, std::size_t length)
{
    std::u16string units;
    for (std::size_t i = 0; i < length; ++i) units += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return xls::Utf16ToUtf8(units);
}

int Dump(const char* file)
{
    xls::Book book;
    if (!book.Load(file)) {
        std::fprintf(stderr, "orderview xls: %s: cannot load\n", file);
        return 1;
    }
    json out = {{"sheets", json::array()}};
    for (std::size_t s = 0; s < book.GetTotalWorkSheets(); ++s) {
        xls::Sheet* sheet = book.GetWorksheet(s);
        json cells = json::array();
        for (const auto& row : sheet->Rows()) {
            for (std::size_t c = 0; c < row.cells.size(); ++c) {
                const xls::Cell& cell = row.cells[c];
                json value;
                std::string kind;
                switch (cell.Type()) {
                case xls::Cell::kInteger: kind = "int"; value = cell.GetInteger(); break;
                case xls::Cell::kDouble: kind = "double"; value = cell.GetDouble(); break;
                case xls::Cell::kString: kind = "text"; value = Latin1ToUtf8(cell.GetString(), cell.GetStringLength()); break;
                case xls::Cell::kWString: kind = "wtext"; value = xls::Utf16ToUtf8(xls::ToUtf16(cell.GetWString())); break;
                default: continue;
                }
                cells.push_back({row.number, c, kind, value});
            }
        }
        out["sheets"].push_back({{"name", xls::Utf16ToUtf8(xls::ToUtf16(sheet->GetUnicodeSheetName()))}, {"cells", cells}});
    }
    std::cout << out.dump() << '\n';
    return 0;
}

int Make(const char* file, const char* planFile)
{
    std::ifstream in(planFile);
    const json plan = json::parse(in, nullptr, false);
    if (plan.is_discarded() || !plan.contains("sheets")) return 2;
    xls::Book book;
    book.New(1);
    bool first = true;
    for (const auto& s : plan["sheets"]) {
        const std::wstring name = xls::FromUtf16(xls::Utf8ToUtf16(s["name"].get<std::string>()));
        xls::Sheet* sheet = first ? book.GetWorksheet(std::size_t{0}) : book.AddWorksheet(name.c_str());
        if (first && sheet) sheet->Rename(name.c_str());
        first = false;
        if (!sheet) return 1;
        for (const auto& c : s["cells"]) {
            xls::Cell* cell = sheet->Cell(c[0].get<std::size_t>(), c[1].get<std::size_t>());
            if (!cell) return 1;
            const std::string kind = c[2].get<std::string>();
            if (kind == "int") cell->SetInteger(c[3].get<int>());
            else if (kind == "double") cell->SetDouble(c[3].get<double>());
            else if (kind == "wtext") cell->SetWString(xls::FromUtf16(xls::Utf8ToUtf16(c[3].get<std::string>())).c_str());
            else {
                // 8-bit text: each character is one byte (Latin-1).
                std::string bytes;
                for (char16_t unit : xls::Utf8ToUtf16(c[3].get<std::string>())) bytes += static_cast<char>(unit);
                cell->SetString(bytes.data(), bytes.size());
            }
        }
    }
    return book.SaveAs(file) ? 0 : 1;
}

int Resave(const char* from, const char* to)
{
    xls::Book book;
    return book.Load(from) && book.SaveAs(to) ? 0 : 1;
}

}  // namespace

namespace ovcli {

// argv[0] is the subcommand's name, argv[1] the action.
int XlsCommand(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "--help") {
        std::printf("usage: orderview xls dump FILE | make OUT PLAN.json | resave IN OUT\n");
        return 0;
    }
    if (command == "dump" && argc == 3) return Dump(argv[2]);
    if (command == "make" && argc == 4) return Make(argv[2], argv[3]);
    if (command == "resave" && argc == 4) return Resave(argv[2], argv[3]);
    std::fprintf(stderr, "usage: orderview xls dump FILE | make OUT PLAN.json | resave IN OUT\n");
    return 2;
}

}  // namespace ovcli
