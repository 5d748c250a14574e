#include "host/detail/csv_reader.h"

namespace orderview {
namespace detail {

CsvReader::CsvReader(const FilePath& path, std::string name) : lines_(path), name_(std::move(name)) {}

std::size_t CsvReader::NewText(CsvFields& record)
{
    if (texts_ == record.texts.size())
        record.texts.emplace_back();
    else
        record.texts[texts_].clear();
    return texts_++;
}

CsvReader::Split CsvReader::SplitFields(CsvFields& record, bool quoted)
{
    const std::string& row = row_;
    const std::size_t n = row.size();
    std::size_t pos = 0;
    for (;;) {
        if (!quoted) {
            if (pos < n && row[pos] == '"') {
                quoted = true;
                ++pos;
                spans_.push_back({true, NewText(record), 0});
            } else {
                // Fields are short: a plain scan beats a call to find the comma.
                std::size_t comma = pos;
                while (comma < n && row[comma] != ',') ++comma;
                spans_.push_back({false, pos, comma - pos});
                if (comma == n) return Split::Done;
                pos = comma + 1;
                continue;
            }
        }
        std::string& field = record.texts[spans_.back().at];
        for (;;) {
            const std::size_t quote = row.find('"', pos);
            if (quote == std::string::npos) {
                field.append(row, pos, std::string::npos);
                return Split::Open;
            }
            field.append(row, pos, quote - pos);
            pos = quote + 1;
            if (pos < n && row[pos] == '"') {
                field += '"';
                ++pos;
                continue;
            }
            break;
        }
        quoted = false;
        if (pos == n) return Split::Done;
        if (row[pos] != ',') return Split::TextAfterQuote;
        ++pos;
    }
}

void CsvReader::KeepLineFields(CsvFields& record)
{
    for (Span& span : spans_) {
        if (span.owned) continue;
        const std::size_t text = NewText(record);
        record.texts[text].assign(row_, span.at, span.length);
        span = {true, text, 0};
    }
}

bool CsvReader::Next(CsvFields& record)
{
    for (;;) {
        if (!lines_.ReadLine(row_)) return false;
        ++line_;
        if (line_ == 1 && sequential_ && row_.compare(0, 3, "\xEF\xBB\xBF") == 0) row_.erase(0, 3);
        if (row_.empty() || row_[0] == '#') continue;
        record.line = sequential_ ? line_ : 0;
        spans_.clear();
        texts_ = 0;
        lastLine_ = line_;
        lastResume_ = lines_.Tell();
        lastSpanned_ = false;
        Split split = SplitFields(record, false);
        while (split == Split::Open) {
            const char* lineBreak = lines_.LastBreak();  // a line break inside quotes is kept as it is
            KeepLineFields(record);                      // the next line takes the place of this one
            if (!lines_.ReadLine(row_)) break;
            record.texts[spans_.back().at] += lineBreak;
            ++line_;
            lastSpanned_ = true;
            split = SplitFields(record, true);
        }
        record.lastLine = sequential_ ? line_ : 0;
        if (split == Split::Done) {
            // The texts are all made now, so views into them stay put.
            record.fields.resize(spans_.size());
            for (std::size_t i = 0; i < spans_.size(); ++i) {
                const Span& span = spans_[i];
                record.fields[i] = span.owned ? std::string_view(record.texts[span.at])
                                              : std::string_view(row_.data() + span.at, span.length);
            }
            return true;
        }
        record.fields.clear();
        Reject(split == Split::Open ? "quoted field is not closed" : "text after a closing quote");
    }
}

void CsvReader::Reject(const std::string& message)
{
    Report(lastLine_, message);
    if (lastSpanned_ && sequential_ && lines_.Seek(lastResume_)) line_ = lastLine_;
    lastSpanned_ = false;
}

bool CsvReader::Seek(std::uint64_t offset)
{
    sequential_ = false;
    lastSpanned_ = false;
    return lines_.Seek(offset);
}

void CsvReader::Report(int line, const std::string& message)
{
    if (!sequential_) return;
    CString text;
    text.Format("%s:%d: %s", name_.c_str(), line, message.c_str());
    diagnostics_.push_back(text);
}

bool CsvTable::Load(const CString& path, const std::string& displayName, const std::vector<std::string>& required,
                    std::vector<CString>& errors)
{
    header_.clear();
    columns_.clear();
    rows_.clear();
    CsvReader reader{FilePath(path), displayName};
    if (!reader.IsOpen()) return false;
    CsvFields record;
    if (reader.Next(record)) {
        header_.assign(record.fields.begin(), record.fields.end());
        const int headerLine = record.line;
        bool complete = true;
        for (size_t i = 0; i < header_.size(); ++i) {
            if (!columns_.emplace(header_[i], i).second) reader.Report(headerLine, "duplicate column " + header_[i]);
        }
        for (const auto& name : required) {
            if (!columns_.count(name)) {
                reader.Report(headerLine, "missing column " + name);
                complete = false;
            }
        }
        while (complete && reader.Next(record)) {
            if (record.fields.size() != header_.size()) {
                reader.Reject("expected " + std::to_string(header_.size()) + " fields, found " +
                              std::to_string(record.fields.size()));
                continue;
            }
            rows_.push_back({record.line, record.lastLine, {record.fields.begin(), record.fields.end()}});
        }
    }
    errors.insert(errors.end(), reader.Diagnostics().begin(), reader.Diagnostics().end());
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
