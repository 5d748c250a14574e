// The tests' host: every table is fed from code, language texts are their ids unless a test
// sets them, and the main folder is fixed.
#pragma once

#include "host/table_host.h"

namespace ovtest {

class SubstituteHost : public orderview::TableHost {
public:
    explicit SubstituteHost(const CString& mainPath = "/tmp/orderview-test") { csMainPath = mainPath; }
};

}  // namespace ovtest
