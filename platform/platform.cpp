#include "platform/platform.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "platform/file_system.h"
#include "platform/detail/native.h"

namespace orderview {

// LocalTime is laid out like the Windows SYSTEMTIME: eight 16-bit fields.
static_assert(sizeof(LocalTime) == 16 && offsetof(LocalTime, wDay) == 6 && offsetof(LocalTime, wMilliseconds) == 14,
              "LocalTime layout");

IPlatform::~IPlatform() = default;

std::unique_ptr<IPrintJob> IPlatform::StartPrintJob(const PrintRequest&) { return nullptr; }

LocalTime SystemPlatform::GetLocalTime() { return native::Now(); }

int SystemPlatform::MessageBox(const CString& text, const CString& caption, unsigned type)
{
    int answer = 0;
    if (native::ShowMessageBox(text, caption, type, answer)) return answer;
    std::fprintf(stderr, "[%s] %s\n", caption.GetString(), text.GetString());
    const unsigned buttons = type & 0xF;
    return (buttons == kMbYesNo || buttons == kMbYesNoCancel) ? kIdYes : kIdOk;
}

int IPlatform::GetSaveFilterIndex(const SaveFileRequest& request, const CString& path)
{
    // The filter string alternates names and patterns: "(*.csv)|*.csv|(*.txt)|*.txt||".
    const int a = path.ReverseFind('\\'), b = path.ReverseFind('/');
    const CString name = path.Mid((a > b ? a : b) + 1);
    const std::string& filter = request.csFilter.str();
    int index = 0;
    std::size_t start = 0;
    for (int field = 0; start < filter.size(); ++field) {
        std::size_t end = filter.find('|', start);
        if (end == std::string::npos) end = filter.size();
        if (end == start) break;
        if (field % 2 == 1) {
            ++index;
            if (MatchWildcard(filter.substr(start, end - start).c_str(), name)) return index;
        }
        start = end + 1;
    }
    return 1;
}

bool SystemPlatform::SaveFileDialog(const SaveFileRequest& request, CString& path)
{
    dialogFilterIndex_ = 0;
    const char* chosen = std::getenv("ORDERVIEW_SAVE_AS");
    if (chosen && *chosen) {
        path = chosen;
        return true;
    }
    return native::ShowSaveDialog(request, path, dialogFilterIndex_);
}

int SystemPlatform::GetSaveFilterIndex(const SaveFileRequest& request, const CString& path)
{
    return dialogFilterIndex_ > 0 ? dialogFilterIndex_ : IPlatform::GetSaveFilterIndex(request, path);
}

std::unique_ptr<IPrintJob> SystemPlatform::StartPrintJob(const PrintRequest& request)
{
    const char* chosen = std::getenv("ORDERVIEW_PRINT_TO");
    if (chosen && *chosen) return StartPdfPrintJob(chosen, request);
    return native::ShowPrintDialog(request);
}

std::vector<CString> SystemPlatform::FindFiles(const CString& pattern)
{
    std::vector<CString> names;
    const int cut = [&] {
        const int a = pattern.ReverseFind('\\'), b = pattern.ReverseFind('/');
        return a > b ? a : b;
    }();
    const CString folder = cut >= 0 ? pattern.Left(cut) : CString(".");
    const CString mask = pattern.Mid(cut + 1);
    for (const std::string& name : native::ListFiles(FilePath(folder.IsEmpty() ? CString("/") : folder)))
        if (MatchWildcard(mask, name.c_str())) names.emplace_back(name);
    return names;
}

bool MatchWildcard(const char* pattern, const char* name)
{
    auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; };
    // Iterative match with one backtrack point: linear in practice, never recursive.
    const char* star = nullptr;
    const char* resume = nullptr;
    while (*name) {
        if (*pattern == '*') {
            star = pattern++;
            resume = name;
        } else if (*pattern == '?' || (*pattern && lower(*pattern) == lower(*name))) {
            ++pattern;
            ++name;
        } else if (star) {
            pattern = star + 1;
            name = ++resume;
        } else {
            return false;
        }
    }
    while (*pattern == '*') ++pattern;
    return *pattern == '\0';
}

namespace {
IPlatform* g_platform = nullptr;
}

void SetPlatform(IPlatform* platform) { g_platform = platform; }

IPlatform& GetPlatform()
{
    static SystemPlatform system;
    return g_platform ? *g_platform : system;
}

}  // namespace orderview

CComboBox::~CComboBox() = default;

long CComboBox::GetItemData(int index) const
{
    return (index >= 0 && index < GetCount()) ? items_[static_cast<size_t>(index)].data : static_cast<long>(kError);
}

int CComboBox::AddString(const CString& text)
{
    items_.push_back({text, 0});
    return GetCount() - 1;
}

bool CComboBox::SetItemData(int index, long data)
{
    if (index < 0 || index >= GetCount()) return false;
    items_[static_cast<size_t>(index)].data = data;
    return true;
}

int CComboBox::SetCurSel(int index)
{
    current_ = (index >= 0 && index < GetCount()) ? index : kError;
    return current_;
}
