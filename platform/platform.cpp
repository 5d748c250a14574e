#include "platform/platform.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <sys/stat.h>

#include "platform/file_system.h"

namespace orderview {

IPlatform::~IPlatform() = default;

std::unique_ptr<IPrintJob> IPlatform::StartPrintJob(const PrintRequest&) { return nullptr; }

LocalTime SystemPlatform::GetLocalTime()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm parts{};
    localtime_r(&seconds, &parts);
    LocalTime t;
    t.wYear = static_cast<std::uint16_t>(parts.tm_year + 1900);
    t.wMonth = static_cast<std::uint16_t>(parts.tm_mon + 1);
    t.wDayOfWeek = static_cast<std::uint16_t>(parts.tm_wday);
    t.wDay = static_cast<std::uint16_t>(parts.tm_mday);
    t.wHour = static_cast<std::uint16_t>(parts.tm_hour);
    t.wMinute = static_cast<std::uint16_t>(parts.tm_min);
    t.wSecond = static_cast<std::uint16_t>(parts.tm_sec);
    t.wMilliseconds = static_cast<std::uint16_t>(ms);
    return t;
}

int SystemPlatform::MessageBox(const CString& text, const CString& caption, unsigned type)
{
    std::fprintf(stderr, "[%s] %s\n", caption.GetString(), text.GetString());
    const unsigned buttons = type & 0xF;
    return (buttons == kMbYesNo || buttons == kMbYesNoCancel) ? kIdYes : kIdOk;
}

bool SystemPlatform::SaveFileDialog(const SaveFileRequest&, CString& path)
{
    const char* chosen = std::getenv("ORDERVIEW_SAVE_AS");
    if (!chosen || !*chosen) return false;
    path = chosen;
    return true;
}

std::unique_ptr<IPrintJob> SystemPlatform::StartPrintJob(const PrintRequest& request)
{
    const char* chosen = std::getenv("ORDERVIEW_PRINT_TO");
    if (!chosen || !*chosen) return nullptr;
    return StartPdfPrintJob(chosen, request);
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
    const std::string native = ToNativePath(folder.IsEmpty() ? CString("/") : folder);
    DIR* dir = ::opendir(native.c_str());
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == ".." || !MatchWildcard(mask, name.c_str())) continue;
        struct stat st;
        if (::stat((native + "/" + name).c_str(), &st) == 0 && S_ISREG(st.st_mode)) names.emplace_back(name);
    }
    ::closedir(dir);
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
    return (index >= 0 && index < GetCount()) ? items_[static_cast<size_t>(index)].data : kError;
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
