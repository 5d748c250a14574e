#include "rows/detail/row_text.h"

#include <cmath>
#include <cstdio>

#include "format/normalize.h"

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

// Deletes the last character, then trailing '0's, then trailing '.'s.
void Shorten(char* text, int length)
{
    if (length <= 0) return;
    text[--length] = '\0';
    while (length > 0 && text[length - 1] == '0') text[--length] = '\0';
    while (length > 0 && text[length - 1] == '.') text[--length] = '\0';
}

// Formats `value` with `precision` decimals and shortens it. The buffer holds the widest double
// (309 integral digits) with the largest precision allowed.
constexpr int kMaxPrecision = 30;
void AppendShortened(CString& out, double value, int precision, bool normalize)
{
    char text[400];
    const int length = std::snprintf(text, sizeof text, "%.*f", precision, value);
    Shorten(text, length < 0 ? 0 : (length < static_cast<int>(sizeof text) ? length : static_cast<int>(sizeof text) - 1));
    if (normalize)
        out += g_cszNormalizCstring(CString(text));
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

void FormatDate(CString& out, std::uint32_t date) { out.Format("%04d/%02d/%02d", Year(date), Month(date), Day(date)); }

void FormatTime(CString& out, std::uint32_t time, bool millis)
{
    if (millis)
        out.Format("%02d:%02d:%02d.%03d", Hour(time), Minute(time), Second(time), Millis(time));
    else
        out.Format("%02d:%02d:%02d", Hour(time), Minute(time), Second(time));
}

void FormatStamp(CString& out, std::uint32_t date, std::uint32_t time, bool millis)
{
    if (millis)
        out.Format("%04d/%02d/%02d %02d:%02d:%02d.%03d", Year(date), Month(date), Day(date), Hour(time),
                   Minute(time), Second(time), Millis(time));
    else
        out.Format("%04d/%02d/%02d %02d:%02d:%02d", Year(date), Month(date), Day(date), Hour(time), Minute(time),
                   Second(time));
}

void FormatQty(CString& out, std::uint32_t qty) { out.Format("%d", static_cast<int>(qty)); }

void FormatOrderNo(CString& out, const CBaseOrder_OrderInfo& order)
{
    if (!order.csOrderNo.IsEmpty()) {
        const CString& number = order.csAltOrderNo.IsEmpty() ? order.csOrderNo : order.csAltOrderNo;
        out.Format("%s-%c%d", number.GetString(), static_cast<char>(order.dwOrderKind), order.iOrderSeq);
    } else if (!order.csAltOrderNo.IsEmpty()) {
        out.Format("[%s]", order.csAltOrderNo.GetString());
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
