// The operating system beneath the platform seam, on POSIX systems.
#ifndef _WIN32

#include "platform/detail/native.h"
#include "platform/narrow_text.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <ctime>

namespace orderview {
namespace native {

FilePath::String FromNarrow(const std::string& narrow)
{
    std::string native = narrow;
    for (char& c : native)
        if (c == '\\') c = '/';
    return native;
}

// wchar_t holds code points here; they become UTF-8 (a value that is no code point becomes U+FFFD).
FilePath::String FromWide(const std::wstring& wide)
{
    std::string native;
    native.reserve(wide.size());
    for (const wchar_t w : wide) {
        char32_t c = static_cast<char32_t>(w);
        if (c == U'\\') c = U'/';
        if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
        if (c < 0x80) {
            native.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            native.push_back(static_cast<char>(0xC0 | (c >> 6)));
            native.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            native.push_back(static_cast<char>(0xE0 | (c >> 12)));
            native.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            native.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            native.push_back(static_cast<char>(0xF0 | (c >> 18)));
            native.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
            native.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            native.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return native;
}

std::string ToNarrow(const FilePath::String& native) { return native; }

std::u16string NarrowToUtf16(std::string_view narrow) { return detail::Utf8ToUtf16(narrow); }
std::string Utf16ToNarrow(std::u16string_view text) { return detail::Utf16ToUtf8(text); }
std::size_t NarrowCharLength(std::string_view text)
{
    std::size_t length = 0;
    detail::DecodeUtf8(text, length);
    return length;
}

std::FILE* OpenFile(const FilePath& path, const char* mode) { return std::fopen(path.Native().c_str(), mode); }

std::uint64_t FileLength(std::FILE* file)
{
    struct stat st;
    return ::fstat(::fileno(file), &st) == 0 && st.st_size > 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
}

bool SeekTo(std::FILE* file, std::uint64_t offset) { return ::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0; }

bool MapFile(const FilePath& path, const std::uint8_t*& data, std::size_t& size, void*& handle, bool populate)
{
    const int fd = ::open(path.Native().c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st;
    void* view = MAP_FAILED;
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0 &&
        static_cast<std::uint64_t>(st.st_size) <= SIZE_MAX) {
        size = static_cast<std::size_t>(st.st_size);
        int flags = MAP_PRIVATE;
#ifdef MAP_POPULATE
        if (populate) flags |= MAP_POPULATE;  // the whole file is read: map its pages in one call
#endif
        view = ::mmap(nullptr, size, PROT_READ, flags, fd, 0);
    }
    ::close(fd);  // the mapping keeps the file
    if (view == MAP_FAILED) return false;
    data = static_cast<const std::uint8_t*>(view);
    handle = nullptr;
    return true;
}

void UnmapFile(const std::uint8_t* data, std::size_t size, void*)
{
    ::munmap(const_cast<std::uint8_t*>(data), size);
}

void* AllocatePageBlock(std::size_t size)
{
    // Mapped one block larger and trimmed, so that the block starts on a large-page boundary.
    if (size == 0 || size > SIZE_MAX - kPageBlockSize) return nullptr;
    const std::size_t span = size + kPageBlockSize;
    void* raw = ::mmap(nullptr, span, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED) return nullptr;
    const auto start = reinterpret_cast<std::uintptr_t>(raw);
    const std::uintptr_t block = (start + kPageBlockSize - 1) & ~(std::uintptr_t(kPageBlockSize) - 1);
    if (block > start) ::munmap(raw, block - start);
    if (start + span > block + size) ::munmap(reinterpret_cast<void*>(block + size), start + span - (block + size));
#ifdef MADV_HUGEPAGE
    ::madvise(reinterpret_cast<void*>(block), size, MADV_HUGEPAGE);  // a hint: refused, it costs nothing
#endif
    return reinterpret_cast<void*>(block);
}

void FreePageBlock(void* block, std::size_t size)
{
    if (block) ::munmap(block, size);
}

PathKind KindOf(const FilePath& path)
{
    struct stat st;
    if (::stat(path.Native().c_str(), &st) != 0) return PathKind::Missing;
    return S_ISREG(st.st_mode) ? PathKind::RegularFile : PathKind::Other;
}

bool IsWritable(const FilePath& path) { return ::access(path.Native().c_str(), W_OK) == 0; }

std::FILE* CreateUniqueFile(const FilePath& prefix, FilePath& path)
{
    std::string name = prefix.Native() + "XXXXXX";
    const int fd = ::mkstemp(&name[0]);
    if (fd < 0) return nullptr;
    std::FILE* file = ::fdopen(fd, "wb");
    if (!file) {
        ::close(fd);
        ::unlink(name.c_str());
        return nullptr;
    }
    path = FilePath::FromNative(std::move(name));
    return file;
}

bool FlushToDisk(std::FILE* file) { return std::fflush(file) == 0 && ::fsync(::fileno(file)) == 0; }

bool SetNewFilePermissions(std::FILE* file)
{
    // mkstemp creates the file 0600; a new file of the user is 0666 less the umask.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return ::fchmod(::fileno(file), 0666 & ~mask) == 0;
}

bool ReplaceFile(const FilePath& from, const FilePath& to)
{
    return std::rename(from.Native().c_str(), to.Native().c_str()) == 0;
}

bool RemoveFile(const FilePath& path) { return ::unlink(path.Native().c_str()) == 0; }

LocalTime Now()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
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

std::vector<std::string> ListFiles(const FilePath& folder)
{
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.Native().c_str());
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && KindOf(FilePath::FromNative(folder.Native() + "/" + name)) == PathKind::RegularFile) names.push_back(name);
    }
    ::closedir(dir);
    return names;
}

// No desktop to show a box or a dialog on.
bool ShowMessageBox(const CString&, const CString&, unsigned, int&) { return false; }
bool ShowSaveDialog(const SaveFileRequest&, CString&, int&) { return false; }

// No GDI: printing goes through the PDF job.
std::unique_ptr<IPrintJob> ShowPrintDialog(const PrintRequest&) { return nullptr; }
std::unique_ptr<IPrintJob> StartDeviceContextJob(void*, const PrintRequest&, const void*) { return nullptr; }
std::vector<FilePath> PrintFontFiles()
{
    // Debian's and most distributions' packages: AR PL UMing (Traditional Chinese first in the
    // collection), Droid Sans Fallback, WenQuanYi Zen Hei, AR PL UKai; then macOS.
    return {"/usr/share/fonts/truetype/arphic/uming.ttc",
            "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf",
            "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc",
            "/usr/share/fonts/truetype/arphic/ukai.ttc",
            "/usr/share/fonts/arphic-uming/uming.ttc",
            "/usr/share/fonts/google-droid/DroidSansFallbackFull.ttf",
            "/Library/Fonts/Arial Unicode.ttf",
            "/System/Library/Fonts/Supplemental/Arial Unicode.ttf"};
}

std::unique_ptr<IPrintJob> StartMetafileJob(const PrintRequest&, const PrintPaper&, MetafilePageSink) { return nullptr; }

}  // namespace native
}  // namespace orderview

#endif  // _WIN32
