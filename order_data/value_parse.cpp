#include "order_data/detail/value_parse.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace orderview {
namespace detail {

bool ParseUInt(std::string_view text, std::uint64_t max, std::uint64_t& out)
{
    if (text.empty() || text.size() > 20) return false;
    // Accumulates without dividing (a division a digit costs more than the rest of the digit's
    // work): only a value past 1844674407370955161 can overflow on the next digit.
    constexpr std::uint64_t kLastSafe = UINT64_MAX / 10;
    constexpr unsigned kLastDigit = UINT64_MAX % 10;
    std::uint64_t value = 0;
    for (char c : text) {
        const unsigned digit = static_cast<unsigned>(static_cast<unsigned char>(c)) - unsigned{'0'};
        if (digit > 9) return false;
        if (value > kLastSafe || (value == kLastSafe && digit > kLastDigit)) return false;
        value = value * 10 + digit;
    }
    if (value > max) return false;
    out = value;
    return true;
}

bool ParseInt(std::string_view text, std::int32_t& out)
{
    const bool negative = !text.empty() && text[0] == '-';
    std::uint64_t magnitude = 0;
    if (!ParseUInt(negative ? text.substr(1) : text, negative ? 2147483648ULL : 2147483647ULL, magnitude))
        return false;
    out = negative ? static_cast<std::int32_t>(-static_cast<std::int64_t>(magnitude))
                   : static_cast<std::int32_t>(magnitude);
    return true;
}

bool ParseDouble(std::string_view text, double& out)
{
    if (text.empty()) return false;
    const char* const last = text.data() + text.size();
    // Plain decimals, the usual case, without strtod: both round correctly, so the value is the
    // same; everything else strtod takes (a '+', blanks in front, hexadecimal) goes to strtod.
    double value = 0.0;
    const auto parsed = std::from_chars(text.data(), last, value);
    if (parsed.ec != std::errc() || parsed.ptr != last) {
        const std::string terminated(text);  // strtod reads up to a NUL
        char* end = nullptr;
        value = std::strtod(terminated.c_str(), &end);
        if (end != terminated.c_str() + terminated.size()) return false;
    }
    if (!std::isfinite(value)) return false;
    out = value;
    return true;
}

bool ParseBool(std::string_view text, bool& out)
{
    if (text.empty() || text == "0" || text == "false" || text == "no") {
        out = false;
        return true;
    }
    if (text == "1" || text == "true" || text == "yes") {
        out = true;
        return true;
    }
    return false;
}

bool ParseCharCode(std::string_view text, std::uint32_t& out)
{
    if (text.size() > 1) return false;
    out = text.empty() ? 0u : static_cast<unsigned char>(text[0]);
    return true;
}

}  // namespace detail
}  // namespace orderview
