// Language texts used as printf formats with one number (internal).
//
// The texts come from the host's language files, which users edit, so they are never handed to
// printf as they are: only the first integer or floating-point conversion receives the value
// (converted to the type the conversion asks for), "%%" gives '%', and every other conversion
// ("%s", "%n", a second "%d", a width or precision above 100, a '*') is copied as text.
#pragma once

#include "order_data/cstring.h"

namespace orderview {
namespace detail {

// `format` with its first number conversion filled with `value`; an integer conversion takes
// the value truncated toward zero (saturated at the 64-bit range, NaN gives 0).
CString FormatWithDouble(const CString& format, double value);
// The same with an integer value; a floating-point conversion takes it as a double.
CString FormatWithInteger(const CString& format, long long value);

}  // namespace detail
}  // namespace orderview
