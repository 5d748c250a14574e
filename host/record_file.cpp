#include "host/record_file.h"

#include "host/csv_reader.h"
#include "order_data/order_fields.h"

namespace orderview {

RecordFile::RecordFile(const CString& path, const std::string& name, Kind kind)
    : reader_(new detail::CsvReader(FilePath(path), name)), kind_(kind)
{
    if (!reader_->IsOpen() || !reader_->Next(fields_)) return;
    header_ = std::move(fields_.fields);
    const int line = fields_.line;
    for (size_t i = 0; i < header_.size(); ++i) {
        const std::string& field = header_[i];
        if (kind_ == Kind::Orders && field == "list") {
            listColumn_ = static_cast<int>(i);
            continue;
        }
        const bool known = kind_ == Kind::Orders ? detail::IsOrderField(field) : detail::IsDealField(field);
        if (!known)
            reader_->Report(line, std::string("unknown ") + (kind_ == Kind::Orders ? "order" : "deal") + " field " + field);
    }
    if (kind_ == Kind::Orders && listColumn_ < 0) {
        reader_->Report(line, "missing column list");
        return;
    }
    usable_ = true;
}

RecordFile::~RecordFile() = default;
RecordFile::RecordFile(RecordFile&&) noexcept = default;
RecordFile& RecordFile::operator=(RecordFile&&) noexcept = default;

std::uint64_t RecordFile::Tell() const { return reader_->Tell(); }
bool RecordFile::Seek(std::uint64_t offset) { return reader_->Seek(offset); }
const std::vector<CString>& RecordFile::Diagnostics() const { return reader_->Diagnostics(); }

template <class Record, class SetField>
bool RecordFile::Fill(Record& record, SetField setField)
{
    const std::vector<std::string>& fields = fields_.fields;
    if (fields.size() != header_.size()) {
        reader_->Reject("expected " + std::to_string(header_.size()) + " fields, found " +
                        std::to_string(fields.size()));
        return false;
    }
    record.vClear();
    for (size_t i = 0; i < fields.size(); ++i) {
        if (static_cast<int>(i) == listColumn_) continue;
        if (setField(record, header_[i], fields[i]) == detail::SetFieldResult::BadValue) {
            reader_->Reject("bad value '" + fields[i] + "' in column " + header_[i]);
            return false;
        }
    }
    return true;
}

bool RecordFile::NextOrder(CBaseOrder_OrderInfo& order, std::string& list)
{
    if (!usable_ || kind_ != Kind::Orders) return false;
    while (reader_->Next(fields_)) {
        if (!Fill(order, detail::SetOrderField)) continue;
        list = fields_.fields[static_cast<size_t>(listColumn_)];
        if (list == "today" || list == "error") return true;
        reader_->Reject("list must be today or error, not '" + list + "'");
    }
    return false;
}

bool RecordFile::NextDeal(CBaseOrder_DealInfo& deal)
{
    if (!usable_ || kind_ != Kind::Deals) return false;
    while (reader_->Next(fields_))
        if (Fill(deal, detail::SetDealField)) return true;
    return false;
}

}  // namespace orderview
