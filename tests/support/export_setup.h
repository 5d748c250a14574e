// What the export tests share: a temporary main folder holding the sample style sheet, a
// substitute host with settable language texts, and a save-as dialog that picks a file in the
// folder.
#pragma once

#include <string>
#include <vector>

#include "host/table_host.h"
#include "support/substitute_host.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ovtest {

struct ExportSetup {
    ExportSetup();   // installs the host, copies the sample "sys/xls_head.txt", accepts the dialog
    ~ExportSetup();
    // The dialog answers with `relative` in the folder.
    void SaveAs(const std::string& relative);
    // The sample style sheet's bytes.
    static std::string SampleHead();
    // The names in a folder below the main folder, sorted.
    std::vector<std::string> Names(const std::string& relative = "") const;

    TempFolder folder;
    TranslatingHost host;
    FakePlatform platform;
};

}  // namespace ovtest
