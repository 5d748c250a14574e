#include "order_data/detail/number_text.h"

#include <charconv>
#include <cmath>

namespace orderview {
namespace detail {

void AppendInt(CString& out, std::int64_t value)
{
    char text[24];
    *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
    out += text;
}

void AppendFixed(CString& out, double value, int precision)
{
    if (precision < 0 || precision > 30 || !std::isfinite(value)) {
        // Infinities and NaNs are spelt as the C library spells them.
        out.AppendFormat("%.*f", precision, value);
        return;
    }
    // The widest finite double has 309 integral digits; a sign, a point and 30 decimals fit too.
    char text[400];
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, precision).ptr = '\0';
    out += text;
}

}  // namespace detail
}  // namespace orderview
