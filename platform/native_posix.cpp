// The operating system beneath the platform seam, on POSIX systems.
#ifndef _WIN32

#include "platform/native.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <ctime>

namespace orderview {
namespace native {

std::FILE* OpenFile(const std::string& path, const char* mode) { return std::fopen(path.c_str(), mode); }

std::uint64_t FileLength(std::FILE* file)
{
    struct stat st;
    return ::fstat(::fileno(file), &st) == 0 && st.st_size > 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
}

bool SeekTo(std::FILE* file, std::uint64_t offset) { return ::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0; }

PathKind KindOf(const std::string& path)
{
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return PathKind::Missing;
    return S_ISREG(st.st_mode) ? PathKind::RegularFile : PathKind::Other;
}

bool IsWritable(const std::string& path) { return ::access(path.c_str(), W_OK) == 0; }

std::FILE* CreateUniqueFile(const std::string& prefix, std::string& path)
{
    std::string name = prefix + "XXXXXX";
    const int fd = ::mkstemp(&name[0]);
    if (fd < 0) return nullptr;
    std::FILE* file = ::fdopen(fd, "wb");
    if (!file) {
        ::close(fd);
        ::unlink(name.c_str());
        return nullptr;
    }
    path = std::move(name);
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

bool ReplaceFile(const std::string& from, const std::string& to) { return std::rename(from.c_str(), to.c_str()) == 0; }

bool RemoveFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

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

std::vector<std::string> ListFiles(const std::string& folder)
{
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && KindOf(folder + "/" + name) == PathKind::RegularFile) names.push_back(name);
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
std::unique_ptr<IPrintJob> StartMetafileJob(const PrintRequest&, const PrintPaper&, MetafilePageSink) { return nullptr; }

}  // namespace native
}  // namespace orderview

#endif  // _WIN32
