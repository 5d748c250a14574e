#include "order_data/cstring.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

const char kBlanks[] = " \t\r\n\v\f";

int Clamp(int value, int low, int high) { return value < low ? low : (value > high ? high : value); }

unsigned char Lower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + 32) : c; }

}  // namespace

CString::CString(const char* text) : s_(text ? text : "") {}

CString::CString(const char* text, int length)
{
    if (text && length > 0) s_.assign(text, static_cast<size_t>(length));
}

CString::CString(char ch, int repeat) : s_(static_cast<size_t>(repeat > 0 ? repeat : 0), ch) {}

CString& CString::operator=(const char* text)
{
    s_ = text ? text : "";
    return *this;
}

CString& CString::operator=(char ch)
{
    s_.assign(1, ch);
    return *this;
}

char CString::GetAt(int index) const
{
    return (index >= 0 && index < GetLength()) ? s_[static_cast<size_t>(index)] : '\0';
}

void CString::SetAt(int index, char ch)
{
    if (index >= 0 && index < GetLength()) s_[static_cast<size_t>(index)] = ch;
}

CString& CString::operator+=(const char* text)
{
    if (text) s_ += text;
    return *this;
}

int CString::Compare(const char* text) const
{
    const int r = s_.compare(text ? text : "");
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int CString::CompareNoCase(const char* text) const
{
    if (!text) text = "";
    const size_t n = std::strlen(text);
    const size_t common = std::min(n, s_.size());
    for (size_t i = 0; i < common; ++i) {
        const unsigned char a = Lower(static_cast<unsigned char>(s_[i]));
        const unsigned char b = Lower(static_cast<unsigned char>(text[i]));
        if (a != b) return a < b ? -1 : 1;
    }
    if (s_.size() == n) return 0;
    return s_.size() < n ? -1 : 1;
}

int CString::Find(char ch, int start) const
{
    if (start < 0) start = 0;
    if (start >= GetLength()) return -1;
    const size_t pos = s_.find(ch, static_cast<size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const char* sub, int start) const
{
    if (!sub) return -1;
    if (start < 0) start = 0;
    if (start > GetLength()) return -1;
    const size_t pos = s_.find(sub, static_cast<size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(char ch) const
{
    const size_t pos = s_.rfind(ch);
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::FindOneOf(const char* chars) const
{
    if (!chars || !*chars) return -1;
    const size_t pos = s_.find_first_of(chars);
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

CString CString::Left(int count) const
{
    count = Clamp(count, 0, GetLength());
    return CString(s_.substr(0, static_cast<size_t>(count)));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const
{
    first = Clamp(first, 0, GetLength());
    count = Clamp(count, 0, GetLength() - first);
    return CString(s_.substr(static_cast<size_t>(first), static_cast<size_t>(count)));
}

CString CString::Right(int count) const
{
    count = Clamp(count, 0, GetLength());
    return CString(s_.substr(s_.size() - static_cast<size_t>(count)));
}

CString CString::SpanIncluding(const char* chars) const
{
    const size_t pos = s_.find_first_not_of(chars ? chars : "");
    return Left(pos == std::string::npos ? GetLength() : static_cast<int>(pos));
}

CString CString::SpanExcluding(const char* chars) const
{
    if (!chars || !*chars) return *this;
    const size_t pos = s_.find_first_of(chars);
    return Left(pos == std::string::npos ? GetLength() : static_cast<int>(pos));
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::Trim(char ch) { return TrimRight(ch).TrimLeft(ch); }
CString& CString::Trim(const char* chars) { return TrimRight(chars).TrimLeft(chars); }
CString& CString::TrimLeft() { return TrimLeft(kBlanks); }
CString& CString::TrimRight() { return TrimRight(kBlanks); }

CString& CString::TrimLeft(char ch)
{
    const char set[2] = {ch, '\0'};
    if (ch == '\0') {
        const size_t pos = s_.find_first_not_of('\0');
        s_.erase(0, pos == std::string::npos ? s_.size() : pos);
        return *this;
    }
    return TrimLeft(set);
}

CString& CString::TrimRight(char ch)
{
    const char set[2] = {ch, '\0'};
    if (ch == '\0') {
        const size_t pos = s_.find_last_not_of('\0');
        s_.erase(pos == std::string::npos ? 0 : pos + 1);
        return *this;
    }
    return TrimRight(set);
}

CString& CString::TrimLeft(const char* chars)
{
    if (!chars || !*chars) return *this;
    const size_t pos = s_.find_first_not_of(chars);
    s_.erase(0, pos == std::string::npos ? s_.size() : pos);
    return *this;
}

CString& CString::TrimRight(const char* chars)
{
    if (!chars || !*chars) return *this;
    const size_t pos = s_.find_last_not_of(chars);
    s_.erase(pos == std::string::npos ? 0 : pos + 1);
    return *this;
}

int CString::Replace(char oldCh, char newCh)
{
    int count = 0;
    for (char& c : s_) {
        if (c == oldCh) {
            c = newCh;
            ++count;
        }
    }
    return count;
}

int CString::Replace(const char* oldText, const char* newText)
{
    if (!oldText || !*oldText) return 0;
    const size_t oldLen = std::strlen(oldText);
    const std::string replacement = newText ? newText : "";
    std::string out;
    int count = 0;
    size_t from = 0;
    for (size_t pos = s_.find(oldText); pos != std::string::npos; pos = s_.find(oldText, from)) {
        out.append(s_, from, pos - from);
        out += replacement;
        from = pos + oldLen;
        ++count;
    }
    if (count == 0) return 0;
    out.append(s_, from, std::string::npos);
    s_.swap(out);
    return count;
}

int CString::Remove(char ch)
{
    const size_t before = s_.size();
    s_.erase(std::remove(s_.begin(), s_.end(), ch), s_.end());
    return static_cast<int>(before - s_.size());
}

int CString::Insert(int index, char ch)
{
    index = Clamp(index, 0, GetLength());
    s_.insert(static_cast<size_t>(index), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const char* text)
{
    index = Clamp(index, 0, GetLength());
    if (text) s_.insert(static_cast<size_t>(index), text);
    return GetLength();
}

int CString::Delete(int index, int count)
{
    if (index < 0) index = 0;
    if (index < GetLength() && count > 0) {
        count = Clamp(count, 0, GetLength() - index);
        s_.erase(static_cast<size_t>(index), static_cast<size_t>(count));
    }
    return GetLength();
}

CString& CString::MakeUpper()
{
    for (char& c : s_)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return *this;
}

CString& CString::MakeLower()
{
    for (char& c : s_) c = static_cast<char>(Lower(static_cast<unsigned char>(c)));
    return *this;
}

CString& CString::MakeReverse()
{
    std::reverse(s_.begin(), s_.end());
    return *this;
}

void CString::Format(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args)
{
    s_.clear();
    AppendFormatV(format, args);
}

void CString::AppendFormat(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    AppendFormatV(format, args);
    va_end(args);
}

void CString::AppendFormatV(const char* format, va_list args)
{
    if (!format) return;
    // Most texts are short: try a stack buffer first, then format again at the exact size.
    char local[256];
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(local, sizeof local, format, copy);
    va_end(copy);
    if (needed < 0) return;
    if (static_cast<size_t>(needed) < sizeof local) {
        s_.append(local, static_cast<size_t>(needed));
        return;
    }
    std::vector<char> big(static_cast<size_t>(needed) + 1);
    va_copy(copy, args);
    std::vsnprintf(big.data(), big.size(), format, copy);
    va_end(copy);
    s_.append(big.data(), static_cast<size_t>(needed));
}

char* CString::GetBuffer(int minLength)
{
    if (minLength > GetLength()) s_.resize(static_cast<size_t>(minLength));
    return &s_[0];
}

char* CString::GetBufferSetLength(int length)
{
    s_.resize(static_cast<size_t>(length > 0 ? length : 0));
    return &s_[0];
}

void CString::ReleaseBuffer(int newLength)
{
    if (newLength < 0) {
        s_.resize(std::strlen(s_.c_str()));
    } else if (newLength < GetLength()) {
        s_.resize(static_cast<size_t>(newLength));
    }
}

CString operator+(const CString& a, const CString& b)
{
    std::string out;
    out.reserve(a.str().size() + b.str().size());
    out += a.str();
    out += b.str();
    return CString(std::move(out));
}

CString operator+(const CString& a, const char* b)
{
    CString out(a);
    out += b;
    return out;
}

CString operator+(const char* a, const CString& b)
{
    CString out(a);
    out += b;
    return out;
}

CString operator+(const CString& a, char b)
{
    CString out(a);
    out += b;
    return out;
}

CString operator+(char a, const CString& b)
{
    CString out(a);
    out += b;
    return out;
}
