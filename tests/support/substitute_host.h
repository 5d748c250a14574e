// The tests' host: every table is fed from code, language texts are their ids unless a test
// sets them, and the main folder is fixed. `InstalledHost` installs any host for a scope and
// `HostTest` is the fixture of tests that run against a substitute host.
#pragma once

#include <gtest/gtest.h>

#include "host/table_host.h"

namespace ovtest {

class SubstituteHost : public orderview::TableHost {
public:
    explicit SubstituteHost(const CString& mainPath = "/tmp/orderview-test") { csMainPath = mainPath; }
};

// Installs `host` as the library's host until the end of the scope, then the built-in one again.
class InstalledHost {
public:
    explicit InstalledHost(orderview::IHostServices& host) { orderview::SetHostServices(&host); }
    ~InstalledHost() { orderview::SetHostServices(nullptr); }
    InstalledHost(const InstalledHost&) = delete;
    InstalledHost& operator=(const InstalledHost&) = delete;
};

// A fixture whose tests run with `host` installed; SetUp may fill its tables first or after.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override { orderview::SetHostServices(&host); }
    void TearDown() override { orderview::SetHostServices(nullptr); }

    SubstituteHost host;
};

}  // namespace ovtest
