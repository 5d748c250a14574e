#include <gtest/gtest.h>

#include <string>

#include "checks/order_confirmation.h"
#include "host/table_host.h"
#include "support/substitute_host.h"

namespace {

class Confirmation : public ovtest::HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        host.mapAccountNames["S0001"] = "Lin";
        orderview::TableHost::SymbolInfo tsmc;
        tsmc.csName = "TSMC";
        host.mapSymbols[{1, "2330"}] = tsmc;
        order.csAccount = "S0001";
        order.commodity.dwMarketKind = 'A';
        order.commodity.csComId = "2330";
        order.commodity.byServiceID = 1;
        order.dwBS = 'B';
        order.dwComplexKind = 'N';
        order.dwOrderKind = '2';
        order.dwOrderType = '2';
        order.dwOrderCond = 'R';
        order.dwOrderQty = 2000;
        order.dbOrderPrice = 1085;
    }

    static std::vector<std::string> Lines(const CString& text)
    {
        std::vector<std::string> lines;
        std::string s = text.str();
        size_t start = 0;
        for (size_t at; (at = s.find("\r\n", start)) != std::string::npos; start = at + 2)
            lines.push_back(s.substr(start, at - start));
        lines.push_back(s.substr(start));
        return lines;
    }

    CBaseOrder_OrderInfo order;
};

TEST_F(Confirmation, OneLabelledLinePerItem)
{
    const auto lines = Lines(g_cszGetStockInfo(&order));
    ASSERT_EQ(lines.size(), 7u);  // a stock order: no open/close line, no trigger price
    EXPECT_EQ(lines[0], "IDS_ORDER-ITEM_ACCOUNT_NAME: Lin");
    EXPECT_EQ(lines[1], "IDS_ORDER-ITEM_COMMODITY: 2330 TSMC");
    EXPECT_EQ(lines[2].rfind("IDS_ORDER-ITEM_BUYSELL: ", 0), 0u);
    EXPECT_EQ(lines[3].rfind("IDS_ORDER-ITEM_ORDERCATEGORY: ", 0), 0u);
    EXPECT_EQ(lines[4].rfind("IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE: ", 0), 0u);
    EXPECT_NE(lines[4].find("1,085"), std::string::npos) << lines[4];
    EXPECT_EQ(lines[5].rfind("IDS_ORDER-ITEM_ORDERQTY: ", 0), 0u);
    EXPECT_EQ(lines[6].rfind("HTS_ORDER-ITEM_ROLE: ", 0), 0u);

    order.commodity.dwMarketKind = '0';
    order.commodity.csComId = "TXF";
    order.commodity.csComMonth = "202612";
    order.dwOrderKind = '3';
    order.dbTriggerPrice = 23000;
    const auto futures = Lines(g_cszGetStockInfo(&order));
    ASSERT_EQ(futures.size(), 9u);
    EXPECT_EQ(futures[1], "IDS_ORDER-ITEM_COMMODITY: TXF 202612");  // no name known
    EXPECT_EQ(futures[3].rfind("IDS_ORDER-ITEM_NEWOFFSET: ", 0), 0u);
    EXPECT_EQ(futures[8], "IDS_ORDER-ITEM_TRIGGERPRICE: 23000");
    EXPECT_EQ(g_cszGetStockInfo(nullptr), "");
}

}  // namespace
