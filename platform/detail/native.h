// The operating system beneath the platform seam (internal): the only place that calls POSIX or
// Win32. native_posix.cpp and native_win32.cpp each implement it; every other file of the
// library is standard C++. Paths are FilePath values, already in the system's form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "platform/detail/page_block.h"
#include "platform/platform.h"

namespace orderview {
namespace native {

// A narrow path in the local code page, and a wide one, in the system's form.
FilePath::String FromNarrow(const std::string& narrow);
FilePath::String FromWide(const std::wstring& wide);
// The system's form as narrow text in the local code page.
std::string ToNarrow(const FilePath::String& native);

// Narrow text in the process's code page to UTF-16 and back, and the length of the narrow
// character that starts a non-empty text (platform/narrow_text.h).
std::u16string NarrowToUtf16(std::string_view narrow);
std::string Utf16ToNarrow(std::u16string_view text);
std::size_t NarrowCharLength(std::string_view text);

// Opens a file with fopen's modes ("rb", "ab", ...).
std::FILE* OpenFile(const FilePath& path, const char* mode);
// The length of an open file, or 0 when it cannot be told.
std::uint64_t FileLength(std::FILE* file);
// Moves to a byte offset from the start (files past 2 GiB included).
bool SeekTo(std::FILE* file, std::uint64_t offset);

// Maps a whole regular file read-only; `data` and `size` describe the bytes and `handle` what
// UnmapFile needs. With `populate`, the pages are mapped at once where the system can. False when
// the file cannot be opened or mapped, or is empty.
bool MapFile(const FilePath& path, const std::uint8_t*& data, std::size_t& size, void*& handle, bool populate);
void UnmapFile(const std::uint8_t* data, std::size_t size, void* handle);

// Whole blocks of pages for AllocatePageBlock (platform/page_block.h).
void* AllocatePageBlock(std::size_t size);
void FreePageBlock(void* block, std::size_t size);

// What is at a path.
enum class PathKind { Missing, RegularFile, Other };
PathKind KindOf(const FilePath& path);
// Whether a regular file may be written.
bool IsWritable(const FilePath& path);

// A new, empty file with a unique name that starts with `prefix`; its path goes to `path`.
// Null when it cannot be created.
std::FILE* CreateUniqueFile(const FilePath& prefix, FilePath& path);
// Writes the stream's buffers and then the file's data to the disk.
bool FlushToDisk(std::FILE* file);
// Gives a file made by CreateUniqueFile the permissions of a new file of the user.
bool SetNewFilePermissions(std::FILE* file);
// Renames `from` over `to`, replacing a file that is there, in one step.
bool ReplaceFile(const FilePath& from, const FilePath& to);
bool RemoveFile(const FilePath& path);

// The local date and time.
LocalTime Now();
// Names of the regular files in `folder`, as narrow text in the local code page.
std::vector<std::string> ListFiles(const FilePath& folder);

// The system's own message box and save dialog; false when the system has none to show (the
// caller then answers itself).
bool ShowMessageBox(const CString& text, const CString& caption, unsigned type, int& answer);
bool ShowSaveDialog(const SaveFileRequest& request, CString& path, int& filterIndex);

// Font files that may hold Chinese characters, where the system keeps them, best first.
std::vector<FilePath> PrintFontFiles();

// The system's print dialog: a job on the chosen printer, or null when it is cancelled, no
// printer is installed, or the system has no dialog.
std::unique_ptr<IPrintJob> ShowPrintDialog(const PrintRequest& request);
// The GDI print jobs of platform/print.h; null where the system has no GDI.
std::unique_ptr<IPrintJob> StartDeviceContextJob(void* printerDc, const PrintRequest& request, const void* devMode);
std::unique_ptr<IPrintJob> StartMetafileJob(const PrintRequest& request, const PrintPaper& paper,
                                            MetafilePageSink sink);

}  // namespace native
}  // namespace orderview
