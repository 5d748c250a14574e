#include "host/record_file.h"

#include "host/detail/csv_reader.h"
#include "order_data/detail/order_fields.h"

namespace orderview {

namespace detail {
// The setters of a table's columns, in column order (null: the list column, or unknown).
struct RecordColumns {
    std::vector<const OrderField*> order;
    std::vector<const DealField*> deal;  // a deal's own fields; its order's are in `order`
    CBaseOrder_DealInfo scratch;         // where values are parsed that are only checked
};
}  // namespace detail

RecordFile::RecordFile(const CString& path, const std::string& name, Kind kind)
    : reader_(new detail::CsvReader(FilePath(path), name)), columns_(new detail::RecordColumns), kind_(kind)
{
    if (!reader_->IsOpen() || !reader_->Next(fields_)) return;
    header_.assign(fields_.fields.begin(), fields_.fields.end());
    const int line = fields_.line;
    for (size_t i = 0; i < header_.size(); ++i) {
        const std::string& field = header_[i];
        const bool isList = kind_ == Kind::Orders && field == "list";
        columns_->order.push_back(isList ? nullptr : detail::FindOrderField(field));
        columns_->deal.push_back(kind_ == Kind::Deals ? detail::FindDealOwnField(field) : nullptr);
        if (isList) {
            listColumn_ = static_cast<int>(i);
            continue;
        }
        if (!columns_->order.back() && !columns_->deal.back())
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

bool RecordFile::Fill(CBaseOrder_OrderInfo& order, CBaseOrder_DealInfo* deal, bool keep)
{
    const std::vector<std::string_view>& fields = fields_.fields;
    if (fields.size() != header_.size()) {
        reader_->Reject("expected " + std::to_string(header_.size()) + " fields, found " +
                        std::to_string(fields.size()));
        return false;
    }
    if (keep) {
        if (deal) deal->vClear();
        else order.vClear();
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        const detail::DealField* own = columns_->deal[i];
        const detail::OrderField* common = columns_->order[i];
        if (!keep && (own ? own->text : !common || common->text)) continue;  // any text will do
        const bool ok = own ? own->set(*deal, fields[i]) : !common || common->set(order, fields[i]);
        if (!ok) {
            reader_->Reject("bad value '" + std::string(fields[i]) + "' in column " + header_[i]);
            return false;
        }
    }
    return true;
}

bool RecordFile::NextOrder(CBaseOrder_OrderInfo& order, std::string& list) { return ReadOrder(&order, list); }

bool RecordFile::SkipOrder(std::string& list) { return ReadOrder(nullptr, list); }

bool RecordFile::ReadOrder(CBaseOrder_OrderInfo* order, std::string& list)
{
    if (!usable_ || kind_ != Kind::Orders) return false;
    while (reader_->Next(fields_)) {
        if (!Fill(order ? *order : columns_->scratch, nullptr, order != nullptr)) continue;
        list.assign(fields_.fields[static_cast<size_t>(listColumn_)]);
        if (list == "today" || list == "error") return true;
        reader_->Reject("list must be today or error, not '" + list + "'");
    }
    return false;
}

bool RecordFile::NextDeal(CBaseOrder_DealInfo& deal) { return ReadDeal(deal, true); }

bool RecordFile::SkipDeal() { return ReadDeal(columns_->scratch, false); }

bool RecordFile::ReadDeal(CBaseOrder_DealInfo& deal, bool keep)
{
    if (!usable_ || kind_ != Kind::Deals) return false;
    while (reader_->Next(fields_))
        if (Fill(deal, &deal, keep)) return true;
    return false;
}

}  // namespace orderview
