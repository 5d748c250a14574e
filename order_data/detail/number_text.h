// Decimal texts of numbers without printf (internal): each function appends exactly the bytes of
// the printf conversion it names, for the row and price texts formatted millions of times a day.
#pragma once

#include <cstdint>

#include "order_data/cstring.h"

namespace orderview {
namespace detail {

// printf("%d", value).
void AppendInt(CString& out, std::int64_t value);
// printf("%0*u", width, value) for width <= 10: at least `width` digits, zeros in front.
void AppendZeroPadded(CString& out, std::uint32_t value, int width);
// printf("%.*f", precision, value); without printf for finite values and precisions up to 30.
void AppendFixed(CString& out, double value, int precision);

}  // namespace detail
}  // namespace orderview
