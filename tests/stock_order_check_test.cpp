#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "checks/stock_order_check.h"
#include "host/table_host.h"
#include "support/substitute_host.h"
#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace {

// The substitute host with language texts set per test (the rest show their ids) and a count of
// the commodity-id lookups.
class CheckHost : public ovtest::TranslatingHost {
public:
    explicit CheckHost(const CString& mainPath) : TranslatingHost(mainPath) { csProductName = "Trader Pro"; }
    int commodityLookups = 0;

    bool bGetCommodityIDBySymbolID(CString& commodityId, std::uint8_t serviceId, const CString& symbolId,
                                   const int& flag) override
    {
        ++commodityLookups;
        return TranslatingHost::bGetCommodityIDBySymbolID(commodityId, serviceId, symbolId, flag);
    }
};

class StockCheck : public ::testing::Test {
protected:
    void SetUp() override
    {
        account.csAccount = "S456";
        account.dwTradeType = 'A';
        order.commodity.csComId = "2330";
        order.commodity.csSymbolID = "2330";
        order.commodity.byServiceID = 106;
        order.commodity.dwMarketKind = 'A';
        order.dwBS = 'B';
        order.dwOrderKind = '2';
        order.dwOrderType = '2';
        order.dbOrderPrice = 500;
        order.dwOrderQty = 1;
    }
    void Quote(std::uint8_t service, const char* symbol, unsigned short item, double value)
    {
        host->vSetQuote(service, symbol, item, X1Format(item, 0, value));
    }
    void Band(double up, double down)
    {
        Quote(106, "2330", 132, up);
        Quote(106, "2330", 133, down);
    }
    void MarketState(int state) { host->mapSymbols[{106, "2330"}].iMarketState = state; }
    void Config(const std::string& body) { folder.Write("sys/OrderCfg.ini", "[ORDER_SETTING]\n" + body); }
    // The check's one message when it refuses, or "" when it passes without a word.
    CString Refusal()
    {
        platform.boxes.clear();
        const bool passed = g_bCheckStockOrder(account, order);
        EXPECT_EQ(platform.boxes.size(), passed ? 0u : 1u);
        return passed || platform.boxes.empty() ? CString() : platform.boxes[0].text;
    }

    ovtest::TempFolder folder;
    ovtest::FakePlatform platform;
    std::unique_ptr<CheckHost> host = std::make_unique<CheckHost>(folder.MainPath());
    ovtest::InstalledHost installed{*host};
    AccountType account;
    CBaseOrder_OrderInfo order;
};

TEST_F(StockCheck, CurrentPriceFallsBackToTheReferencePrice)
{
    struct Case { std::uint8_t service; double last; bool hasLast; double expected; };
    const Case cases[] = {
        {1, 0, true, 50},  {6, 0, true, 0},  {1, 10, true, 10}, {6, 12.5, true, 12.5},
        {6, -1, true, -1}, {1, -1, true, 50}, {1, 0, false, 50}, {6, 0, false, 0},
    };
    for (const auto& c : cases) {
        host->mapQuotes.clear();
        CBaseOrder_Commodity commodity;
        commodity.csSymbolID = "X";
        commodity.byServiceID = c.service;
        if (c.hasLast) Quote(c.service, "X", 125, c.last);
        Quote(c.service, "X", 129, 50);
        EXPECT_EQ(g_dbGetCurrentPrice(commodity), c.expected) << int(c.service) << " " << c.last;
    }
    CBaseOrder_Commodity unknown;
    EXPECT_EQ(g_dbGetCurrentPrice(unknown), 0.0);
}

TEST_F(StockCheck, LimitPricesFollowTheMarketState)
{
    const unsigned short items[] = {132, 133, 129, 135, 136, 455};
    for (unsigned short item : items) Quote(106, "2330", item, item);
    struct Case { int state; double up, down, reference; };
    const Case cases[] = {
        {2, 132, 133, 129},       // open
        {6, 132, 133, 129},       // only the low two bits count
        {0, 135, 136, 455},       // closed
        {1, 135, 136, 455},       // pre-open
        {3, 135, 136, 455},       // no text
        {-1, 135, 136, 455},      // no market status
    };
    for (const auto& c : cases) {
        MarketState(c.state);
        EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, '6'), c.up) << c.state;
        EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, '7'), c.down) << c.state;
        EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, '8'), c.reference) << c.state;
        EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, '2'), 0.0) << c.state;
        EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, 0x100u + '6'), 0.0) << c.state;
    }
    // The state is judged by its text: a host whose closed text equals the open text reads open.
    host->csStateClosed = host->csStateOpen;
    ovtest::InstalledHost again(*host);  // the state texts are taken when a host is installed
    MarketState(0);
    EXPECT_EQ(g_dbGetLIMITPrice(order.commodity, '6'), 132);
}

TEST_F(StockCheck, PriceBoundGivesTheBrokenLimit)
{
    struct Case { double up, down; std::uint32_t kind; double price; double expected; };
    const Case cases[] = {
        {550, 450, '2', 500, 0},  {550, 450, '2', 550, 0},      {550, 450, '2', 450, 0},
        {550, 450, '6', 600, 550}, {550, 450, '7', 400, -450},  {550, 450, '8', 600, 550},
        {550, 450, '1', 600, 0},  {550, 450, '3', 400, 0},      {550, 450, 'C', 600, 0},
        {550, 450, '2', 550.01, 550}, {550, 450, '2', 449.99, -450},
        {550, 450, '2', std::nan(""), 0},
        {0, -5, '2', -100, 0},    {0, -5, '2', 1e9, 0},  // limits of 0 or less do not bound
    };
    for (const auto& c : cases) {
        Band(c.up, c.down);
        order.dwOrderKind = c.kind;
        order.dbOrderPrice = c.price;
        double result = 123;
        g_CheckPriceBound(order, result);
        EXPECT_EQ(result, c.expected) << char(c.kind) << " " << c.price;
    }
}

TEST_F(StockCheck, PriceBoundAsksForTheCommodityOfServiceOne)
{
    order.commodity.byServiceID = 1;
    double result = 0;
    g_CheckPriceBound(order, result);
    EXPECT_EQ(host->commodityLookups, 1);
    order.commodity.byServiceID = 106;
    g_CheckPriceBound(order, result);
    order.commodity.byServiceID = 1;
    order.dwOrderKind = '1';  // not a priced kind: nothing is read
    g_CheckPriceBound(order, result);
    EXPECT_EQ(host->commodityLookups, 1);
}

TEST(MiniJump, PricesOnAndOffTheTickGrid)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct Case { const char* price; double tick; int multiplier; bool expected; };
    const Case cases[] = {
        {"123.45", 0.05, 1, true},      {"123.47", 0.05, 1, false},    {"120", 5, 1, true},
        {"123", 5, 1, false},           {"120", 0.05, 1, true},        {"123.455", 0.05, 1, false},
        {"123.45", 0.05, 3, true},      {"123.40", 0.05, 3, false},    {"0.3", 0.1, 3, true},
        {"0.29", 0.01, 29, true},       {"0.58", 0.01, 29, true},      {"0.57", 0.01, 29, false},
        {"99999999999.5", 0.5, 1, true},  // only the last integer digit counts
        {"-123.45", 0.05, 1, true},     {".45", 0.05, 1, true},        {"12.5", 0.25, 2, true},
        // Text that is no number reads as 0, which is on every grid.
        {"", 0.05, 1, true},            {"abc", 5, 1, true},           {"x.y", 0.05, 1, true},
        // Values too large for the grid test.
        {"1e400", 5, 1, false},         {"1e400", 0.05, 1, false},     {"1.5e400", 0.05, 1, false},
        {"2147483648", 1, 1, false},    {"2147483647", 1, 1, true},    {"4294967296", 2, 1, false},
        {"-2147483648", 1, 1, true},    {"-2147483649", 1, 1, false},  {"-1e300", 1, 1, false},
        {"nan", 1, 1, false},           {"inf", 1, 1, false},
        // Zero, negative and unusable steps.
        {"120", 0, 1, false},           {"120", 5, 0, false},          {"120", 5, -1, true},
        {"121", 5, -1, false},          {"120", -5, 1, true},          {"120", -0.05, 1, true},
        {"120", 1e12, 1, false},        {"120", 5, 2147483647, false}, {"120", 5, -2147483647 - 1, false},
        {"120", nan, 1, false},         {"120", inf, 1, false},        {"120", 1e-12, 1, false},
        {"120", 1e300, 1, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(g_bIsAllowMiniJump(c.price, 0, c.tick, c.multiplier), c.expected)
            << c.price << " tick " << c.tick << " x " << c.multiplier;
}

TEST_F(StockCheck, OffsetRuleUsesTheFirmListOnlyWhenTheHostAnswers)
{
    CString txf = "TXF", mxf = "MXF";
    EXPECT_TRUE(g_bIsAllowUnoffSet(mxf));  // the substitute host does not answer for an empty list
    host->vecOffsetFirms = {"F001", "TXF"};
    EXPECT_TRUE(g_bIsAllowUnoffSet(txf));
    EXPECT_FALSE(g_bIsAllowUnoffSet(mxf));
}

TEST_F(StockCheck, QuotePriceIsLeftAsItIs)
{
    double price = 101.25;
    g_vQuotePrice2OrderPrice(1, "TXFL6", price);
    EXPECT_EQ(price, 101.25);
    EXPECT_EQ(host->commodityLookups, 1);
    g_vQuotePrice2OrderPrice(106, "2330", price);
    EXPECT_EQ(price, 101.25);
    EXPECT_EQ(host->commodityLookups, 1);
}

TEST_F(StockCheck, AlertStocksAndTheirTexts)
{
    host->mapAlertStocks["S456"] = {{"1101", "TCC"}, {"2330", "TSMC"}};
    struct Case { const char* account; const char* alertText; const char* specialText; const char* shown; };
    const Case cases[] = {
        {"S456", "Alert stock: no net orders", "Special stock", "Alert stock: no net orders"},
        {"S456", "", "Special stock", "Special stock"},  // an alert stock without its text is special
        {"S456", "", "", nullptr},                       // neither text: on to the later rules, which pass
        {"S789", "Alert stock: no net orders", "", nullptr},  // another account's list does not count
    };
    for (const auto& c : cases) {
        account.csAccount = c.account;
        host->texts["IDS_ORDER-STOCK-CV_ALERTSTOCK_NOT_NET_ORDER"] = c.alertText;
        host->texts["IDS_ORDER-STOCK-CV_SPECIAL_NOT_NET_ORDER"] = c.specialText;
        EXPECT_EQ(Refusal(), c.shown ? c.shown : "") << c.account << " " << c.alertText;
        if (!c.shown || platform.boxes.empty()) continue;
        EXPECT_EQ(platform.boxes[0].caption, "Trader Pro");
        EXPECT_EQ(platform.boxes[0].type, 0u);
    }
}

TEST_F(StockCheck, SpecialStocksByCreditMarkOrAllThreeFlags)
{
    struct Case { bool special, f1, f2, f3; bool refused; };
    const Case cases[] = {
        {true, false, false, false, true}, {false, true, true, true, true},  {false, true, true, false, false},
        {false, false, true, true, false}, {false, true, false, true, false}, {false, false, false, false, false},
    };
    for (const auto& c : cases) {
        orderview::TableHost::StockInfo info;
        info.bSpecial = c.special;
        info.bFlag1 = c.f1;
        info.bFlag2 = c.f2;
        info.bFlag3 = c.f3;
        host->mapStocks["2330"] = info;
        EXPECT_EQ(Refusal(), c.refused ? "IDS_ORDER-STOCK-CV_SPECIAL_NOT_NET_ORDER" : "")
            << c.special << c.f1 << c.f2 << c.f3;
    }
}

TEST_F(StockCheck, YesterdaysVolumeOfBoughtStocks)
{
    host->texts["IDS_ORDER-STOCK-CV_YESTERDAY_TRADE_VOLUME"] = "Traded fewer than %d lots yesterday";
    struct Case { const char* setting; std::uint32_t side; double volume; bool hasVolume; bool refused; };
    const Case cases[] = {
        {"500", 'B', 499, true, true},   {"500", 'B', 500, true, false}, {"500", 'S', 1, true, false},
        {"500", 'B', 0, false, true},    {"0", 'B', 0, true, false},     {"-5", 'B', 0, true, false},
        {"", 'B', 0, true, false},
    };
    for (const auto& c : cases) {
        host->mapQuotes.clear();
        Config(std::string("YesterdayTradeVolume=") + c.setting + "\nStockPriceAlert=0\n");
        if (c.hasVolume) Quote(16, "2330", 128, c.volume);
        order.dwBS = c.side;
        EXPECT_EQ(Refusal(), c.refused ? "Traded fewer than 500 lots yesterday" : "") << c.setting << " " << c.volume;
        if (c.refused && !platform.boxes.empty()) EXPECT_EQ(platform.boxes[0].type, 0u);
    }
    // The volume is read with service id 16, not the commodity's own. Out of the band too, the
    // first broken rule's message is the only one; an alert stock's comes first of all.
    host->mapQuotes.clear();
    Config("YesterdayTradeVolume=500\n");
    Quote(106, "2330", 128, 10000);
    Band(550, 450);
    order.dbOrderPrice = 600;
    order.dwBS = 'B';
    EXPECT_EQ(Refusal(), "Traded fewer than 500 lots yesterday");
    host->mapAlertStocks["S456"] = {{"2330", "TSMC"}};
    EXPECT_EQ(Refusal(), "IDS_ORDER-STOCK-CV_ALERTSTOCK_NOT_NET_ORDER");
}

TEST_F(StockCheck, LanguageTextsAreNeverTrustedAsFormats)
{
    Config("YesterdayTradeVolume=500\n");
    struct Case { const char* text; const char* shown; };
    const Case cases[] = {
        {"%s lots", "%s lots"},
        {"%n%d", "%n500"},
        {"%d and %d", "500 and %d"},
        {"%5d|%-5d|%%", "  500|%-5d|%"},
        {"%.2f lots", "500.00 lots"},
        {"%1000d", "%1000d"},
        {"%.*d", "%.*d"},
        {"%ld %lld %hhd", "500 %lld %hhd"},
        {"%x", "1f4"},
        {"trailing %", "trailing %"},
        {"%", "%"},
    };
    for (const auto& c : cases) {
        host->texts["IDS_ORDER-STOCK-CV_YESTERDAY_TRADE_VOLUME"] = c.text;
        EXPECT_EQ(Refusal(), c.shown) << c.text;
    }
}

// Out of the band a stock text refuses the order; without stock texts the futures text asks, and
// the user's answer decides.
TEST_F(StockCheck, PriceBandMessages)
{
    Band(550, 450);
    host->texts["IDS_ORDER-FUTURE-CV_OUTOF_UPPERLMT"] = "Above %g. Send?";
    host->texts["IDS_ORDER-FUTURE-CV_OUTOF_DOWNERLMT"] = "Below %g. Send?";
    struct Case { bool stockTexts; double price; int answer; bool passes; const char* shown; unsigned type; };
    const Case cases[] = {
        {true, 551, orderview::kIdOk, false, "Above the limit-up price 550.00", 0x130},
        {true, 449, orderview::kIdOk, false, "Below the limit-down price 450.00", 0x130},
        {true, 550, orderview::kIdOk, true, nullptr, 0},
        {false, 600, orderview::kIdYes, true, "Above 550. Send?", 0x34},
        {false, 600, orderview::kIdNo, false, "Above 550. Send?", 0x34},
        {false, 400, orderview::kIdYes, true, "Below 450. Send?", 0x34},
        {false, 400, orderview::kIdNo, false, "Below 450. Send?", 0x34},
    };
    for (const auto& c : cases) {
        host->texts["IDS_ORDER-STOCK-CV_OUTOF_UPPERLMT"] = c.stockTexts ? "Above the limit-up price %.2f" : "";
        host->texts["IDS_ORDER-STOCK-CV_OUTOF_DOWNERLMT"] = c.stockTexts ? "Below the limit-down price %.2f" : "";
        platform.boxes.clear();
        platform.answers = {c.answer};
        order.dbOrderPrice = c.price;
        EXPECT_EQ(g_bCheckStockOrder(account, order), c.passes) << c.price;
        ASSERT_EQ(platform.boxes.size(), c.shown ? 1u : 0u) << c.price;
        if (!c.shown) continue;
        EXPECT_EQ(platform.boxes[0].text, c.shown);
        EXPECT_EQ(platform.boxes[0].type, c.type);
        EXPECT_EQ(platform.boxes[0].caption, "Trader Pro");
    }
}

TEST_F(StockCheck, PriceBandByTheAlertSettingAndTheMarket)
{
    Band(550, 450);
    order.dbOrderPrice = 600;
    struct Case { const char* setting; int state; bool warned; };
    const Case cases[] = {
        {nullptr, -1, true},  // default 1: always
        {"", 0, true},        // an empty value reads as the default
        {"1", 0, true},       {"7", 0, true},    {"-1", 0, true},
        {"0", 2, false},      {"0", -1, false},
        {"2", 2, true},       {"2", 0, false},   {"2", 1, false}, {"2", 3, false}, {"2", -1, true},
    };
    for (const auto& c : cases) {
        Config(c.setting ? std::string("StockPriceAlert=") + c.setting + "\n" : std::string());
        MarketState(c.state);
        EXPECT_EQ(Refusal(), c.warned ? "IDS_ORDER-STOCK-CV_OUTOF_UPPERLMT" : "")
            << (c.setting ? c.setting : "-") << " " << c.state;
    }
}

TEST_F(StockCheck, PriceBandOnlyForLimitPricesOutsideMarketD)
{
    Band(550, 450);
    order.dbOrderPrice = 600;
    order.commodity.dwMarketKind = 'D';
    EXPECT_TRUE(g_bCheckStockOrder(account, order));
    order.commodity.dwMarketKind = 'E';
    order.dwOrderType = '6';
    EXPECT_TRUE(g_bCheckStockOrder(account, order));
    order.dwOrderType = '2';
    order.dwOrderKind = '1';  // a market order is never out of the band
    EXPECT_TRUE(g_bCheckStockOrder(account, order));
    EXPECT_TRUE(platform.boxes.empty());
    order.dwOrderKind = '2';
    EXPECT_FALSE(g_bCheckStockOrder(account, order));
}

}  // namespace
