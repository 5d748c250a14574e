#include "format/order_state.h"

#include <cerrno>
#include <cstdlib>

#include "format/detail/display_support.h"

using orderview::detail::Is;
using orderview::detail::LangText;

namespace {

// Gateway codes that read as no positive number, tested in this order ("PEICE" and the other
// odd spellings are the language files' own keys).
struct GatewayRow {
    const char* code;
    const char* id;
};

const GatewayRow kGatewayRows[] = {
    {"C010", "IDS_ORDER-ITEM_STATUS_ATTEND"},
    {"C019", "IDS_ORDER-ITEM_STATUS_ATTENDTIMEOUT"},
    {"CG01", "IDS_ORDER-ITEM_STATUS_SENDGROORDER"},
    {"CG02", "IDS_ORDER-ITEM_STATUS_SENDERROR"},
    {"A001", "IDS_ORDER-ITEM_STATUS_NETNODOUBLE"},
    {"A003", "IDS_ORDER-ITEM_STATUS_BACKNOCUSDATA"},
    {"A004", "IDS_ORDER-ITEM_STATUS_DIFFERENTDATE"},
    {"A005", "IDS_ORDER-ITEM_STATUS_NOTENOUGHIAMT"},
    {"A006", "IDS_ORDER-ITEM_STATUS_PRICEREADERROR"},
    {"W080", "IDS_ORDER-ITEM_STATUS_PVCBREAKOUT"},
    {"E000", "IDS_ORDER-ITEM_STATUS_OVERLIMIT"},
    {"E999", "IDS_ORDER-ITEM_STATUS_ORDERERROR"},
    {"E001", "IDS_ORDER-ITEM_STATUS_JUMPPOINTERROR"},
    {"E002", "IDS_ORDER-ITEM_STATUS_NOSUCHITEM"},
    {"E003", "IDS_ORDER-ITEM_STATUS_NOSUCHITEMNO"},
    {"E008", "IDS_ORDER-ITEM_STATUS_PRICEERROR"},
    {"E019", "IDS_ORDER-ITEM_STATUS_PRICEERROR"},
    {"E041", "IDS_ORDER-ITEM_STATUS_PRICEERROR"},
    {"E080", "IDS_ORDER-ITEM_STATUS_CONNECTFALSE"},
    {"Etsi", "IDS_ORDER-ITEM_STATUS_PEICEOUTSIDERANGE"},
    {"S001", "IDS_ORDER-ITEM_STATUS_ORDERNOTDECIDE"},
    {"Eers", "IDS_ORDER-ITEM_STATUS_MARKETPEICEOUTSIDERANGE"},
};

const char* GatewayCodeId(const CString& code)
{
    for (const GatewayRow& row : kGatewayRows)
        if (code == row.code) return row.id;
    return "IDS_ORDER-ITEM_STATUS_NOSUCHERRORNO";
}

// The leading decimal number of a status code (atoi-style; no digits read as 0), clamped to int.
long LeadingNumber(const CString& code)
{
    errno = 0;
    const long n = std::strtol(code, nullptr, 10);
    if (n > 2147483647L) return 2147483647L;
    if (n < -2147483647L - 1) return -2147483647L - 1;
    return n;
}

bool IsFuturesMarket(unsigned long market)
{
    for (char kind : {'0', '1', '2', '4', '7', '8'})
        if (Is(market, kind)) return true;
    return false;
}

bool IsLiveKind(unsigned long kind) { return kind >= '1' && kind <= '8'; }

bool IsChangeAction(unsigned long action) { return Is(action, 'U') || Is(action, 'C') || Is(action, 'P'); }

CString Tagged(const CString& text, const CString& code)
{
    CString out;
    out.Format("%s[%s]", text.GetString(), code.GetString());
    return out;
}

}  // namespace

CString g_cszDisplayOrderState(CBaseOrder_OrderInfo* order, unsigned long)
{
    if (!order) return CString();
    CBaseOrder_OrderInfo& o = *order;
    const unsigned long market = o.commodity.dwMarketKind;
    const unsigned long kind = Is(market, 'A') ? o.dwOrderType : o.dwOrderKind;
    const unsigned long last = o.dwLastAction;
    const unsigned long gate = IsFuturesMarket(market) ? kind : last;
    const CString chase = o.byChasePrice == 1 ? "(" + LangText("IDS_ORDER-ITEM_CHASEPRICE") + ")" : CString();
    const std::uint32_t ordered = o.dwOrderQty, dealt = o.dwDealQty, cancelled = o.dwCancelQty;

    // 1. Exchange state.
    if (!o.csStateCode.IsEmpty() && !IsChangeAction(gate)) {
        const CString& state = o.csStateCode;
        if (state == "F") {
            if (ordered != dealt + cancelled) return LangText("IDS_ORDER-ITEM_STATUS_PARTDEAL") + chase;
            if (cancelled < 1) return LangText("IDS_ORDER-ITEM_STATUS_COMPLETEDEAL") + chase;
            return LangText("IDS_ORDER-ITEM_STATUS_PARTDEALANDCANCEL") + chase;
        }
        if (state == "C")
            return LangText(dealt < 1 ? "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS" : "IDS_ORDER-ITEM_STATUS_PARTDEALANDCANCEL") +
                   chase;
        if (state == "U") return LangText("IDS_ORDER-ITEM_STATUS_CHANGESUCCESS");
        if (state == "P") {
            if (ordered != dealt) return LangText("IDS_ORDER-ITEM_STATUS_CHANGEPRICESUCCESS");
            return LangText("IDS_ORDER-ITEM_STATUS_COMPLETEDEAL") + chase;
        }
        return state;
    }

    // 2. Quantity state.
    const bool accepted = o.csStatusCode == "0000" || o.csStatusCode == "9997";
    const bool toMessage = (!accepted && dealt < 1) || !IsLiveKind(kind) || IsChangeAction(last);
    if (!toMessage) {
        if (dealt >= 1) {
            if (ordered != cancelled + dealt) return LangText("IDS_ORDER-ITEM_STATUS_PARTDEAL") + chase;
            return LangText("IDS_ORDER-ITEM_STATUS_COMPLETEDEAL") + chase;
        }
        if (ordered == cancelled) return LangText("IDS_ORDER-ITEM_STATUS_CANCELSUCCESS") + chase;
        if (ordered >= dealt) {
            if (cancelled != 0 && cancelled < ordered) return LangText("IDS_ORDER-ITEM_STATUS_CHANGESUCCESS");
            if (o.csStatusCode != "9997") {
                if (!Is(o.dwChangeLock, 'Y')) {
                    o.byStateShown = 1;
                    return LangText("IDS_ORDER-ITEM_STATUS_ORDERSUCCESS") + chase;
                }
                return LangText(Is(o.dwOrderCond, '6') ? "IDS_ORDER-ITEM_STATUS_ETSCLOSE" : "IDS_ORDER-ITEM_STATUS_CLOSE");
            }
            o.byStateShown = 1;
            return LangText("IDS_ORDER-ITEM_STATUS_BOOKORDER");
        }
        return LangText("IDS_ORDER-ITEM_STATUS_ERR_DEAL_LARGERTHEN_ORDER");
    }

    // 3. Gateway message.
    CString message = o.csStatusMsg;
    message.Trim();
    if (!message.IsEmpty()) {
        if (!o.csStateCode.IsEmpty()) return Tagged(o.csStateCode, o.csStatusCode);
        o.byStateShown = 1;
        return Tagged(o.csStatusMsg, o.csStatusCode);
    }

    // 4. Gateway code.
    o.byStateShown = 1;
    const long n = LeadingNumber(o.csStatusCode);
    if (n < 1) {
        if (o.csStatusCode != "0000") return Tagged(LangText(GatewayCodeId(o.csStatusCode)), o.csStatusCode);
        // Answers to a change, cancel or change-price request clear the flag again.
        const char* id = nullptr;
        if (Is(kind, 'U') || Is(last, 'U')) id = "IDS_ORDER-ITEM_STATUS_CHANGESUCCESS";
        else if (Is(kind, 'C') || Is(last, 'C')) id = "IDS_ORDER-ITEM_STATUS_CANCELSUCCESS";
        else if (Is(kind, 'P') || Is(last, 'P')) id = "IDS_ORDER-ITEM_STATUS_CHANGEPRICESUCCESS";
        if (id) o.byStateShown = 0;
        return Tagged(LangText(id ? id : "IDS_ORDER-ITEM_STATUS_ORDERSUCCESS"), o.csStatusCode);
    }
    if (n == 9997) return Tagged(LangText("IDS_ORDER-ITEM_STATUS_WAITING") + chase, o.csStatusCode);
    if (n == 9998 || n == 9999) return Tagged(LangText("IDS_ORDER-ITEM_STATUS_WAITINGORDER"), o.csStatusCode);
    return Tagged(CString(), o.csStatusCode);
}
