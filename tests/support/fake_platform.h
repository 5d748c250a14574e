// A platform for tests: a clock the test sets, message boxes recorded and answered from a
// queue (then with a fixed answer), scripted save-as and print dialogs, and the real directory
// listing.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/platform.h"

namespace ovtest {

class FakePlatform : public orderview::IPlatform {
public:
    struct Box {
        CString text;
        CString caption;
        unsigned type;
    };

    FakePlatform();   // installs itself
    ~FakePlatform() override;  // reinstalls the system platform

    void SetDate(int year, int month, int day, int hour = 9, int minute = 0, int second = 0);

    orderview::LocalTime now;
    std::vector<Box> boxes;
    std::deque<int> answers;   // answered first to last
    int defaultAnswer = orderview::kIdOk;
    bool saveAccepted = false;
    CString savePath;
    std::vector<orderview::SaveFileRequest> saveRequests;
    int saveFilterIndex = 0;   // the selected filter; 0 lets the chosen file name decide
    // The print dialog's answer: a job, or null (the default) for a cancelled dialog.
    std::function<std::unique_ptr<orderview::IPrintJob>(const orderview::PrintRequest&)> printDialog;
    std::vector<orderview::PrintRequest> printRequests;

    orderview::LocalTime GetLocalTime() override { return now; }
    int MessageBox(const CString& text, const CString& caption, unsigned type) override;
    bool SaveFileDialog(const orderview::SaveFileRequest& request, CString& path) override;
    int GetSaveFilterIndex(const orderview::SaveFileRequest& request, const CString& path) override;
    std::vector<CString> FindFiles(const CString& pattern) override;
    std::unique_ptr<orderview::IPrintJob> StartPrintJob(const orderview::PrintRequest& request) override;
};

}  // namespace ovtest
