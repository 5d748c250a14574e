// The day's orders ("orders.csv") and deals ("deals.csv") of a main folder, read one record at a
// time, so that a day of any size can be gone through holding one record. The default host loads
// its order tables with it; a program that lists or exports a large day reads them itself.
//
// The files are the default host's CSV tables: a header row naming the fields (order fields by
// their names, for orders.csv also the column "list", "today" or "error"; deals.csv holds the
// order's fields and the deal's own), one record a row.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "order_data/records.h"
#include "platform/file_system.h"

namespace orderview {

namespace detail {
class CsvReader;
struct RecordColumns;
struct CsvRecord {
    int line = 0;                     // line where the record starts
    int lastLine = 0;                 // and where it ends (a quoted field may hold line breaks)
    std::vector<std::string> fields;
};
// A record as it is read: its fields are views into the reader's line or into `texts` (quoted
// fields, records over several lines), valid until the next record is read.
struct CsvFields {
    int line = 0;
    int lastLine = 0;
    std::vector<std::string_view> fields;
    std::vector<std::string> texts;
};
}  // namespace detail

class ORDERVIEW_API RecordFile {
public:
    enum class Kind { Orders, Deals };

    // Opens `path` and reads its header; `name` ("orders.csv") heads the diagnostics. A missing
    // file reads as empty; a header without the "list" column of an order table reads nothing.
    RecordFile(const CString& path, const std::string& name, Kind kind);
    ~RecordFile();
    RecordFile(RecordFile&&) noexcept;
    RecordFile& operator=(RecordFile&&) noexcept;

    // The next well-formed order and its list, or deal; false at the end. A malformed record is
    // reported to Diagnostics() as "<name>:<line>: <message>" and skipped; the tables' CSV is
    // read as the default host reads all its tables (host/csv_reader.h), so no line is lost
    // without a diagnostic.
    bool NextOrder(CBaseOrder_OrderInfo& order, std::string& list);
    bool NextDeal(CBaseOrder_DealInfo& deal);
    // The same, checking every value but keeping none: for going through a day to learn where
    // its records are (Tell before the call), at a fraction of the cost of reading them.
    bool SkipOrder(std::string& list);
    bool SkipDeal();

    // Where the next record starts, and a way back to it: Seek(Tell()) before a Next reads that
    // record again. Records read again after a Seek are not reported a second time.
    std::uint64_t Tell() const;
    bool Seek(std::uint64_t offset);

    const std::vector<CString>& Diagnostics() const;
    // The lines the record read last starts and ends on (0 after a Seek: lines are unknown).
    int RecordLine() const { return fields_.line; }
    int RecordLastLine() const { return fields_.lastLine; }

private:
    // Fills `order` (and, for a deal table, `deal`, whose order part `order` is) from the fields
    // of the record just read; false, with the record rejected and reported, when the field
    // count or a value is wrong.
    // Without `keep`, text fields are not set and the record is not cleared first: the values
    // are only checked.
    bool Fill(CBaseOrder_OrderInfo& order, CBaseOrder_DealInfo* deal, bool keep);
    bool ReadOrder(CBaseOrder_OrderInfo* order, std::string& list);
    bool ReadDeal(CBaseOrder_DealInfo& deal, bool keep);

    std::unique_ptr<detail::CsvReader> reader_;
    std::unique_ptr<detail::RecordColumns> columns_;  // how each column is set, found from the header
    detail::CsvFields fields_;
    Kind kind_;
    std::vector<std::string> header_;
    int listColumn_ = -1;
    bool usable_ = false;
};

}  // namespace orderview
