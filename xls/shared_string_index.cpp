#include "xls/detail/shared_string_index.h"

#include <string>

#include "xls/utf16.h"

namespace xls {

SharedStringIndex::SharedStringIndex(Workbook::SharedStringTable& table) : table_(table)
{
    table_ = Workbook::SharedStringTable();
}

std::uint32_t SharedStringIndex::Add(const Cell& cell)
{
    const auto next = static_cast<std::uint32_t>(table_.strings.size());
    if (cell.Type() == Cell::kWString) {
        const std::wstring_view key(cell.GetWString(), cell.GetStringLength());
        const auto found = wide_.try_emplace(key, next);
        if (found.second) {
            table_.strings.push_back(ToUtf16(std::wstring(key)));
            table_.wide.push_back(true);
        }
        return found.first->second;
    }
    const std::string_view key(cell.GetString(), cell.GetStringLength());
    const auto found = narrow_.try_emplace(key, next);
    if (found.second) {
        std::u16string text(key.size(), u'\0');
        for (std::size_t i = 0; i < key.size(); ++i) text[i] = static_cast<unsigned char>(key[i]);
        table_.strings.push_back(std::move(text));
        table_.wide.push_back(false);
    }
    return found.first->second;
}

}  // namespace xls
