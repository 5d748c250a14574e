#include "generate_reference.h"

#include <cstdio>

#include "generate_products.h"
#include "sample_texts.h"

namespace orderview {
namespace generate {

namespace {

std::string Decimal(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

// Current, reference, limit-up and limit-down prices of each product, and yesterday's volume
// of the stocks; items 125, 129, 132, 133 and 128.
std::string Quotes()
{
    std::string text = "service,symbol,item,unit,value\n";
    for (const Product& p : kProducts) {
        const long mid = (p.lowTicks + p.highTicks) / 2;
        const auto row = [&](int item, double value, int decimals) {
            text += std::to_string(p.service) + "," + p.symbol + "," + std::to_string(item) + ",1," +
                    Decimal(value, decimals) + "\n";
        };
        const int decimals = p.denominator ? 6 : p.decimals;
        row(125, PriceOf(p, mid).value, decimals);
        row(129, PriceOf(p, mid - 1).value, decimals);
        row(132, PriceOf(p, p.highTicks).value, decimals);
        row(133, PriceOf(p, p.lowTicks).value, decimals);
        if (IsStock(p)) row(128, 5000, 0);
    }
    return text;
}

std::string Commodities()
{
    std::string text = "service,commodity,item,unit,value\n";
    std::string seen;
    for (const Product& p : kProducts) {
        const std::string key = std::string(";") + p.comId + ";";
        if (seen.find(key) != std::string::npos) continue;
        seen += key;
        text += std::to_string(p.service) + "," + p.comId + ",1007,0," + p.comId + "\n";
    }
    return text;
}

// The products' names as the quote side shows them.
const char* SymbolName(const std::string& symbol)
{
    static const struct {
        const char* symbol;
        const char* name;
    } kNames[] = {
        {"TXFL6", "台指期"},           {"MXFL6", "小台指"},           {"TXFL6/A7", "台指期價差"},
        {"TXO23000L6", "台指選23000買權"}, {"TXO23000X6", "台指選23000賣權"}, {"2330", "台積電"},
        {"2317", "鴻海"},              {"0050", "元大台灣50"},        {"2603", "長榮"},
        {"2498", "宏達電"},            {"ZBZ6", "美國30年期公債"},    {"ZNZ6", "美國10年期公債"},
        {"TXF00", "台指期近月"},
    };
    for (const auto& n : kNames)
        if (symbol == n.symbol) return n.name;
    return "";
}

std::string Symbols()
{
    std::string text = "service,symbol,commodity,market_state,is_stock,transfer_symbol,name\n";
    for (const Product& p : kProducts)
        text += std::to_string(p.service) + "," + p.symbol + "," + p.comId + ",2," + (IsStock(p) ? "1" : "0") + ",," +
                SymbolName(p.symbol) + "\n";
    // The near-month alias the quote side knows the front future by.
    text += std::string("1,TXF00,TXF,2,0,TXFL6,") + SymbolName("TXF00") + "\n";
    return text;
}

std::string Accounts()
{
    std::string text = "trade_type,account,field0,field8,field20,field24,field28,field37,active,name\n";
    bool active[256] = {};
    for (const Account& a : kAccounts) {
        const unsigned char type = static_cast<unsigned char>(a.tradeType);
        text += std::string(1, a.tradeType) + "," + a.id + ",F001,9A95," + a.id + ",,,0," +
                (active[type] ? "0" : "1") + "," + a.name + "\n";
        active[type] = true;
    }
    return text;
}

}  // namespace

std::vector<ReferenceFile> ReferenceFiles()
{
    return {
        {"language.txt", kSampleLanguage},
        {"language.zh-TW.txt", kSampleLanguageZhTw},
        {"xls_head.txt", kSampleXlsHead},
        {"OrderCfg.ini", kSampleOrderCfg},
        {"host.ini",
         "[Host]\nProductName=OrderView\nFractionType=2\nMarketClosedText=CLOSE\nMarketPreOpenText=PREOPEN\n"
         "MarketOpenText=OPEN\n[OrderBK]\nShowDelete=1\nOperator=1,0,0,0\nOffsetFirms=F001\n"
         "[User]\nName=陳大文\nBranchNo=F001\nMainBranchNo=F000\nAccount=F000123\n"},
        {"services.csv", "service,quote_mode,delay_service\n1,0,0\n6,0,0\n16,0,0\n22,2,1\n"},
        {"quotes.csv", Quotes()},
        {"commodities.csv", Commodities()},
        {"symbols.csv", Symbols()},
        {"contracts.csv",
         "service,commodity,weekly,week_relation,months\n"
         "1,TXF,0,,202612 202701 202702 202703 202706 202709\n"
         "1,MXF,0,,202612 202701 202702 202703 202706 202709\n"
         "1,TXO,0,,202612 202701 202702 202703 202706 202709\n"
         "1,TX4,1,TXO,202612W4\n"
         "6,ZB,0,,202612 202703 202706\n"
         "6,ZN,0,,202612 202703 202706\n"},
        {"weekly_names.csv", "commodity,year_month,name\nTX4,202612W4,台指選12月W4\n"},
        {"accounts.csv", Accounts()},
        {"accepted.csv",
         "kind,commodity,denominator,sub_denominator\nforeign_future,ZB,32,0\nforeign_future,ZN,64,0\n"
         "domestic_option,TXO,,\n"},
        {"insurance.csv",
         "account,allow_list,deny_list,max_qty,price_limit,allow_margin_buy,allow_short_sell,allow_market_price,"
         "today_limit,use_allow_list,used_today\n"
         "S987654,,2498,8,1000,1,0,0,2000000,0,150000\n"
         "F000123,TXF;MXF,,10,300,0,0,1,50,1,4\n"
         "O000321,,,20,100,0,0,0,0,0,0\n"},
        {"alert_stocks.csv", "account,symbol,name\nS987654,2498,宏達電\nS987654,2603,長榮\n"},
        {"stocks.csv",
         "symbol,unit,special,flag1,flag2,flag3\n2330,1000,0,0,0,0\n2317,1000,0,0,0,0\n0050,1000,0,0,0,0\n"
         "2603,1000,0,1,1,0\n2498,1,1,1,1,1\n"},
    };
}

}  // namespace generate
}  // namespace orderview
