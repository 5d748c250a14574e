#include "checks/stock_order_check.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "checks/detail/message_format.h"
#include "format/normalize.h"
#include "format/quote_items.h"
#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"
#include "platform/platform.h"
#include "settings/order_settings.h"

namespace {

constexpr unsigned short kItemLastPrice = 125;
constexpr unsigned short kItemYesterdayVolume = 128;
constexpr unsigned short kItemReference = 129;
constexpr unsigned short kItemLimitUpOpen = 132;
constexpr unsigned short kItemLimitDownOpen = 133;
constexpr unsigned short kItemLimitUpClosed = 135;
constexpr unsigned short kItemLimitDownClosed = 136;
constexpr unsigned short kItemReferenceClosed = 455;
constexpr unsigned char kVolumeService = 16;

constexpr unsigned kStyleStockLimit = 0x130;   // warning icon, second button default, OK
constexpr unsigned kStyleFutureLimit = 0x34;   // warning icon, Yes/No
constexpr unsigned kStylePlain = 0;            // OK

using orderview::detail::LangText;

int ShowBox(const CString& text, unsigned style)
{
    return orderview::GetPlatform().MessageBox(text, g_cszProductName, style);
}

double Item(const CBaseOrder_Commodity& commodity, unsigned short item)
{
    return g_GetSymbolInfoByItem(commodity.byGetServiceID(), commodity.cszGetSymbolID(), item);
}

// The market-state text of the commodity (STATUS_CLOSE/PREOPEN/OPEN_STRING for the low two bits
// 0, 1, 2 of the host's state; empty for 3); false, with `text` empty, when the host has none.
bool ReadMarketStateText(const CBaseOrder_Commodity& commodity, CString& text)
{
    text.Empty();
    CMarketStatus status;
    if (!BKOrderInterface::GetBKInterface().bGetMarketStatus(commodity.byGetServiceID(), commodity.cszGetSymbolID(),
                                                             status, nullptr))
        return false;
    switch (status.byMarketState & 3) {
    case 0: text = STATUS_CLOSE_STRING; break;
    case 1: text = STATUS_PREOPEN_STRING; break;
    case 2: text = STATUS_OPEN_STRING; break;
    default: break;
    }
    return true;
}

// The host's commodity-id lookup of a symbol with service id 1; its answer is not used.
void LookUpCommodityOfSymbol(const CString& symbolId)
{
    CString commodityId;
    const int flag = 0;
    BKOrderInterface::GetBKInterface().bGetCommodityIDBySymbolID(commodityId, 1, symbolId, flag);
}

// A number text read back after rounding to 8 decimals (g_cszNormalizDouble).
double Normalized(double value)
{
    const CString text = g_cszNormalizDouble(value);
    return std::strtod(text.GetString(), nullptr);
}

bool InIntRange(double value) { return value >= -2147483648.0 && value <= 2147483647.0; }

// A limit price out of the band: the stock text refuses, the futures question lets the user go on.
bool AskAboutLimit(const char* stockId, const char* futureId, double limit)
{
    const CString stockText = LangText(stockId);
    if (!stockText.IsEmpty()) {
        ShowBox(orderview::detail::FormatWithDouble(stockText, limit), kStyleStockLimit);
        return false;
    }
    const CString question = orderview::detail::FormatWithDouble(LangText(futureId), limit);
    return ShowBox(question, kStyleFutureLimit) == orderview::kIdYes;
}

}  // namespace

double g_dbGetCurrentPrice(CBaseOrder_Commodity& commodity)
{
    const double last = Item(commodity, kItemLastPrice);
    if (last > 0) return last;
    if (commodity.byGetServiceID() == 6) return last;
    return Item(commodity, kItemReference);
}

double g_dbGetLIMITPrice(CBaseOrder_Commodity& commodity, std::uint32_t kind)
{
    CString state;
    ReadMarketStateText(commodity, state);
    const bool open = state == STATUS_OPEN_STRING;
    switch (kind) {
    case '6': return Item(commodity, open ? kItemLimitUpOpen : kItemLimitUpClosed);
    case '7': return Item(commodity, open ? kItemLimitDownOpen : kItemLimitDownClosed);
    case '8': return Item(commodity, open ? kItemReference : kItemReferenceClosed);
    default: return 0.0;
    }
}

void g_CheckPriceBound(const CBaseOrder_OrderInfo& order, double& result)
{
    result = 0.0;
    const std::uint32_t kind = order.dwOrderKind;
    if (kind != '2' && kind != '6' && kind != '7' && kind != '8') return;
    const CBaseOrder_Commodity& commodity = order.commodity;
    const double up = Item(commodity, kItemLimitUpOpen);
    if (commodity.byGetServiceID() == 1) LookUpCommodityOfSymbol(commodity.cszGetSymbolID());
    const double down = Item(commodity, kItemLimitDownOpen);
    if (up > 0 && order.dbOrderPrice > up)
        result = up;
    else if (down > 0 && down > order.dbOrderPrice)
        result = down * -1;
}

bool g_bIsAllowMiniJump(CString price, int, double tick, int multiplier)
{
    CString tickText;
    tickText.Format("%.9f", tick);
    tickText.TrimRight('0');
    const int point = tickText.Find('.');
    const int decimals = point < 0 ? 0 : tickText.GetLength() - point - 1;

    const double multiplied = tick * multiplier;
    double value = 0.0;
    double step = 0.0;
    if (decimals == 0) {
        value = Normalized(std::strtod(price.GetString(), nullptr));
        step = multiplied;
    } else {
        const double scale = std::pow(10.0, decimals);
        // From the last integer digit on; the whole text when it holds no point.
        const CString tail = price.Mid(price.Find('.') - 1);
        value = Normalized(std::strtod(tail.GetString(), nullptr) * scale);
        step = multiplied * scale;
    }
    if (value > 2147483647.0) return false;
    // Range checks before any conversion to an integer.
    if (!InIntRange(value) || value != std::trunc(value)) return false;
    const double wholeStep = std::trunc(Normalized(step));
    if (!InIntRange(wholeStep) || wholeStep == 0.0) return false;
    const long long number = static_cast<long long>(value);
    const long long divisor = static_cast<long long>(wholeStep);
    return number % divisor == 0;
}

bool g_bIsAllowUnoffSet(CString& comId)
{
    std::vector<CString> firms;
    if (!OrderBK_bGetIsAllowOffsetByFirm(firms)) return true;
    for (const CString& firm : firms)
        if (firm == comId) return true;
    return false;
}

void g_vQuotePrice2OrderPrice(unsigned char serviceId, const CString& symbolId, double&)
{
    if (serviceId == 1) LookUpCommodityOfSymbol(symbolId);
}

bool g_bCheckStockOrder(AccountType account, const CBaseOrder_OrderInfo& order)
{
    const CString& comId = order.commodity.csComId;

    // 1. Alert stocks of the account.
    bool special = false;
    for (const CBaseOrder_AlertStock& stock : OrderBK_GetDSAlertStock(account)) {
        if (stock.csSymbolID != comId) continue;
        special = true;
        const CString text = LangText("IDS_ORDER-STOCK-CV_ALERTSTOCK_NOT_NET_ORDER");
        if (!text.IsEmpty()) {
            ShowBox(text, kStylePlain);
            return false;
        }
    }

    // 2. Specially treated stocks.
    if (OrderBK_GetStockCredit(comId).bSpecial) special = true;
    bool first = false, second = false, third = false;
    if (OrderBK_bIsStockInfo(comId, first, second, third) && first && second && third) special = true;
    if (special) {
        const CString text = LangText("IDS_ORDER-STOCK-CV_SPECIAL_NOT_NET_ORDER");
        if (!text.IsEmpty()) {
            ShowBox(text, kStylePlain);
            return false;
        }
    }

    // 3. Yesterday's volume of a bought stock.
    const int leastVolume = orderview::GetYesterdayTradeVolumeSetting();
    if (leastVolume > 0 && order.dwBS == 'B' &&
        g_GetSymbolInfoByItem(kVolumeService, order.commodity.cszGetSymbolID(), kItemYesterdayVolume) < leastVolume) {
        ShowBox(orderview::detail::FormatWithInteger(LangText("IDS_ORDER-STOCK-CV_YESTERDAY_TRADE_VOLUME"), leastVolume),
                kStylePlain);
        return false;
    }

    // 4. The price band.
    const int alert = orderview::GetStockPriceAlertSetting();
    bool checkBand = alert != 0;
    if (alert == 2) {
        CString state;
        checkBand = !ReadMarketStateText(order.commodity, state) || state == STATUS_OPEN_STRING;
    }
    if (checkBand && order.commodity.dwMarketKind != 'D' && order.dwOrderType == '2') {
        double bound = 0.0;
        g_CheckPriceBound(order, bound);
        if (bound > 0)
            return AskAboutLimit("IDS_ORDER-STOCK-CV_OUTOF_UPPERLMT", "IDS_ORDER-FUTURE-CV_OUTOF_UPPERLMT", bound);
        if (bound < 0)
            return AskAboutLimit("IDS_ORDER-STOCK-CV_OUTOF_DOWNERLMT", "IDS_ORDER-FUTURE-CV_OUTOF_DOWNERLMT",
                                 bound * -1);
    }
    return true;
}
