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

// Whether anything (file or folder) exists at the path.
ORDERVIEW_API bool PathExists(const CString& path);

// Appends to a file, creating it when missing; false when it cannot be written.
ORDERVIEW_API bool AppendToFile(const CString& path, const std::string& content);

}  // namespace orderview
