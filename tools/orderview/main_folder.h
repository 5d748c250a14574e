// The main folder the program works on: the library's default host read from it (every table
// but the day's orders and deals, which the commands read one record at a time), installed for
// the program's lifetime, with its malformed lines reported.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/default_host.h"

namespace ovcli {

class MainFolder {
public:
    // Reads `path` (or ORDERVIEW_HOME, else "." when empty) and installs its host. On a malformed
    // line, prints every "file:line: message" to standard error and Ok() is false.
    explicit MainFolder(const std::string& path);
    ~MainFolder();
    MainFolder(const MainFolder&) = delete;
    MainFolder& operator=(const MainFolder&) = delete;

    bool Ok() const { return ok_; }
    // The language of every main folder read afterwards ("zh-TW"; empty: the folder's own choice).
    static void SetLanguage(const std::string& language) { language_ = language; }
    orderview::DefaultHost& Host() { return *host_; }
    // A language text.
    CString Text(const CString& id) const;
    // Prints each "file:line: message" to standard error; true when there is none.
    static bool Report(const std::vector<CString>& diagnostics);

private:
    std::unique_ptr<orderview::DefaultHost> host_;
    bool ok_ = false;
    static inline std::string language_;
};

}  // namespace ovcli
