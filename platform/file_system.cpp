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
    AtomicFileWriter writer(path);
    return writer.Write(data, size) && writer.Commit();
}

namespace {
constexpr std::size_t kWriteChunk = 1 << 16;
}

AtomicFileWriter::AtomicFileWriter(const CString& path) : target_(ToNativePath(path))
{
    if (target_.empty()) return;
    temp_ = target_ + ".tmpXXXXXX";
    fd_ = ::mkstemp(&temp_[0]);
    if (fd_ < 0) temp_.clear();
}

AtomicFileWriter::~AtomicFileWriter() { Abandon(); }

bool AtomicFileWriter::Flush()
{
    if (!IsGood()) return false;
    good_ = WriteAll(fd_, buffer_.data(), buffer_.size());
    buffer_.clear();
    return good_;
}

bool AtomicFileWriter::Write(const void* data, std::size_t size)
{
    if (!IsGood()) return false;
    if (size == 0) return true;
    size_ += size;
    if (buffer_.size() + size > kWriteChunk && !Flush()) return false;
    if (size >= kWriteChunk) {
        good_ = WriteAll(fd_, static_cast<const char*>(data), size);
        return good_;
    }
    buffer_.append(static_cast<const char*>(data), size);
    return true;
}

bool AtomicFileWriter::Commit()
{
    if (!IsGood()) {
        Abandon();
        return false;
    }
    bool ok = Flush() && ::fsync(fd_) == 0;
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

void AtomicFileWriter::Abandon()
{
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temp_.empty()) ::unlink(temp_.c_str());
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
