// The file-system boundary: paths are built in backslash form everywhere else in the library
// and become native paths only here.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

namespace orderview {

// A file's path as the operating system takes it: UTF-16 on Windows, bytes elsewhere. Narrow
// paths are text in the local code page (the ANSI code page on Windows); wide paths reach the
// system as they are on Windows and as UTF-8 elsewhere, so a name the code page cannot hold
// still opens. '\' separates folders everywhere ('/' on POSIX systems too).
class ORDERVIEW_API FilePath {
public:
#ifdef _WIN32
    using String = std::wstring;
#else
    using String = std::string;
#endif
    FilePath() = default;
    FilePath(const char* narrow);
    FilePath(const std::string& narrow);
    FilePath(const CString& narrow);
    FilePath(const wchar_t* wide);
    FilePath(const std::wstring& wide);
    // A path already in the system's form.
    static FilePath FromNative(String native);

    const String& Native() const { return native_; }
    bool IsEmpty() const { return native_.empty(); }
    // The path with an ASCII suffix appended to its last name ("x.ini" + ".tmp").
    FilePath WithSuffix(const char* suffix) const;
    // The path as narrow text in the local code page (a character the code page lacks becomes '?').
    std::string Narrow() const;

private:
    String native_;
};

// Reads a whole file; false when it cannot be opened or read.
ORDERVIEW_API bool ReadWholeFile(const FilePath& path, std::string& content);
ORDERVIEW_API bool ReadWholeFile(const FilePath& path, std::vector<std::uint8_t>& content);

// A whole file's bytes mapped read-only into memory while the object lives, so that a reader
// parses them where they are instead of copying them. IsOpen is false when the file cannot be
// opened or mapped, or is empty; the caller then reads it with ReadWholeFile. While mapped the
// file cannot be cut short on Windows; on POSIX systems a file cut short by another process
// while it is mapped ends this one (SIGBUS), so map a file only to read it at once, and let go.
class ORDERVIEW_API MappedFile {
public:
    // `readAll`: the caller reads every byte, so the pages are mapped at once where the system
    // can; otherwise each page is mapped when first read.
    explicit MappedFile(const FilePath& path, bool readAll = true);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    bool IsOpen() const { return data_ != nullptr; }
    const std::uint8_t* Data() const { return data_; }
    std::size_t Size() const { return size_; }

private:
    const std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
    void* handle_ = nullptr;
};

// A regular file opened to read parts of it at any offset. Reads are not buffered: each goes to
// the system straight into the caller's memory. IsOpen is false when the file cannot be opened.
class ORDERVIEW_API FileReader {
public:
    explicit FileReader(const FilePath& path);
    ~FileReader();
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    bool IsOpen() const { return file_ != nullptr; }
    // Reads `size` bytes from `offset`; false when the file cannot give them all.
    bool ReadAt(std::uint64_t offset, void* data, std::size_t size);

private:
    std::FILE* file_ = nullptr;
    std::uint64_t position_ = static_cast<std::uint64_t>(-1);  // where a read starts without a seek
};

// A file written under a temporary name beside `path` and renamed over `path` by Commit, so a
// failure half-way (a write error, a full disk) leaves whatever was at `path` untouched. Writes
// are buffered. The file cannot be opened when `path` is in a missing folder or names something
// other than a regular file that may be written (a folder, a device, a read-only file). Destroyed uncommitted, it removes the
// temporary file. Replacing an existing file flushes the new one to disk before the rename.
class ORDERVIEW_API ReplacingFile {
public:
    explicit ReplacingFile(const FilePath& path);
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    bool IsOpen() const { return file_ != nullptr; }
    // Open, and no write has failed.
    bool IsGood() const { return file_ != nullptr && !failed_; }
    // False once any write failed; later writes are dropped.
    bool Write(const void* data, std::size_t size);
    bool Write(const std::string& text) { return Write(text.data(), text.size()); }
    // Puts the file in place; false (and the target untouched) when anything failed.
    bool Commit();
    // Removes the temporary file; the target stays as it was.
    void Discard();
    // Bytes written so far.
    std::uint64_t Size() const { return size_; }

private:
    bool Flush();

    FilePath target_, temp_;
    std::string buffer_;
    std::FILE* file_ = nullptr;
    std::uint64_t size_ = 0;
    bool failed_ = false;
};

// Replaces the file with `content` atomically: writes a temporary file in the same folder,
// flushes it to disk and renames it over the old one. On any failure the old file is left as
// it was and false is returned. A missing folder is not created.
ORDERVIEW_API bool ReplaceFileAtomically(const FilePath& path, const std::string& content);
ORDERVIEW_API bool ReplaceFileAtomically(const FilePath& path, const void* data, std::size_t size);

// Reads a text file line by line with a byte offset for each line, so a reader can come back to
// a line it has passed. Lines end at LF, CR LF or a CR alone; the line break is not part of the
// line. The file is read in large parts into one buffer that is kept: coming back to an offset
// within the part held costs no read.
class ORDERVIEW_API LineReader {
public:
    explicit LineReader(const FilePath& path);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool IsOpen() const { return file_ != nullptr; }
    // The next line without its line break; false at the end of the file or on a read error.
    bool ReadLine(std::string& line);
    // The offset of the next line.
    std::uint64_t Tell() const { return start_ + next_; }
    // Goes back (or forward) to an offset that Tell gave.
    bool Seek(std::uint64_t offset);
    // The line break that ended the line read last ("\n", "\r\n", "\r"; empty at the end).
    const char* LastBreak() const { return lastBreak_; }

private:
    // Reads the part of the file after the one held; false at the end or on an error.
    bool Fill();

    std::FILE* file_ = nullptr;
    std::unique_ptr<char[]> buffer_;  // allocated on the first read
    std::size_t size_ = 0;            // bytes held
    std::size_t next_ = 0;            // first unread byte
    std::uint64_t start_ = 0;         // file offset of the first byte held
    bool failed_ = false;
    const char* lastBreak_ = "";
};

// Whether anything (file or folder) exists at the path.
ORDERVIEW_API bool PathExists(const FilePath& path);

// Appends to a file, creating it when missing; false when it cannot be written.
ORDERVIEW_API bool AppendToFile(const FilePath& path, const std::string& content);

namespace detail {
// How many times the library has tried to open, map or create a file since it was loaded.
ORDERVIEW_API unsigned long FileOpenAttempts();
}  // namespace detail

}  // namespace orderview
