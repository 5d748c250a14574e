// orderview check: the stock order check and the order insurance check on every order of the day,
// each verdict printed with its message; message boxes are answered by --answer.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "checks/order_insurance.h"
#include "checks/stock_order_check.h"
#include "cli_support.h"
#include "commands.h"
#include "list_output.h"
#include "console_platform.h"
#include "display_width.h"
#include "format/symbol_display.h"
#include "host/record_file.h"
#include "main_folder.h"
#include "options.h"
#include "order_list.h"
#include "progress.h"

namespace ovcli {

namespace {

const char kUsage[] =
    "usage: orderview check [--main DIR] [--answer yes|no] [--format table|json] [--quiet]\n"
    "\n"
    "Runs the stock order check and the order insurance check on every order of the day and prints\n"
    "one row per check: the order number, account, commodity, the check (stock or insurance), the\n"
    "verdict (PASS or REFUSED) and the message. Questions the stock check asks (go on past the\n"
    "price band?) are answered by --answer (default yes).\n"
    "\n"
    "  --main DIR     the main folder (default: $ORDERVIEW_HOME, else the current folder)\n"
    "  --answer A     yes (default) or no\n"
    "  --format F     table (default): a heading row, the rows, and a closing line\n"
    "                 \"200 checks: 97 passed, 103 refused\";\n"
    "                 json: JSON Lines; a first line names the columns,\n"
    "                   {\"columns\":[{\"key\":\"order\",\"heading\":\"Order\"},...]}\n"
    "                 then one object per check with the keys order, account, commodity, check,\n"
    "                 verdict and message; the closing line goes to standard error\n"
    "  --quiet        no progress bar (and no closing line on standard error)\n"
    "  -h, --help     this text\n"
    "\n"
    "Exit status: 0 every check passed, 1 a check refused an order or a file could not be read,\n"
    "2 usage.\n";

const std::vector<std::string> kKeys = {"order", "account", "commodity", "check", "verdict", "message"};
const std::vector<std::string> kHeadings = {"Order", "Account", "Commodity", "Check", "Verdict", "Message"};
// Table widths of every column but the last.
const int kWidths[] = {12, 14, 16, 10, 8};

std::string TableLine(const std::vector<std::string>& cells)
{
    std::string line;
    for (std::size_t c = 0; c < cells.size(); ++c) {
        line += cells[c];
        if (c + 1 < cells.size()) {
            const std::size_t width = static_cast<std::size_t>(kWidths[c]);
            if (cells[c].size() < width) line.append(width - cells[c].size(), ' ');
            line += "  ";
        }
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    return line + '\n';
}

std::string JsonLine(const std::vector<std::string>& cells)
{
    std::string line = "{";
    for (std::size_t c = 0; c < cells.size(); ++c) {
        if (c) line += ',';
        AppendJsonString(line, kKeys[c]);
        line += ':';
        AppendJsonString(line, cells[c]);
    }
    return line + "}\n";
}

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
    const int parsed = ParseOptions(options, argc, argv, "check", kUsage, {"main", "answer", "format"}, {"quiet"});
    if (parsed >= 0) return parsed;
    const std::string answer = options.Get("answer", "yes");
    if (answer != "yes" && answer != "no")
        return UsageError("check", "--answer is yes or no, not '" + answer + "'", kUsage);
    const std::string format = options.Get("format", "table");
    if (format != "table" && format != "json")
        return UsageError("check", "--format is table or json, not '" + format + "'", kUsage);
    const bool json = format == "json", quiet = options.Has("quiet");
    const std::string problem = OrderList::DayProblem(options.Get("main"), ListKind::Full);
    if (!problem.empty()) return Failure("check", problem);
    MainFolder folder(options.Get("main"));
    if (!folder.Ok()) return kExitFailed;
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
    if (!MainFolder::Report(file.Diagnostics())) return kExitFailed;
    file.Seek(start);

    const bool rowsToTerminal = Progress::OutputIsTerminal();
    Progress progress("check", count, quiet || rowsToTerminal);
    bool written = std::fputs((json ? JsonColumnsLine(kKeys, kHeadings) : TableLine(kHeadings)).c_str(), stdout) >= 0;
    size_t done = 0, passed = 0, refused = 0;
    const auto put = [&](std::vector<std::string> cells) {
        (cells[4] == "PASS" ? passed : refused) += 1;
        written = written && std::fputs((json ? JsonLine(cells) : TableLine(cells)).c_str(), stdout) >= 0;
    };
    while (written && file.NextOrder(order, list)) {
        progress.Step(++done);
        // Requests on an order are not orders; the error list is another screen's.
        if (list != "today" || order.dwOrderKind == 'C' || order.dwOrderKind == 'U') continue;
        AccountType account = AccountOf(host, order);
        const std::string number = order.csOrderNo.str(), owner = order.csAccount.str(),
                          commodity = g_cszDisplayOrderSymbol(&order, false).str();

        const bool stockOk = g_bCheckStockOrder(account, order);
        std::string boxes;
        for (const auto& box : platform.TakeBoxes()) boxes += (boxes.empty() ? "" : " | ") + OneLine(box.text);
        put({number, owner, commodity, "stock", stockOk ? "PASS" : "REFUSED", boxes});

        CString message;
        const bool insuranceOk = g_bCheckOrderInsurance(account, &order, message);
        put({number, owner, commodity, "insurance", insuranceOk ? "PASS" : "REFUSED",
             insuranceOk ? std::string() : OneLine(message)});
    }
    progress.Clear();
    const std::string summary = Grouped(passed + refused) + " checks: " + Grouped(passed) + " passed, " +
                                Grouped(refused) + " refused\n";
    if (!json) written = written && std::fputs(summary.c_str(), stdout) >= 0;
    if (!written || std::fflush(stdout) != 0) return Failure("check", "standard output: " + SystemReason(errno));
    if (json && !quiet) std::fputs(summary.c_str(), stderr);
    return refused ? kExitFailed : kExitDone;
}

}  // namespace ovcli
