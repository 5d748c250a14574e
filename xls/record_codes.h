// The BIFF8 record codes the library reads or writes, by record name, and the substream types
// a BOF record gives.
#pragma once

#include <cstdint>

namespace xls {

// Records of every substream.
constexpr std::uint16_t kBOF = 0x0809;
constexpr std::uint16_t kEOF = 0x000A;
constexpr std::uint16_t kContinue = 0x003C;

// Workbook globals.
constexpr std::uint16_t kWindow1 = 0x003D;
constexpr std::uint16_t kFont = 0x0031;
constexpr std::uint16_t kXF = 0x00E0;
constexpr std::uint16_t kStyle = 0x0293;
constexpr std::uint16_t kBoundSheet = 0x0085;
constexpr std::uint16_t kSST = 0x00FC;
constexpr std::uint16_t kExtSST = 0x00FF;

// Sheet records around the cell table.
constexpr std::uint16_t kIndex = 0x020B;
constexpr std::uint16_t kDefColWidth = 0x0055;
constexpr std::uint16_t kDimensions = 0x0200;
constexpr std::uint16_t kWindow2 = 0x023E;

// The cell table: row blocks and their cell records.
constexpr std::uint16_t kRow = 0x0208;
constexpr std::uint16_t kDBCell = 0x00D7;
constexpr std::uint16_t kBlank = 0x0201;
constexpr std::uint16_t kBoolErr = 0x0205;
constexpr std::uint16_t kLabelSST = 0x00FD;
constexpr std::uint16_t kLabel = 0x0204;
constexpr std::uint16_t kRString = 0x00D6;
constexpr std::uint16_t kMulBlank = 0x00BE;
constexpr std::uint16_t kMulRK = 0x00BD;
constexpr std::uint16_t kNumber = 0x0203;
constexpr std::uint16_t kRK = 0x027E;
constexpr std::uint16_t kFormula = 0x0006;
constexpr std::uint16_t kArray = 0x0221;
constexpr std::uint16_t kShrFmla = 0x00BC;
constexpr std::uint16_t kShrFmla1 = 0x04BC;
constexpr std::uint16_t kTable = 0x0036;
constexpr std::uint16_t kString = 0x0207;

// Substream types of a BOF record.
constexpr std::uint16_t kGlobalsSubstream = 0x0005;
constexpr std::uint16_t kWorksheetSubstream = 0x0010;

}  // namespace xls
