// The list written for programs: RFC 4180 CSV and JSON Lines, one row at a time.
//
// CSV: the headings, then one record per row; fields holding a comma, a quote, a CR or an LF are
// quoted (quotes doubled); every record ends in CRLF; cells are the texts the list shows
// ("22,886"). An optional UTF-8 byte-order mark comes first.
//
// JSON Lines: the first line describes the columns,
//   {"columns":[{"key":"IDS_ORDER-ITEM_ORDERNO","heading":"..."},...]}
// and each following line is one row, an object from item key to the shown text:
//   {"IDS_ORDER-ITEM_ORDERNO":"K3199",...}
// Keys are the item keys `--columns` takes; bytes that are not UTF-8 become U+FFFD.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "line_output.h"
#include "order_list.h"

namespace ovcli {

class Progress;

// Appends `text` to `out` as a CSV field.
void AppendCsvField(std::string& out, std::string_view text);
// Appends `text` to `out` as a JSON string (quotes included).
void AppendJsonString(std::string& out, std::string_view text);
// {"columns":[{"key":K,"heading":H},...]}
std::string JsonColumnsLine(const std::vector<std::string>& keys, const std::vector<std::string>& headings);

// Write the list to `out`, its rows in order; false when a write failed. `keys` name the list's
// columns in order. `progress` (when set) counts the rows written.
bool WriteCsv(const OrderList& list, LineOutput& out, bool byteOrderMark, Progress* progress);
bool WriteJsonLines(const OrderList& list, const std::vector<std::string>& keys, LineOutput& out,
                    Progress* progress);

}  // namespace ovcli
