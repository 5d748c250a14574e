#include "settings/error_order_file.h"

#include <string>

#include "order_data/host_api.h"
#include "platform/platform.h"
#include "platform/profile_file.h"
#include "settings/client_log.h"

namespace {

constexpr unsigned long kForeignFutures = 50;

// An account text is used as a file name inside "sys"; refuse anything that could leave it.
bool IsSafeFileTitle(const CString& account)
{
    return !account.IsEmpty() && account != ".." && account != "." && account.FindOneOf("/\\:") < 0 &&
           account.Find('\0') < 0;
}

// The "ErrOrder" marker line, as many bytes as the file name is long: the marker, blanks and a
// line break, so that profile readers see one line without '=' and ignore it.
std::string MarkerLine(const CString& fileName)
{
    std::string marker = "ErrOrder";
    const size_t length = static_cast<size_t>(fileName.GetLength());
    if (length > marker.size() + 2) marker.append(length - marker.size() - 2, ' ');
    return marker + "\r\n";
}

// Key writes with the profile writer's rules, collected in one document.
class ProfileWriter {
public:
    explicit ProfileWriter(orderview::ProfileDocument& document) : document_(document) {}
    // A value stays on its key's line: a line break in it (a gateway message can hold one) would
    // start a key or a section of its own when the file is read back, so it becomes a blank.
    void Text(const CString& section, const char* key, const CString& value)
    {
        CString line = value;
        line.Replace('\r', ' ');
        line.Replace('\n', ' ');
        document_.Set(section, key, line);
    }
    void Number(const CString& section, const char* key, long long value)
    {
        CString text;
        text.Format("%d", static_cast<int>(value));
        Text(section, key, text);
    }
    void Real(const CString& section, const char* key, double value)
    {
        CString text;
        text.Format("%f", value);
        Text(section, key, text);
    }

private:
    orderview::ProfileDocument& document_;
};

}  // namespace

void g_vWriteErrorOrder(AccountType account, unsigned long kind)
{
    if (!IsSafeFileTitle(account.csAccount)) {
        CString why = "error order file not written: unusable account text '" + account.csAccount + "'";
        g_ClientbWriteLog(why);
        return;
    }
    CString fileName;
    fileName.Format("%s\\sys\\%s.ord", BKOrderInterface::GetBKInterface().PathGetMainPath().GetString(),
                    account.csAccount.GetString());
    // Every key is edited in memory with the profile writer's rules, then the file is replaced
    // once: an interrupted write leaves the previous file whole.
    orderview::ProfileDocument document;
    if (!document.Load(fileName)) return;
    document.Append(MarkerLine(fileName));

    std::vector<CBaseOrder_OrderInfo> orders;
    CString type;
    ProfileWriter out(document);
    if (kind == kForeignFutures) {
        orders = OrderBK_GetForeignErrorOrder(account);
        type = "FF";
        out.Text("ErrOrder", "OrderType", type);
    }
    const orderview::LocalTime now = orderview::GetPlatform().GetLocalTime();
    CString date;
    date.Format("%04d%02d%02d", now.wYear, now.wMonth, now.wDay);
    out.Text("ErrOrder", "Date", date);
    out.Number(type, "Count", static_cast<long long>(orders.size()));

    int number = 0;
    for (const CBaseOrder_OrderInfo& o : orders) {
        CString section;
        section.Format("%s%d", type.GetString(), ++number);
        CString tradeDate;
        tradeDate.Format("%08d", static_cast<int>(o.dwOrderDate));
        out.Text(section, "Exchange", o.commodity.csExchangeId);
        out.Number(section, "ComType", o.dwOrderKind);
        out.Text(section, "TradeDate", tradeDate);
        out.Number(section, "TradeTime", o.dwBookTime);
        out.Number(section, "BS", o.dwBS);
        out.Text(section, "ComNo", o.commodity.csComId);
        out.Text(section, "ComMonth", o.commodity.csComMonth);
        out.Text(section, "ComTyp", o.commodity.csComType);
        out.Text(section, "ComWek", o.commodity.csComWeek);
        out.Real(section, "OrderPrice", o.dbOrderPrice);
        out.Real(section, "OrderPrice2", o.dbOrderPriceFrac);
        out.Real(section, "OrderPrice3", o.dbDenominator);
        out.Real(section, "OrderPrice4", o.dbTriggerPrice);
        out.Real(section, "OrderPrice5", o.dbTriggerPriceFrac);
        out.Real(section, "OrderPrice6", o.dbTriggerDenominator);
        out.Number(section, "OrderQty", o.dwOrderQty);
        out.Number(section, "DealQty", o.dwDealQty);
        out.Number(section, "CancelQty", o.dwCancelQty);
        out.Number(section, "OrderType", o.dwOrderKind);  // the same field as ComType, as the readers expect
        out.Number(section, "DayTrade", o.dwDayTrade);
        out.Number(section, "OrderRole", o.dwOrderCond);
        out.Number(section, "OS", o.dwOpenOffset);
        out.Text(section, "Status", o.csStatusCode);
        out.Text(section, "SourceType", o.csSourceName);
    }
    document.Save(fileName);
}

bool g_bGetIni(CString name)
{
    const CString pattern = BKOrderInterface::GetBKInterface().PathGetMainPath() + "\\sys\\*.ord";
    for (const CString& file : orderview::GetPlatform().FindFiles(pattern)) {
        if (file == "." || file == "..") continue;
        const int dot = file.ReverseFind('.');
        if ((dot >= 0 ? file.Left(dot) : file) == name) return true;
    }
    return false;
}
