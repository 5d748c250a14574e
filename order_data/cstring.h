// CString: the narrow byte string that every text argument and result of the library uses.
//
// Modelled on the host framework's string class: byte strings with no encoding conversion
// (bytes >= 0x80 pass through untouched), value semantics, out-of-range positions clamped the
// way the framework clamps them, and printf-style formatting of any length.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <functional>
#include <string>

#include "order_data/visibility.h"

#if defined(__MINGW32__)
// Format uses the C99 formatter that MinGW's C++ runtime selects, not the system's older one.
#  define ORDERVIEW_PRINTF(fmt_index, first_arg) __attribute__((format(gnu_printf, fmt_index, first_arg)))
#elif defined(__GNUC__)
#  define ORDERVIEW_PRINTF(fmt_index, first_arg) __attribute__((format(printf, fmt_index, first_arg)))
#else
#  define ORDERVIEW_PRINTF(fmt_index, first_arg)
#endif

class ORDERVIEW_API CString {
public:
    CString() = default;
    CString(const char* text);                 // null gives the empty string
    CString(const char* text, int length);     // exactly `length` bytes (clamped at 0)
    CString(char ch, int repeat = 1);
    CString(const std::string& text) : s_(text) {}
    CString(std::string&& text) noexcept : s_(std::move(text)) {}

    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    CString& operator=(const char* text);
    CString& operator=(char ch);

    int GetLength() const { return static_cast<int>(s_.size()); }
    bool IsEmpty() const { return s_.empty(); }
    void Empty() { s_.clear(); }

    const char* GetString() const { return s_.c_str(); }
    operator const char*() const { return s_.c_str(); }
    const std::string& str() const { return s_; }

    // Character access; an index outside the string reads as '\0' and writes are ignored.
    char GetAt(int index) const;
    char operator[](int index) const { return GetAt(index); }
    void SetAt(int index, char ch);

    CString& operator+=(const CString& other) { s_ += other.s_; return *this; }
    CString& operator+=(const char* text);
    CString& operator+=(char ch) { s_ += ch; return *this; }

    // strcmp-style ordering of the bytes as unsigned characters.
    int Compare(const char* text) const;
    int CompareNoCase(const char* text) const;

    // Positions of a character or substring at or after `start`; -1 when absent.
    int Find(char ch, int start = 0) const;
    int Find(const char* sub, int start = 0) const;
    int ReverseFind(char ch) const;
    int FindOneOf(const char* chars) const;

    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Right(int count) const;
    CString SpanIncluding(const char* chars) const;
    CString SpanExcluding(const char* chars) const;

    // Blanks are space, tab, CR, LF, VT and FF.
    CString& Trim();
    CString& Trim(char ch);
    CString& Trim(const char* chars);
    CString& TrimLeft();
    CString& TrimLeft(char ch);
    CString& TrimLeft(const char* chars);
    CString& TrimRight();
    CString& TrimRight(char ch);
    CString& TrimRight(const char* chars);

    // Replacement counts are returned; an empty `old` replaces nothing.
    int Replace(char oldCh, char newCh);
    int Replace(const char* oldText, const char* newText);
    int Remove(char ch);
    int Insert(int index, char ch);
    int Insert(int index, const char* text);
    int Delete(int index, int count = 1);

    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();

    void Format(const char* format, ...) ORDERVIEW_PRINTF(2, 3);
    void FormatV(const char* format, va_list args);
    void AppendFormat(const char* format, ...) ORDERVIEW_PRINTF(2, 3);
    void AppendFormatV(const char* format, va_list args);

    // Raw buffer access for C APIs: GetBuffer grows the string to at least `minLength` bytes;
    // ReleaseBuffer cuts it at `newLength`, or at the first NUL when -1.
    char* GetBuffer(int minLength = 0);
    char* GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);

private:
    std::string s_;
};

ORDERVIEW_API CString operator+(const CString& a, const CString& b);
ORDERVIEW_API CString operator+(const CString& a, const char* b);
ORDERVIEW_API CString operator+(const char* a, const CString& b);
ORDERVIEW_API CString operator+(const CString& a, char b);
ORDERVIEW_API CString operator+(char a, const CString& b);

inline bool operator==(const CString& a, const CString& b) { return a.str() == b.str(); }
inline bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
inline bool operator==(const char* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return !(a == b); }
inline bool operator!=(const CString& a, const char* b) { return !(a == b); }
inline bool operator!=(const char* a, const CString& b) { return !(a == b); }
inline bool operator<(const CString& a, const CString& b) { return a.str() < b.str(); }
inline bool operator>(const CString& a, const CString& b) { return b < a; }
inline bool operator<=(const CString& a, const CString& b) { return !(b < a); }
inline bool operator>=(const CString& a, const CString& b) { return !(a < b); }
inline bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
inline bool operator>(const CString& a, const char* b) { return a.Compare(b) > 0; }

namespace std {
template <>
struct hash<CString> {
    size_t operator()(const CString& s) const noexcept { return hash<string>()(s.str()); }
};
}  // namespace std
