// The plan `orderview xls make` builds a workbook from, read from JSON:
//   {"sheets": [{"name": "Orders", "cells": [[row, col, kind, value], ...]}, ...]}
// row 0..65535, col 0..255; kind "int" (a whole number that fits 32 bits), "double" (a finite
// number), "text" (8-bit text: characters U+0000..U+00FF, one byte each) or "wtext" (wide text).
// Anything else is refused with a message that says where the plan is wrong.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace xls {
class Book;
}

namespace ovcli {

struct PlanCell {
    enum class Kind { Int, Double, Text, WideText };
    std::size_t row = 0, col = 0;
    Kind kind = Kind::Int;
    int integer = 0;
    double number = 0;
    std::string text;  // UTF-8
};

struct PlanSheet {
    std::string name;  // UTF-8
    std::vector<PlanCell> cells;
};

// Largest plan read, and most sheets in one.
enum : std::size_t { kMaxPlanBytes = std::size_t{256} << 20, kMaxPlanSheets = 1024 };

// Reads a plan; false with `error` ("sheets[0].cells[3]: ...") when it is not one.
bool ReadWorkbookPlan(const std::string& json, std::vector<PlanSheet>& sheets, std::string& error);
// Fills a new book with the plan's sheets and cells; false with `error` when the book refuses a
// sheet (a name a workbook does not allow, two sheets of one name).
bool BuildWorkbook(const std::vector<PlanSheet>& sheets, xls::Book& book, std::string& error);

}  // namespace ovcli
