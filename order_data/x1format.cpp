#include "order_data/x1format.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Reads the whole text as a number; false when it is empty or has trailing junk.
bool ParseNumber(const std::string& text, double& out)
{
    const char* begin = text.c_str();
    while (*begin == ' ' || *begin == '\t') ++begin;
    if (*begin == '\0') return false;
    char* end = nullptr;
    const double v = std::strtod(begin, &end);
    if (end == begin) return false;
    while (*end == ' ' || *end == '\t') ++end;
    if (*end != '\0') return false;
    out = v;
    return true;
}

}  // namespace

X1Format::X1Format(unsigned short itemNo, unsigned char baseUnit, const char* text, unsigned short length)
    : itemNo_(itemNo), baseUnit_(baseUnit)
{
    if (text) text_ = CString(text, static_cast<int>(strnlen(text, length)));
    isNumber_ = ParseNumber(text_.str(), value_);
}

X1Format::X1Format(unsigned short itemNo, unsigned char baseUnit, const CString& text)
    : itemNo_(itemNo), baseUnit_(baseUnit), text_(text)
{
    isNumber_ = ParseNumber(text_.str(), value_);
}

X1Format::X1Format(unsigned short itemNo, unsigned char baseUnit, double value)
    : itemNo_(itemNo), baseUnit_(baseUnit), value_(value)
{
}

X1Format::operator long() const
{
    if (std::isnan(value_)) return 0;
    if (value_ >= static_cast<double>(LONG_MAX)) return LONG_MAX;
    if (value_ <= static_cast<double>(LONG_MIN)) return LONG_MIN;
    return static_cast<long>(value_);
}

bool X1Format::ChangeBaseUnit(unsigned char from, unsigned char to)
{
    if (from != baseUnit_) return false;
    baseUnit_ = to;
    return true;
}

CString X1Format::s_GetAsString(unsigned char baseUnit) const
{
    if (!isNumber_) return text_;
    CString out;
    if (baseUnit >= 21 && baseUnit <= 40) {
        out.Format("%.*f", (baseUnit - 21) / 2, value_);
    } else {
        out.Format("%.15g", value_);
    }
    return out;
}

SmartX1Vec::~SmartX1Vec() = default;
CBaseInfo::~CBaseInfo() = default;
