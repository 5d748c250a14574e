#include "order_data/detail/value_parse.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace orderview {
namespace detail {

bool ParseUInt(const std::string& text, std::uint64_t max, std::uint64_t& out)
{
    if (text.empty() || text.size() > 20) return false;
    const std::uint64_t tenth = max / 10;
    const unsigned lastDigit = static_cast<unsigned>(max % 10);
    std::uint64_t value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        const unsigned digit = static_cast<unsigned>(c - '0');
        if (value > tenth || (value == tenth && digit > lastDigit)) return false;
        value = value * 10 + digit;
    }
    out = value;
    return true;
}

bool ParseInt(const std::string& text, std::int32_t& out)
{
    const bool negative = !text.empty() && text[0] == '-';
    std::uint64_t magnitude = 0;
    if (!ParseUInt(negative ? text.substr(1) : text, negative ? 2147483648ULL : 2147483647ULL, magnitude))
        return false;
    out = negative ? static_cast<std::int32_t>(-static_cast<std::int64_t>(magnitude))
                   : static_cast<std::int32_t>(magnitude);
    return true;
}

bool ParseDouble(const std::string& text, double& out)
{
    if (text.empty()) return false;
    const char* begin = text.c_str();
    // Plain decimals, the usual case, without strtod: both round correctly, so the value is the
    // same; everything else strtod takes (a '+', blanks in front, hexadecimal) goes to strtod.
    double quick = 0.0;
    const auto parsed = std::from_chars(begin, begin + text.size(), quick);
    if (parsed.ec == std::errc() && parsed.ptr == begin + text.size()) {
        if (!std::isfinite(quick)) return false;
        out = quick;
        return true;
    }
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(begin, &end);
    if (end != begin + text.size() || !std::isfinite(value)) return false;
    out = value;
    return true;
}

bool ParseBool(const std::string& text, bool& out)
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

bool ParseCharCode(const std::string& text, std::uint32_t& out)
{
    if (text.size() > 1) return false;
    out = text.empty() ? 0u : static_cast<unsigned char>(text[0]);
    return true;
}

}  // namespace detail
}  // namespace orderview
