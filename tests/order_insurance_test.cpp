#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "checks/order_insurance.h"
#include "support/substitute_host.h"

namespace {

const CString kHeading = "IDS_INSURANCESETTING_MESSAGE";

CString Refusal(const char* rule) { return kHeading + "IDS_INSURANCESETTING_MESSAGE_" + rule; }

class Insurance : public ovtest::HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        Account('0');
        order.commodity.csComId = "TXF";
        order.commodity.csSymbolID = "TXFL6";
        order.commodity.byServiceID = 1;
        order.commodity.dwMarketKind = '1';
        order.dwComplexKind = 'N';
        order.dwOrderKind = '2';
        order.dwOrderType = '2';
        order.dbOrderPrice = 100;
        order.dwOrderQty = 1;
        Settings().bAllowMarketPrice = true;
        Settings().bAllowMarginBuy = true;
        Settings().bAllowShortSell = true;
    }

    void Account(std::uint32_t tradeType)
    {
        account.csAccount = "ACC1";
        account.dwTradeType = tradeType;
    }
    CBaseOrder_InsuranceInfo& Settings() { return host.mapInsurance["ACC1"].info; }
    void UsedToday(double used) { host.mapInsurance["ACC1"].dbUsedToday = used; }
    void Quote(const char* symbol, unsigned short item, double value)
    {
        host.vSetQuote(order.commodity.byServiceID, symbol, item, X1Format(item, 0, value));
    }
    // The message of the check ("pass" when the order passes; the message is then untouched).
    CString Check()
    {
        CString message = "pass";
        const bool passed = g_bCheckOrderInsurance(account, &order, message);
        EXPECT_EQ(passed, message == "pass") << message.GetString();
        return message;
    }
    // Whether a one-entry allow list of `key` lets the order through.
    bool Allows(const CString& key)
    {
        Settings().bUseAllowList = true;
        Settings().vecAllowList = {key};
        return Check() == "pass";
    }

    AccountType account;
    CBaseOrder_OrderInfo order;
};

TEST_F(Insurance, FuturesProductKeys)
{
    EXPECT_TRUE(Allows("TXFL6"));
    EXPECT_FALSE(Allows("TXF"));
    EXPECT_FALSE(Allows("TXFL6 "));
    order.dwComplexKind = '2';
    order.commodity.csSymbolID2 = "TXFA7";
    EXPECT_TRUE(Allows("TXFL6/A7"));
    EXPECT_FALSE(Allows("TXFL6"));
    // Market kind '7' takes the month id in its second form.
    order.dwComplexKind = 'N';
    order.commodity.dwMarketKind = '7';
    order.commodity.csSymbolID = "TXF202612";
    EXPECT_TRUE(Allows("TXF202612"));
    EXPECT_FALSE(Allows("TXF12"));
    // No month id: the commodity id alone.
    order.commodity.csSymbolID = "TXFL6";
    EXPECT_TRUE(Allows("TXF"));
    Account('2');
    order.commodity.dwMarketKind = '1';
    EXPECT_TRUE(Allows("TXFL6"));
}

TEST_F(Insurance, OptionProductKeysOfKindsOneAndFour)
{
    order.commodity.csComId = "TXO";
    order.commodity.csComMonth = "202612";
    order.commodity.dbStrikePrice = 18000;
    order.commodity.dwCallPut = 'C';
    order.commodity.dbStrikePrice2 = 18200.5;
    order.commodity.dwCallPut2 = 'P';
    Account('1');
    EXPECT_TRUE(Allows("TXO202612;18000C18200.5P"));
    EXPECT_FALSE(Allows("TXO202612;18000C"));
    EXPECT_FALSE(Allows("TXO202612;18000.00C18200.50P"));
    Account('4');
    EXPECT_TRUE(Allows("TXO202612;18000C"));
    EXPECT_FALSE(Allows("TXO202612;18000C18200.5P"));
    order.commodity.dwCallPut = 0;  // a missing call/put code adds nothing
    EXPECT_TRUE(Allows("TXO202612;18000"));
    Account('A');
    EXPECT_TRUE(Allows("TXO"));
}

// A futures order keys as "TXFL6", a stock order (trade types 'A' and '4' here) as "2330".
TEST_F(Insurance, AllowAndDenyListWalks)
{
    struct Case { bool useAllow; std::uint32_t tradeType; std::vector<CString> allow, deny; const char* rule; };
    const Case cases[] = {
        {true, '0', {"MXFL6", "TXFL6", "EXFL6"}, {}, nullptr},
        {true, '0', {"MXFL6", "EXFL6"}, {}, "BUY"},
        {true, '0', {}, {"TXFL6"}, nullptr},  // an empty allow list allows all; the deny list is not read
        {true, 'A', {"2317"}, {}, "STOCK_BUY"},
        {true, '4', {"2317"}, {}, "BUY"},
        {false, '0', {}, {"MXFL6", "TXFL6"}, "NOTBUY"},  // walked to its end
        {false, '0', {}, {"MXFL6"}, nullptr},
        {false, '0', {}, {""}, nullptr},  // an empty key never matches a built one
        {false, 'A', {}, {"2330"}, "STOCK_NOTBUY"},
    };
    for (const auto& c : cases) {
        Account(c.tradeType);
        order.commodity.csComId = c.tradeType == '0' ? "TXF" : "2330";
        Settings().bUseAllowList = c.useAllow;
        Settings().vecAllowList = c.allow;
        Settings().vecDenyList = c.deny;
        EXPECT_EQ(Check(), c.rule ? Refusal(c.rule) : CString("pass")) << char(c.tradeType) << c.useAllow;
    }
}

TEST_F(Insurance, PlaceholdersAreTranslatedForFuturesAccountsOnly)
{
    host.mapSymbols[{1, "TXF00"}].csTransferId = "TXFL6";
    host.mapSymbols[{1, "TXF&1"}].csTransferId = "TXFL6";
    host.mapSymbols[{1, "TXF@1"}].csTransferId = "TXFL6";
    host.mapSymbols[{1, "TXFX1"}].csTransferId = "TXFL6";  // no placeholder: never translated
    for (const char* entry : {"TXF00", "TXF&1", "TXF@1"}) EXPECT_TRUE(Allows(entry)) << entry;
    EXPECT_FALSE(Allows("TXFX1"));
    EXPECT_FALSE(Allows("MXF00"));  // unknown to the table: compared as written
    Settings().bUseAllowList = false;
    Settings().vecDenyList = {"TXF00"};
    EXPECT_EQ(Check(), Refusal("NOTBUY"));

    Account('A');
    order.commodity.csComId = "2330";
    host.mapSymbols[{1, "2300"}].csTransferId = "2330";
    Settings().vecDenyList = {"2300"};
    EXPECT_EQ(Check(), "pass");
}

TEST_F(Insurance, LargestQuantity)
{
    struct Case { std::uint32_t tradeType; std::int32_t maxQty; std::uint32_t qty; const char* rule; };
    const Case cases[] = {
        {'0', 10, 10, nullptr},       {'0', 10, 11, "QTY"},          {'2', 10, 11, "QTY"},
        {'1', 10, 11, "STOCK_QTY"},   {'A', 10, 11, "STOCK_QTY"},    {'0', 0, 4294967295u, nullptr},
        {'0', -5, 1, nullptr},        {'0', 2147483647, 4294967295u, "QTY"},
        {'0', 2147483647, 2147483647u, nullptr}, {'0', 1, 0, nullptr},
    };
    for (const auto& c : cases) {
        Account(c.tradeType);
        order.dwOrderType = '3';  // price 0.0: the stock money and price rules pass
        Settings().iMaxQty = c.maxQty;
        order.dwOrderQty = c.qty;
        EXPECT_EQ(Check(), c.rule ? Refusal(c.rule) : CString("pass")) << char(c.tradeType) << " " << c.qty;
    }
}

TEST_F(Insurance, CreditTrading)
{
    struct Case { bool marginBuy, shortSell; std::uint32_t kind; const char* rule; };
    const Case cases[] = {
        {false, true, 'B', "RZ"},  {true, false, 'C', "RG"},  {false, false, 'C', "RG"},
        {true, true, 'B', nullptr}, {false, false, 'F', nullptr}, {false, false, 'G', nullptr},
        {false, false, '9', nullptr},
    };
    for (const auto& c : cases) {
        Settings().bAllowMarginBuy = c.marginBuy;
        Settings().bAllowShortSell = c.shortSell;
        order.commodity.dwStockTradeKind = c.kind;
        EXPECT_EQ(Check(), c.rule ? Refusal(c.rule) : CString("pass")) << char(c.kind);
    }
}

TEST_F(Insurance, FuturesDailyQuantity)
{
    struct Case { double limit, used; std::uint32_t qty; const char* rule; };
    const Case cases[] = {
        {100, 90, 10, nullptr}, {100, 90, 11, "TODAY_QTY"},
        // Quantities near 2^32 add up without wrapping.
        {4294967296.0, 1, 4294967295u, nullptr}, {4294967296.0, 2, 4294967295u, "TODAY_QTY"},
        {0, 2, 4294967295u, nullptr},
    };
    for (const auto& c : cases) {
        Settings().dbTodayLimit = c.limit;
        UsedToday(c.used);
        order.dwOrderQty = c.qty;
        EXPECT_EQ(Check(), c.rule ? Refusal(c.rule) : CString("pass")) << c.limit << " " << c.used << " " << c.qty;
    }
}

TEST_F(Insurance, FuturesMarketPriceAndPriceDistance)
{
    Settings().bAllowMarketPrice = false;
    order.dwOrderKind = '1';
    EXPECT_EQ(Check(), Refusal("MARKETPRICE"));
    order.dwOrderKind = '2';
    EXPECT_EQ(Check(), "pass");

    Settings().dbPriceLimit = 5;
    Quote("TXFL6", 125, 100);
    struct Case { double price; bool refused; };
    const Case cases[] = {{105, false}, {95, false}, {105.01, true}, {94.99, true}, {100, false}};
    for (const auto& c : cases) {
        order.dbOrderPrice = c.price;
        EXPECT_EQ(Check(), c.refused ? Refusal("PRICE_DIFF") : CString("pass")) << c.price;
    }
    // No current price: the rule is skipped.
    host.mapQuotes.clear();
    order.dbOrderPrice = 1000;
    EXPECT_EQ(Check(), "pass");
    // The reference price stands in for a missing last price.
    Quote("TXFL6", 129, 990);
    EXPECT_EQ(Check(), Refusal("PRICE_DIFF"));
    order.dbOrderPrice = 995;
    EXPECT_EQ(Check(), "pass");
}

TEST_F(Insurance, StockMoneyPriceAndLimitOrders)
{
    Account('A');
    order.commodity.csComId = order.commodity.csSymbolID = "2330";
    order.commodity.byServiceID = 106;
    order.commodity.dwMarketKind = 'A';
    order.dbOrderPrice = 50;
    order.dwOrderQty = 2;
    Settings().dbTodayLimit = 100000;  // money: 2 lots x 50 x 1000 shares = 100000
    EXPECT_EQ(Check(), "pass");
    UsedToday(0.5);
    EXPECT_EQ(Check(), Refusal("TODAY_MONEY"));
    host.mapStocks["2330"].iUnit = 500;  // the host's unit
    EXPECT_EQ(Check(), "pass");
    order.commodity.dwMarketKind = 'E';  // traded in shares: no unit
    order.dwOrderQty = 1999;  // 99950 + 0.5 used today
    EXPECT_EQ(Check(), "pass");
    order.dwOrderQty = 2000;
    EXPECT_EQ(Check(), Refusal("TODAY_MONEY"));
    UsedToday(0);
    EXPECT_EQ(Check(), "pass");

    // Largest price, after the money rule.
    order.dwOrderQty = 1;
    Settings().dbPriceLimit = 49.5;
    EXPECT_EQ(Check(), Refusal("PRICE"));
    Settings().dbPriceLimit = 50;
    EXPECT_EQ(Check(), "pass");

    // Limit-up and limit-down prices come from the quote by the market state (not open here).
    Quote("2330", 135, 55);
    Quote("2330", 132, 54);
    order.dwOrderType = '6';
    EXPECT_EQ(Check(), Refusal("PRICE"));
    host.mapSymbols[{106, "2330"}].iMarketState = 2;
    Settings().dbPriceLimit = 54.5;
    EXPECT_EQ(Check(), "pass");
    // Any other price type is 0.0 and passes the money and price rules.
    order.dwOrderType = '3';
    Settings().dbPriceLimit = 0.01;
    Settings().dbTodayLimit = 0.01;
    EXPECT_EQ(Check(), "pass");

    Settings().bAllowMarketPrice = false;
    for (std::uint32_t kind : {'6', '7'}) {
        order.dwOrderKind = kind;
        EXPECT_EQ(Check(), Refusal("UPDOWNRICE"));
    }
    order.dwOrderKind = '1';  // a plain market order is not ruled for stock accounts
    EXPECT_EQ(Check(), "pass");
}

TEST_F(Insurance, RulesAreTriedInOrder)
{
    Settings().bUseAllowList = true;
    Settings().vecAllowList = {"MXFL6"};
    Settings().iMaxQty = 1;
    Settings().bAllowMarginBuy = false;
    Settings().bAllowMarketPrice = false;
    Settings().dbTodayLimit = 1;
    order.dwOrderQty = 5;
    order.commodity.dwStockTradeKind = 'B';
    order.dwOrderKind = '1';
    const char* expected[] = {"BUY", "QTY", "RZ", "TODAY_QTY", "MARKETPRICE"};
    for (const char* rule : expected) {
        EXPECT_EQ(Check(), Refusal(rule));
        if (std::string(rule) == "BUY") Settings().vecAllowList.clear();
        if (std::string(rule) == "QTY") Settings().iMaxQty = 0;
        if (std::string(rule) == "RZ") Settings().bAllowMarginBuy = true;
        if (std::string(rule) == "TODAY_QTY") Settings().dbTodayLimit = 0;
    }
}

TEST_F(Insurance, MissingSettingsRefuseOnlyByTheirFlags)
{
    host.mapInsurance.clear();
    EXPECT_EQ(Check(), "pass");
    order.commodity.dwStockTradeKind = 'C';
    EXPECT_EQ(Check(), Refusal("RG"));
    order.commodity.dwStockTradeKind = 0;
    order.dwOrderKind = '4';
    EXPECT_EQ(Check(), Refusal("MARKETPRICE"));
}

TEST_F(Insurance, BadRecordsAndOrders)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Settings().dbTodayLimit = nan;
    Settings().dbPriceLimit = nan;
    UsedToday(nan);
    Quote("TXFL6", 125, 100);
    order.dbOrderPrice = 1e9;
    order.dwOrderQty = 4294967295u;
    EXPECT_EQ(Check(), "pass");
    Account('A');
    order.dwOrderType = '2';
    EXPECT_EQ(Check(), "pass");


    CString message = "kept";
    EXPECT_FALSE(g_bCheckOrderInsurance(account, nullptr, message));
    EXPECT_EQ(message, "kept");
}

}  // namespace
