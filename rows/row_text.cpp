#include "rows/detail/row_text.h"


#include "format/normalize.h"
#include "order_data/detail/number_text.h"

namespace orderview {
namespace detail {

namespace {

int Year(std::uint32_t date) { return static_cast<int>(date / 10000); }
int Month(std::uint32_t date) { return static_cast<int>(date / 100 % 100); }
int Day(std::uint32_t date) { return static_cast<int>(date % 100); }
int Hour(std::uint32_t time) { return static_cast<int>(time / 10000000); }
int Minute(std::uint32_t time) { return static_cast<int>(time / 100000 % 100); }
int Second(std::uint32_t time) { return static_cast<int>(time / 1000 % 100); }
int Millis(std::uint32_t time) { return static_cast<int>(time % 1000); }

// Formats `value` with `precision` decimals, then deletes the last character, trailing '0's and
// trailing '.'s.
constexpr int kMaxPrecision = 30;
void AppendShortened(CString& out, double value, int precision, bool normalize)
{
    CString text;
    AppendFixed(text, value, precision);
    text.Delete(text.GetLength() - 1);
    text.TrimRight('0');
    text.TrimRight('.');
    if (normalize)
        out += g_cszNormalizCstring(text);
    else
        out += text;
}

}  // namespace

bool IsPlainOrder(std::uint32_t complexKind) { return complexKind == 'N' || complexKind == '0'; }

bool IsEtsOrder(const CBaseOrder_OrderInfo& order)
{
    if (order.commodity.dwGetMarketType() != 'O' || order.commodity.dwMarketKind != '2') return false;
    const char second = order.csOrderNo.GetAt(1);
    return second >= 'A' && second <= 'J';
}

bool IsForeignOptionMarket(const CBaseOrder_OrderInfo& order)
{
    return order.commodity.dwGetMarketType() == 'O' &&
           (order.commodity.dwMarketKind == '2' || order.commodity.dwMarketKind == '4');
}

namespace {

// Date and time parts: "YYYY/MM/DD" and "hh:mm:ss" with ".mmm" when asked, each written at `at`;
// they return the end of what they wrote. The widest date and time take 6 + 3 + 3 + 1 + 3 + 3
// + 3 + 4 characters.
char* PutDate(char* at, std::uint32_t date)
{
    at = PutZeroPadded(at, static_cast<std::uint32_t>(Year(date)), 4);
    *at++ = '/';
    at = PutZeroPadded(at, static_cast<std::uint32_t>(Month(date)), 2);
    *at++ = '/';
    return PutZeroPadded(at, static_cast<std::uint32_t>(Day(date)), 2);
}

char* PutTime(char* at, std::uint32_t time, bool millis)
{
    at = PutZeroPadded(at, static_cast<std::uint32_t>(Hour(time)), 2);
    *at++ = ':';
    at = PutZeroPadded(at, static_cast<std::uint32_t>(Minute(time)), 2);
    *at++ = ':';
    at = PutZeroPadded(at, static_cast<std::uint32_t>(Second(time)), 2);
    if (!millis) return at;
    *at++ = '.';
    return PutZeroPadded(at, static_cast<std::uint32_t>(Millis(time)), 3);
}

}  // namespace

void FormatDate(CString& out, std::uint32_t date)
{
    char text[32];
    *PutDate(text, date) = '\0';
    out = text;
}

void FormatTime(CString& out, std::uint32_t time, bool millis)
{
    char text[32];
    *PutTime(text, time, millis) = '\0';
    out = text;
}

void FormatStamp(CString& out, std::uint32_t date, std::uint32_t time, bool millis)
{
    char text[32];
    char* at = PutDate(text, date);
    *at++ = ' ';
    *PutTime(at, time, millis) = '\0';
    out = text;
}

void FormatQty(CString& out, std::uint32_t qty)
{
    out.Empty();
    AppendInt(out, static_cast<int>(qty));
}

void FormatOrderNo(CString& out, const CBaseOrder_OrderInfo& order)
{
    if (!order.csOrderNo.IsEmpty()) {
        out = (order.csAltOrderNo.IsEmpty() ? order.csOrderNo : order.csAltOrderNo).GetString();
        out += '-';
        out += static_cast<char>(order.dwOrderKind);
        AppendInt(out, order.iOrderSeq);
    } else if (!order.csAltOrderNo.IsEmpty()) {
        out = "[";
        out += order.csAltOrderNo.GetString();
        out += ']';
    } else {
        out = "--";
    }
}

void FormatAveragePrice(CString& out, const CBaseOrder_OrderInfo& order, bool normalize)
{
    if (order.dbAvgPrice == 0.0) {
        out = "--";
        return;
    }
    out.Empty();
    if (order.dbAvgPrice2 != 0.0) {
        AppendShortened(out, order.dbAvgPrice, 3, normalize);
        out += '|';
        AppendShortened(out, order.dbAvgPrice2, 3, normalize);
        return;
    }
    int precision = 5;
    if ((order.dbDenominator == 0.0 || order.dbDenominator == 1.0) && order.iDecimals >= 5)
        precision = order.iDecimals < kMaxPrecision ? order.iDecimals + 1 : kMaxPrecision;
    AppendShortened(out, order.dbAvgPrice, precision, normalize);
}

}  // namespace detail
}  // namespace orderview
