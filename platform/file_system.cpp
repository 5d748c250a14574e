#include "platform/file_system.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orderview {

std::string ToNativePath(const CString& path)
{
    std::string native = path.str();
#ifndef _WIN32
    for (char& c : native)
        if (c == '\\') c = '/';
#endif
    return native;
}

// Reads the file into any contiguous byte container: sized once from the file's length, then
// filled by large reads (a file that grows meanwhile is read to its end).
template <class Bytes>
static bool ReadInto(const CString& path, Bytes& content)
{
    FILE* file = std::fopen(ToNativePath(path).c_str(), "rb");
    if (!file) return false;
    Bytes data;
    struct stat st;
    std::size_t expected = 0;
    if (::fstat(::fileno(file), &st) == 0 && st.st_size > 0) expected = static_cast<std::size_t>(st.st_size);
    data.resize(expected);
    std::size_t got = expected ? std::fread(&data[0], 1, expected, file) : 0;
    data.resize(got);
    char chunk[65536];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) data.insert(data.end(), chunk, chunk + n);
    const bool ok = !std::ferror(file);
    std::fclose(file);
    if (ok) content.swap(data);
    return ok;
}

bool ReadWholeFile(const CString& path, std::string& content) { return ReadInto(path, content); }
bool ReadWholeFile(const CString& path, std::vector<std::uint8_t>& content) { return ReadInto(path, content); }

static bool WriteAll(int fd, const char* data, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, data + done, size - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<size_t>(n);
    }
    return true;
}

bool ReplaceFileAtomically(const CString& path, const std::string& content)
{
    return ReplaceFileAtomically(path, content.data(), content.size());
}

bool ReplaceFileAtomically(const CString& path, const void* data, std::size_t size)
{
    ReplacingFile file(path);
    return file.Write(data, size) && file.Commit();
}

static constexpr std::size_t kWriteBuffer = 1 << 16;

ReplacingFile::ReplacingFile(const CString& path) : target_(ToNativePath(path))
{
    if (target_.empty()) return;
    // Only a regular file that may be written is replaced; a folder or a device is left alone.
    struct stat st;
    if (::stat(target_.c_str(), &st) == 0 && (!S_ISREG(st.st_mode) || ::access(target_.c_str(), W_OK) != 0)) return;
    std::string tmp = target_ + ".tmpXXXXXX";
    fd_ = ::mkstemp(&tmp[0]);
    if (fd_ >= 0) temp_ = std::move(tmp);
}

ReplacingFile::~ReplacingFile() { Discard(); }

bool ReplacingFile::Flush()
{
    if (!failed_ && !buffer_.empty()) failed_ = !WriteAll(fd_, buffer_.data(), buffer_.size());
    buffer_.clear();
    return !failed_;
}

bool ReplacingFile::Write(const void* data, std::size_t size)
{
    if (fd_ < 0 || failed_) return false;
    const char* bytes = static_cast<const char*>(data);
    if (buffer_.size() + size <= kWriteBuffer) {
        if (buffer_.capacity() < kWriteBuffer) buffer_.reserve(kWriteBuffer);
        buffer_.append(bytes, size);
        return true;
    }
    if (!Flush()) return false;
    if (size < kWriteBuffer) {
        buffer_.append(bytes, size);
        return true;
    }
    failed_ = !WriteAll(fd_, bytes, size);
    return !failed_;
}

bool ReplacingFile::Commit()
{
    if (fd_ < 0) return false;
    bool ok = Flush();
    // Only a file that replaces another needs to be on disk before the rename: a crash then
    // cannot leave an empty file where the old one was.
    if (ok && ::access(target_.c_str(), F_OK) == 0) ok = ::fsync(fd_) == 0;
    // mkstemp creates the file 0600; give it the usual permissions of a new file.
    if (ok) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ok = ::fchmod(fd_, 0666 & ~mask) == 0;
    }
    ok = (::close(fd_) == 0) && ok;
    fd_ = -1;
    if (ok) ok = std::rename(temp_.c_str(), target_.c_str()) == 0;
    if (!ok) ::unlink(temp_.c_str());
    temp_.clear();
    return ok;
}

void ReplacingFile::Discard()
{
    if (fd_ < 0) return;
    ::close(fd_);
    fd_ = -1;
    ::unlink(temp_.c_str());
    temp_.clear();
    buffer_.clear();
}

bool PathExists(const CString& path)
{
    struct stat st;
    return ::stat(ToNativePath(path).c_str(), &st) == 0;
}

bool AppendToFile(const CString& path, const std::string& content)
{
    FILE* file = std::fopen(ToNativePath(path).c_str(), "ab");
    if (!file) return false;
    const bool ok = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    return (std::fclose(file) == 0) && ok;
}

}  // namespace orderview
