// orderview xls: reads and writes binary workbooks (.xls).
//
//   orderview xls dump FILE    the sheets and their cells as JSON:
//                              {"sheets": [{"name": ..., "cells": [[row, col, kind, value], ...]}]}
//                              kind is "int", "double", "text" (8-bit) or "wtext" (wide)
//   orderview xls make OUT PLAN  a workbook from a JSON plan of the same shape (xls_plan.h)
//   orderview xls resave IN OUT  loads IN and saves it as OUT
//
// 8-bit text is shown with each byte as the character of that code (Latin-1).
// Exit status: 0 done, 1 failed, 2 usage.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli_support.h"
#include "xls/book.h"
#include "xls_plan.h"
#include "xls/utf16.h"

namespace {

using nlohmann::json;

std::string Latin1ToUtf8(const char* text, std::size_t length)
{
    std::u16string units;
    for (std::size_t i = 0; i < length; ++i) units += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return xls::Utf16ToUtf8(units);
}

// Loads a workbook; false after a message naming the file and why it could not be read.
bool Load(xls::Book& book, const char* file)
{
    std::string error = ovcli::ReadableProblem(file);
    if (error.empty() && !book.Load(file)) error = std::string(file) + ": not a workbook this library reads";
    if (!error.empty()) std::fprintf(stderr, "orderview xls: %s\n", error.c_str());
    return error.empty();
}

int Save(xls::Book& book, const char* file)
{
    std::string error = ovcli::OutputProblem(file);
    if (error.empty()) {
        ovcli::RemoveStaleTemporaries(file);
        if (!book.SaveAs(file)) error = std::string(file) + ": could not be written";
    }
    if (error.empty()) return 0;
    std::fprintf(stderr, "orderview xls: %s\n", error.c_str());
    return 1;
}

int Dump(const char* file)
{
    xls::Book book;
    if (!Load(book, file)) return 1;
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
    std::cout << out.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
    return std::cout.flush() ? 0 : 1;
}

int Make(const char* file, const char* planFile)
{
    std::string text, error;
    if (!ovcli::ReadWhole(planFile, ovcli::kMaxPlanBytes, text, error)) {
        std::fprintf(stderr, "orderview xls: %s\n", error.c_str());
        return error.find("larger than") != std::string::npos ? 2 : 1;
    }
    std::vector<ovcli::PlanSheet> sheets;
    if (!ovcli::ReadWorkbookPlan(text, sheets, error)) {
        std::fprintf(stderr, "orderview xls: %s: %s\n", planFile, error.c_str());
        return 2;
    }
    xls::Book book;
    if (!ovcli::BuildWorkbook(sheets, book, error)) {
        std::fprintf(stderr, "orderview xls: %s: %s\n", planFile, error.c_str());
        return 2;
    }
    return Save(book, file);
}

int Resave(const char* from, const char* to)
{
    xls::Book book;
    if (!Load(book, from)) return 1;
    return Save(book, to);
}

}  // namespace

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview xls dump FILE | make OUT PLAN.json | resave IN OUT\n"
    "\n"
    "  dump FILE         the sheets and their cells as JSON on standard output:\n"
    "                    {\"sheets\": [{\"name\": N, \"cells\": [[row, col, kind, value], ...]}]}\n"
    "                    kind is int, double, text (8-bit, shown as Latin-1) or wtext (wide)\n"
    "  make OUT PLAN     a workbook from a plan of that shape: row 0-65535, col 0-255, an int a\n"
    "                    32-bit whole number, a double finite, text characters U+0000-U+00FF;\n"
    "                    1 to 1024 sheets, a plan file of at most 256 MiB\n"
    "  resave IN OUT     loads IN and saves it as OUT\n"
    "\n"
    "Exit status: 0 done, 1 a file could not be read or written, 2 usage or a bad plan.\n";

}  // namespace

// argv[0] is the subcommand's name, argv[1] the action.
int XlsCommand(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "--help" || command == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (command == "dump" && argc == 3) return Dump(argv[2]);
    if (command == "make" && argc == 4) return Make(argv[2], argv[3]);
    if (command == "resave" && argc == 4) return Resave(argv[2], argv[3]);
    std::fputs(kUsage, stderr);
    return 2;
}

}  // namespace ovcli
