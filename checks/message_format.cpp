#include "checks/detail/message_format.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace orderview {
namespace detail {

namespace {

constexpr int kLargestField = 100;  // width and precision above this are not formatted

bool IsIntegerConversion(char c) { return c != '\0' && std::strchr("diouxX", c) != nullptr; }
bool IsFloatConversion(char c) { return c != '\0' && std::strchr("fFeEgGaA", c) != nullptr; }

long long TruncateToInteger(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775807.0) return 9223372036854775807LL;
    if (value <= -9223372036854775808.0) return -9223372036854775807LL - 1;
    return static_cast<long long>(value);
}

// printf of one conversion `directive` (already checked) with one argument.
template <typename T>
std::string PrintOne(const std::string& directive, T value)
{
    char small[128];
    const int length = std::snprintf(small, sizeof small, directive.c_str(), value);
    if (length < 0) return std::string();
    if (static_cast<size_t>(length) < sizeof small) return std::string(small, static_cast<size_t>(length));
    std::string out(static_cast<size_t>(length) + 1, '\0');
    std::snprintf(&out[0], out.size(), directive.c_str(), value);
    out.resize(static_cast<size_t>(length));
    return out;
}

CString FormatOne(const CString& format, bool isInteger, long long integer, double real)
{
    const std::string& text = format.str();
    const size_t n = text.size();
    std::string out;
    out.reserve(n + 16);
    bool used = false;
    size_t i = 0;
    while (i < n) {
        if (text[i] != '%') {
            out += text[i++];
            continue;
        }
        if (i + 1 < n && text[i + 1] == '%') {
            out += '%';
            i += 2;
            continue;
        }
        // One conversion: flags, width, precision, length modifiers, conversion character.
        size_t j = i + 1;
        std::string flags;
        while (j < n && std::strchr("-+ #0", text[j]) != nullptr && text[j] != '\0') flags += text[j++];
        int width = 0, precision = -1;
        bool tooLarge = false;
        while (j < n && text[j] >= '0' && text[j] <= '9') {
            width = width * 10 + (text[j++] - '0');
            if (width > kLargestField) tooLarge = true, width = kLargestField + 1;
        }
        if (j < n && text[j] == '.') {
            ++j;
            precision = 0;
            while (j < n && text[j] >= '0' && text[j] <= '9') {
                precision = precision * 10 + (text[j++] - '0');
                if (precision > kLargestField) tooLarge = true, precision = kLargestField + 1;
            }
        }
        while (j < n && text[j] != '\0' && std::strchr("hlLqjzt", text[j]) != nullptr) ++j;
        const char conversion = j < n ? text[j] : '\0';
        const size_t end = j < n ? j + 1 : n;
        const bool number = IsIntegerConversion(conversion) || IsFloatConversion(conversion);
        if (used || tooLarge || !number) {
            out.append(text, i, end - i);  // copied as text
            i = end;
            continue;
        }
        std::string directive = "%" + flags;
        if (width > 0) directive += std::to_string(width);
        if (precision >= 0) directive += "." + std::to_string(precision);
        if (IsIntegerConversion(conversion)) {
            const long long value = isInteger ? integer : TruncateToInteger(real);
            directive += "ll";
            directive += conversion;
            if (conversion == 'd' || conversion == 'i')
                out += PrintOne(directive, value);
            else
                out += PrintOne(directive, static_cast<unsigned long long>(value));
        } else {
            directive += conversion;
            out += PrintOne(directive, isInteger ? static_cast<double>(integer) : real);
        }
        used = true;
        i = end;
    }
    return CString(std::move(out));
}

}  // namespace

CString FormatWithDouble(const CString& format, double value) { return FormatOne(format, false, 0, value); }

CString FormatWithInteger(const CString& format, long long value) { return FormatOne(format, true, value, 0.0); }

}  // namespace detail
}  // namespace orderview
