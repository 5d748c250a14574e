// A list of UTF-16 strings kept end to end in one buffer: a workbook's table of thousands of short
// shared strings then takes two blocks of memory instead of one per string.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xls {

class StringList {
public:
    std::size_t size() const { return ends_.size(); }
    bool empty() const { return ends_.empty(); }
    std::u16string_view operator[](std::size_t i) const
    {
        const std::size_t begin = i ? ends_[i - 1] : 0;
        return std::u16string_view(chars_.data() + begin, ends_[i] - begin);
    }
    void push_back(std::u16string_view text)
    {
        chars_.append(text);
        Close();
    }
    // A string is built at the end of `Open()`; Close ends it, and Abandon drops what was built
    // since the last string ended.
    std::u16string& Open() { return chars_; }
    void Close() { ends_.push_back(chars_.size()); }
    void Abandon() { chars_.resize(ends_.empty() ? 0 : ends_.back()); }
    void clear()
    {
        chars_.clear();
        ends_.clear();
    }
    // Room for `strings` strings of `chars` characters in all.
    void reserve(std::size_t strings, std::size_t chars)
    {
        ends_.reserve(strings);
        chars_.reserve(chars);
    }
    bool operator==(const StringList& other) const { return ends_ == other.ends_ && chars_ == other.chars_; }
    bool operator!=(const StringList& other) const { return !(*this == other); }

private:
    std::u16string chars_;
    std::vector<std::size_t> ends_;  // where each string ends in chars_
};

}  // namespace xls
