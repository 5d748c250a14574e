// The one CSV reader of the default host's tables (internal): the small tables read whole and the
// day's orders and deals read one record at a time both go through it, so they read every input
// alike.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "order_data/cstring.h"
#include "host/record_file.h"
#include "platform/file_system.h"

namespace orderview {
namespace detail {

// Reads records from a CSV file: fields separated by ',', a field that starts with '"' is quoted
// (a doubled quote inside stands for one, line breaks inside are kept as they are); a '"' anywhere
// else is a character like any other. Lines end at LF, CR LF or CR. Blank lines and lines that
// start with '#' are skipped; a UTF-8 mark may start the file (and only the file).
//
// No line is lost without a word: a malformed record is reported to Diagnostics() as
// "<name>:<line>: <message>" and reading goes on at the line after the one it started on, so
// every line either belongs to a record that was read or is reported itself.
class CsvReader {
public:
    // Opens `path`; a missing file reads as empty and IsOpen() is false.
    CsvReader(const FilePath& path, std::string name);

    bool IsOpen() const { return lines_.IsOpen(); }
    // The next well-formed record; false at the end. Its fields are views that last until the
    // next call.
    bool Next(CsvFields& record);
    // Rejects the record Next returned last (a wrong field count, a bad value): it is reported
    // with `message` and, when it spanned several lines, the lines after its first are read again.
    void Reject(const std::string& message);

    // Where the next record starts, and a way back to it. After a Seek line numbers are unknown:
    // nothing more is reported, and a record is never read again from its second line.
    std::uint64_t Tell() const { return lines_.Tell(); }
    bool Seek(std::uint64_t offset);

    void Report(int line, const std::string& message);
    const std::vector<CString>& Diagnostics() const { return diagnostics_; }
    const std::string& Name() const { return name_; }

private:
    enum class Split { Done, Open, TextAfterQuote };
    // Where a field of the record being read stands: in the line as it is, or, when it was
    // quoted or its record spans lines, in one of the record's texts.
    struct Span {
        bool owned;          // in record.texts[at], else row_[at, at + length)
        std::size_t at;
        std::size_t length;
    };
    // Splits the line into further fields, continuing the open quoted field with `quoted`.
    Split SplitFields(CsvFields& record, bool quoted);
    // A cleared text of the record for the next field that needs one, reusing an earlier record's.
    std::size_t NewText(CsvFields& record);
    // Copies the fields that stand in the line into texts, before the line is read over.
    void KeepLineFields(CsvFields& record);

    LineReader lines_;
    std::string name_;
    std::string row_;
    int line_ = 0;                   // lines read, while reading straight through
    bool sequential_ = true;
    int lastLine_ = 0;               // where the last record returned started
    bool lastSpanned_ = false;       // and whether it spanned several lines
    std::uint64_t lastResume_ = 0;   // the offset of the line after its first
    std::vector<CString> diagnostics_;
    std::vector<Span> spans_;        // the fields of the record being read
    std::size_t texts_ = 0;          // texts of it in use
};

// A small CSV table with a header row, read whole and addressed by column name.
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
