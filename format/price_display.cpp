#include "format/price_display.h"

#include <cstring>
#include <string>

#include "format/detail/code_table.h"
#include "format/normalize.h"

using orderview::detail::TruncToInt;

namespace {

struct Denominator {
    int den;
    int sub;
};

bool SameComId(const CAcceptComFfuture& record, const CString& comId)
{
    const size_t length = strnlen(record.szComId, sizeof record.szComId);
    return comId.str().size() == length && std::memcmp(record.szComId, comId.GetString(), length) == 0;
}

// The denominator and sub-denominator a price is shown with: the accepted foreign commodity
// table's, unless the price carries a different full denominator.
Denominator LookUpDenominator(double c, const CString& comId)
{
    Denominator d{TruncToInt(c), 1};
    for (const CAcceptComFfuture& record : OrderBK_GetForeignAccptCom()) {
        if (!SameComId(record, comId)) continue;
        d.den = record.iDenominator;
        d.sub = record.iSubDenominator;
        if (static_cast<double>(d.den) * d.sub != c) {
            if (d.den > c) d.den = TruncToInt(c);
            d.sub = TruncToInt(c / d.den);
        }
        break;
    }
    return d;
}

// Zero numerator or denominator: the price is no fraction (the numerator, when there is one,
// holds the decimal digits).
bool IsPlainPrice(double a, double b, double c, CString& text)
{
    if (c != 0.0 && b != 0.0) return false;
    text = g_cszNormalizDouble(a);
    if (b != 0.0) {
        text += ".";
        text += g_cszNormalizDouble(b);
    }
    return true;
}

CString WholeFraction(double a, double b, double c)
{
    CString text;
    text.Format("%d %d/%d", TruncToInt(a), TruncToInt(b), TruncToInt(c));
    return text;
}

// The host's per-commodity format (fraction setting 3).
CString HostFormattedPrice(double a, double b, double c, const CString& comId)
{
    const double value = b / c + a;
    std::vector<X1Format> items;
    unsigned char code = 0;
    if (BKOrderInterface::GetBKInterface().bGetCommodityItemDataByItemNo(items, 1, comId, {1057}, nullptr) &&
        !items.empty())
        code = static_cast<unsigned char>(static_cast<long>(items.front()) & 0xFF);
    switch (code) {
    case 9: case 10: case 45: case 46: case 47: case 48: case 49: case 50:
    case 11: case 12: case 51: case 52: {
        const double d = X1Format(125, 1, CApi_DisplayDenominator(value, code));
        const bool sixtyFourths = code == 11 || code == 12 || code == 51 || code == 52;
        return CApi_GetSpecificString2(sixtyFourths ? 64 : 32, d, code);
    }
    default:
        return CApi_DisplayFraction2Dot(value, code);
    }
}

}  // namespace

CString g_cszDisplayPrice(const double& a, const double& b, const double& c, const CString& comId)
{
    CString text;
    if (IsPlainPrice(a, b, c, text)) return text;
    const Denominator d = LookUpDenominator(c, comId);
    if (d.den == 1) return WholeFraction(a, b, c);
    const int setting = CSyncInfo::GetSettingCFG().SYS_GetSpecificFractionType();
    if (setting == SpecificFraction_Decimal) return g_cszNormalizDouble(b / c + a);
    if (setting == SpecificFraction_HostFormat) return HostFormattedPrice(a, b, c, comId);
    // A zero sub-denominator cannot split the numerator: show the plain fraction.
    if (d.sub == 1 || d.sub == 0) return WholeFraction(a, b, c);
    const long long r = static_cast<long long>(TruncToInt(b)) % d.sub;
    const int q = TruncToInt(b / d.sub);
    if (r != 0)
        text.Format("%d %d/%d %lld/%d", TruncToInt(a), q, d.den, r, d.sub);
    else
        text.Format("%d %d/%d", TruncToInt(a), q, d.den);
    return text;
}

CString g_cszDisplayAveragePrice(const double& a, const double& b, const double& c, const CString& comId)
{
    CString text;
    if (IsPlainPrice(a, b, c, text)) return text;
    const Denominator d = LookUpDenominator(c, comId);
    if (d.den == 1) return WholeFraction(a, b, c);
    if (CSyncInfo::GetSettingCFG().SYS_GetSpecificFractionType() == SpecificFraction_Decimal)
        return g_cszNormalizDouble(b / c + a);
    CString numerator;
    numerator.Format("%f", d.sub == 1 ? b : b / d.sub);
    const int dot = numerator.Find('.');
    if (dot >= 0) {
        numerator = numerator.Left(dot + 3);  // two decimals, cut
        numerator.TrimRight('0');
        numerator.TrimRight('.');
    }
    text.Format("%d %s/%d", TruncToInt(a), numerator.GetString(), d.sub == 1 ? TruncToInt(c) : d.den);
    return text;
}

CString g_cszDisplaySpecialDecimal(const double& value, const int& mode, const int& denominator, CString& out)
{
    if (mode == 1) return out;
    const double f = (value - std::trunc(value)) * denominator;
    CString fraction;
    fraction.Format("%.3f", f - std::trunc(f));
    const int dot = fraction.Find('.');
    const CString digits = dot >= 0 ? fraction.Mid(dot + 1) : CString();
    long thousandths = std::strtol(digits, nullptr, 10);
    for (int i = digits.GetLength(); i < 3; ++i) thousandths *= 10;
    out.Format("%d.%02d%03ld", TruncToInt(value), TruncToInt(f + 1e-9), thousandths);
    return out;
}

namespace {

// Unit word of a market kind.
const orderview::detail::CodeTable kUnits(
    {
        {'0', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'1', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'2', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'4', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'7', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'8', "IDS_ORDER-ITEM_UNIT_FUTURE"},
        {'A', "IDS_ORDER-ITEM_UNIT_STOCK_1K"},
        {'D', "IDS_ORDER-ITEM_UNIT_STOCK_1K"},
        {'E', "IDS_ORDER-ITEM_UNIT_STOCK"},
        {'O', "IDS_ORDER-ITEM_UNIT_STOCK"},
    },
    "IDS_ORDER-ITEM_UNIT_UNIO");

CString QuantityText(std::uint32_t quantity, std::uint32_t marketKind)
{
    CString text;
    text.Format("%d%s", static_cast<int>(quantity), kUnits.Display(marketKind).GetString());
    return text;
}

}  // namespace

CString g_cszDisplayOrderQty(CBaseOrder_OrderInfo* order, unsigned long)
{
    return order ? QuantityText(order->dwOrderQty, order->commodity.dwMarketKind) : CString();
}

CString g_cszDisplayDealQty(CBaseOrder_DealInfo* deal, unsigned long)
{
    return deal ? QuantityText(deal->dwDealQty, deal->commodity.dwMarketKind) : CString();
}
