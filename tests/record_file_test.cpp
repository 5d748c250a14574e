#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/host_tables_input.h"
#include "host/record_file.h"
#include "support/temp_folder.h"

namespace {

using orderview::RecordFile;

// The order numbers of every order left to read.
std::vector<std::string> OrderNumbers(RecordFile& file)
{
    CBaseOrder_OrderInfo order;
    std::string list;
    std::vector<std::string> read;
    while (file.NextOrder(order, list)) read.push_back(order.csOrderNo.str());
    return read;
}

class RecordFileTest : public ::testing::Test {
protected:
    RecordFile Open(const std::string& content, RecordFile::Kind kind)
    {
        folder.Write("sys/t.csv", content);
        return RecordFile(CString(folder.File("sys/t.csv")), "t.csv", kind);
    }
    ovtest::TempFolder folder;
};

TEST_F(RecordFileTest, ReadsOrdersOneAtATimeAndComesBack)
{
    RecordFile file = Open("\xEF\xBB\xBFlist,csOrderNo,dwBS,csStatusMsg,dwOrderQty\r\n"
                           "today,A1,B,,5\r\n"
                           "\r\n# a comment between records\r\n"
                           "error,A2,S,\"two\r\nlines, with a comma\",7\r\n"
                           "today,A3,S,\"say \"\"hi\"\"\",9\n",
                           RecordFile::Kind::Orders);
    CBaseOrder_OrderInfo order;
    std::string list;
    std::vector<std::uint64_t> offsets;
    std::vector<std::string> numbers;
    for (std::uint64_t at = file.Tell(); file.NextOrder(order, list); at = file.Tell()) {
        offsets.push_back(at);
        numbers.push_back(order.csOrderNo.str() + "/" + list);
    }
    EXPECT_EQ(numbers, (std::vector<std::string>{"A1/today", "A2/error", "A3/today"}));
    EXPECT_TRUE(file.Diagnostics().empty());
    // Back to the second record: the quoted line break and comma are read again whole.
    ASSERT_TRUE(file.Seek(offsets[1]));
    ASSERT_TRUE(file.NextOrder(order, list));
    EXPECT_EQ(order.csStatusMsg, "two\r\nlines, with a comma");
    EXPECT_EQ(order.dwOrderQty, 7u);
    ASSERT_TRUE(file.NextOrder(order, list));
    EXPECT_EQ(order.csStatusMsg, "say \"hi\"");
    EXPECT_EQ(order.dwBS, static_cast<std::uint32_t>('S'));
    EXPECT_FALSE(file.NextOrder(order, list));
}

// Prices are read as strtod reads them, to the last bit, whatever the spelling; a quantity takes
// every digit up to its limit and no more.
TEST_F(RecordFileTest, NumbersReadAsTheCLibraryReadsThem)
{
    const std::vector<std::string> prices = {
        "23150",  "0.1",     "-2.5",       "1e5",    "+1.5", " 2",     "0x1p3",  "1.",    ".5",    "1e-310",
        "1e-400", "9007199254740993", "0.30000000000000004", "123456.78901234567890123", "1e400", "nan", "inf",
        "1,5",    "",        "--1",        "1e",     "0x",    "2 ",
    };
    // 2^64 and twenty nines would wrap around a 64-bit accumulator.
    const std::vector<std::string> quantities = {"0",  "4294967295", "4294967296", "00000000004294967295",
                                                 "-1", "1.0",        "",           "18446744073709551616",
                                                 "99999999999999999999"};
    std::string content = "list,csOrderNo,dbOrderPrice,dwOrderQty\n";
    for (const std::string& price : prices) content += "today,P," + price + ",1\n";
    for (const std::string& quantity : quantities) content += "today,Q,1," + quantity + "\n";
    RecordFile file = Open(content, RecordFile::Kind::Orders);
    CBaseOrder_OrderInfo order;
    std::string list;
    std::vector<std::string> read;
    const auto bits = [](double value) {
        std::uint64_t pattern;
        std::memcpy(&pattern, &value, sizeof pattern);
        return std::to_string(pattern);
    };
    while (file.NextOrder(order, list))
        read.push_back(order.csOrderNo == "P" ? bits(order.dbOrderPrice) : "Q" + std::to_string(order.dwOrderQty));
    std::vector<std::string> expected;
    for (const std::string& price : prices) {
        char* end = nullptr;
        const double value = std::strtod(price.c_str(), &end);
        if (!price.empty() && end == price.c_str() + price.size() && std::isfinite(value))
            expected.push_back(bits(value));
    }
    for (const char* quantity : {"Q0", "Q4294967295", "Q4294967295"}) expected.push_back(quantity);
    EXPECT_EQ(read, expected);
    EXPECT_EQ(file.Diagnostics().size(), prices.size() + quantities.size() - expected.size());
}

TEST_F(RecordFileTest, DealsAndTablesThatReadNothing)
{
    RecordFile deals = Open("csOrderNo,dwBS,dwDealTime,dbDealPrice,csDealNo\nA1,B,93000500,101.5,D1\n",
                            RecordFile::Kind::Deals);
    CBaseOrder_DealInfo deal;
    ASSERT_TRUE(deals.NextDeal(deal));
    EXPECT_EQ(deal.dwBS, static_cast<std::uint32_t>('B'));
    EXPECT_EQ(deal.dwDealTime, 93000500u);                                     // the deal's own time
    EXPECT_EQ(static_cast<const CBaseOrder_OrderInfo&>(deal).dwDealTime, 0u);  // not the order's
    EXPECT_EQ(deal.dbDealPrice, 101.5);
    EXPECT_EQ(deal.csDealNo, "D1");
    CBaseOrder_OrderInfo order;
    std::string list;
    EXPECT_FALSE(deals.NextOrder(order, list));  // a deal table holds no orders

    RecordFile noList = Open("csOrderNo\nA1\n", RecordFile::Kind::Orders);
    EXPECT_FALSE(noList.NextOrder(order, list));
    ASSERT_EQ(noList.Diagnostics().size(), 1u);
    EXPECT_EQ(noList.Diagnostics()[0], "t.csv:1: missing column list");

    RecordFile missing(CString(folder.File("sys/none.csv")), "none.csv", RecordFile::Kind::Orders);
    EXPECT_FALSE(missing.NextOrder(order, list));
    EXPECT_TRUE(missing.Diagnostics().empty());
    RecordFile empty = Open("", RecordFile::Kind::Deals);
    EXPECT_FALSE(empty.NextDeal(deal));
}

// Malformed records anywhere: each line is read into an order or reported at its own line, and a
// record broken inside quotes costs only its own line. The tables include those that once lost
// records without a word.
TEST(RecordFileRegressions, EveryLineIsReadOrReported)
{
    const std::string header = "list,csOrderNo,csAccount,dwOrderQty,csStatusMsg\n";
    const char* tables[] = {
        "today,A1,F1,1,\"never closed\ntoday,A2,F1,2,ok\ntoday,A3,F1,3,ok\n",
        "today,A1,F1,1,\"two\r\nlines\"\ntoday,A2,F1,x,bad\rtoday,A3,F1,3,\"a\"b\n",
        "today,A1,F1,1,\"x\ntoday,A2,F1,2,\"y\"\ntoday,A3,F1,3,ok",
        "\n#c\n\"\n\"\"\n,\n\r\r\n\xEF\xBB\xBFtoday,A1,F1,1,x\ntoday,A2,F1,2,5\" lot\n",
    };
    ovtest::TempFolder folder;
    for (const char* table : tables) EXPECT_EQ(ovfuzz::CheckOrderTable(header + table, folder.path()), "") << table;
    // The tables that once lost records without a word, and what each gives.
    const struct {
        const char* file;
        std::vector<std::string> orders;
        const char* diagnostic;
    } kept[] = {
        {"orders_stray_quote.csv", {"A1", "A2", "A3"}, nullptr},
        {"orders_bare_cr.csv", {"A1", "A2", "A3"}, nullptr},
        {"orders_cr_line_ends.csv", {"A1", "A2"}, nullptr},
        {"orders_bom_inside.csv", {"A1"}, "orders.csv:3: list must be today or error"},
        {"error_orders_value_line_break.csv", {"A1", "A2"}, nullptr},
    };
    for (const auto& c : kept) {
        const std::string path = std::string(ORDERVIEW_REGRESSIONS) + "/host/" + c.file;
        RecordFile file(CString(path), "orders.csv", RecordFile::Kind::Orders);
        EXPECT_EQ(OrderNumbers(file), c.orders) << c.file;
        ASSERT_EQ(file.Diagnostics().size(), c.diagnostic ? 1u : 0u) << c.file;
        if (c.diagnostic) EXPECT_EQ(file.Diagnostics()[0].str().rfind(c.diagnostic, 0), 0u) << c.file;
        std::ifstream in(path, std::ios::binary);
        const std::string table((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        EXPECT_EQ(ovfuzz::CheckOrderTable(table, folder.path()), "") << c.file;
    }
    // And the inputs the fuzz target kept.
    for (const auto& entry : std::filesystem::directory_iterator(ORDERVIEW_FUZZ_REGRESSIONS "/host_tables")) {
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        const std::string table = ovfuzz::OrderTableOf(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        EXPECT_EQ(ovfuzz::CheckOrderTable(table, folder.path()), "") << entry.path();
    }

    folder.Write("sys/t.csv", header + tables[0]);
    RecordFile file(CString(folder.File("sys/t.csv")), "t.csv", RecordFile::Kind::Orders);
    EXPECT_EQ(OrderNumbers(file), (std::vector<std::string>{"A2", "A3"}));
    ASSERT_EQ(file.Diagnostics().size(), 1u);
    EXPECT_EQ(file.Diagnostics()[0], "t.csv:2: quoted field is not closed");
}

}  // namespace
