// Decimal texts of numbers without printf (internal): each function writes exactly the bytes of
// the printf conversion it names, for the row and price texts formatted millions of times a day.
#pragma once

#include <cstdint>

#include "order_data/cstring.h"

namespace orderview {
namespace detail {

// printf("%lld", value).
void AppendInt(CString& out, std::int64_t value);
// printf("%0*u", width, value) written at `at`: at least `width` digits, zeros in front. Returns
// the end of the digits (no NUL is written).
inline char* PutZeroPadded(char* at, std::uint32_t value, int width)
{
    char digits[10];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (int zeros = width - count; zeros > 0; --zeros) *at++ = '0';
    while (count > 0) *at++ = digits[--count];
    return at;
}
// printf("%.*f", precision, value); without printf for finite values and precisions up to 30.
void AppendFixed(CString& out, double value, int precision);

}  // namespace detail
}  // namespace orderview
