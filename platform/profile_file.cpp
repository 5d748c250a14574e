#include "platform/profile_file.h"

#include <cerrno>
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace orderview {

namespace {

bool IsLineBlank(char c) { return c == ' ' || c == '\t' || c == '\v'; }

unsigned char Lower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + 32) : c; }

bool EqualNoCase(const std::string& a, const std::string& b)
{
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (Lower(static_cast<unsigned char>(a[i])) != Lower(static_cast<unsigned char>(b[i]))) return false;
    return true;
}

// Trims space, tab and vertical tab from both ends of [begin, end).
void TrimRange(const std::string& s, size_t& begin, size_t& end)
{
    while (begin < end && IsLineBlank(s[begin])) ++begin;
    while (end > begin && IsLineBlank(s[end - 1])) --end;
}

// Names passed by the caller lose outer spaces only (a tab is significant).
std::string TrimSpaces(const char* text)
{
    std::string s = text;
    const size_t first = s.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    const size_t last = s.find_last_not_of(' ');
    return s.substr(first, last - first + 1);
}

enum class Kind { Blank, Section, Comment, Key, Bare };

struct ParsedLine {
    size_t begin = 0, end = 0;   // content, without the line break
    size_t next = 0;             // start of the following line
    Kind kind = Kind::Blank;
    std::string name;            // section or key name
    size_t valueBegin = 0, valueEnd = 0;
    int section = -1;            // index of the owning section header line, -1 before the first
};

std::vector<ParsedLine> SplitLines(const std::string& text)
{
    std::vector<ParsedLine> lines;
    int currentSection = -1;
    size_t pos = 0;
    while (pos < text.size()) {
        ParsedLine line;
        line.begin = pos;
        size_t end = pos;
        while (end < text.size() && text[end] != '\r' && text[end] != '\n') ++end;
        line.end = end;
        if (end < text.size()) {
            line.next = end + ((text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? 2 : 1);
        } else {
            line.next = end;
        }
        size_t b = line.begin, e = line.end;
        TrimRange(text, b, e);
        if (b == e) {
            line.kind = Kind::Blank;
        } else if (text[b] == '[') {
            line.kind = Kind::Section;
            size_t nb = b + 1;
            size_t ne = text.find(']', nb);
            if (ne == std::string::npos || ne > e) ne = e;
            TrimRange(text, nb, ne);
            line.name = text.substr(nb, ne - nb);
            currentSection = static_cast<int>(lines.size());
        } else if (text[b] == ';') {
            line.kind = Kind::Comment;
        } else {
            const size_t eq = text.find('=', b);
            if (eq == std::string::npos || eq >= e) {
                line.kind = Kind::Bare;
                line.name = text.substr(b, e - b);
            } else {
                line.kind = Kind::Key;
                size_t nb = b, ne = eq;
                TrimRange(text, nb, ne);
                line.name = text.substr(nb, ne - nb);
                size_t vb = eq + 1, ve = e;
                TrimRange(text, vb, ve);
                line.valueBegin = vb;
                line.valueEnd = ve;
            }
        }
        line.section = line.kind == Kind::Section ? static_cast<int>(lines.size()) : currentSection;
        lines.push_back(line);
        pos = line.next;
    }
    return lines;
}

// Index of the first section header named `name`, or -1.
int FindSection(const std::vector<ParsedLine>& lines, const std::string& name)
{
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i].kind == Kind::Section && EqualNoCase(lines[i].name, name)) return static_cast<int>(i);
    return -1;
}

// The line of the first key named `name` in the section; -1 when there is none. A line without
// '=' names a key with no value: it is found first and then reads as missing.
int FindKey(const std::vector<ParsedLine>& lines, int section, const std::string& name)
{
    for (size_t i = static_cast<size_t>(section) + 1; i < lines.size() && lines[i].section == section; ++i)
        if ((lines[i].kind == Kind::Key || lines[i].kind == Kind::Bare) && EqualNoCase(lines[i].name, name)) {
            return lines[i].kind == Kind::Key ? static_cast<int>(i) : -1;
        }
    return -1;
}

// The stored value with one pair of matching outer quotes removed and the length wrapped the
// way the 16-bit length counter of the Windows reader wraps it.
std::string ValueOf(const std::string& text, const ParsedLine& line)
{
    size_t b = line.valueBegin, e = line.valueEnd;
    if (e - b >= 2 && (text[b] == '"' || text[b] == '\'') && text[e - 1] == text[b]) {
        ++b;
        --e;
    }
    return text.substr(b, (e - b) % 65536);
}

uint32_t CopyOut(const std::string& value, char* buffer, uint32_t size)
{
    if (size == 0) return 0;
    const size_t n = value.size() < size - 1 ? value.size() : size - 1;
    std::memcpy(buffer, value.data(), n);
    buffer[n] = '\0';
    return static_cast<uint32_t>(n);
}

// A double-NUL-terminated name list; when cut, the buffer still ends in two NULs.
uint32_t CopyList(const std::vector<std::string>& names, char* buffer, uint32_t size)
{
    if (size < 3) {  // no room for a name: the empty list
        if (size > 0) buffer[0] = '\0';
        return 0;
    }
    std::string list;
    for (const auto& name : names) {
        list += name;
        list += '\0';
    }
    // A list that fills the buffer exactly counts as cut, as the system's reader counts it.
    if (list.size() + 1 < size) {
        std::memcpy(buffer, list.data(), list.size());
        buffer[list.size()] = '\0';  // an empty list is one NUL
        return static_cast<uint32_t>(list.size());
    }
    std::memcpy(buffer, list.data(), size - 2);
    buffer[size - 2] = '\0';
    buffer[size - 1] = '\0';
    return size - 2;
}

// The caller's default with trailing spaces removed.
std::string DefaultOf(const char* defaultValue)
{
    std::string s = defaultValue ? defaultValue : "";
    const size_t last = s.find_last_not_of(' ');
    s.erase(last == std::string::npos ? 0 : last + 1);
    return s;
}

const char kLineBreak[] = "\r\n";

}  // namespace

uint32_t GetPrivateProfileStringA(const char* app, const char* key, const char* defaultValue, char* buffer,
                                  uint32_t size, const char* fileName)
{
    if (!buffer) return 0;
    std::string text;
    const bool haveFile = fileName && *fileName && ReadWholeFile(fileName, text);
    const std::vector<ParsedLine> lines = haveFile ? SplitLines(text) : std::vector<ParsedLine>();

    if (!app) {
        std::vector<std::string> names;
        for (const auto& line : lines)
            if (line.kind == Kind::Section) names.push_back(line.name);
        return CopyList(names, buffer, size);
    }
    const int section = FindSection(lines, TrimSpaces(app));
    if (!key) {
        std::vector<std::string> names;
        if (section >= 0)
            for (size_t i = static_cast<size_t>(section) + 1; i < lines.size() && lines[i].section == section; ++i)
                if (lines[i].kind == Kind::Key) names.push_back(lines[i].name);
        // A section that is missing or has no keys lists nothing: the default is copied as it
        // is (a key's default loses its trailing spaces; this one keeps them).
        if (names.empty()) return CopyOut(defaultValue ? defaultValue : "", buffer, size);
        return CopyList(names, buffer, size);
    }
    const int found = section >= 0 ? FindKey(lines, section, TrimSpaces(key)) : -1;
    if (found < 0) return CopyOut(DefaultOf(defaultValue), buffer, size);
    return CopyOut(ValueOf(text, lines[static_cast<size_t>(found)]), buffer, size);
}

// The stored value of `key` in section `app`; false when the file, section or key is missing.
static bool LookUp(const char* app, const char* key, const char* fileName, std::string& value)
{
    std::string text;
    if (!fileName || !*fileName || !ReadWholeFile(fileName, text)) return false;
    const std::vector<ParsedLine> lines = SplitLines(text);
    const int section = FindSection(lines, TrimSpaces(app));
    const int found = section >= 0 ? FindKey(lines, section, TrimSpaces(key)) : -1;
    if (found < 0) return false;
    value = ValueOf(text, lines[static_cast<size_t>(found)]);
    return true;
}

unsigned int GetPrivateProfileIntA(const char* app, const char* key, int defaultValue, const char* fileName)
{
    // The whole value is read as a string; a missing or empty one means the default number.
    std::string value;
    if (!app || !key || !LookUp(app, key, fileName, value) || value.empty())
        return static_cast<unsigned int>(defaultValue);

    size_t i = 0;
    while (i < value.size() && static_cast<unsigned char>(value[i]) <= 0x20) ++i;
    bool negative = false;
    if (i < value.size() && (value[i] == '+' || value[i] == '-')) negative = value[i++] == '-';
    unsigned base = 10;
    if (i + 1 < value.size() && value[i] == '0') {
        const char p = value[i + 1];
        if (p == 'x') base = 16;
        if (p == 'o') base = 8;
        if (p == 'b') base = 2;
        if (base != 10) i += 2;
    }
    uint32_t result = 0;
    for (; i < value.size(); ++i) {
        const char c = value[i];
        unsigned digit;
        if (c >= '0' && c <= '9') digit = static_cast<unsigned>(c - '0');
        else if (c >= 'a' && c <= 'f') digit = static_cast<unsigned>(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F') digit = static_cast<unsigned>(c - 'A' + 10);
        else break;
        if (digit >= base) break;
        result = result * base + digit;  // wraps modulo 2^32 like the system parser
    }
    return negative ? 0u - result : result;
}

namespace {

// A line parsed on its own, as the reader parses it.
ProfileDocument::Line MakeLine(std::string raw, std::string lineBreak)
{
    ProfileDocument::Line line;
    const std::vector<ParsedLine> parsed = SplitLines(raw);
    if (!parsed.empty()) {
        line.kind = static_cast<int>(parsed.front().kind);
        line.name = parsed.front().name;
    }
    line.raw = std::move(raw);
    line.lineBreak = std::move(lineBreak);
    return line;
}

}  // namespace

void ProfileDocument::Parse(const std::string& text)
{
    lines_.clear();
    headers_.clear();
    for (const ParsedLine& parsed : SplitLines(text)) {
        ProfileDocument::Line line;
        line.raw = text.substr(parsed.begin, parsed.end - parsed.begin);
        line.lineBreak = text.substr(parsed.end, parsed.next - parsed.end);
        line.kind = static_cast<int>(parsed.kind);
        line.name = parsed.name;
        if (parsed.kind == Kind::Section) headers_.push_back(lines_.size());
        lines_.push_back(std::move(line));
    }
}

bool ProfileDocument::Load(const CString& fileName)
{
    std::string text;
    changed_ = false;
    if (ReadWholeFile(fileName, text)) {
        Parse(text);
        return true;
    }
    Parse(std::string());
    return !PathExists(fileName);
}

std::string ProfileDocument::Text() const
{
    std::string text;
    for (const auto& line : lines_) {
        text += line.raw;
        text += line.lineBreak;
    }
    return text;
}

bool ProfileDocument::Save(const CString& fileName) const { return ReplaceFileAtomically(fileName, Text()); }

void ProfileDocument::Append(const std::string& bytes)
{
    Parse(Text() + bytes);
    changed_ = true;
}

int ProfileDocument::FindSection(const std::string& name) const
{
    for (size_t header : headers_)
        if (EqualNoCase(lines_[header].name, name)) return static_cast<int>(header);
    return -1;
}

size_t ProfileDocument::SectionEnd(size_t header) const
{
    const auto next = std::upper_bound(headers_.begin(), headers_.end(), header);
    return next == headers_.end() ? lines_.size() : *next;
}

void ProfileDocument::Insert(size_t at, Line line)
{
    auto pos = std::lower_bound(headers_.begin(), headers_.end(), at);
    for (auto it = pos; it != headers_.end(); ++it) ++*it;
    if (line.kind == static_cast<int>(Kind::Section)) headers_.insert(pos, at);
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}

void ProfileDocument::Erase(size_t at)
{
    auto pos = std::lower_bound(headers_.begin(), headers_.end(), at);
    if (pos != headers_.end() && *pos == at) pos = headers_.erase(pos);
    for (auto it = pos; it != headers_.end(); ++it) --*it;
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
}

void ProfileDocument::Set(const char* app, const char* key, const char* value)
{
    if (!app) return;
    const std::string section = TrimSpaces(app);
    const int found = FindSection(section);
    const int keyKind = static_cast<int>(Kind::Key);

    if (!key) {
        // Delete the section: its header and entries go, comments and blank lines stay.
        if (found < 0) return;
        const size_t header = static_cast<size_t>(found);
        for (size_t i = SectionEnd(header); i-- > header;)
            if (lines_[i].kind == static_cast<int>(Kind::Section) || lines_[i].kind == keyKind ||
                lines_[i].kind == static_cast<int>(Kind::Bare))
                Erase(i);
        changed_ = true;
        return;
    }
    const std::string name = TrimSpaces(key);
    int keyLine = -1;
    if (found >= 0) {
        const size_t end = SectionEnd(static_cast<size_t>(found));
        for (size_t i = static_cast<size_t>(found) + 1; i < end && keyLine < 0; ++i)
            if (lines_[i].kind == keyKind && EqualNoCase(lines_[i].name, name)) keyLine = static_cast<int>(i);
    }
    if (!value) {
        if (keyLine < 0) return;
        Erase(static_cast<size_t>(keyLine));
        changed_ = true;
        return;
    }
    changed_ = true;
    if (keyLine >= 0) {
        // Replace the value in place; the key keeps the spelling already in the file.
        Line& line = lines_[static_cast<size_t>(keyLine)];
        line.raw = line.name + "=" + value;
        if (line.lineBreak.empty()) line.lineBreak = kLineBreak;
        return;
    }
    if (found >= 0) {
        // New key after the last entry of its section.
        size_t last = static_cast<size_t>(found);
        const size_t end = SectionEnd(last);
        for (size_t i = last + 1; i < end; ++i)
            if (lines_[i].kind != static_cast<int>(Kind::Blank)) last = i;
        if (lines_[last].lineBreak.empty()) lines_[last].lineBreak = kLineBreak;
        Insert(last + 1, MakeLine(name + "=" + value, kLineBreak));
        return;
    }
    // New section at the end of the file, never joined to an unfinished last line.
    if (!lines_.empty() && lines_.back().lineBreak.empty()) lines_.back().lineBreak = kLineBreak;
    Insert(lines_.size(), MakeLine("[" + section + "]", kLineBreak));
    Insert(lines_.size(), MakeLine(name + "=" + value, kLineBreak));
}

int WritePrivateProfileStringA(const char* app, const char* key, const char* value, const char* fileName)
{
    if (!app || !fileName || !*fileName) return 0;
    ProfileDocument document;
    if (!document.Load(fileName)) return 0;
    const bool existed = PathExists(fileName);
    document.Set(app, key, value);
    // Deleting from a missing file leaves an empty file behind, as the system does.
    if (!document.Changed() && !(!existed && (!key || !value))) return 1;
    return document.Save(fileName) ? 1 : 0;
}

CString ProfileString(const char* app, const char* key, const char* defaultValue, const char* fileName)
{
    char buffer[256];
    GetPrivateProfileStringA(app, key, defaultValue, buffer, sizeof buffer, fileName);
    return CString(buffer);
}

}  // namespace orderview
