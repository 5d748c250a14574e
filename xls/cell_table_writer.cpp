#include "xls/detail/cell_table_writer.h"

#include <algorithm>

namespace xls {

namespace {

constexpr std::size_t kRowsPerBlock = 32;
constexpr std::size_t kRecordHeader = 4;

// A cell goes into the file when it has a value, or a format of its own (a formatted blank).
bool Written(const Cell& cell) { return cell.Type() != Cell::kUndefined || cell.GetFormat() != Cell::kDefaultFormat; }

bool IsText(const Cell& cell) { return cell.Type() == Cell::kString || cell.Type() == Cell::kWString; }

// The record a cell is written as: appended to `out` unless it is null. Returns its stream size
// (0: the cell needs none). `sst` is the shared string index of a text cell.
std::size_t PutCell(const Cell& cell, std::uint16_t row, std::uint16_t col, std::uint32_t sst,
                    std::vector<std::uint8_t>* out)
{
    const std::uint16_t xf = cell.GetFormat();
    std::uint32_t rk = 0;
    switch (cell.Type()) {
    case Cell::kInteger:
        if (cell.IsBoolean() || cell.IsError()) {
            if (out)
                CellBlock::BoolErr::Append(*out, row, col, xf, static_cast<std::uint8_t>(cell.GetInteger()),
                                           static_cast<std::uint8_t>(cell.IsError() ? 1 : 0));
            return kRecordHeader + CellBlock::BoolErr::kDataSize;
        }
        if (CellBlock::RK::EncodeInteger(cell.GetInteger(), rk)) {
            if (out) CellBlock::RK::Append(*out, row, col, xf, rk);
            return kRecordHeader + CellBlock::RK::kDataSize;
        }
        if (out) CellBlock::Number::Append(*out, row, col, xf, static_cast<double>(cell.GetInteger()));
        return kRecordHeader + CellBlock::Number::kDataSize;
    case Cell::kDouble:
        if (out) CellBlock::Number::Append(*out, row, col, xf, cell.GetDouble());
        return kRecordHeader + CellBlock::Number::kDataSize;
    case Cell::kString:
    case Cell::kWString:
        if (out) CellBlock::LabelSST::Append(*out, row, col, xf, sst);
        return kRecordHeader + CellBlock::LabelSST::kDataSize;
    default:
        if (xf == Cell::kDefaultFormat) return 0;
        if (out) CellBlock::Blank::Append(*out, row, col, xf);
        return kRecordHeader + CellBlock::Blank::kDataSize;
    }
}

}  // namespace

CellTableWriter::CellTableWriter(Sheet::RowRange grid, const std::map<std::uint16_t, RowRecord>& formats)
    : grid_(grid), formats_(formats)
{
}

template <class Each>
void CellTableWriter::ForEachRow(Each&& each) const
{
    auto cellRow = grid_.begin();
    auto formatRow = formats_.begin();
    while (cellRow != grid_.end() || formatRow != formats_.end()) {
        const bool fromGrid =
            formatRow == formats_.end() || (cellRow != grid_.end() && (*cellRow).number <= formatRow->first);
        TableRow row{fromGrid ? (*cellRow).number : formatRow->first, fromGrid ? &(*cellRow).cells : nullptr, nullptr,
                     SIZE_MAX, 0};
        if (formatRow != formats_.end() && formatRow->first == row.number) row.format = &(formatRow++)->second;
        if (fromGrid) ++cellRow;
        if (row.cells)
            for (std::size_t c = 0; c < row.cells->size(); ++c)
                if (Written((*row.cells)[c])) {
                    if (row.first == SIZE_MAX) row.first = c;
                    row.last = c;
                }
        if (row.first != SIZE_MAX || row.format) each(row);  // else nothing to write for this row
    }
}

std::size_t CellTableWriter::Plan(SharedStringIndex& strings)
{
    blocks_.clear();
    texts_.clear();
    firstRow_ = firstCol_ = SIZE_MAX;
    lastRow_ = lastCol_ = 0;
    std::size_t block = SIZE_MAX;
    ForEachRow([&](const TableRow& row) {
        if (row.number / kRowsPerBlock != block) {
            block = row.number / kRowsPerBlock;
            blocks_.push_back({0, 0});
        }
        Worksheet::BlockSize& size = blocks_.back();
        ++size.rowCount;
        if (row.first == SIZE_MAX) return;  // a row of its own format and height only
        for (std::size_t c = row.first; c <= row.last; ++c) {
            const Cell& cell = (*row.cells)[c];
            size.cellBytes += PutCell(cell, 0, 0, 0, nullptr);
            if (IsText(cell)) texts_.push_back(strings.Add(cell));
        }
        if (firstRow_ == SIZE_MAX) firstRow_ = row.number;
        lastRow_ = row.number;
        firstCol_ = std::min(firstCol_, row.first);
        lastCol_ = std::max(lastCol_, row.last);
    });
    size_ = 0;
    for (const Worksheet::BlockSize& b : blocks_) size_ += RowBlock::SizeOf(b.rowCount, b.cellBytes);
    if (Empty()) firstCol_ = 0;
    return texts_.size();
}

bool CellTableWriter::Write(const Put& put)
{
    RowBlock block;  // reused: one block's records at a time
    std::vector<char> bytes;
    std::size_t next = 0, current = SIZE_MAX, text = 0;
    bool ok = true;
    auto flush = [&]() {
        if (current == SIZE_MAX || !ok) return;
        block.SetDBCellOffsets();
        const Worksheet::BlockSize& planned = blocks_[next++];
        const std::size_t size = RowBlock::SizeOf(planned.rowCount, planned.cellBytes);
        bytes.resize(size);
        ok = block.rows.size() == planned.rowCount && block.cells.size() == planned.cellBytes &&
             block.Write(bytes.data(), bytes.size()) == size && put(bytes.data(), size);
        block.rows.clear();
        block.cells.clear();
        block.firstCellOfRow.clear();
    };
    ForEachRow([&](const TableRow& row) {
        if (!ok) return;
        if (row.number / kRowsPerBlock != current) {
            flush();
            current = row.number / kRowsPerBlock;
            ok = ok && next < blocks_.size();
        }
        RowRecord record = row.format ? *row.format : RowRecord();
        record.row = static_cast<std::uint16_t>(row.number);
        record.firstCol = record.lastColPlus1 = 0;
        block.firstCellOfRow.push_back(block.cells.size());
        if (row.first != SIZE_MAX) {
            record.firstCol = static_cast<std::uint16_t>(row.first);
            record.lastColPlus1 = static_cast<std::uint16_t>(row.last + 1);
            for (std::size_t c = row.first; c <= row.last; ++c) {
                const Cell& cell = (*row.cells)[c];
                std::uint32_t sst = 0;
                if (IsText(cell)) {
                    ok = ok && text < texts_.size();
                    if (!ok) return;
                    sst = texts_[text++];
                }
                PutCell(cell, record.row, static_cast<std::uint16_t>(c), sst, &block.cells);
            }
        }
        block.rows.push_back(std::move(record));
    });
    flush();
    return ok && next == blocks_.size();
}

}  // namespace xls
