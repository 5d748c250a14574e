#include "platform/file_system.h"

#include <atomic>
#include <cstdio>
#include <cstring>

#include "platform/detail/native.h"

namespace orderview {

FilePath::FilePath(const char* narrow) : native_(native::FromNarrow(narrow ? narrow : "")) {}
FilePath::FilePath(const std::string& narrow) : native_(native::FromNarrow(narrow)) {}
FilePath::FilePath(const CString& narrow) : native_(native::FromNarrow(narrow.str())) {}
FilePath::FilePath(const wchar_t* wide) : native_(native::FromWide(wide ? wide : L"")) {}
FilePath::FilePath(const std::wstring& wide) : native_(native::FromWide(wide)) {}

FilePath FilePath::FromNative(String native)
{
    FilePath path;
    path.native_ = std::move(native);
    return path;
}

FilePath FilePath::WithSuffix(const char* suffix) const
{
    String native = native_;
    for (; *suffix; ++suffix) native.push_back(static_cast<String::value_type>(*suffix));
    return FromNative(std::move(native));
}

std::string FilePath::Narrow() const { return native::ToNarrow(native_); }

namespace {

std::atomic<unsigned long> g_openAttempts{0};

// Every file the library opens goes through here, so the attempts can be counted.
FILE* OpenCounted(const FilePath& path, const char* mode)
{
    g_openAttempts.fetch_add(1, std::memory_order_relaxed);
    return native::OpenFile(path, mode);
}

}  // namespace

unsigned long detail::FileOpenAttempts() { return g_openAttempts.load(std::memory_order_relaxed); }

// Reads the file into any contiguous byte container: sized once from the file's length, then
// filled by large reads (a file that grows meanwhile is read to its end).
template <class Bytes>
static bool ReadInto(const FilePath& path, Bytes& content)
{
    FILE* file = OpenCounted(path, "rb");
    if (!file) return false;
    Bytes data;
    const std::size_t expected = static_cast<std::size_t>(native::FileLength(file));
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

bool ReadWholeFile(const FilePath& path, std::string& content) { return ReadInto(path, content); }
bool ReadWholeFile(const FilePath& path, std::vector<std::uint8_t>& content) { return ReadInto(path, content); }

MappedFile::MappedFile(const FilePath& path, bool readAll)
{
    g_openAttempts.fetch_add(1, std::memory_order_relaxed);
    if (!native::MapFile(path, data_, size_, handle_, readAll)) data_ = nullptr;
}

MappedFile::~MappedFile()
{
    if (data_) native::UnmapFile(data_, size_, handle_);
}

FileReader::FileReader(const FilePath& path) : file_(OpenCounted(path, "rb"))
{
    if (file_) std::setvbuf(file_, nullptr, _IONBF, 0);
}

FileReader::~FileReader()
{
    if (file_) std::fclose(file_);
}

bool FileReader::ReadAt(std::uint64_t offset, void* data, std::size_t size)
{
    if (!file_) return false;
    if (offset != position_ && !native::SeekTo(file_, offset)) {
        position_ = static_cast<std::uint64_t>(-1);
        return false;
    }
    const std::size_t got = std::fread(data, 1, size, file_);
    position_ = got == size ? offset + got : static_cast<std::uint64_t>(-1);
    return got == size;
}

bool ReplaceFileAtomically(const FilePath& path, const std::string& content)
{
    return ReplaceFileAtomically(path, content.data(), content.size());
}

bool ReplaceFileAtomically(const FilePath& path, const void* data, std::size_t size)
{
    ReplacingFile file(path);
    return file.Write(data, size) && file.Commit();
}

static constexpr std::size_t kWriteBuffer = 1 << 16;

ReplacingFile::ReplacingFile(const FilePath& path) : target_(path)
{
    if (target_.IsEmpty()) return;
    // Only a regular file that may be written is replaced; a folder or a device is left alone.
    const native::PathKind kind = native::KindOf(target_);
    if (kind == native::PathKind::Other || (kind == native::PathKind::RegularFile && !native::IsWritable(target_)))
        return;
    g_openAttempts.fetch_add(1, std::memory_order_relaxed);
    file_ = native::CreateUniqueFile(target_.WithSuffix(".tmp"), temp_);
}

ReplacingFile::~ReplacingFile() { Discard(); }

bool ReplacingFile::Flush()
{
    if (!failed_ && !buffer_.empty())
        failed_ = std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size();
    buffer_.clear();
    return !failed_;
}

bool ReplacingFile::Write(const void* data, std::size_t size)
{
    if (!file_ || failed_) return false;
    size_ += size;
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
    failed_ = std::fwrite(bytes, 1, size, file_) != size;
    return !failed_;
}

bool ReplacingFile::Commit()
{
    if (!file_) return false;
    bool ok = Flush() && std::fflush(file_) == 0;
    // Only a file that replaces another needs to be on disk before the rename: a crash then
    // cannot leave an empty file where the old one was.
    if (ok && native::KindOf(target_) == native::PathKind::RegularFile) ok = native::FlushToDisk(file_);
    if (ok) ok = native::SetNewFilePermissions(file_);
    ok = (std::fclose(file_) == 0) && ok;
    file_ = nullptr;
    if (ok) ok = native::ReplaceFile(temp_, target_);
    if (!ok) native::RemoveFile(temp_);
    temp_ = FilePath();
    return ok;
}

void ReplacingFile::Discard()
{
    if (!file_) return;
    std::fclose(file_);
    file_ = nullptr;
    native::RemoveFile(temp_);
    temp_ = FilePath();
    buffer_.clear();
}

LineReader::LineReader(const FilePath& path) : file_(OpenCounted(path, "rb")) {}

LineReader::~LineReader()
{
    if (file_) std::fclose(file_);
}

namespace {
constexpr std::size_t kLinePart = 1 << 16;
}  // namespace

bool LineReader::Fill()
{
    if (!file_ || failed_) return false;
    if (!buffer_) buffer_.reset(new char[kLinePart]);
    start_ += size_;
    next_ = 0;
    size_ = std::fread(buffer_.get(), 1, kLinePart, file_);
    if (size_ == 0 && std::ferror(file_)) failed_ = true;
    return size_ > 0;
}

bool LineReader::ReadLine(std::string& line)
{
    line.clear();
    lastBreak_ = "";
    if (!file_ || failed_) return false;
    bool any = false;
    for (;;) {
        if (next_ == size_ && !Fill()) return any && !failed_;
        any = true;
        const char* start = buffer_.get() + next_;
        const char* end = buffer_.get() + size_;
        const std::size_t left = static_cast<std::size_t>(end - start);
        const char* lf = static_cast<const char*>(std::memchr(start, '\n', left));
        const char* limit = lf ? lf : end;
        const char* cr = static_cast<const char*>(std::memchr(start, '\r', static_cast<std::size_t>(limit - start)));
        const char* p = cr ? cr : limit;
        line.append(start, static_cast<std::size_t>(p - start));
        next_ += static_cast<std::size_t>(p - start);
        if (p == end) continue;
        ++next_;
        lastBreak_ = *p == '\n' ? "\n" : "\r";
        // A CR followed by LF is one line break, also when the LF starts the next part.
        if (*p == '\r' && (next_ < size_ || Fill()) && buffer_[next_] == '\n') {
            ++next_;
            lastBreak_ = "\r\n";
        }
        return !failed_;
    }
}

bool LineReader::Seek(std::uint64_t offset)
{
    if (!file_) return false;
    if (offset >= start_ && offset <= start_ + size_) {
        next_ = static_cast<std::size_t>(offset - start_);
        return true;
    }
    if (!native::SeekTo(file_, offset)) return false;
    std::clearerr(file_);
    failed_ = false;
    start_ = offset;
    size_ = 0;
    next_ = 0;
    return true;
}

bool PathExists(const FilePath& path) { return native::KindOf(path) != native::PathKind::Missing; }

bool AppendToFile(const FilePath& path, const std::string& content)
{
    FILE* file = OpenCounted(path, "ab");
    if (!file) return false;
    const bool ok = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    return (std::fclose(file) == 0) && ok;
}

}  // namespace orderview
