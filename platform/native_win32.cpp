// The operating system beneath the platform seam, on Windows: files, text conversion, the clock,
// message boxes and the save dialog (printing is in native_win32_print.cpp). Paths are UTF-16
// and go to the wide functions; narrow paths are in the ANSI code page and become UTF-16 through
// MultiByteToWideChar(CP_ACP).
#ifdef _WIN32

#include <windows.h>
#include <commdlg.h>
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>
// windows.h names MessageBox, ReplaceFile and DrawText as macros; the library uses the names.
#undef MessageBox
#undef ReplaceFile
#undef DrawText

#include "platform/detail/native.h"
#include "platform/narrow_text.h"

namespace orderview {
namespace native {

namespace {

// Text in a code page (the ANSI one unless told) as UTF-16; empty when it cannot be converted.
std::wstring Wide(const std::string& text, UINT codePage = CP_ACP)
{
    if (text.empty() || text.size() > 0x7FFFFFFF) return std::wstring();
    const int size = static_cast<int>(text.size());
    const int n = ::MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    if (n <= 0) return std::wstring();
    std::wstring wide(static_cast<size_t>(n), L'\0');
    ::MultiByteToWideChar(codePage, 0, text.data(), size, &wide[0], n);
    return wide;
}

std::string Narrow(const wchar_t* text)
{
    const int n = ::WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (n <= 1) return std::string();
    std::string narrow(static_cast<size_t>(n), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text, -1, &narrow[0], n, nullptr, nullptr);
    narrow.resize(static_cast<size_t>(n - 1));
    return narrow;
}

HANDLE HandleOf(std::FILE* file) { return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(file))); }

}  // namespace

FilePath::String FromNarrow(const std::string& narrow) { return Wide(narrow); }
FilePath::String FromWide(const std::wstring& wide) { return wide; }
std::string ToNarrow(const FilePath::String& native) { return Narrow(native.c_str()); }

std::u16string NarrowToUtf16(std::string_view narrow)
{
    if (narrow.empty() || narrow.size() > 0x7FFFFFFF) return std::u16string();
    const int size = static_cast<int>(narrow.size());
    const int n = ::MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, nullptr, 0);
    if (n <= 0) return std::u16string(narrow.size(), u'\xFFFD');
    std::u16string wide(static_cast<size_t>(n), u'\0');
    ::MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, reinterpret_cast<wchar_t*>(&wide[0]), n);
    return wide;
}

std::string Utf16ToNarrow(std::u16string_view text)
{
    if (text.empty() || text.size() > 0x3FFFFFFF) return std::string();
    const int size = static_cast<int>(text.size());
    const wchar_t* wide = reinterpret_cast<const wchar_t*>(text.data());
    const int n = ::WideCharToMultiByte(CP_ACP, 0, wide, size, nullptr, 0, nullptr, nullptr);
    if (n <= 0) return std::string(text.size(), '?');
    std::string narrow(static_cast<size_t>(n), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, wide, size, &narrow[0], n, nullptr, nullptr);
    return narrow;
}

std::size_t NarrowCharLength(std::string_view text)
{
    if (::GetACP() == CP_UTF8) {
        std::size_t length = 0;
        detail::DecodeUtf8(text, length);
        return length;
    }
    // A double-byte code page: a lead byte and the byte after it make one character.
    const bool lead = ::IsDBCSLeadByteEx(CP_ACP, static_cast<BYTE>(text[0])) != 0;
    return lead && text.size() >= 2 && text[1] != '\0' ? 2 : 1;
}

std::FILE* OpenFile(const FilePath& path, const char* mode)
{
    return ::_wfopen(path.Native().c_str(), Wide(mode).c_str());
}

std::uint64_t FileLength(std::FILE* file)
{
    LARGE_INTEGER size;
    return ::GetFileSizeEx(HandleOf(file), &size) && size.QuadPart > 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool SeekTo(std::FILE* file, std::uint64_t offset) { return ::_fseeki64(file, static_cast<__int64>(offset), SEEK_SET) == 0; }

bool MapFile(const FilePath& path, const std::uint8_t*& data, std::size_t& size, void*& handle, bool)
{
    // Shared as fopen shares a file it reads; once mapped, the file cannot be cut short.
    const HANDLE file = ::CreateFileW(path.Native().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    LARGE_INTEGER length;
    HANDLE mapping = nullptr;
    if (::GetFileType(file) == FILE_TYPE_DISK && ::GetFileSizeEx(file, &length) && length.QuadPart > 0 &&
        static_cast<std::uint64_t>(length.QuadPart) <= SIZE_MAX)
        mapping = ::CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
    ::CloseHandle(file);  // the mapping keeps the file
    if (!mapping) return false;
    const void* view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    ::CloseHandle(mapping);  // and the view keeps the mapping
    if (!view) return false;
    data = static_cast<const std::uint8_t*>(view);
    size = static_cast<std::size_t>(length.QuadPart);
    handle = nullptr;
    return true;
}

void UnmapFile(const std::uint8_t* data, std::size_t, void*) { ::UnmapViewOfFile(data); }

// Large pages need a privilege a trading front end does not hold: plain committed pages.
void* AllocatePageBlock(std::size_t size)
{
    return size ? ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE) : nullptr;
}

void FreePageBlock(void* block, std::size_t)
{
    if (block) ::VirtualFree(block, 0, MEM_RELEASE);
}

PathKind KindOf(const FilePath& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.Native().c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::Missing;
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) ? PathKind::Other : PathKind::RegularFile;
}

bool IsWritable(const FilePath& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.Native().c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_READONLY);
}

std::FILE* CreateUniqueFile(const FilePath& prefix, FilePath& path)
{
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 100; ++attempt) {
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, "%08lx%04x", ::GetCurrentProcessId(),
                      static_cast<unsigned>((++counter + ::GetTickCount()) & 0xFFFF));
        const FilePath name = prefix.WithSuffix(suffix);
        const HANDLE handle = ::CreateFileW(name.Native().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                                            FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) {
            if (::GetLastError() == ERROR_FILE_EXISTS) continue;
            return nullptr;
        }
        const int fd = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY);
        std::FILE* file = fd >= 0 ? ::_fdopen(fd, "wb") : nullptr;
        if (!file) {
            if (fd >= 0) ::_close(fd); else ::CloseHandle(handle);
            ::DeleteFileW(name.Native().c_str());
            return nullptr;
        }
        path = name;
        return file;
    }
    return nullptr;
}

bool FlushToDisk(std::FILE* file) { return std::fflush(file) == 0 && ::FlushFileBuffers(HandleOf(file)); }

bool SetNewFilePermissions(std::FILE*) { return true; }  // a new file inherits its folder's access

bool ReplaceFile(const FilePath& from, const FilePath& to)
{
    return ::MoveFileExW(from.Native().c_str(), to.Native().c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool RemoveFile(const FilePath& path) { return ::DeleteFileW(path.Native().c_str()) != 0; }

LocalTime Now()
{
    SYSTEMTIME st;
    ::GetLocalTime(&st);
    LocalTime t;
    t.wYear = st.wYear;
    t.wMonth = st.wMonth;
    t.wDayOfWeek = st.wDayOfWeek;
    t.wDay = st.wDay;
    t.wHour = st.wHour;
    t.wMinute = st.wMinute;
    t.wSecond = st.wSecond;
    t.wMilliseconds = st.wMilliseconds;
    return t;
}

std::vector<std::string> ListFiles(const FilePath& folder)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(folder.WithSuffix("\\*").Native().c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        if (!(found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)))
            names.push_back(Narrow(found.cFileName));
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
    return names;
}

bool ShowMessageBox(const CString& text, const CString& caption, unsigned type, int& answer)
{
    answer = ::MessageBoxA(nullptr, text.GetString(), caption.GetString(), type);
    return answer != 0;
}

bool ShowSaveDialog(const SaveFileRequest& request, CString& path, int& filterIndex)
{
    // "(*.csv)|*.csv|(*.txt)|*.txt||" becomes the NUL-separated, double-NUL-ended list.
    std::string filter = request.csFilter.str();
    for (char& c : filter)
        if (c == '|') c = '\0';
    filter.push_back('\0');
    char file[MAX_PATH] = {};
    request.csFileName.str().copy(file, MAX_PATH - 1);
    const std::string extension = request.csDefaultExt.GetLength() > 0 && request.csDefaultExt[0] == '.'
                                      ? request.csDefaultExt.Mid(1).str()
                                      : request.csDefaultExt.str();
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.lpstrFilter = filter.c_str();
    dialog.nFilterIndex = 1;
    dialog.lpstrFile = file;
    dialog.nMaxFile = MAX_PATH;
    dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    dialog.Flags = request.bOverwritePrompt ? OFN_OVERWRITEPROMPT : 0;
    if (!::GetSaveFileNameA(&dialog)) return false;
    path = file;
    filterIndex = static_cast<int>(dialog.nFilterIndex);
    return true;
}


}  // namespace native
}  // namespace orderview

#endif  // _WIN32
