#include "support/temp_folder.h"

#include <cstdio>
#include <cstdlib>
#include <random>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ovtest {

TempFolder::TempFolder()
{
    // A fresh folder with a random name; creating it fails when the name is taken.
    std::random_device random;
    for (int attempt = 0; path_.empty(); ++attempt) {
        if (attempt == 100) throw std::runtime_error("cannot create a temporary folder");
        char name[40];
        std::snprintf(name, sizeof name, "orderview-test-%08x%08x", random(), random());
        const std::filesystem::path candidate = std::filesystem::temp_directory_path() / name;
        std::error_code error;
        if (std::filesystem::create_directory(candidate, error)) path_ = candidate.string();
    }
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
