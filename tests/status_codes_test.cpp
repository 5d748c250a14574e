#include <gtest/gtest.h>

#include "host/default_host.h"
#include "support/substitute_host.h"
#include "rows/status_codes.h"
#include "support/temp_folder.h"

namespace {

class StatusCodes : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder.Write("sys/language.txt", "IDS_ORDER-ITEM_STATUS_WAITINGORDER=Waiting\n");
        folder.Write("sys/OrderCfg.ini", "[ORDER_SOURCE]\r\nNO_OPERATOR=A, B\r\n");
        host = std::make_unique<orderview::DefaultHost>(folder.MainPath());
        installed = std::make_unique<ovtest::InstalledHost>(*host);  // the exclusion list is read again
    }
    ovtest::TempFolder folder;
    std::unique_ptr<orderview::DefaultHost> host;
    std::unique_ptr<ovtest::InstalledHost> installed;
};

TEST_F(StatusCodes, StatusCheck)
{
    struct Case { const char* status; std::uint32_t filter; int result; const char* message; };
    const Case cases[] = {
        {"9996", 'U', 1, "OD Status OK!"},
        {"0000", 'C', 1, "OD Status OK!"},
        {"9997", 'C', 1, "OD Status OK!"},
        {"9996", 'X', -1, "Internal Error, [dwFilter] is not in SWITCH-CASE loop!"},
        {"C019", 'C', 0, "IDS_ORDER-COMMON_ERRMSG_GATEWAY_TIMEOUT"},
        {"C010", 'U', 0, "IDS_ORDER-COMMON_ERRMSG_GATEWAY_TIMEOUT"},
        {"c019", 'C', -1, "IDS_ORDER-COMMON_ERRMSG_ORIGINAL_ORDER_ERR"},
        {"", 'C', -1, "IDS_ORDER-COMMON_ERRMSG_ORIGINAL_ORDER_ERR"},
    };
    for (const auto& c : cases) {
        CString message = "previous";
        EXPECT_EQ(g_iCheckHtsODStatus(0, c.status, c.filter, message), c.result) << c.status;
        EXPECT_EQ(message, c.message) << c.status;
    }
}

TEST_F(StatusCodes, ErrorTextFromTaggedReplies)
{
    struct Case { const char* reply; const char* before; bool ok; const char* after; };
    const Case cases[] = {
        {"<exchangenumber>123</exchangenumber><status>Rejected by exchange</status>", "", true, "[123] Rejected"},
        {"<exchangenumber>Waiting</exchangenumber><status>Queued</status>", "old ", true, "old Queued"},
        {"<exchangenumber></exchangenumber><status>X</status>", "m:", true, "m:X"},
        {"<exchangenumber>7</exchangenumber> no status", "m", false, "[7] "},
        {"<status>first</status><exchangenumber>7</exchangenumber>", "m", false, "[7] "},
        {"<exchangenumber>7", "m", false, "m"},
        {"nothing tagged", "m", false, "m"},
        {"<exchangenumber>1</exchangenumber><status></status>", "", true, "[1] "},
        {"<exchangenumber>1</exchangenumber><status>never closed", "", false, "[1] "},
    };
    for (const auto& c : cases) {
        CString message = c.before;
        EXPECT_EQ(g_bGetErrorMsg(message, c.reply), c.ok) << c.reply;
        EXPECT_EQ(message, c.after) << c.reply;
    }
}

CBaseOrder_OrderInfo Changeable()
{
    CBaseOrder_OrderInfo o;
    o.csStatusCode = "0000";
    o.csOrderNo = "N1";
    o.dwOrderKind = '2';
    o.dwOrderQty = 10;
    o.dwOrderCond = 'R';
    o.dwLastAction = 'N';
    o.dwOrderSource = 'C';
    return o;
}

TEST_F(StatusCodes, Changeability)
{
    struct Case { const char* what; void (*change)(CBaseOrder_OrderInfo&); bool changeable; };
    const Case cases[] = {
        {"plain", [](CBaseOrder_OrderInfo&) {}, true},
        {"no number", [](CBaseOrder_OrderInfo& o) { o.csOrderNo = ""; }, false},
        {"9996 without number", [](CBaseOrder_OrderInfo& o) { o.csOrderNo = ""; o.csStatusCode = "9996"; }, true},
        {"refused", [](CBaseOrder_OrderInfo& o) { o.csStatusCode = "E019"; }, false},
        {"FOK in 0000", [](CBaseOrder_OrderInfo& o) { o.dwOrderCond = 'F'; }, false},
        {"FOK in 9997", [](CBaseOrder_OrderInfo& o) { o.dwOrderCond = 'F'; o.csStatusCode = "9997"; }, true},
        {"kind C", [](CBaseOrder_OrderInfo& o) { o.dwOrderKind = 'C'; }, false},
        {"kind 9", [](CBaseOrder_OrderInfo& o) { o.dwOrderKind = '9'; }, false},
        {"all done", [](CBaseOrder_OrderInfo& o) { o.dwDealQty = 4; o.dwCancelQty = 6; }, false},
        {"one left", [](CBaseOrder_OrderInfo& o) { o.dwDealQty = 4; o.dwCancelQty = 5; }, true},
        {"overfilled", [](CBaseOrder_OrderInfo& o) { o.dwDealQty = 12; }, false},
        {"wrapped", [](CBaseOrder_OrderInfo& o) { o.dwCancelQty = 4294967295u; }, false},
        {"last U", [](CBaseOrder_OrderInfo& o) { o.dwLastAction = 'U'; }, false},
        {"lock Y", [](CBaseOrder_OrderInfo& o) { o.dwChangeLock = 'Y'; }, false},
        {"lock text Y", [](CBaseOrder_OrderInfo& o) { o.csChangeLock = "Y"; }, false},
        {"IOC dealt", [](CBaseOrder_OrderInfo& o) { o.dwOrderCond = 'I'; o.dwDealQty = 1; }, false},
        {"IOC fresh", [](CBaseOrder_OrderInfo& o) { o.dwOrderCond = 'I'; }, true},
        {"source B", [](CBaseOrder_OrderInfo& o) { o.dwOrderSource = 'B'; }, false},
    };
    for (const auto& c : cases) {
        CBaseOrder_OrderInfo o = Changeable();
        c.change(o);
        EXPECT_EQ(g_bIsOrderAvailableChange(&o), c.changeable) << c.what;
    }
    EXPECT_FALSE(g_bIsOrderAvailableChange(nullptr));
}

TEST_F(StatusCodes, OperatorSourcesAndTheirReload)
{
    EXPECT_FALSE(g_bISOperator('B'));
    EXPECT_FALSE(g_bISOperator('A'));
    EXPECT_TRUE(g_bISOperator('C'));
    {
        ovtest::TempFolder other;  // the list is the installed host's: no reload is asked for
        orderview::DefaultHost second(other.MainPath());
        const ovtest::InstalledHost guard(second);
        EXPECT_TRUE(g_bISOperator('B'));
    }
    EXPECT_FALSE(g_bISOperator('B'));  // the fixture's host again
    folder.Write("sys/OrderCfg.ini", "[ORDER_SOURCE]\r\nNO_OPERATOR=C\r\n");
    EXPECT_FALSE(g_bISOperator('B'));  // read once: the change is not seen yet
    orderview::ReloadOrderSourceExclusions();
    EXPECT_TRUE(g_bISOperator('B'));
    EXPECT_FALSE(g_bISOperator('C'));
    folder.Write("sys/OrderCfg.ini", "");
    orderview::ReloadOrderSourceExclusions();
    EXPECT_TRUE(g_bISOperator('C'));  // an empty list excludes nothing
}

TEST_F(StatusCodes, DeleteChangeRejection)
{
    EXPECT_FALSE(g_bRejectDelChg('P'));
    host->bShowDelete = true;
    EXPECT_TRUE(g_bRejectDelChg('C'));
    EXPECT_TRUE(g_bRejectDelChg('U'));
    EXPECT_TRUE(g_bRejectDelChg('P'));
    EXPECT_FALSE(g_bRejectDelChg('X'));
}

}  // namespace
