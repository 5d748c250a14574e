// The tests' host: every table is fed from code, language texts are their ids unless a test
// sets them (`TranslatingHost`), and the main folder is fixed. `InstalledHost` installs any host for a scope and
// `HostTest` is the fixture of tests that run against a substitute host.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "host/table_host.h"

namespace ovtest {

class SubstituteHost : public orderview::TableHost {
public:
    explicit SubstituteHost(const CString& mainPath = "/tmp/orderview-test") { csMainPath = mainPath; }
};

// A substitute host whose language texts a test sets; other ids show as themselves.
class TranslatingHost : public SubstituteHost {
public:
    using SubstituteHost::SubstituteHost;
    std::map<CString, CString> texts;

protected:
    CString LookUpLanguage(const CString& id) override
    {
        const auto found = texts.find(id);
        return found == texts.end() ? id : found->second;
    }
};

// Installs `host` as the library's host until the end of the scope, then the host installed
// before it again (the built-in one at the outermost scope), so guards nest.
class InstalledHost {
public:
    explicit InstalledHost(orderview::IHostServices& host) : previous_(Current()) { Install(&host); }
    ~InstalledHost() { Install(previous_); }
    InstalledHost(const InstalledHost&) = delete;
    InstalledHost& operator=(const InstalledHost&) = delete;

private:
    // The host the innermost guard installed; tests install hosts only through guards.
    static orderview::IHostServices*& Current()
    {
        static orderview::IHostServices* current = nullptr;
        return current;
    }
    static void Install(orderview::IHostServices* host)
    {
        Current() = host;
        orderview::SetHostServices(host);
    }
    orderview::IHostServices* previous_;
};

// A fixture whose tests run with `host` installed; SetUp may fill its tables first or after.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override { installed_.emplace(host); }
    void TearDown() override { installed_.reset(); }

    SubstituteHost host;

private:
    std::optional<InstalledHost> installed_;
};

}  // namespace ovtest
