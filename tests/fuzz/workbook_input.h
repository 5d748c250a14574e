// Feeds one input to the workbook loader the way a user's file reaches it: load, then visit every
// cell of every sheet. Shared by the fuzz target and the regression test of its findings.
#pragma once

#include <cstddef>
#include <cstdint>

#include "xls/book.h"

inline void FeedWorkbook(const std::uint8_t* data, std::size_t size)
{
    xls::Book book;
    if (!book.LoadFromMemory(data, size)) return;
    double sum = 0;
    for (std::size_t s = 0; s < book.GetTotalWorkSheets(); ++s) {
        xls::Sheet* sheet = book.GetWorksheet(s);
        sheet->GetUnicodeSheetName();
        for (const auto& row : sheet->Rows())
            for (const xls::Cell& cell : row.cells) sum += cell.GetDouble() + static_cast<double>(cell.GetStringLength());
    }
    static volatile double sink;
    sink = sum;
}
