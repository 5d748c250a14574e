#include "format/compare_round.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTolerance = 1e-9;

// The shared buffer g_byGetBaseUnitFromMinTick formats the tick into, kept for the process.
CString& TickBuffer()
{
    static CString buffer;
    return buffer;
}

}  // namespace

ValuesCompareResult g_CompareDoubles(const double& a, const double& b)
{
    if (std::fabs(a - b) < kTolerance) return ValuesEqual;
    return a > b ? ValuesGreater : ValuesLess;
}

bool g_bDefinitelyGreaterThan(double& a, double& b)
{
    return (a - b) > std::max(std::fabs(a), std::fabs(b)) * kTolerance;
}

bool g_bDefinitelyLessThan(double& a, double& b)
{
    return (b - a) > std::max(std::fabs(b), std::fabs(a)) * kTolerance;
}

bool g_bDoubleIsEqual(double& a, double& b)
{
    const double d = a - b;
    return d <= kTolerance && d >= -kTolerance;
}

double g_dbRoundDouble(const double& value, const int& digits)
{
    static const double scale = std::pow(10.0, digits);
    double whole = 0.0;
    std::modf(scale * value + 0.5, &whole);
    return whole / scale;
}

unsigned char g_byGetBaseUnitFromDot(int decimals, const double& value)
{
    if (decimals >= 1 && decimals <= 9) {
        const int base = 21 + 2 * decimals;
        return static_cast<unsigned char>(g_CompareDoubles(value, 0.0) != ValuesLess ? base : base + 1);
    }
    if (std::fabs(value) < kTolerance) return 21;
    return value > 0 ? 21 : 22;
}

unsigned char g_byGetBaseUnitFromMinTick(const X1Format& value, double minTick)
{
    const unsigned char unit = value.byGetBaseUnit();
    if (unit < 21 || unit > 40) return unit;
    CString& text = TickBuffer();
    text.Format("%f", minTick);
    int decimals = 0;
    const int dot = text.Find('.');
    if (dot >= 0) {
        text.TrimRight('0');
        decimals = text.GetLength() - dot - 1;
    }
    return g_byGetBaseUnitFromDot(decimals, static_cast<double>(value));
}
