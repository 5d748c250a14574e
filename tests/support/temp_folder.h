// A real temporary main folder (with sys/ and Log/) created per test and removed after it.
#pragma once

#include <string>

#include "order_data/cstring.h"

namespace ovtest {

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return path_; }
    // The folder in the backslash form the library builds paths in.
    CString MainPath() const { return CString(path_); }
    // Writes `content` to `relative` (a path below the folder, '/' separated).
    void Write(const std::string& relative, const std::string& content) const;
    std::string Read(const std::string& relative) const;
    std::string File(const std::string& relative) const { return path_ + "/" + relative; }

private:
    std::string path_;
};

}  // namespace ovtest
