#include <gtest/gtest.h>

#include <string>

#include "host/default_host.h"
#include "settings/order_settings.h"
#include "support/substitute_host.h"
#include "support/temp_folder.h"

namespace {

class OrderSettings : public ::testing::Test {
protected:
    void Config(const std::string& text) { folder.Write("sys/OrderCfg.ini", text); }
    ovtest::TempFolder folder;
    std::unique_ptr<orderview::DefaultHost> host = std::make_unique<orderview::DefaultHost>(folder.MainPath());
    ovtest::InstalledHost installed{*host};
};

TEST_F(OrderSettings, StopPriceRuleIsOnlyOne)
{
    for (const char* value : {"2", "0", "-1", "x", ""}) {
        Config(std::string("[ORDER_SETTING]\nLimitPriceEqualStopPrice=") + value + "\n");
        EXPECT_EQ(g_vGetPriceToStopPrice(), 0) << value;
    }
    Config("[order_setting]\nlimitpriceequalstopprice = \"1\"\n");
    EXPECT_EQ(g_vGetPriceToStopPrice(), 1);  // names match in any case, quotes are removed
}

TEST_F(OrderSettings, ShowModeIsASnapshot)
{
    EXPECT_EQ(g_vGetMsnOrderRespShowMode(), 0);
    Config("[ORDER_SETTING]\r\nMSNRESP_SHOWMODE=3\r\n");
    EXPECT_EQ(g_vGetMsnOrderRespShowMode(), 0);  // not read until the setter runs
    g_vSetMsnOrderRespShowMode();
    EXPECT_EQ(g_vGetMsnOrderRespShowMode(), 3);
    Config("[ORDER_SETTING]\r\nMSNRESP_SHOWMODE=7\r\n");
    EXPECT_EQ(g_vGetMsnOrderRespShowMode(), 3);
    g_vSetMsnOrderRespShowMode();
    EXPECT_EQ(g_vGetMsnOrderRespShowMode(), 7);
}

TEST_F(OrderSettings, OperatorFlagsFollowTheBackEndWhenInitialised)
{
    host->abOperator[1] = true;
    host->abOperator[3] = true;
    g_vInitialOrderOperate();
    EXPECT_FALSE(orderview::GetOrderOperateFlag(0));
    EXPECT_TRUE(orderview::GetOrderOperateFlag(1));
    EXPECT_TRUE(orderview::GetOrderOperateFlag(3));
    EXPECT_FALSE(orderview::GetOrderOperateFlag(4));
    host->abOperator[1] = false;
    EXPECT_TRUE(orderview::GetOrderOperateFlag(1));  // a snapshot
    g_vInitialOrderOperate();
    EXPECT_FALSE(orderview::GetOrderOperateFlag(1));
}

TEST_F(OrderSettings, NumberLists)
{
    auto padded = [](std::vector<int> v) {
        v.resize(16, 0);
        return v;
    };
    struct Case { const char* value; std::vector<int> numbers; };
    std::vector<int> twenty;
    std::string twentyText;
    for (int i = 1; i <= 20; ++i) {
        twenty.push_back(i);
        twentyText += std::to_string(i) + ",";
    }
    const Case cases[] = {
        {"1,2,3", padded({1, 2, 3})},
        {"-1 65536 65537", padded({65535, 0, 1})},
        {"x,7y,+5", padded({0, 7, 5})},
        {"99999999999999999999", padded({65535})},
        {" 1,, 2 ,", padded({1, 2})},
        {twentyText.c_str(), twenty},
    };
    for (const auto& c : cases) {
        Config(std::string("[S]\nK=") + c.value + "\n");
        EXPECT_EQ(g_vGetSettingParameter("S", "K"), c.numbers) << c.value;
    }
    EXPECT_EQ(g_vGetSettingParameter("S", "missing"), std::vector<int>(16, 0));
    // The excluded order sources are the lists' first bytes, widened as signed characters.
    Config("[ORDER_SOURCE]\r\nNO_OPERATOR=AX,, B \xE4\r\n");
    EXPECT_EQ(g_GetOnsiteOrder(), (std::vector<unsigned long>{'A', 'B', static_cast<unsigned long>(-28L)}));
}

}  // namespace
