// Which orders belong in the order lists, by list mode (internal).
#pragma once

#include "order_data/records.h"

namespace orderview {
namespace detail {

// The compact list's rule: only the low byte of `listMode` counts.
bool ShowInSimpleList(const CBaseOrder_OrderInfo& order, int listMode);
// The full list's rule: a market group of the upper bits must admit the order, then the low
// byte filters.
bool ShowInFullList(const CBaseOrder_OrderInfo& order, int listMode);

}  // namespace detail
}  // namespace orderview
