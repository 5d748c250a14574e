// Texts and tests shared by the order and deal rows (internal).
#pragma once

#include <cstdint>

#include "format/detail/market_kind.h"
#include "order_data/cstring.h"
#include "order_data/records.h"

namespace orderview {
namespace detail {

// A plain order: complex kind 'N' or '0'.
bool IsPlainOrder(std::uint32_t complexKind);
// ETS order: an option-market ('O') commodity of market kind '2' whose order number has a
// second character from 'A' to 'J' (the piece tested is the number's first two characters).
bool IsEtsOrder(const CBaseOrder_OrderInfo& order);
// Option market ('O') and market kind '2' or '4': the foreign futures and options lists.
bool IsForeignOptionMarket(const CBaseOrder_OrderInfo& order);

// yyyymmdd as "%04d/%02d/%02d".
void FormatDate(CString& out, std::uint32_t date);
// hhmmssmmm as "%02d:%02d:%02d", with ".%03d" milliseconds when `millis`.
void FormatTime(CString& out, std::uint32_t time, bool millis);
// Date and time as "%04d/%02d/%02d %02d:%02d:%02d", with ".%03d" milliseconds when `millis`.
void FormatStamp(CString& out, std::uint32_t date, std::uint32_t time, bool millis);
// "%d" of a 32-bit quantity, as the signed value it holds.
void FormatQty(CString& out, std::uint32_t qty);

// The order number item: "%s-%c%d" of the alternative number (or the number), the order kind and
// the sequence; "[%s]" of the alternative number alone; "--" when both are empty.
void FormatOrderNo(CString& out, const CBaseOrder_OrderInfo& order);

// The average-price text of the lists: "--" for 0; both legs "%.3f" joined by '|' for a spread;
// "%.5f" (or one decimal past the order's count from 5 decimals up) otherwise. Every formatted
// number loses its last digit, then trailing zeros and point: a deliberate one-digit truncation.
// With `normalize` each number is grouped in thousands afterwards.
void FormatAveragePrice(CString& out, const CBaseOrder_OrderInfo& order, bool normalize);

}  // namespace detail
}  // namespace orderview
