// Compact numeric text for list columns, percent-decoding, account masking, hex digits and
// colour darkening.
//
// g_cszNormalizDouble, g_cszNormalizDoubleByDigit and g_cszNormalizCstring return a reference
// to one shared, process-wide result string that the next call overwrites: copy it at once
// when the text is needed beyond that. They must not be called from two threads at a time.
#pragma once

#include "order_data/cstring.h"
#include "order_data/visibility.h"

// "%.8f" with trailing zeros and point cut; exactly 0.0 gives "0".
ORDERVIEW_API const CString& g_cszNormalizDouble(const double& value);
// Fixed point with `digits` decimals (negative counts as 0), nothing cut.
ORDERVIEW_API const CString& g_cszNormalizDoubleByDigit(const double& value, const int& digits);
// Groups the integral digits of a numeric text in threes with commas ("1234567.89" gives
// "1,234,567.89"); a text already holding a comma past its first character is returned as is.
ORDERVIEW_API const CString& g_cszNormalizCstring(const CString& text);
// Replaces '+' by a blank in `text` itself, then returns it with %XX escapes decoded; a '%'
// not followed by two hex digits is dropped.
ORDERVIEW_API CString g_cszURLDecode(CString& text);
// The host's masked form of an account number.
ORDERVIEW_API CString g_csTransShowString(const CString& account);
// 16 x h(p[0]) + h(p[1]) where h is a hex digit's value, or the character's own code otherwise.
ORDERVIEW_API int g_IntFromHex(unsigned char* p);
// Each channel of 0x00BBGGRR times `factor`, cut toward zero and capped at 255; a negative
// factor returns the colour unchanged.
ORDERVIEW_API unsigned long g_ColorDarker(unsigned long colour, const double& factor);
