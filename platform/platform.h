// The platform seam: everything the library needs from the operating system and the host's
// user-interface framework, behind one small interface, so the library runs and is tested
// anywhere. Profile files are implemented portably on top of the file functions here
// (platform/profile_file.h).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"
#include "platform/print.h"

namespace orderview {

// Local date and time, laid out like the Windows SYSTEMTIME.
struct LocalTime {
    std::uint16_t wYear = 0;
    std::uint16_t wMonth = 0;
    std::uint16_t wDayOfWeek = 0;
    std::uint16_t wDay = 0;
    std::uint16_t wHour = 0;
    std::uint16_t wMinute = 0;
    std::uint16_t wSecond = 0;
    std::uint16_t wMilliseconds = 0;
};

// Message box button sets and answers (the Windows values).
constexpr unsigned kMbOk = 0x0, kMbOkCancel = 0x1, kMbYesNoCancel = 0x3, kMbYesNo = 0x4;
constexpr unsigned kMbIconError = 0x10, kMbIconQuestion = 0x20, kMbIconWarning = 0x30,
                   kMbIconInformation = 0x40;
constexpr int kIdOk = 1, kIdCancel = 2, kIdYes = 6, kIdNo = 7;

// What a save-as dialog is asked to show.
struct SaveFileRequest {
    CString csDefaultExt;     // ".xls"
    CString csFileName;       // proposed name, may be empty
    CString csFilter;         // "(*.xls)|*.xls||"
    bool bOverwritePrompt = true;
};

class ORDERVIEW_API IPlatform {
public:
    virtual ~IPlatform();
    // The local clock (GetLocalTime).
    virtual LocalTime GetLocalTime() = 0;
    // A message box with no owner window; returns the answer (kIdOk, kIdYes, ...).
    virtual int MessageBox(const CString& text, const CString& caption, unsigned type) = 0;
    // A save-as dialog; true with the chosen path (backslash form accepted) on OK.
    virtual bool SaveFileDialog(const SaveFileRequest& request, CString& path) = 0;
    // The filter (1-based, in the order of the request's filter string) that was selected when
    // the save-as dialog returned `path`. The default gives the first filter whose pattern
    // matches the file name, or 1 when none does.
    virtual int GetSaveFilterIndex(const SaveFileRequest& request, const CString& path);
    // File names (without folder) matching a wildcard path such as "C:\main\sys\*.ord".
    virtual std::vector<CString> FindFiles(const CString& pattern) = 0;
    // The print dialog: a job on the chosen printer, or null when the user cancels (or no
    // printer can be reached). The default answers null.
    virtual std::unique_ptr<IPrintJob> StartPrintJob(const PrintRequest& request);
};

// The real platform: the system clock and directory listing. On Windows, the system's message
// box and save dialog; elsewhere message boxes are written to standard error and answered with
// the box's default button (OK, or Yes for a yes/no box), and the save dialog is cancelled.
// Everywhere the environment variable ORDERVIEW_SAVE_AS, when set, answers the save dialog.
// The print dialog is answered by the environment variable ORDERVIEW_PRINT_TO, the path of a
// PDF file to print to on A4 paper, when it is set and not empty; otherwise, on Windows, the
// system's print dialog chooses a printer (platform/print.h: the GDI job), and elsewhere the
// dialog is cancelled.
class ORDERVIEW_API SystemPlatform : public IPlatform {
public:
    LocalTime GetLocalTime() override;
    int MessageBox(const CString& text, const CString& caption, unsigned type) override;
    bool SaveFileDialog(const SaveFileRequest& request, CString& path) override;
    int GetSaveFilterIndex(const SaveFileRequest& request, const CString& path) override;
    std::vector<CString> FindFiles(const CString& pattern) override;
    std::unique_ptr<IPrintJob> StartPrintJob(const PrintRequest& request) override;

private:
    int dialogFilterIndex_ = 0;  // the filter the system's dialog reported, 0 when none
};

// A drop-down list of the host's user interface as the library uses it: items with a data value
// and a current selection. The default keeps its items itself; a host may wrap its real control.
}  // namespace orderview

class ORDERVIEW_API CComboBox {
public:
    enum : int { kError = -1 };  // no selection, or an index outside the list

    virtual ~CComboBox();
    virtual int GetCurSel() const { return current_; }
    virtual long GetItemData(int index) const;  // kError for an index outside the list
    int AddString(const CString& text);
    bool SetItemData(int index, long data);
    int SetCurSel(int index);
    int GetCount() const { return static_cast<int>(items_.size()); }

private:
    struct Item {
        CString text;
        long data = 0;
    };
    std::vector<Item> items_;
    int current_ = kError;
};

namespace orderview {

// Installs `platform` process-wide (null reinstalls the SystemPlatform); the caller keeps it alive.
ORDERVIEW_API void SetPlatform(IPlatform* platform);
ORDERVIEW_API IPlatform& GetPlatform();

// Windows-style wildcard match ('*' any run, '?' one character), ignoring ASCII case.
ORDERVIEW_API bool MatchWildcard(const char* pattern, const char* name);

}  // namespace orderview
