// Tolerant comparison and rounding of doubles, and decimal base-unit codes.
//
// One tolerance, 1e-9, everywhere: absolute in g_CompareDoubles and g_bDoubleIsEqual,
// relative to the larger magnitude in the two "definitely" tests.
#pragma once

#include "order_data/visibility.h"
#include "order_data/x1format.h"

enum ValuesCompareResult { ValuesLess = 0, ValuesEqual = 1, ValuesGreater = 2 };

// Equal when |a - b| < 1e-9 (exclusive), else greater or less.
ORDERVIEW_API ValuesCompareResult g_CompareDoubles(const double& a, const double& b);
// a - b > max(|a|, |b|) x 1e-9.
ORDERVIEW_API bool g_bDefinitelyGreaterThan(double& a, double& b);
// b - a > max(|a|, |b|) x 1e-9.
ORDERVIEW_API bool g_bDefinitelyLessThan(double& a, double& b);
// -1e-9 <= a - b <= 1e-9 (both bounds inclusive).
ORDERVIEW_API bool g_bDoubleIsEqual(double& a, double& b);
// Rounds half up at the scale 10^digits fixed by the first call in the process; later calls use
// that same scale whatever `digits` they pass.
ORDERVIEW_API double g_dbRoundDouble(const double& value, const int& digits);
// Base-unit code for a value shown with `decimals` decimals: 21 + 2 x decimals, one more when
// the value is negative (a value within 1e-9 of zero counts as non-negative).
ORDERVIEW_API unsigned char g_byGetBaseUnitFromDot(int decimals, const double& value);
// The decimal base-unit code that shows `value` with the decimals of `minTick`; units outside
// 21..40 are returned unchanged.
ORDERVIEW_API unsigned char g_byGetBaseUnitFromMinTick(const X1Format& value, double minTick);
