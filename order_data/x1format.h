// X1Format: the host's typed scalar (a quote item): item number, base-unit code and value.
//
// Base-unit codes 21..40 are decimal units: code 21 + 2 x d (value >= 0) or 22 + 2 x d
// (value < 0) shows the value with d decimals. Every other code shows the value in its
// shortest exact form ("%.15g"), or the text it was built from when that was not a number.
#pragma once

#include <cstdint>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

class ORDERVIEW_API X1Format {
public:
    X1Format() = default;
    X1Format(const X1Format&) = default;
    X1Format& operator=(const X1Format&) = default;
    ~X1Format() = default;
    // `text` holds `length` bytes (or fewer when a NUL comes first); it is read as a number.
    X1Format(unsigned short itemNo, unsigned char baseUnit, const char* text, unsigned short length);
    X1Format(unsigned short itemNo, unsigned char baseUnit, const CString& text);
    X1Format(unsigned short itemNo, unsigned char baseUnit, double value);

    operator double() const { return value_; }
    // Truncates toward zero; NaN gives 0 and out-of-range values saturate.
    operator long() const;
    operator CString() const { return s_GetAsString(baseUnit_); }

    // Re-labels the value with unit `to` when `from` is its current unit; the value is kept.
    bool ChangeBaseUnit(unsigned char from, unsigned char to);
    // The value as text in the given unit (see the header comment).
    CString s_GetAsString(unsigned char baseUnit) const;

    unsigned short wGetItemNo() const { return itemNo_; }
    unsigned char byGetBaseUnit() const { return baseUnit_; }
    bool bIsNumber() const { return isNumber_; }
    const CString& cszGetText() const { return text_; }

private:
    unsigned short itemNo_ = 0;
    unsigned char baseUnit_ = 0;
    bool isNumber_ = true;
    double value_ = 0.0;
    CString text_;
};

// A vector of quote items.
class ORDERVIEW_API SmartX1Vec : public std::vector<X1Format> {
public:
    virtual ~SmartX1Vec();
};

// Common base of the host's quote records.
class ORDERVIEW_API CBaseInfo {
public:
    virtual ~CBaseInfo();
    CString csSymbolID;
    CString csName;
};

// Market state of one symbol; the two low bits of byMarketState give 0 closed, 1 pre-open, 2 open.
class ORDERVIEW_API CMarketStatus : public CBaseInfo {
public:
    std::uint8_t byMarketState = 0;
    std::uint8_t byValid = 1;
    std::uint32_t dwTime = 0;
    SmartX1Vec vecItems;
};

// Optional data-source descriptor; the library always passes null.
class ORDERVIEW_API CCDSInfo {
public:
    CString csSource;
};
