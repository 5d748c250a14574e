// Profile (INI) files, read and written with the behaviour of the Windows profile API:
// case-insensitive section and key names, first match wins, one pair of outer quotes removed,
// ';' comments only at the start of a line, CRLF / LF / CR line breaks, and writes that edit
// the file in place, keeping every line they do not change byte for byte.
//
// Paths are backslash paths (converted to native form at the file-system boundary). Every
// write replaces the file atomically, so an interrupted write never loses what was there.
// Files are read as bytes in the local code page; byte-order marks are not interpreted.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "order_data/cstring.h"
#include "order_data/visibility.h"

namespace orderview {

// The value of `key` in section `app` copied into `buffer` (at most size - 1 bytes, always
// NUL-terminated); the default when the file, section or key is missing. A null `key` lists the
// section's key names, a null `app` the section names, each NUL-terminated with one more NUL at
// the end. Returns the count of bytes copied (size - 1, or size - 2 for a list, when cut).
ORDERVIEW_API std::uint32_t GetPrivateProfileStringA(const char* app, const char* key, const char* defaultValue,
                                                     char* buffer, std::uint32_t size, const char* fileName);

// The value of `key` read as an integer (decimal, or 0x / 0o / 0b prefixed, with one optional
// sign; wrapping modulo 2^32); `defaultValue` when the value is missing or empty.
ORDERVIEW_API unsigned int GetPrivateProfileIntA(const char* app, const char* key, int defaultValue,
                                                 const char* fileName);

// Sets `key` in section `app` to `value` (creating the file and section as needed); a null
// `value` deletes the key, a null `key` deletes the section. Returns nonzero on success.
ORDERVIEW_API int WritePrivateProfileStringA(const char* app, const char* key, const char* value,
                                             const char* fileName);

// A profile file held in memory: edits follow WritePrivateProfileStringA exactly, and Save
// replaces the file once, atomically. Many keys are written this way at the cost of one write,
// all or nothing.
class ORDERVIEW_API ProfileDocument {
public:
    // Reads the file; a missing file is an empty document. False when the file exists but
    // cannot be read (then nothing must be saved over it).
    bool Load(const CString& fileName);
    // WritePrivateProfileStringA's edit: set, delete a key (null value) or a section (null key).
    void Set(const char* app, const char* key, const char* value);
    // Appends raw bytes at the end, as appending to the file would.
    void Append(const std::string& bytes);
    bool Changed() const { return changed_; }
    std::string Text() const;
    bool Save(const CString& fileName) const;

    struct Line {
        std::string raw;        // the line without its break
        std::string lineBreak;  // "\r\n", "\n", "\r" or empty at the end of the file
        int kind = 0;           // blank, section, comment, key or bare line
        std::string name;       // section or key name
    };

private:
    void Parse(const std::string& text);
    int FindSection(const std::string& name) const;
    size_t SectionEnd(size_t header) const;
    void Insert(size_t at, Line line);
    void Erase(size_t at);

    std::vector<Line> lines_;
    std::vector<size_t> headers_;  // indexes of the section lines, ascending
    bool changed_ = false;
};

// GetPrivateProfileStringA with the 256-byte buffer the library reads settings with.
ORDERVIEW_API CString ProfileString(const char* app, const char* key, const char* defaultValue,
                                    const char* fileName);

}  // namespace orderview
