#include "cli_support.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace ovcli {

namespace fs = std::filesystem;

namespace {

// The temporary file of the OutputFile being written, removed by the signal handler. The handler
// reads only these (async-signal-safe: unlink, signal, raise).
char g_ownTemp[4096];
volatile std::sig_atomic_t g_ownTempSet = 0;
// A library write is under way: the handler only notes the signal, Poll acts on it.
volatile std::sig_atomic_t g_libraryWrite = 0;
volatile std::sig_atomic_t g_pendingSignal = 0;
std::string g_libraryTarget, g_libraryScratch;

void DieBy(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

extern "C" void OnSignal(int signal)
{
    if (g_ownTempSet) {
        ::unlink(g_ownTemp);
        DieBy(signal);
    } else if (g_libraryWrite) {
        g_pendingSignal = signal;
    } else {
        DieBy(signal);
    }
}

// The folder a path's file is in ("." for a bare name).
fs::path FolderOf(const std::string& path)
{
    const fs::path parent = fs::path(path).parent_path();
    return parent.empty() ? fs::path(".") : parent;
}

bool IsTemporaryName(const std::string& name, const std::string& base)
{
    const std::string prefix = base + ".tmp";
    if (name.size() != prefix.size() + 6 || name.compare(0, prefix.size(), prefix) != 0) return false;
    for (std::size_t i = prefix.size(); i < name.size(); ++i)
        if (!std::isalnum(static_cast<unsigned char>(name[i]))) return false;
    return true;
}

}  // namespace

int UsageError(const char* command, const std::string& message, const char*)
{
    std::fprintf(stderr, "orderview %s: %s\nTry 'orderview %s --help'.\n", command, message.c_str(), command);
    return kExitUsage;
}

int Failure(const char* command, const std::string& message)
{
    std::fprintf(stderr, "orderview %s: %s\n", command, message.c_str());
    return kExitFailed;
}

int ParseOptions(Options& options, int argc, char** argv, const char* command, const char* usage,
                 const std::set<std::string>& valued, std::set<std::string> flags)
{
    flags.insert("help");
    if (!options.Parse(argc, argv, 1, valued, flags)) return UsageError(command, options.Error(), usage);
    if (options.Has("help")) {
        std::fputs(usage, stdout);
        return kExitDone;
    }
    if (!options.Positional().empty())
        return UsageError(command, "unexpected argument '" + options.Positional().front() + "'", usage);
    return -1;
}

std::string SystemReason(int error) { return std::strerror(error); }

std::string MainFolderPath(const std::string& option)
{
    if (!option.empty()) return option;
    const char* home = std::getenv("ORDERVIEW_HOME");
    return home && *home ? home : ".";
}

std::string MainFolderProblem(const std::string& option)
{
    const std::string folder = MainFolderPath(option);
    struct stat st;
    if (::stat(folder.c_str(), &st) != 0) return "main folder " + folder + ": " + SystemReason(errno);
    if (!S_ISDIR(st.st_mode)) return "main folder " + folder + ": " + SystemReason(ENOTDIR);
    const std::string sys = (fs::path(folder) / "sys").string();
    if (::stat(sys.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        return "main folder " + folder + " has no sys folder (" + sys + ")";
    return std::string();
}

std::string OutputProblem(const std::string& path)
{
    if (path == "-") return std::string();
    struct stat st;
    if (::stat(path.c_str(), &st) == 0) {
        if (S_ISDIR(st.st_mode)) return path + ": " + SystemReason(EISDIR);
        if (::access(path.c_str(), W_OK) != 0) return path + ": " + SystemReason(errno);
        // root may write anything; a file without write permission is still not to be replaced.
        if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return path + ": " + SystemReason(EACCES);
    }
    const std::string folder = FolderOf(path).string();
    if (::stat(folder.c_str(), &st) != 0) return path + ": " + SystemReason(errno);
    if (!S_ISDIR(st.st_mode)) return path + ": " + SystemReason(ENOTDIR);
    if (::access(folder.c_str(), W_OK | X_OK) != 0) return path + ": " + SystemReason(errno);
    return std::string();
}

std::string ReadableProblem(const std::string& path)
{
    struct stat st;
    if (::stat(path.c_str(), &st) != 0) return path + ": " + SystemReason(errno);
    if (S_ISDIR(st.st_mode)) return path + ": " + SystemReason(EISDIR);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return path + ": " + SystemReason(errno);
    std::fclose(file);
    return std::string();
}

bool ReadWhole(const std::string& path, std::size_t limit, std::string& text, std::string& error)
{
    text.clear();
    error = ReadableProblem(path);
    if (!error.empty()) return false;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        error = path + ": " + SystemReason(errno);
        return false;
    }
    char buffer[1 << 16];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        if (text.size() + got > limit) {
            std::fclose(file);
            error = path + ": larger than " + std::to_string(limit >> 20) + " MiB";
            return false;
        }
        text.append(buffer, got);
    }
    const bool failed = std::ferror(file) != 0;
    const int reason = errno;
    std::fclose(file);
    if (failed) error = path + ": " + SystemReason(reason);
    return !failed;
}

void RemoveStaleTemporaries(const std::string& target)
{
    if (target == "-") return;
    const std::string base = fs::path(target).filename().string();
    std::error_code error;
    for (fs::directory_iterator it(FolderOf(target), error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (IsTemporaryName(name, base)) {
            std::error_code ignored;
            if (it->is_regular_file(ignored)) fs::remove(it->path(), ignored);
        }
    }
}

OutputFile::~OutputFile() { Discard(); }

bool OutputFile::Open(const std::string& path, std::string& error)
{
    Discard();
    path_ = path;
    if (IsStandardOutput()) {
        stream_ = stdout;
        return true;
    }
    error = OutputProblem(path);
    if (!error.empty()) return false;
    RemoveStaleTemporaries(path);
    std::string name = path + ".tmpXXXXXX";
    if (name.size() >= sizeof g_ownTemp) {
        error = path + ": " + SystemReason(ENAMETOOLONG);
        return false;
    }
    // The handler must know the name as soon as the file exists: hold the signals meanwhile.
    sigset_t held, previous;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    sigaddset(&held, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &held, &previous);
    const int fd = ::mkstemp(&name[0]);
    const int reason = errno;
    if (fd >= 0) {
        std::memcpy(g_ownTemp, name.c_str(), name.size() + 1);
        g_ownTempSet = 1;
    }
    ::sigprocmask(SIG_SETMASK, &previous, nullptr);
    if (fd < 0) {
        error = path + ": " + SystemReason(reason);
        return false;
    }
    temp_ = name;
    stream_ = ::fdopen(fd, "wb");
    if (!stream_) {
        const int reason = errno;
        ::close(fd);
        Discard();
        error = path + ": " + SystemReason(reason);
        return false;
    }
    return true;
}

bool OutputFile::Commit(std::string& error)
{
    if (!stream_) {
        error = path_ + ": not open";
        return false;
    }
    if (IsStandardOutput()) {
        stream_ = nullptr;
        if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
            error = "standard output: " + SystemReason(errno);
            return false;
        }
        return true;
    }
    int reason = 0;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (std::fflush(stream_) != 0 || std::ferror(stream_) || ::fsync(::fileno(stream_)) != 0 ||
        ::fchmod(::fileno(stream_), 0666 & ~mask) != 0)
        reason = errno ? errno : EIO;
    if (std::fclose(stream_) != 0 && !reason) reason = errno;
    stream_ = nullptr;
    if (!reason && std::rename(temp_.c_str(), path_.c_str()) != 0) reason = errno;
    if (reason) {
        Discard();
        error = path_ + ": " + SystemReason(reason);
        return false;
    }
    g_ownTempSet = 0;
    temp_.clear();
    return true;
}

void OutputFile::Discard()
{
    if (stream_ && !IsStandardOutput()) std::fclose(stream_);
    stream_ = nullptr;
    if (!temp_.empty()) ::unlink(temp_.c_str());
    temp_.clear();
    g_ownTempSet = 0;
}

LibraryWriteGuard::LibraryWriteGuard(const std::string& target, const std::string& scratch)
{
    RemoveStaleTemporaries(target);
    g_libraryTarget = target;
    g_libraryScratch = scratch;
    g_pendingSignal = 0;
    g_libraryWrite = 1;
}

LibraryWriteGuard::~LibraryWriteGuard()
{
    g_libraryWrite = 0;
    const int signal = g_pendingSignal;
    if (signal) {
        // The write ended before a row showed the signal: what it left is complete or removed.
        if (!g_libraryScratch.empty()) ::unlink(g_libraryScratch.c_str());
        DieBy(signal);
    }
}

void LibraryWriteGuard::Poll()
{
    const int signal = g_pendingSignal;
    if (!signal || !g_libraryWrite) return;
    // The temporary files of the target were removed when the write began: any there now is
    // this write's.
    RemoveStaleTemporaries(g_libraryTarget);
    if (!g_libraryScratch.empty()) ::unlink(g_libraryScratch.c_str());
    DieBy(signal);
}

HeldSignals::HeldSignals()
{
    g_pendingSignal = 0;
    g_libraryWrite = 1;
}

HeldSignals::~HeldSignals()
{
    g_libraryWrite = 0;
    const int signal = g_pendingSignal;
    if (signal) DieBy(signal);
}

bool HeldSignals::Pending() { return g_pendingSignal != 0; }

void InstallSignalHandlers()
{
    struct sigaction action {};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

OutputMark::OutputMark()
{
    struct stat info;
    if (::fstat(STDOUT_FILENO, &info) != 0 || !S_ISREG(info.st_mode)) return;
    const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);
    if (flags < 0 || (flags & O_ACCMODE) == O_RDONLY) return;
    // Appending writes at the end whatever the offset says; otherwise only a file written at its
    // end can be cut back without losing what stood after the offset.
    const off_t at = (flags & O_APPEND) ? info.st_size : ::lseek(STDOUT_FILENO, 0, SEEK_CUR);
    if (at >= 0 && at == info.st_size) start_ = at;
}

bool OutputMark::TakeBack() const
{
    if (start_ < 0) return false;
    std::fflush(stdout);  // what the stream still holds goes out first, to be cut with the rest
    return ::ftruncate(STDOUT_FILENO, static_cast<off_t>(start_)) == 0;
}

std::string Grouped(unsigned long long count)
{
    std::string digits = std::to_string(count), text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

}  // namespace ovcli
