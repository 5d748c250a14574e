// The sheet reader walks a sheet substream once, record by record, and hands every cell value
// to a CellSink as it meets it (Worksheet::Read, in sheet_reader.cpp). Each cell record is
// decoded where it lies in the stream by its fields' ReadData (cell_records.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "order_data/visibility.h"

namespace xls {

// Receives the cell values of a sheet as it is read, each with its format index (XF).
class ORDERVIEW_API CellSink {
public:
    virtual ~CellSink();
    virtual void Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value) = 0;
    virtual void Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value) = 0;
    // `wide` tells whether the text was stored 16-bit; otherwise every code unit is below 256.
    virtual void Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text,
                      bool wide) = 0;
    // Shared string `index` of the table the sheet was read with (valid); by default its Text.
    virtual void SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                            std::u16string_view text, bool wide);
    // A cell pointing at shared string `index`, which the table does not hold (a damaged file);
    // by default ignored.
    virtual void MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index);
    // A boolean (0, 1) or an error code, stored as such or as a formula's result; by default its
    // Integer.
    virtual void Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError);
    // A cell with a format and no value; by default ignored.
    virtual void Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf);
};

}  // namespace xls
