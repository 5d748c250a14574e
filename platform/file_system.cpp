#include "platform/file_system.h"

#include <cstdio>
#include <cstring>

#include "platform/native.h"

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

// Reads the file into any contiguous byte container: sized once from the file's length, then
// filled by large reads (a file that grows meanwhile is read to its end).
template <class Bytes>
static bool ReadInto(const FilePath& path, Bytes& content)
{
    FILE* file = native::OpenFile(path, "rb");
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
    if (!native::MapFile(path, data_, size_, handle_, readAll)) data_ = nullptr;
}

MappedFile::~MappedFile()
{
    if (data_) native::UnmapFile(data_, size_, handle_);
}

FileReader::FileReader(const FilePath& path) : file_(native::OpenFile(path, "rb"))
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

LineReader::LineReader(const FilePath& path) : file_(native::OpenFile(path, "rb")) {}

LineReader::~LineReader()
{
    if (file_) std::fclose(file_);
}

bool LineReader::ReadLine(std::string& line)
{
    line.clear();
    if (!file_) return false;
    bool any = false;
    for (;;) {
        if (next_ == buffer_.size()) {
            buffer_.resize(1 << 16);
            const std::size_t n = std::fread(&buffer_[0], 1, buffer_.size(), file_);
            buffer_.resize(n);
            next_ = 0;
            if (n == 0) return any && !std::ferror(file_);
        }
        any = true;
        const char* start = buffer_.data() + next_;
        const std::size_t left = buffer_.size() - next_;
        const void* lf = std::memchr(start, '\n', left);
        const std::size_t take = lf ? static_cast<std::size_t>(static_cast<const char*>(lf) - start) : left;
        line.append(start, take);
        next_ += take;
        offset_ += take;
        if (lf) {
            ++next_;
            ++offset_;
            return true;
        }
    }
}

bool LineReader::Seek(std::uint64_t offset)
{
    if (!file_ || !native::SeekTo(file_, offset)) return false;
    offset_ = offset;
    buffer_.clear();
    next_ = 0;
    return true;
}

bool PathExists(const FilePath& path) { return native::KindOf(path) != native::PathKind::Missing; }

bool AppendToFile(const FilePath& path, const std::string& content)
{
    FILE* file = native::OpenFile(path, "ab");
    if (!file) return false;
    const bool ok = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    return (std::fclose(file) == 0) && ok;
}

}  // namespace orderview
