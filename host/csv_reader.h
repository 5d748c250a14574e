// A small RFC 4180 reader for the default host's tables (internal).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "order_data/cstring.h"

namespace orderview {
namespace detail {

struct CsvRecord {
    int line = 0;                     // line where the record starts
    std::vector<std::string> fields;
};

// Splits `text` into records: fields separated by ',', optionally quoted with '"' (a doubled
// quote inside stands for one), CRLF or LF line breaks (also inside quotes). Blank lines and
// lines starting with '#' are skipped. A malformed record is reported to `errors` as
// "<file>:<line>: <message>" and left out; the rest is still read.
// `firstLine` is the line number of the text's first line in its file.
std::vector<CsvRecord> ParseCsv(const std::string& text, const std::string& file, std::vector<CString>& errors,
                                int firstLine = 1);

// A CSV file with a header row, addressed by column name.
class CsvTable {
public:
    // Reads `path` (a backslash path); false when the file does not exist. Rows whose field count
    // differs from the header's and missing `required` columns are reported to `errors`.
    bool Load(const CString& path, const std::string& displayName, const std::vector<std::string>& required,
              std::vector<CString>& errors);

    const std::vector<CsvRecord>& rows() const { return rows_; }
    const std::vector<std::string>& header() const { return header_; }
    // The field of `row` in column `name`; empty when the column is absent.
    const std::string& Get(const CsvRecord& row, const std::string& name) const;
    bool Has(const std::string& name) const { return columns_.count(name) != 0; }

private:
    std::vector<std::string> header_;
    std::map<std::string, size_t> columns_;
    std::vector<CsvRecord> rows_;
};

}  // namespace detail
}  // namespace orderview
