// A display table: codes to language-string ids, first matching row wins (internal).
#pragma once

#include <initializer_list>
#include <vector>

#include "format/detail/display_support.h"

namespace orderview {
namespace detail {

// A code of up to four characters, first character highest: Code("103") is 0x313033.
constexpr unsigned long Code(const char (&text)[2]) { return static_cast<unsigned char>(text[0]); }
constexpr unsigned long Code(const char (&text)[4])
{
    return (static_cast<unsigned long>(static_cast<unsigned char>(text[0])) << 16) |
           (static_cast<unsigned long>(static_cast<unsigned char>(text[1])) << 8) |
           static_cast<unsigned char>(text[2]);
}

class CodeTable {
public:
    struct Row {
        unsigned long code;
        const char* id;  // null: the empty text
    };

    CodeTable(std::initializer_list<Row> rows, const char* otherId)
        : other_(otherId)
    {
        rows_.reserve(rows.size());
        for (const Row& row : rows) rows_.push_back({row.code, CString(row.id)});
    }

    // The id of the first row with `code`, else the table's id for any other code.
    const CString& Id(unsigned long code) const
    {
        for (const auto& row : rows_)
            if (row.code == code) return row.id;
        return other_;
    }
    bool Has(unsigned long code) const
    {
        for (const auto& row : rows_)
            if (row.code == code) return true;
        return false;
    }
    CString Display(unsigned long code) const { return LangText(Id(code)); }

private:
    struct Entry {
        unsigned long code;
        CString id;
    };
    std::vector<Entry> rows_;
    CString other_;
};

}  // namespace detail
}  // namespace orderview
