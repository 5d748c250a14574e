#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ovtest {

TempFolder::TempFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "orderview-test-XXXXXX").string();
    if (!mkdtemp(&pattern[0])) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
    std::filesystem::create_directories(path_ + "/sys");
    std::filesystem::create_directories(path_ + "/Log");
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void TempFolder::Write(const std::string& relative, const std::string& content) const
{
    std::ofstream out(File(relative), std::ios::binary | std::ios::trunc);
    out << content;
    if (!out) throw std::runtime_error("cannot write " + relative);
}

std::string TempFolder::Read(const std::string& relative) const
{
    std::ifstream in(File(relative), std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace ovtest
