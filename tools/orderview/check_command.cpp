// orderview check: the stock order check and the order insurance check on every order of the day,
// each verdict printed with its message; message boxes are answered by --answer.
#include <cstdint>
#include <cstdio>
#include <string>

#include "checks/order_insurance.h"
#include "checks/stock_order_check.h"
#include "commands.h"
#include "console_platform.h"
#include "display_width.h"
#include "format/symbol_display.h"
#include "host/record_file.h"
#include "main_folder.h"
#include "options.h"
#include "progress.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview check [--main DIR] [--answer yes|no]\n"
    "\n"
    "Runs the stock order check and the order insurance check on every order of the day and prints\n"
    "one line per check: the order, PASS or REFUSED, and the message. Questions the stock check\n"
    "asks (go on past the price band?) are answered by --answer (default yes). The exit status is 1\n"
    "when any check refused an order.\n";

// The account an order belongs to; an account of the order's own text when the host has none.
AccountType AccountOf(orderview::DefaultHost& host, const CBaseOrder_OrderInfo& order)
{
    for (const AccountType& account : host.baseOrder.vecAccounts)
        if (account.csAccount == order.csAccount) return account;
    AccountType account;
    account.csAccount = order.csAccount;
    account.dwTradeType = order.dwTradeType;
    return account;
}

// Message box texts on one line.
std::string OneLine(const CString& text)
{
    std::string line = text.str();
    for (char& c : line)
        if (c == '\r' || c == '\n') c = ' ';
    return line;
}

}  // namespace

int CheckCommand(int argc, char** argv)
{
    Options options;
    if (!options.Parse(argc, argv, 1, {"main", "answer"}, {"help"})) {
        std::fprintf(stderr, "orderview check: %s\n%s", options.Error().c_str(), kUsage);
        return 2;
    }
    if (options.Has("help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const std::string answer = options.Get("answer", "yes");
    if (answer != "yes" && answer != "no") {
        std::fprintf(stderr, "orderview check: --answer is yes or no, not '%s'\n", answer.c_str());
        return 2;
    }
    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return 1;
    ConsolePlatform platform(answer == "yes");
    orderview::DefaultHost& host = folder.Host();

    // The day's orders, one at a time; a first pass finds malformed records before any verdict.
    orderview::RecordFile file(host.s_PathGetSysPath(0) + "\\orders.csv", "orders.csv",
                               orderview::RecordFile::Kind::Orders);
    const std::uint64_t start = file.Tell();
    CBaseOrder_OrderInfo order;
    std::string list;
    size_t count = 0;
    while (file.NextOrder(order, list)) ++count;
    if (!MainFolder::Report(file.Diagnostics())) return 1;
    file.Seek(start);

    bool refused = false;
    Progress progress("check", count);
    size_t done = 0;
    while (file.NextOrder(order, list)) {
        progress.Step(++done);
        // Requests on an order are not orders; the error list is another screen's.
        if (list != "today" || order.dwOrderKind == 'C' || order.dwOrderKind == 'U') continue;
        AccountType account = AccountOf(host, order);
        const std::string who = order.csOrderNo.str() + " " + order.csAccount.str() + " " +
                                g_cszDisplayOrderSymbol(&order, false).str();

        const bool stockOk = g_bCheckStockOrder(account, order);
        std::string boxes;
        for (const auto& box : platform.TakeBoxes()) boxes += (boxes.empty() ? "" : " | ") + OneLine(box.text);
        std::printf("%s stock      %-8s %s\n", PadToWidth(who, 40).c_str(), stockOk ? "PASS" : "REFUSED", boxes.c_str());

        CString message;
        const bool insuranceOk = g_bCheckOrderInsurance(account, &order, message);
        std::printf("%s insurance  %-8s %s\n", PadToWidth(who, 40).c_str(), insuranceOk ? "PASS" : "REFUSED",
                    insuranceOk ? "" : OneLine(message).c_str());
        refused = refused || !stockOk || !insuranceOk;
    }
    if (std::fflush(stdout) != 0) {
        std::fprintf(stderr, "orderview check: cannot write the verdicts\n");
        return 1;
    }
    return refused ? 1 : 0;
}

}  // namespace ovcli
