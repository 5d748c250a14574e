// Builds the shared string table of a workbook being saved: each distinct text once, in the
// order the cells first use it (internal).
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "xls/cell.h"
#include "xls/workbook_records.h"

namespace xls {

class SharedStringIndex {
public:
    // Fills `table`, which starts empty.
    explicit SharedStringIndex(Workbook::SharedStringTable& table);
    // The index of a string cell's text, added to the table the first time it is seen. The
    // cell's text must outlive this object (the index keeps views of it).
    std::uint32_t Add(const Cell& cell);

private:
    Workbook::SharedStringTable& table_;
    std::unordered_map<std::string_view, std::uint32_t> narrow_;
    std::unordered_map<std::wstring_view, std::uint32_t> wide_;
};

}  // namespace xls
