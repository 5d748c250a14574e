#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "host/default_host.h"
#include "order_data/host_api.h"
#include "support/substitute_host.h"
#include "support/temp_folder.h"

namespace {

using orderview::DefaultHost;

bool HasDiagnostic(DefaultHost& host, const std::string& prefix)
{
    const auto& all = host.Diagnostics();
    return std::any_of(all.begin(), all.end(), [&](const CString& d) { return d.str().rfind(prefix, 0) == 0; });
}

class DefaultHostFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder.Write("sys/language.txt",
                     "\xEF\xBB\xBF# order screens\n"
                     "IDS_ORDER-ITEM_BS_BUY=Buy\r\n"
                     "IDS_ORDER-ITEM_BS_SELL = Sell \n"
                     "IDS_EMPTY=\n"
                     "IDS_ORDER-ITEM_BS_BUY=Ignored duplicate\n");
        folder.Write("sys/host.ini",
                     "[Host]\r\nProductName=Trader Pro\r\nFractionType=3\r\nMarketOpenText=Open\r\n"
                     "[OrderBK]\r\nShowDelete=1\r\nOperator=1,0,1,1\r\nOffsetFirms=F001, F002\r\n"
                     "[User]\r\nName=Chen\r\nBranchNo=9801\r\n");
        folder.Write("sys/services.csv", "service,quote_mode,delay_service\n22,2,23\n6,1,\n");
        folder.Write("sys/quotes.csv",
                     "service,symbol,item,unit,value\n1,TXFL6,125,25,\"23,456.5\"\n1,TXFL6,126,25,23450\n");
        folder.Write("sys/commodities.csv", "service,commodity,item,unit,value\n1,ZB,1057,1,10\n");
        folder.Write("sys/symbols.csv",
                     "service,symbol,commodity,market_state,is_stock,transfer_symbol\n"
                     "1,TXF00,TXF,2,0,TXFL6\n106,2330,,1,1,\n");
        folder.Write("sys/contracts.csv", "service,commodity,weekly,week_relation,months\n106,TXO,1,TX1,202611 202612\n");
        folder.Write("sys/weekly_names.csv", "commodity,year_month,name\nTXO,202611W4,TX4\n");
        folder.Write("sys/accounts.csv",
                     "trade_type,account,field0,field8,field20,field24,field28,field37,active,name\n"
                     "0,F123,x,b8,f20,f24,f28,37,1,Chen Trading\nA,S456,,,,,,,,\n");  // empty: inactive
        folder.Write("sys/orders.csv",
                     "list,csAccount,dwBS,dbOrderPrice,dwOrderQty,csComId,dwMarketKind,csStatusMsg\n"
                     "today,F123,B,101.5,3,ZB,1,\"a, quoted \"\"msg\"\"\"\n"
                     "error,F123,S,99,1,ZB,1,rejected\n"
                     "today,OTHER,B,1,1,ZB,1,\n");
        folder.Write("sys/accepted.csv",
                     "kind,commodity,denominator,sub_denominator\nforeign_future,ZB,32,4\ndomestic_option,TXO,,\n");
        folder.Write("sys/insurance.csv",
                     "account,allow_list,deny_list,max_qty,price_limit,allow_margin_buy,allow_short_sell,"
                     "allow_market_price,today_limit,use_allow_list,used_today\n"
                     "F123,TXF  MXF,TXO202612;18000C18200P  TXO202612;17000P ,10,50.5,1,0,1,100,1,12\n"
                     "S456,,,,,0,1,1,,0,\n");
        folder.Write("sys/alert_stocks.csv", "account,symbol,name\nS456,2330,TSMC\n");
        folder.Write("sys/stocks.csv", "symbol,unit,special,flag1,flag2,flag3\n2330,1000,1,1,1,0\n");
    }
    ovtest::TempFolder folder;
};

TEST_F(DefaultHostFiles, ReadsEveryTable)
{
    DefaultHost host(folder.MainPath());
    EXPECT_TRUE(host.Diagnostics().empty()) << host.Diagnostics().front().GetString();
    ovtest::InstalledHost guard(host);

    BKOrderInterface& bk = BKOrderInterface::GetBKInterface();
    EXPECT_EQ(bk.LangGetLangString("IDS_ORDER-ITEM_BS_BUY"), "Buy");
    EXPECT_EQ(bk.LangGetLangString("IDS_ORDER-ITEM_BS_SELL"), " Sell ");
    EXPECT_EQ(bk.LangGetLangString("IDS_EMPTY"), "");
    EXPECT_EQ(bk.LangGetLangString("IDS_UNKNOWN"), "IDS_UNKNOWN");
    char id[] = "IDS_ORDER-ITEM_BS_BUY";
    EXPECT_EQ(s_LangGetLangString(id), "Buy");
    EXPECT_EQ(bk.PathGetMainPath(), folder.MainPath());
    EXPECT_EQ(s_PathGetSysPath(0), folder.MainPath() + "\\sys");
    EXPECT_EQ(g_cszProductName, "Trader Pro");
    EXPECT_EQ(g_GetProductName(), "Trader Pro");
    EXPECT_EQ(STATUS_OPEN_STRING, "Open");
    EXPECT_EQ(STATUS_CLOSE_STRING, "CLOSE");
    EXPECT_EQ(CSyncInfo::GetSettingCFG().SYS_GetSpecificFractionType(), SpecificFraction_HostFormat);

    std::vector<X1Format> values;
    ASSERT_TRUE(bk.bGetItemDataByItemNo(1, "TXFL6", {126, 125}, values, true, nullptr));
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(static_cast<double>(values[0]), 23450.0);
    EXPECT_EQ(values[1].wGetItemNo(), 125);
    EXPECT_FALSE(values[1].bIsNumber());  // "23,456.5" is kept as text
    EXPECT_FALSE(bk.bGetItemDataByItemNo(1, "TXFL6", {999}, values, true, nullptr));
    ASSERT_TRUE(bk.bGetCommodityItemDataByItemNo(values, 1, "ZB", {1057}, nullptr));
    EXPECT_EQ(static_cast<long>(values[0]), 10);

    CMarketStatus status;
    ASSERT_TRUE(bk.bGetMarketStatus(1, "TXF00", status, nullptr));
    EXPECT_EQ(status.byMarketState & 3, 2);
    CString text;
    EXPECT_TRUE(bk.bGetTransferTableSymbolID(text, 1, "TXF00"));
    EXPECT_EQ(text, "TXFL6");
    EXPECT_FALSE(bk.bGetTransferTableSymbolID(text, 106, "2330"));
    EXPECT_TRUE(bk.bGetCommodityIDBySymbolID(text, 1, "TXF00", 0));
    EXPECT_EQ(text, "TXF");
    EXPECT_TRUE(bk.bIsStock(106, "2330"));
    EXPECT_FALSE(bk.bIsStock(1, "TXF00"));
    std::vector<CString> months;
    ASSERT_TRUE(bk.bGetContractMonthByCommodity(months, 106, "TXO"));
    EXPECT_EQ(months, (std::vector<CString>{"202611", "202612"}));
    EXPECT_TRUE(bk.bIsWeeklyCommodity(106, "TXO"));
    EXPECT_TRUE(bk.bGetWeeklyNameByStockOptionCommodity("TXO", "202611W4", text));
    EXPECT_EQ(text, "TX4");
    bk.vGetWeekRelationByCommodityID(106, "TXO", text);
    EXPECT_EQ(text, "TX1");
    EXPECT_EQ(bk.byGetQuoteMode(22), 2);
    EXPECT_EQ(bk.byGetQuoteMode(99), 0);
    unsigned char delayed = 0;
    EXPECT_TRUE(bk.bGetServiceID2Delay(delayed, 22));
    EXPECT_EQ(delayed, 23);
    EXPECT_FALSE(bk.bGetServiceID2Delay(delayed, 6));

    AccountType account;
    ASSERT_TRUE(OrderBK_bGetActiveAccount(account, '0'));
    EXPECT_EQ(account.csAccount, "F123");
    EXPECT_EQ(account.dwField37, 37u);
    CString name;
    EXPECT_TRUE(OrderBK_bGetAccountName("F123", name));
    EXPECT_EQ(name, "Chen Trading");
    EXPECT_FALSE(OrderBK_bGetAccountName("S456", name));  // an empty name is none
    EXPECT_FALSE(OrderBK_bGetActiveAccount(account, 'A'));
    bool flags[4];
    OrderBK_vGetOperator(flags[0], flags[1], flags[2], flags[3]);
    EXPECT_TRUE(flags[0] && !flags[1] && flags[2] && flags[3]);
    EXPECT_TRUE(OrderBK_GetSettingShowDelete());
    std::vector<CString> firms;
    EXPECT_TRUE(OrderBK_bGetIsAllowOffsetByFirm(firms));
    EXPECT_EQ(firms, (std::vector<CString>{"F001", "F002"}));

    AccountType f123;
    f123.csAccount = "F123";
    const auto today = OrderBK_GetForeignTodayOrder(f123);
    ASSERT_EQ(today.size(), 1u);
    EXPECT_EQ(today[0].dwBS, static_cast<uint32_t>('B'));
    EXPECT_EQ(today[0].dbOrderPrice, 101.5);
    EXPECT_EQ(today[0].commodity.csComId, "ZB");
    EXPECT_EQ(today[0].commodity.dwMarketKind, static_cast<uint32_t>('1'));
    EXPECT_EQ(today[0].csStatusMsg, "a, quoted \"msg\"");
    ASSERT_EQ(OrderBK_GetForeignErrorOrder(f123).size(), 1u);

    const auto accepted = OrderBK_GetForeignAccptCom();
    ASSERT_EQ(accepted.size(), 1u);
    EXPECT_STREQ(accepted[0].szComId, "ZB");
    EXPECT_EQ(accepted[0].iDenominator * accepted[0].iSubDenominator, 128);
    EXPECT_EQ(OrderBK_GetOptionAccptCom().size(), 1u);

    EXPECT_TRUE(OrderBK_LoadOrderInsurance(f123));
    double used = 0;
    const CBaseOrder_InsuranceInfo insurance = OrderBK_GetOrderInsurance(f123, used);
    EXPECT_EQ(used, 12.0);
    EXPECT_EQ(insurance.vecAllowList, (std::vector<CString>{"TXF", "MXF"}));  // runs of spaces split once
    EXPECT_EQ(insurance.vecDenyList, (std::vector<CString>{"TXO202612;18000C18200P", "TXO202612;17000P"}));
    EXPECT_EQ(insurance.iMaxQty, 10);
    EXPECT_EQ(insurance.dbPriceLimit, 50.5);
    EXPECT_TRUE(insurance.bAllowMarginBuy && !insurance.bAllowShortSell && insurance.bUseAllowList);
    AccountType s456;
    s456.csAccount = "S456";
    ASSERT_TRUE(OrderBK_LoadOrderInsurance(s456));  // empty numbers keep their defaults
    const CBaseOrder_InsuranceInfo blank = OrderBK_GetOrderInsurance(s456, used);
    EXPECT_EQ(used, 0.0);
    EXPECT_EQ(blank.iMaxQty, 0);
    EXPECT_EQ(blank.dbTodayLimit, 0.0);
    EXPECT_TRUE(!blank.bAllowMarginBuy && blank.bAllowShortSell && !blank.bUseAllowList);

    ASSERT_EQ(OrderBK_GetDSAlertStock(s456).size(), 1u);
    EXPECT_EQ(OrderBK_GetDSAlertStock(s456)[0].csSymbolID, "2330");
    EXPECT_TRUE(OrderBK_GetStockCredit("2330").bSpecial);
    bool a = false, b = false, c = true;
    EXPECT_TRUE(OrderBK_bIsStockInfo("2330", a, b, c));
    EXPECT_TRUE(a && b && !c);
    EXPECT_FALSE(OrderBK_bIsStockInfo("9999", a, b, c));
    int unit = 0;
    OrderBK_vGetUnit("2330", unit, false);
    EXPECT_EQ(unit, 1000);
    EXPECT_EQ(BK_pGetBaseOrder(0)->userInfo.csName, "Chen");
    EXPECT_EQ(BK_pGetBaseOrder(0)->vecAccounts.size(), 2u);

    bk.vWriteDebugLog(const_cast<char*>(""), 0, "hello log");
    EXPECT_EQ(folder.Read("Log/debug.log"), "hello log\n");
}

TEST_F(DefaultHostFiles, ReportsMalformedLinesWithFileAndLine)
{
    folder.Write("sys/language.txt", "GOOD=1\nno equals sign here\n\n=empty id\n");
    folder.Write("sys/quotes.csv", "service,symbol,item,unit,value\n1,A,1,1,2\n300,A,1,1,2\n1,A,x,1,2\n1,A\n");
    folder.Write("sys/symbols.csv", "service,symbol,market_state\n1,\"unclosed\n");
    folder.Write("sys/orders.csv",
                 "list,dwBS,bogus,dwOrderQty\ntoday,BB,,1\nsomewhere,B,,1\ntoday,B,,-4\ntoday,S,,7\ntoday,B\n");
    folder.Write("sys/accounts.csv", "account\nX\n");
    folder.Write("sys/deals.csv", "csOrderNo,dwDealTime,commodity\nA1,93000500,x\nA2,late,x\n");
    folder.Write("sys/accepted.csv", "kind,commodity,denominator,sub_denominator\nforeign_future,"
                                     "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789,32,1\nweird,X,,\n");
    DefaultHost host(folder.MainPath());
    for (const char* diagnostic : {"language.txt:2:", "language.txt:4:", "quotes.csv:3: bad value '300'",
                                   "quotes.csv:4: bad value 'x'", "quotes.csv:5: expected 5 fields, found 2",
                                   "symbols.csv:2: quoted field is not closed",
                                   "orders.csv:1: unknown order field bogus", "orders.csv:2: bad value 'BB'",
                                   "orders.csv:3: list must be today or error", "orders.csv:4: bad value '-4'",
                                   "orders.csv:6: expected 4 fields, found 2",
                                   "deals.csv:1: unknown deal field commodity", "deals.csv:3: bad value 'late'",
                                   "accounts.csv:1: missing column trade_type",
                                   "accepted.csv:2: commodity id longer", "accepted.csv:3: unknown kind"})
        EXPECT_TRUE(HasDiagnostic(host, diagnostic)) << diagnostic;
    // The good lines are still read.
    EXPECT_EQ(host.LangGetLangString("GOOD"), "1");
    EXPECT_EQ(host.mapQuotes.size(), 1u);
    ASSERT_EQ(host.vecTodayOrders.size(), 1u);
    EXPECT_EQ(host.vecTodayOrders[0].dwOrderQty, 7u);
    ASSERT_EQ(host.vecDeals.size(), 1u);
    EXPECT_EQ(host.vecDeals[0].csOrderNo, "A1");
    EXPECT_FALSE(host.bReload());
}

TEST(TableHostFormatters, BondQuotesAndDottedFractions)
{
    ovtest::SubstituteHost host;
    struct Quote { int base; double value; const char* text; };
    const Quote quotes[] = {
        {32, 101.5, "101-16"},          {32, 101.515625, "101-165"},   {32, 101.5078125, "101-162"},
        {32, 101.5234375, "101-167"},   {32, 99.0, "99-00"},           {64, 99.515625, "99-33"},
        {32, -2.25, "-2-08"},           {0, 5.5, "5.5"},
        {32, std::nan(""), "nan"},
    };
    for (const auto& q : quotes) EXPECT_EQ(host.CApi_GetSpecificString2(q.base, q.value, 9), q.text) << q.value;
    EXPECT_EQ(host.CApi_GetSpecificString2(32, 1e300, 9).GetLength(), 301);  // too large to split: decimal text

    struct Dot { double value; unsigned char type; const char* text; };
    const Dot dots[] = {
        {3.625, 3, "3.5"}, {101.5, 5, "101.16"}, {101.15625, 5, "101.05"}, {7.99, 1, "8.0"},
        {-1.75, 2, "-1.3"}, {2.5, 0, "2.16"}, {5.0, 8, "5.000"},
    };
    for (const auto& d : dots) EXPECT_EQ(host.CApi_DisplayFraction2Dot(d.value, d.type), d.text) << d.value;

    EXPECT_EQ(host.CApi_DisplayDenominator(101.515625, 0), "101.515625");
    EXPECT_EQ(host.CApi_DisplayDenominator(-0.000000001, 0), "0");
    EXPECT_EQ(host.CApi_AccountHideCode("1234567", '*', 3, 5), "123****");
    EXPECT_EQ(host.CApi_AccountHideCode("1234567", '#', -2, 4), "##34567");
    EXPECT_EQ(host.CApi_AccountHideCode("1234567", '*', 2147483647, 2147483647), "1234567");
}

TEST(TableHostFormatters, MonthIdsOfContractTexts)
{
    ovtest::SubstituteHost host;
    CString id;
    EXPECT_TRUE(host.g_bGetYMID("TXFL6", id, false));
    EXPECT_EQ(id, "L6");
    EXPECT_FALSE(host.g_bGetYMID("X", id, false));
    EXPECT_FALSE(host.g_bGetYMID("TXFL6", id, true));
    EXPECT_TRUE(host.g_bGetYMID("TXF202612", id, true));
    EXPECT_EQ(id, "202612");
    int ym = 0;
    EXPECT_TRUE(host.g_bGetFutureYearMonth("TXF202612", ym, 0));
    EXPECT_EQ(ym, 202612);
    EXPECT_FALSE(host.g_bGetFutureYearMonth("TXFL6", ym, 0));
}

TEST(X1FormatValue, ConversionsAndUnits)
{
    const X1Format price(125, 27, "12.3456", 7);
    EXPECT_DOUBLE_EQ(static_cast<double>(price), 12.3456);
    EXPECT_EQ(static_cast<long>(price), 12);
    EXPECT_EQ(static_cast<CString>(price), "12.346");
    EXPECT_EQ(price.s_GetAsString(21), "12");
    EXPECT_EQ(price.s_GetAsString(1), "12.3456");
    X1Format copy = price;
    EXPECT_FALSE(copy.ChangeBaseUnit(25, 29));
    EXPECT_TRUE(copy.ChangeBaseUnit(27, 29));
    EXPECT_EQ(static_cast<CString>(copy), "12.3456");
    EXPECT_EQ(static_cast<long>(X1Format(1, 1, -7.9)), -7);
    EXPECT_EQ(static_cast<long>(X1Format(1, 1, std::nan(""))), 0);
    EXPECT_EQ(static_cast<long>(X1Format(1, 1, 1e300)), LONG_MAX);
    EXPECT_EQ(static_cast<CString>(X1Format(1, 1, "abc", 2)), "ab");  // text that is no number
    EXPECT_EQ(static_cast<double>(X1Format(1, 1, "42\0junk", 8)), 42.0);  // stops at the NUL
    EXPECT_EQ(static_cast<double>(X1Format(1, 1, nullptr, 5)), 0.0);
}

// The language comes from the constructor, else from host.ini [Host] Language, else English; a
// language asked for whose file is missing, or a name that is not one, is reported. Missing
// tables are no error, and settings missing from host.ini keep their defaults.
TEST(DefaultHostLanguage, ChosenFile)
{
    ovtest::TempFolder folder;
    folder.Write("sys/language.txt", "IDS_ORDER-ITEM_BS_BUY=Buy\n");
    folder.Write("sys/language.zh-TW.txt", "IDS_ORDER-ITEM_BS_BUY=\xE8\xB2\xB7\n");
    const struct {
        const char* hostIni;
        const char* chosen;
        const char* buy;         // the text of IDS_ORDER-ITEM_BS_BUY
        const char* diagnostic;  // the start of the one diagnostic, or null
    } cases[] = {
        {"", "", "Buy", nullptr},
        {"[Host]\nLanguage=zh-TW\n", "", "\xE8\xB2\xB7", nullptr},
        {"[Host]\nLanguage= zh-TW \n", "", "\xE8\xB2\xB7", nullptr},
        {"[Host]\nLanguage=en\n", "", "Buy", nullptr},
        {"", "zh-TW", "\xE8\xB2\xB7", nullptr},
        {"[Host]\nLanguage=zh-TW\n", "en", "Buy", nullptr},
        {"[Host]\nLanguage=fr\n", "", "IDS_ORDER-ITEM_BS_BUY", "language.fr.txt: the language file cannot be read"},
        {"", "../sys/language", "IDS_ORDER-ITEM_BS_BUY", "language '../sys/language' is not a language name"},
    };
    for (const auto& c : cases) {
        folder.Write("sys/host.ini", c.hostIni);
        DefaultHost host(folder.MainPath(), DefaultHost::Tables::All, c.chosen);
        EXPECT_EQ(host.LangGetLangString("IDS_ORDER-ITEM_BS_BUY"), c.buy) << c.hostIni << " / " << c.chosen;
        EXPECT_EQ(host.SYS_GetSpecificFractionType(), SpecificFraction_Decimal);
        EXPECT_EQ(host.csProductName, "OrderView");
        if (c.diagnostic) {
            ASSERT_EQ(host.Diagnostics().size(), 1u) << c.chosen;
            EXPECT_EQ(host.Diagnostics()[0], c.diagnostic);
        } else {
            EXPECT_TRUE(host.Diagnostics().empty()) << c.hostIni << " / " << c.chosen;
        }
    }
}

}  // namespace
