#include "host/record_file.h"

#include "host/csv_reader.h"
#include "order_data/order_fields.h"

namespace orderview {

RecordFile::RecordFile(const CString& path, const std::string& name, Kind kind) : lines_(path), name_(name), kind_(kind)
{
    if (!lines_.IsOpen()) return;
    int line = 0;
    if (!NextFields(header_, line)) return;
    for (size_t i = 0; i < header_.size(); ++i) {
        const std::string& field = header_[i];
        if (kind_ == Kind::Orders && field == "list") {
            listColumn_ = static_cast<int>(i);
            continue;
        }
        const bool known = kind_ == Kind::Orders ? detail::IsOrderField(field) : detail::IsDealField(field);
        if (!known) Report(line, std::string("unknown ") + (kind_ == Kind::Orders ? "order" : "deal") + " field " + field);
    }
    if (kind_ == Kind::Orders && listColumn_ < 0) {
        Report(line, "missing column list");
        return;
    }
    usable_ = true;
}

void RecordFile::Report(int line, const std::string& message)
{
    if (!sequential_) return;
    CString text;
    text.Format("%s:%d: %s", name_.c_str(), line, message.c_str());
    diagnostics_.push_back(text);
}

bool RecordFile::Seek(std::uint64_t offset)
{
    sequential_ = false;
    return lines_.Seek(offset);
}

bool RecordFile::NextFields(std::vector<std::string>& fields, int& line)
{
    std::string text, row;
    for (;;) {
        if (!lines_.ReadLine(row)) return false;
        ++line_;
        const bool first = line_ == 1;
        // Blank and comment lines between records are skipped (a UTF-8 mark may start the file).
        const size_t start = first && row.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
        if (row.size() <= start || row[start] == '\r' || row[start] == '#') continue;
        line = line_;
        text = row;
        // A quoted field may hold line breaks: read on until the quotes are balanced.
        size_t quotes = 0;
        for (char c : text) quotes += c == '"';
        while (quotes % 2 == 1 && lines_.ReadLine(row)) {
            ++line_;
            text += '\n';
            text += row;
            for (char c : row) quotes += c == '"';
        }
        text += '\n';
        std::vector<CString> errors;
        std::vector<detail::CsvRecord> records = detail::ParseCsv(text, name_, errors, line);
        if (sequential_) diagnostics_.insert(diagnostics_.end(), errors.begin(), errors.end());
        if (records.size() != 1) continue;  // reported by the parser
        fields = std::move(records.front().fields);
        return true;
    }
}

template <class Record, class SetField>
bool RecordFile::Fill(Record& record, const std::vector<std::string>& fields, int line, SetField setField)
{
    if (fields.size() != header_.size()) {
        Report(line, "expected " + std::to_string(header_.size()) + " fields, found " + std::to_string(fields.size()));
        return false;
    }
    record.vClear();
    bool ok = true;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (static_cast<int>(i) == listColumn_) continue;
        if (setField(record, header_[i], fields[i]) == detail::SetFieldResult::BadValue) {
            Report(line, "bad value '" + fields[i] + "' in column " + header_[i]);
            ok = false;
        }
    }
    return ok;
}

bool RecordFile::NextOrder(CBaseOrder_OrderInfo& order, std::string& list)
{
    if (!usable_ || kind_ != Kind::Orders) return false;
    std::vector<std::string> fields;
    int line = 0;
    while (NextFields(fields, line)) {
        if (!Fill(order, fields, line, detail::SetOrderField)) continue;
        list = fields[static_cast<size_t>(listColumn_)];
        if (list == "today" || list == "error") return true;
        Report(line, "list must be today or error, not '" + list + "'");
    }
    return false;
}

bool RecordFile::NextDeal(CBaseOrder_DealInfo& deal)
{
    if (!usable_ || kind_ != Kind::Deals) return false;
    std::vector<std::string> fields;
    int line = 0;
    while (NextFields(fields, line))
        if (Fill(deal, fields, line, detail::SetDealField)) return true;
    return false;
}

}  // namespace orderview
