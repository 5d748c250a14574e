// The file-system boundary: paths are built in backslash form everywhere else in the library
// and become native paths only here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/export.h"

namespace orderview {

// The native form of a backslash path ('\' becomes '/' on POSIX systems).
ORDERVIEW_API std::string ToNativePath(const CString& path);

// Reads a whole file; false when it cannot be opened or read.
ORDERVIEW_API bool ReadWholeFile(const CString& path, std::string& content);
ORDERVIEW_API bool ReadWholeFile(const CString& path, std::vector<std::uint8_t>& content);

// Replaces the file with `content` atomically: writes a temporary file in the same folder,
// flushes it to disk and renames it over the old one. On any failure the old file is left as
// it was and false is returned. A missing folder is not created.
ORDERVIEW_API bool ReplaceFileAtomically(const CString& path, const std::string& content);
ORDERVIEW_API bool ReplaceFileAtomically(const CString& path, const void* data, std::size_t size);

// Writes a new file piece by piece, for output too large to hold in memory: the bytes go to a
// temporary file in the target's folder, and Commit flushes it to disk and renames it over the
// target. Until Commit succeeds the target is untouched; a writer destroyed uncommitted, or one
// whose write failed, removes its temporary file. A missing folder is not created.
class ORDERVIEW_API AtomicFileWriter {
public:
    explicit AtomicFileWriter(const CString& path);
    ~AtomicFileWriter();
    AtomicFileWriter(const AtomicFileWriter&) = delete;
    AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;

    // False when the temporary file could not be created or a write has failed.
    bool IsGood() const { return fd_ >= 0 && good_; }
    // Appends bytes (buffered); false once any write has failed.
    bool Write(const void* data, std::size_t size);
    bool Write(const std::string& text) { return Write(text.data(), text.size()); }
    // Bytes written so far.
    std::uint64_t Size() const { return size_; }
    // Makes the file the target; false (target untouched, temporary removed) on any failure.
    bool Commit();
    // Removes the temporary file; the target stays as it was.
    void Abandon();

private:
    bool Flush();

    std::string target_;
    std::string temp_;
    std::string buffer_;
    std::uint64_t size_ = 0;
    int fd_ = -1;
    bool good_ = true;
};

// Whether anything (file or folder) exists at the path.
ORDERVIEW_API bool PathExists(const CString& path);

// Appends to a file, creating it when missing; false when it cannot be written.
ORDERVIEW_API bool AppendToFile(const CString& path, const std::string& content);

}  // namespace orderview
