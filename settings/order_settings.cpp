#include "settings/order_settings.h"

#include <cstdlib>

#include "order_data/host_api.h"
#include "platform/profile_file.h"

namespace {

bool g_checkRule = false;      // one-way: false at load, true once set
int g_showMode = 0;
bool g_operatorFlags[4] = {false, false, false, false};

// Tokens of a 256-byte profile value split at blank, comma and line feed.
std::vector<CString> SettingTokens(const CString& section, const CString& key)
{
    const CString value = orderview::ProfileString(section, key, "", g_vGetOrderCfgFileName());
    std::vector<CString> tokens;
    int start = 0;
    while (start < value.GetLength()) {
        int end = start;
        while (end < value.GetLength() && value[end] != ' ' && value[end] != ',' && value[end] != '\n') ++end;
        if (end > start) tokens.push_back(value.Mid(start, end - start));
        start = end + 1;
    }
    return tokens;
}

}  // namespace

CString g_vGetOrderCfgFileName()
{
    CString name;
    name.Format("%s\\OrderCfg.ini", s_PathGetSysPath(0).GetString());
    return name;
}

int g_vGetPriceToStopPrice()
{
    return orderview::GetPrivateProfileIntA("ORDER_SETTING", "LimitPriceEqualStopPrice", 0, g_vGetOrderCfgFileName()) == 1
               ? 1
               : 0;
}

void g_vSetMsnOrderRespShowMode()
{
    g_showMode = static_cast<int>(
        orderview::GetPrivateProfileIntA("ORDER_SETTING", "MSNRESP_SHOWMODE", 0, g_vGetOrderCfgFileName()));
}

int g_vGetMsnOrderRespShowMode() { return g_showMode; }

void g_vSetCheckRule() { g_checkRule = true; }

bool g_bGetCheckRule() { return g_checkRule; }

void g_vInitialOrderOperate()
{
    OrderBK_vGetOperator(g_operatorFlags[0], g_operatorFlags[1], g_operatorFlags[2], g_operatorFlags[3]);
}

std::vector<unsigned long> g_GetOnsiteOrder()
{
    std::vector<unsigned long> sources;
    for (const CString& token : SettingTokens("ORDER_SOURCE", "NO_OPERATOR")) {
        // Widened as a signed character: bytes of 128 and above sign-extend.
        const long code = static_cast<signed char>(token[0]);
        sources.push_back(static_cast<unsigned long>(code));
    }
    return sources;
}

std::vector<int> g_vGetSettingParameter(CString section, CString key)
{
    std::vector<int> numbers;
    for (const CString& token : SettingTokens(section, key)) {
        // atoi is strtol cut to int; only the low 16 bits count.
        const unsigned long value = static_cast<unsigned long>(std::strtol(token, nullptr, 10));
        numbers.push_back(static_cast<int>(value & 0xFFFF));
    }
    if (numbers.size() < 16) numbers.resize(16, 0);
    return numbers;
}

namespace orderview {
bool GetOrderOperateFlag(int index) { return index >= 0 && index < 4 && g_operatorFlags[index]; }

int GetYesterdayTradeVolumeSetting()
{
    // The profile reader wraps modulo 2^32; the setting is a signed integer.
    return static_cast<int>(GetPrivateProfileIntA("ORDER_SETTING", "YesterdayTradeVolume", 0, g_vGetOrderCfgFileName()));
}

int GetStockPriceAlertSetting()
{
    return static_cast<int>(GetPrivateProfileIntA("ORDER_SETTING", "StockPriceAlert", 1, g_vGetOrderCfgFileName()));
}
}  // namespace orderview
