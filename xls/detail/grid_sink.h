// The sink a workbook load reads each sheet's cells into: it puts the values into the sheet's
// grid (internal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "xls/sheet.h"
#include "xls/detail/text_holds.h"
#include "xls/worksheet_records.h"

namespace xls {

// Puts the cell values of a sheet substream into a sheet's grid. Shared strings are converted
// once, the first time a cell uses them, and their cells share that one copy of the text.
class GridSink : public CellSink {
public:
    // `records` is the sheet substream being read into `sheet`.
    GridSink(Sheet& sheet, const Worksheet& records, std::size_t sharedStrings);
    // The sheet keeps the texts it was lent.
    ~GridSink() override;
    GridSink(const GridSink&) = delete;
    GridSink& operator=(const GridSink&) = delete;

    // The common cells, a number or a converted shared string into a cell the sheet holds
    // already with no text to release, are stored without a call.
    void SharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index,
                    std::u16string_view text, bool wide) override;
    void Integer(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value) override;
    void Double(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value) override;
    // The cell stays, with empty text, and is counted.
    void MissingText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint32_t index) override;
    void Logical(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::uint8_t value, bool isError) override;
    void Blank(std::uint16_t row, std::uint16_t col, std::uint16_t xf) override;
    void Text(std::uint16_t row, std::uint16_t col, std::uint16_t xf, const std::u16string& text, bool wide) override;

    // The cells whose shared string was missing.
    std::size_t missing() const { return missing_; }
    // Whether a cell was given a text of its own, not one lent to it.
    bool ownsTexts() const { return ownsTexts_; }

private:
    // The rare paths of the common cells, kept out of them so that those save no registers: a
    // new cell (the sheet grows), a cell that holds text already, a string's first use.
    void NewSharedText(std::uint16_t row, std::uint16_t col, std::uint16_t xf, TextHolds& converted,
                       std::u16string_view text, bool wide);
    void NewInteger(std::uint16_t row, std::uint16_t col, std::uint16_t xf, std::int32_t value);
    void NewDouble(std::uint16_t row, std::uint16_t col, std::uint16_t xf, double value);
    // The cell at (row, col), made if need be, given format `xf`.
    Cell* At(std::uint16_t row, std::uint16_t col, std::uint16_t xf);
    // Text stored 8-bit, each code unit below 256, as bytes (in a buffer reused from cell to cell).
    const std::string& Narrow(std::u16string_view text);
    // Before its first cell, the sheet reserves the used range the file declares (the
    // Dimensions record comes before the cells).
    Cell* CellAt(std::uint16_t row, std::uint16_t col);

    Sheet& sheet_;
    const Worksheet& records_;
    bool reserved_ = false;
    std::unique_ptr<TextHolds[]> shared_;  // each shared string's text, once a cell used it
    std::size_t sharedCount_;
    std::string narrow_;
    std::size_t missing_ = 0;
    bool ownsTexts_ = false;
};

}  // namespace xls
