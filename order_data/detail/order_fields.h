// Order fields addressed by their names, for tables that list orders column by column (internal).
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "order_data/records.h"

namespace orderview {
namespace detail {

enum class SetFieldResult { Ok, UnknownField, BadValue };

// Sets the order field (or order commodity field) called `name` from its text: texts as they
// stand, character codes as one character, numbers in decimal.
SetFieldResult SetOrderField(CBaseOrder_OrderInfo& order, const std::string& name, const std::string& text);

bool IsOrderField(const std::string& name);

// One field, for readers that set the same fields record after record: found once by name, set
// for each record. A text field takes any text; the others parse theirs and may refuse it.
template <class Record>
struct FieldOf {
    std::function<bool(Record&, std::string_view)> set;
    bool text = false;
};
using OrderField = FieldOf<CBaseOrder_OrderInfo>;
using DealField = FieldOf<CBaseOrder_DealInfo>;
// Null when there is no such field.
const OrderField* FindOrderField(const std::string& name);
// A deal's own fields only; the rest of a deal are its order's (FindOrderField).
const DealField* FindDealOwnField(const std::string& name);

// The same for a deal: its own fields by name (dwDealTime is the deal's), then its order's.
SetFieldResult SetDealField(CBaseOrder_DealInfo& deal, const std::string& name, const std::string& text);

bool IsDealField(const std::string& name);

}  // namespace detail
}  // namespace orderview
