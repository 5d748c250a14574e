// The platform the program installs: the system clock and directory listing, message boxes
// recorded and answered by a policy (no one is at the screen), and the save dialog answered
// with the path given on the command line.
#pragma once

#include <vector>

#include "platform/platform.h"
#include "platform/print.h"

namespace ovcli {

class ConsolePlatform : public orderview::IPlatform {
public:
    struct Box {
        CString text;
        unsigned type;
    };

    // Installs itself; `answerYes` answers Yes/No questions.
    explicit ConsolePlatform(bool answerYes = true);
    ~ConsolePlatform() override;  // reinstalls the system platform

    // The path the save dialog answers with (empty: the dialog is cancelled), and the filter
    // (1-based, in the dialog's filter string) it reports as chosen.
    void AnswerSaveDialog(const CString& path, int filterIndex);
    // The PDF file the print dialog answers with (empty: the dialog is cancelled).
    void AnswerPrintDialog(const CString& path) { printPath_ = path; }
    // Message boxes shown since the last call.
    std::vector<Box> TakeBoxes();

    orderview::LocalTime GetLocalTime() override { return system_.GetLocalTime(); }
    int MessageBox(const CString& text, const CString& caption, unsigned type) override;
    bool SaveFileDialog(const orderview::SaveFileRequest& request, CString& path) override;
    int GetSaveFilterIndex(const orderview::SaveFileRequest&, const CString&) override { return filterIndex_; }
    std::vector<CString> FindFiles(const CString& pattern) override { return system_.FindFiles(pattern); }
    std::unique_ptr<orderview::IPrintJob> StartPrintJob(const orderview::PrintRequest& request) override;

private:
    orderview::SystemPlatform system_;
    bool answerYes_;
    CString savePath_;
    CString printPath_;
    int filterIndex_ = 1;
    std::vector<Box> boxes_;
};

}  // namespace ovcli
