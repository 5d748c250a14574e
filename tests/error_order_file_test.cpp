#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "platform/profile_file.h"
#include "host/record_file.h"
#include "support/substitute_host.h"
#include "settings/error_order_file.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace {

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

CBaseOrder_OrderInfo FailedOrder(const char* exchange, std::uint32_t qty)
{
    CBaseOrder_OrderInfo o;
    o.csAccount = "F123";
    o.commodity.csExchangeId = exchange;
    o.commodity.csComId = "ZB";
    o.commodity.csComMonth = "202612";
    o.commodity.csComType = "F";
    o.dwOrderKind = '2';
    o.dwOrderDate = 20261120;
    o.dwBookTime = 93000123;
    o.dwBS = 'B';
    o.dbOrderPrice = 101;
    o.dbOrderPriceFrac = 16;
    o.dbDenominator = 32;
    o.dwOrderQty = qty;
    o.dwDayTrade = 'N';
    o.dwOrderCond = 'R';
    o.dwOpenOffset = 'Y';
    o.csStatusCode = "E019";
    o.csSourceName = "API";
    return o;
}

class ErrorOrderFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        platform.SetDate(2026, 11, 21);
        account.csAccount = "F123";
    }
    std::string File() const { return folder.Read("sys/F123.ord"); }
    CString Key(const char* section, const char* key) const
    {
        return orderview::ProfileString(section, key, "<none>", folder.File("sys/F123.ord").c_str());
    }
    ovtest::TempFolder folder;
    ovtest::SubstituteHost host{folder.MainPath()};
    ovtest::InstalledHost installed{host};
    ovtest::FakePlatform platform;
    AccountType account;
};

TEST_F(ErrorOrderFile, OtherKindsWriteOnlyDateAndCount)
{
    host.vecErrorOrders = {FailedOrder("CME", 3)};
    g_vWriteErrorOrder(account, 49);
    EXPECT_EQ(Key("ErrOrder", "Date"), "20261121");
    EXPECT_EQ(Key("ErrOrder", "OrderType"), "<none>");
    EXPECT_EQ(Key("", "Count"), "0");
    EXPECT_EQ(Key("FF1", "Exchange"), "<none>");
}

TEST_F(ErrorOrderFile, ALaterShorterListLeavesHigherSections)
{
    host.vecErrorOrders = {FailedOrder("CME", 1), FailedOrder("CBOT", 2), FailedOrder("EUREX", 3)};
    g_vWriteErrorOrder(account, 50);
    host.vecErrorOrders = {FailedOrder("SGX", 9)};
    platform.SetDate(2026, 11, 22);
    g_vWriteErrorOrder(account, 50);
    EXPECT_EQ(Key("FF", "Count"), "1");
    EXPECT_EQ(Key("FF1", "Exchange"), "SGX");
    EXPECT_EQ(Key("FF2", "Exchange"), "CBOT");
    EXPECT_EQ(Key("FF3", "OrderQty"), "3");
    EXPECT_EQ(Key("ErrOrder", "Date"), "20261122");
}

TEST_F(ErrorOrderFile, AccountsThatWouldLeaveTheFolderWriteNothing)
{
    host.vecErrorOrders = {FailedOrder("CME", 3)};
    for (const char* bad : {"", "..", "../F123", "a/b", "a\\b", "C:x", "."}) {
        account.csAccount = bad;
        host.vecDebugLog.clear();
        g_vWriteErrorOrder(account, 50);
        ASSERT_EQ(host.vecDebugLog.size(), 1u) << bad;
        EXPECT_NE(host.vecDebugLog[0].Find("not written"), -1);
    }
    size_t files = 0;  // every refused name would have landed inside the main folder
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
        if (entry.path().filename().string().find("ord") != std::string::npos) ++files;
    EXPECT_EQ(files, 0u);
}

TEST_F(ErrorOrderFile, ListsOrdFilesByExactTitle)
{
    folder.Write("sys/F123.ord", "");
    folder.Write("sys/s456.ORD", "");
    folder.Write("sys/X.ord.bak", "");
    EXPECT_TRUE(g_bGetIni("F123"));
    EXPECT_FALSE(g_bGetIni("f123"));  // letter case counts
    EXPECT_TRUE(g_bGetIni("s456"));
    EXPECT_FALSE(g_bGetIni("X"));
    EXPECT_FALSE(g_bGetIni(""));
}

// The file: a first line of as many bytes as the file's name, the list's keys, then each order's
// keys in order, each on its line. The first two orders come from a table that once created a
// section "[FF2]" and a key of another order when written: a status code holding a line break and
// a section header.
TEST_F(ErrorOrderFile, WritesEveryKeyInOrderEachOnItsLine)
{
    orderview::RecordFile table(CString(ORDERVIEW_REGRESSIONS "/host/error_orders_value_line_break.csv"),
                                "error_orders_value_line_break.csv", orderview::RecordFile::Kind::Orders);
    CBaseOrder_OrderInfo order;
    std::string list;
    while (table.NextOrder(order, list)) {
        order.csAccount = "F123";
        order.commodity.csExchangeId = "CME";
        host.vecErrorOrders.push_back(order);
    }
    ASSERT_EQ(host.vecErrorOrders.size(), 2u);
    ASSERT_GE(host.vecErrorOrders[0].csStatusCode.Find('\n'), 0);
    host.vecErrorOrders.push_back(FailedOrder("CME", 3));
    g_vWriteErrorOrder(account, 50);
    EXPECT_EQ(Key("FF1", "OrderQty"), "5");
    EXPECT_EQ(Key("FF2", "OrderQty"), "7");
    const CString status = Key("FF1", "Status");
    EXPECT_EQ(status.Find('\n'), -1);
    EXPECT_EQ(status.Left(4), "0000");
    EXPECT_GE(status.Find("[FF2]"), 0);

    const std::string marker = "ErrOrder" + std::string(folder.File("sys/F123.ord").size() - 10, ' ') + "\r";
    const std::vector<std::string> head = {marker, "[ErrOrder]\r", "OrderType=FF\r", "Date=20261121\r", "[FF]\r",
                                           "Count=3\r"};
    const std::vector<std::string> last = {
        "[FF3]\r", "Exchange=CME\r", "ComType=50\r", "TradeDate=20261120\r", "TradeTime=93000123\r", "BS=66\r",
        "ComNo=ZB\r", "ComMonth=202612\r", "ComTyp=F\r", "ComWek=\r", "OrderPrice=101.000000\r",
        "OrderPrice2=16.000000\r", "OrderPrice3=32.000000\r", "OrderPrice4=0.000000\r", "OrderPrice5=0.000000\r",
        "OrderPrice6=0.000000\r", "OrderQty=3\r", "DealQty=0\r", "CancelQty=0\r", "OrderType=50\r", "DayTrade=78\r",
        "OrderRole=82\r", "OS=89\r", "Status=E019\r", "SourceType=API\r",
    };
    const std::vector<std::string> lines = Lines(File());
    ASSERT_GT(lines.size(), head.size() + last.size());
    EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + head.size()), head);
    EXPECT_EQ(std::vector<std::string>(lines.end() - last.size(), lines.end()), last);
}

}  // namespace
