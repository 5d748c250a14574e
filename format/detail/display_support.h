// Helpers shared by the display functions (internal).
#pragma once

#include <climits>
#include <cmath>
#include <cstdint>

#include "order_data/cstring.h"
#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"

namespace orderview {
namespace detail {

// A double truncated toward zero to an int. NaN and values outside the int range give
// INT_MIN, as the processor's conversion instruction does, instead of undefined behaviour.
inline int TruncToInt(double value)
{
    if (!(value > static_cast<double>(INT_MIN) - 1.0 && value < static_cast<double>(INT_MAX) + 1.0)) return INT_MIN;
    return static_cast<int>(value);
}

// The character code of a 32-bit (or wider) code field as the library compares it.
inline bool Is(unsigned long code, char ch) { return code == static_cast<unsigned char>(ch); }

}  // namespace detail
}  // namespace orderview
