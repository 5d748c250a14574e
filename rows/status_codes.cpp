#include "rows/status_codes.h"

#include <algorithm>
#include <vector>

#include "order_data/host_api.h"
#include "order_data/detail/language_text.h"
#include "settings/order_settings.h"

namespace {

// The order-source exclusion list, read from the settings file on first use and again after a
// host is installed (or a reload is asked for).
std::vector<unsigned long> g_noOperatorSources;
unsigned g_noOperatorSourcesFor = 0;  // the host generation the list was read for; 0: never

const std::vector<unsigned long>& ExcludedSources()
{
    const unsigned generation = orderview::detail::HostGeneration();
    if (g_noOperatorSourcesFor != generation) {
        g_noOperatorSources = g_GetOnsiteOrder();
        g_noOperatorSourcesFor = generation;
    }
    return g_noOperatorSources;
}

bool IsAccepted(const CString& status) { return status == "0000" || status == "9997" || status == "9996"; }

bool IsExcludedSource(unsigned long source)
{
    const std::vector<unsigned long>& sources = ExcludedSources();
    return std::find(sources.begin(), sources.end(), source) != sources.end();
}

using orderview::detail::LangText;

}  // namespace

namespace orderview {
void ReloadOrderSourceExclusions() { g_noOperatorSourcesFor = 0; }
}  // namespace orderview

int g_iCheckHtsODStatus(std::uint32_t, const CString& status, std::uint32_t dwFilter, CString& message)
{
    if (dwFilter != 'C' && dwFilter != 'U') {
        message = "Internal Error, [dwFilter] is not in SWITCH-CASE loop!";
        return -1;
    }
    if (IsAccepted(status)) {
        message = "OD Status OK!";
        return 1;
    }
    if (status == "C010" || status == "C019") {
        message = LangText("IDS_ORDER-COMMON_ERRMSG_GATEWAY_TIMEOUT");
        return 0;
    }
    message = LangText("IDS_ORDER-COMMON_ERRMSG_ORIGINAL_ORDER_ERR");
    return -1;
}

bool g_bGetErrorMsg(CString& message, const CString& reply)
{
    static const char kOpen[] = "<exchangenumber>", kClose[] = "</exchangenumber>";
    static const char kStatus[] = "<status>", kStatusEnd[] = "</status>";
    const int open = reply.Find(kOpen, 0);
    if (open < 0) return false;
    const int close = reply.Find(kClose, open + 1);
    if (close < 0) return false;
    const int numberStart = open + static_cast<int>(sizeof kOpen) - 1;
    // A closing tag inside the opening one cannot enclose anything.
    const CString number = close > numberStart ? reply.Mid(numberStart, close - numberStart) : CString();
    if (!number.IsEmpty() && number != LangText("IDS_ORDER-ITEM_STATUS_WAITINGORDER")) message.Format("[%s] ", number.GetString());

    const int status = reply.Find(kStatus, close + 1);
    if (status < 0) return false;
    const int statusEnd = reply.Find(kStatusEnd, status + 1);
    if (statusEnd < 0) return false;
    const int textStart = status + static_cast<int>(sizeof kStatus) - 1;
    CString text = statusEnd > textStart ? reply.Mid(textStart, statusEnd - textStart) : CString();
    const int blank = text.Find(' ');
    if (blank >= 0) text = text.Left(blank);
    message += text;
    return true;
}

bool g_bIsOrderAvailableChange(const CBaseOrder_OrderInfo* order)
{
    if (!order) return false;
    const CBaseOrder_OrderInfo& o = *order;
    if (o.dwOrderCond == 'F') {
        if (o.csStatusCode != "9997") return false;
    } else if (o.csStatusCode == "0000") {
        if (o.csOrderNo.IsEmpty()) return false;
    } else if (o.csStatusCode != "9997" && o.csStatusCode != "9996") {
        return false;
    }
    if (o.dwOrderKind < '1' || o.dwOrderKind > '8') return false;
    const auto remaining = static_cast<std::int32_t>(o.dwOrderQty - o.dwDealQty - o.dwCancelQty);
    if (remaining < 1 || o.dwOrderQty < o.dwCancelQty) return false;
    if (!IsAccepted(o.csStatusCode)) return false;
    if (o.dwOrderKind == 'C' || o.dwOrderKind == 'U') return false;  // a second guard, kept on purpose
    if (o.dwLastAction == 'U' || o.dwLastAction == 'C') return false;
    if (o.dwChangeLock == 'Y' || o.csChangeLock == "Y") return false;
    if (o.dwOrderCond == 'I' && o.dwDealQty != 0) return false;
    return !IsExcludedSource(o.dwOrderSource);
}

bool g_bRejectDelChg(std::uint32_t code)
{
    if (!OrderBK_GetSettingShowDelete()) return false;
    return code == 'C' || code == 'U' || code == 'P';
}

bool g_bISOperator(std::uint32_t source) { return !IsExcludedSource(source); }
