// The day's orders ("orders.csv") and deals ("deals.csv") of a main folder, read one record at a
// time, so that a day of any size can be gone through holding one record. The default host loads
// its order tables with it; a program that lists or exports a large day reads them itself.
//
// The files are the default host's CSV tables: a header row naming the fields (order fields by
// their names, for orders.csv also the column "list", "today" or "error"; deals.csv holds the
// order's fields and the deal's own), one record a row.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/export.h"
#include "order_data/records.h"
#include "platform/file_system.h"

namespace orderview {

class ORDERVIEW_API RecordFile {
public:
    enum class Kind { Orders, Deals };

    // Opens `path` and reads its header; `name` ("orders.csv") heads the diagnostics. A missing
    // file reads as empty; a header without the "list" column of an order table reads nothing.
    RecordFile(const CString& path, const std::string& name, Kind kind);

    // The next well-formed order and its list, or deal; false at the end. A malformed record is
    // reported to Diagnostics() as "<name>:<line>: <message>" and skipped.
    bool NextOrder(CBaseOrder_OrderInfo& order, std::string& list);
    bool NextDeal(CBaseOrder_DealInfo& deal);

    // Where the next record starts, and a way back to it: Seek(Tell()) before a Next reads that
    // record again. Records read again after a Seek are not reported a second time.
    std::uint64_t Tell() const { return lines_.Tell(); }
    bool Seek(std::uint64_t offset);

    const std::vector<CString>& Diagnostics() const { return diagnostics_; }

private:
    // The next record's fields; false at the end.
    bool NextFields(std::vector<std::string>& fields, int& line);
    void Report(int line, const std::string& message);
    template <class Record, class SetField>
    bool Fill(Record& record, const std::vector<std::string>& fields, int line, SetField setField);

    LineReader lines_;
    std::string name_;
    Kind kind_;
    std::vector<std::string> header_;
    int listColumn_ = -1;
    int line_ = 0;              // lines read, while reading straight through
    bool sequential_ = true;    // false after a Seek: line numbers are unknown, nothing is reported
    bool usable_ = false;
    std::vector<CString> diagnostics_;
};

}  // namespace orderview
