// Sets a row's items through one working text, as the row functions do (internal): an item set
// without a new value carries the text that the previous item left.
#pragma once

#include "order_data/records.h"

namespace orderview {
namespace detail {

class RowWriter {
public:
    explicit RowWriter(CBaseOrderItemGroup& row) : row_(row) {}

    // The working text, to format into before Set(key).
    CString& Work() { return work_; }
    // Sets `key` to the working text as it stands.
    void Set(const CString& key) { row_.bSetItemValue(key, work_.GetString(), nullptr, nullptr); }
    // Makes `value` the working text and sets `key` to it.
    void Set(const CString& key, const CString& value)
    {
        work_ = value;
        Set(key);
    }
    void SetInt(const CString& key, int value) { row_.bSetItemValue(key, value, nullptr, nullptr); }
    void SetDouble(const CString& key, double& value) { row_.bSetItemValue(key, value, nullptr, nullptr); }

private:
    CBaseOrderItemGroup& row_;
    CString work_;
};

}  // namespace detail
}  // namespace orderview
