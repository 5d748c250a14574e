// What the default host makes of any bytes in its order table: every line either belongs to an
// order that was read or is reported with its line, and the host's own reading agrees with the
// table reader's. Shared by the fuzz target and the regression test of the kept inputs.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "host/default_host.h"
#include "host/record_file.h"

namespace ovfuzz {

// The lines of `text` as the tables count them (LF, CR LF or CR end a line): for each, whether
// it holds anything a record could be read from (not blank, not a comment).
inline std::vector<bool> CountedLines(const std::string& text)
{
    std::vector<bool> lines;
    std::string line;
    auto close = [&] {
        const bool first = lines.empty();
        std::string body = first && line.compare(0, 3, "\xEF\xBB\xBF") == 0 ? line.substr(3) : line;
        lines.push_back(!body.empty() && body[0] != '#');
        line.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || text[i] == '\r') {
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            close();
        } else {
            line += text[i];
        }
    }
    if (!line.empty()) close();
    return lines;
}

// The order table a fuzz input stands for: its first byte chooses whether a well-formed header
// row comes first, so most inputs reach the records; the rest is the table's bytes.
inline std::string OrderTableOf(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return std::string();
    std::string table;
    if (data[0] % 2 == 0) table = "list,csOrderNo,csAccount,dwOrderQty,csStatusMsg\n";
    table.append(reinterpret_cast<const char*>(data + 1), size - 1);
    return table;
}

// Writes `table` as the orders of a fresh main folder and checks what the readers make of it.
// Returns an empty string when every property holds, else what failed.
inline std::string CheckOrderTable(const std::string& table, const std::string& folder)
{
    std::filesystem::create_directories(folder + "/sys");
    const std::string path = folder + "/sys/orders.csv";
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(table.data(), static_cast<std::streamsize>(table.size()));
    }
    orderview::RecordFile file(CString(path), "orders.csv", orderview::RecordFile::Kind::Orders);
    const int headerEnd = file.RecordLastLine();  // the header's last line (0: no header)
    CBaseOrder_OrderInfo order;
    std::string list;
    std::set<int> covered;
    std::size_t today = 0, error = 0;
    while (file.NextOrder(order, list)) {
        if (file.RecordLine() < 1 || file.RecordLastLine() < file.RecordLine()) return "a record without its lines";
        for (int l = file.RecordLine(); l <= file.RecordLastLine(); ++l) covered.insert(l);
        (list == "today" ? today : error) += 1;
    }
    std::set<int> reported;
    for (const CString& d : file.Diagnostics()) {
        const std::string text = d.str();
        if (text.rfind("orders.csv:", 0) != 0) return "a diagnostic without its file: " + text;
        reported.insert(std::atoi(text.c_str() + 11));
    }
    // A table without a usable header is reported once, at the header, and read no further.
    bool unusable = false;
    for (const CString& d : file.Diagnostics()) unusable |= d.Find(": missing column list") >= 0;
    const std::vector<bool> lines = CountedLines(table);
    for (std::size_t i = static_cast<std::size_t>(headerEnd); !unusable && i < lines.size(); ++i) {
        const int line = static_cast<int>(i) + 1;
        if (lines[i] && !covered.count(line) && !reported.count(line))
            return "line " + std::to_string(line) + " is neither read nor reported";
    }
    // The host reads the same orders and reports the same lines.
    orderview::DefaultHost host(CString(folder.c_str()));
    const std::vector<CString>& diagnostics = host.Diagnostics();
    if (host.vecTodayOrders.size() != today || host.vecErrorOrders.size() != error) return "the host read other orders";
    if (diagnostics != file.Diagnostics()) return "the host reported other lines";
    return std::string();
}

}  // namespace ovfuzz
