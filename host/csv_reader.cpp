#include "host/csv_reader.h"

#include "platform/file_system.h"

namespace orderview {
namespace detail {

namespace {

CString Where(const std::string& file, int line, const char* message)
{
    CString out;
    out.Format("%s:%d: %s", file.c_str(), line, message);
    return out;
}

}  // namespace

std::vector<CsvRecord> ParseCsv(const std::string& text, const std::string& file, std::vector<CString>& errors,
                                int firstLine)
{
    std::vector<CsvRecord> records;
    size_t pos = 0;
    int line = firstLine;
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) pos = 3;  // spreadsheet programs write a UTF-8 mark
    while (pos < text.size()) {
        // Skip blank and comment lines.
        if (text[pos] == '\n' || text[pos] == '\r' || text[pos] == '#') {
            if (text[pos] == '#')
                while (pos < text.size() && text[pos] != '\n') ++pos;
            if (pos < text.size() && text[pos] == '\r') ++pos;
            if (pos < text.size() && text[pos] == '\n') ++pos;
            ++line;
            continue;
        }
        CsvRecord record;
        record.line = line;
        std::string field;
        bool bad = false;
        bool endOfRecord = false;
        while (!endOfRecord) {
            field.clear();
            if (pos < text.size() && text[pos] == '"') {
                ++pos;
                bool closed = false;
                while (pos < text.size()) {
                    const char c = text[pos++];
                    if (c == '"') {
                        if (pos < text.size() && text[pos] == '"') {
                            field += '"';
                            ++pos;
                        } else {
                            closed = true;
                            break;
                        }
                    } else {
                        if (c == '\n') ++line;
                        field += c;
                    }
                }
                if (!closed) {
                    errors.push_back(Where(file, record.line, "quoted field is not closed"));
                    return records;
                }
                if (pos < text.size() && text[pos] != ',' && text[pos] != '\r' && text[pos] != '\n') {
                    if (!bad) errors.push_back(Where(file, line, "text after a closing quote"));
                    bad = true;
                }
            }
            while (pos < text.size() && text[pos] != ',' && text[pos] != '\r' && text[pos] != '\n') {
                if (text[pos] == '"' && !bad) {
                    errors.push_back(Where(file, line, "quote inside an unquoted field"));
                    bad = true;
                }
                field += text[pos++];
            }
            record.fields.push_back(field);
            if (pos < text.size() && text[pos] == ',') {
                ++pos;
            } else {
                if (pos < text.size() && text[pos] == '\r') ++pos;
                if (pos < text.size() && text[pos] == '\n') ++pos;
                ++line;
                endOfRecord = true;
            }
        }
        if (!bad) records.push_back(std::move(record));
    }
    return records;
}

bool CsvTable::Load(const CString& path, const std::string& displayName, const std::vector<std::string>& required,
                    std::vector<CString>& errors)
{
    header_.clear();
    columns_.clear();
    rows_.clear();
    std::string text;
    if (!ReadWholeFile(path, text)) return false;
    std::vector<CsvRecord> records = ParseCsv(text, displayName, errors);
    if (records.empty()) return true;
    header_ = records.front().fields;
    for (size_t i = 0; i < header_.size(); ++i) {
        if (columns_.count(header_[i])) {
            errors.push_back(Where(displayName, records.front().line, ("duplicate column " + header_[i]).c_str()));
        }
        columns_.emplace(header_[i], i);
    }
    bool complete = true;
    for (const auto& name : required) {
        if (!columns_.count(name)) {
            errors.push_back(Where(displayName, records.front().line, ("missing column " + name).c_str()));
            complete = false;
        }
    }
    if (!complete) return true;
    for (size_t r = 1; r < records.size(); ++r) {
        if (records[r].fields.size() != header_.size()) {
            CString message;
            message.Format("expected %zu fields, found %zu", header_.size(), records[r].fields.size());
            errors.push_back(Where(displayName, records[r].line, message));
            continue;
        }
        rows_.push_back(std::move(records[r]));
    }
    return true;
}

const std::string& CsvTable::Get(const CsvRecord& row, const std::string& name) const
{
    static const std::string empty;
    const auto it = columns_.find(name);
    return (it == columns_.end() || it->second >= row.fields.size()) ? empty : row.fields[it->second];
}

}  // namespace detail
}  // namespace orderview
