// orderview cfb: lists, reads and writes the streams of compound files (binary workbooks and other
// structured storage files).
//
//   orderview cfb ls FILE                  one line per entry: kind (D or S), size, path ('/' between parts)
//   orderview cfb cat FILE PATH            the stream's bytes on standard output
//   orderview cfb make OUT PATH=SIZE ...   a new file with streams of the given sizes, filled with
//                                    the test pattern byte(i) = (i * 131 + size * 7 + i / 256) mod 256
//
// Names are UTF-8 on the command line and in the listing. Exit status: 0 done, 1 failed, 2 usage.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli_support.h"
#include "xls/compound_file.h"
#include "xls/utf16.h"

namespace {

std::wstring ToStoragePath(const std::string& slashed)
{
    std::string path = "\\" + slashed;
    for (char& c : path)
        if (c == '/') c = '\\';
    return xls::FromUtf16(xls::Utf8ToUtf16(path));
}

std::string ToSlashed(const std::wstring& path)
{
    std::string text = xls::Utf16ToUtf8(xls::ToUtf16(path));
    if (!text.empty() && text[0] == '\\') text.erase(0, 1);
    for (char& c : text)
        if (c == '\\') c = '/';
    return text;
}

// Largest stream `make` writes: the stream is made in memory first.
constexpr std::uint64_t kMaxStreamSize = std::uint64_t{256} << 20;

std::vector<std::uint8_t> Pattern(std::uint64_t size)
{
    std::vector<std::uint8_t> data(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i * 131 + size * 7 + i / 256);
    return data;
}

int List(const char* file)
{
    xls::CompoundFile cf;
    std::string error = ovcli::ReadableProblem(file);
    if (error.empty() && !cf.Open(std::string(file))) error = std::string(file) + ": not a readable compound file";
    if (!error.empty()) {
        std::fprintf(stderr, "orderview cfb: %s\n", error.c_str());
        return 1;
    }
    for (const auto& entry : cf.List())
        std::printf("%c\t%llu\t%s\n", entry.storage ? 'D' : 'S', static_cast<unsigned long long>(entry.size),
                    ToSlashed(entry.path).c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int Cat(const char* file, const char* path)
{
    xls::CompoundFile cf;
    std::vector<std::uint8_t> data;
    std::string error = ovcli::ReadableProblem(file);
    if (error.empty() && !cf.Open(std::string(file))) error = std::string(file) + ": not a readable compound file";
    if (error.empty() && !cf.ReadStream(ToStoragePath(path), data))
        error = std::string(file) + ": no stream " + path;
    if (!error.empty()) {
        std::fprintf(stderr, "orderview cfb: %s\n", error.c_str());
        return 1;
    }
    return data.empty() || (std::fwrite(data.data(), 1, data.size(), stdout) == data.size() && std::fflush(stdout) == 0)
               ? 0
               : 1;
}

struct Planned {
    std::string item;
    std::wstring path;
    std::uint64_t size = 0;
};

// "PATH=SIZE": a path of names between '/', a size of decimal digits up to kMaxStreamSize.
bool ParseItem(const std::string& item, Planned& planned, std::string& error)
{
    const std::size_t eq = item.rfind('=');
    if (eq == std::string::npos || eq == 0) {
        error = "'" + item + "' is not PATH=SIZE";
        return false;
    }
    const std::string digits = item.substr(eq + 1);
    std::uint64_t size = 0;
    bool ok = !digits.empty() && digits.size() <= 10;
    for (char c : digits) {
        if (c < '0' || c > '9') ok = false;
        else size = size * 10 + static_cast<unsigned>(c - '0');
    }
    if (!ok || size > kMaxStreamSize) {
        error = "'" + item + "': the size is a decimal number from 0 to " + std::to_string(kMaxStreamSize) + " (256 MiB)";
        return false;
    }
    const std::string path = item.substr(0, eq);
    if (path.front() == '/' || path.back() == '/' || path.find("//") != std::string::npos) {
        error = "'" + item + "': the path is names between '/'";
        return false;
    }
    planned = Planned{item, ToStoragePath(path), size};
    return true;
}

int Make(const char* file, int count, char** items)
{
    std::vector<Planned> plan(static_cast<std::size_t>(count));
    std::string error;
    for (int i = 0; i < count; ++i)
        if (!ParseItem(items[i], plan[static_cast<std::size_t>(i)], error)) {
            std::fprintf(stderr, "orderview cfb: %s\n", error.c_str());
            return 2;
        }
    // Refused before the file is made: a taken name, a name too long, a stream under a stream.
    for (std::size_t i = 0; i < plan.size() && error.empty(); ++i) {
        std::wstring part;
        for (wchar_t c : plan[i].path.substr(1) + L"\\") {
            if (c != L'\\') {
                part += c;
                continue;
            }
            if (xls::Utf8ToUtf16(xls::Utf16ToUtf8(xls::ToUtf16(part))).size() > 31)
                error = "'" + plan[i].item + "': a name of 32 characters or more";
            part.clear();
        }
        for (std::size_t j = 0; j < i && error.empty(); ++j) {
            const std::wstring& a = plan[j].path;
            const std::wstring& b = plan[i].path;
            if (a == b) error = "'" + plan[i].item + "': the name is taken";
            else if (b.compare(0, a.size() + 1, a + L"\\") == 0 || a.compare(0, b.size() + 1, b + L"\\") == 0)
                error = "'" + plan[i].item + "': a stream cannot hold another";
        }
    }
    if (!error.empty()) {
        std::fprintf(stderr, "orderview cfb: %s\n", error.c_str());
        return 2;
    }
    error = ovcli::OutputProblem(file);
    if (!error.empty()) {
        std::fprintf(stderr, "orderview cfb: %s\n", error.c_str());
        return 1;
    }
    ovcli::RemoveStaleTemporaries(file);
    xls::CompoundFile cf;
    if (!cf.Create(std::string(file))) {
        std::fprintf(stderr, "orderview cfb: %s: could not be written\n", file);
        return 1;
    }
    for (const Planned& planned : plan) {
        const int made = cf.MakeFile(planned.path);
        if (made != xls::CompoundFile::kOk) {
            const char* why = made == xls::CompoundFile::kNameTooLong ? "a name of 32 characters or more"
                              : made == xls::CompoundFile::kNameExists ? "the name is taken"
                                                                       : "not a path for a new stream";
            std::fprintf(stderr, "orderview cfb: '%s': %s\n", planned.item.c_str(), why);
            return 2;
        }
        const std::vector<std::uint8_t> data = Pattern(planned.size);
        if (!cf.WriteStream(planned.path, data.data(), data.size())) {
            std::fprintf(stderr, "orderview cfb: %s: cannot write %s\n", file, planned.item.c_str());
            return 1;
        }
    }
    return 0;
}

}  // namespace

namespace ovcli {

// argv[0] is the subcommand's name, argv[1] the action.
int CfbCommand(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "--help" || command == "-h") {
        std::printf("usage: orderview cfb ls FILE | cat FILE PATH | make OUT PATH=SIZE...\n"
                    "\n"
                    "  ls FILE              one line per entry: kind (D or S), size, path ('/' between parts)\n"
                    "  cat FILE PATH        the stream's bytes on standard output\n"
                    "  make OUT PATH=SIZE   a new file with streams of the given sizes (decimal, at most\n"
                    "                       268435456 bytes each) filled with a test pattern\n"
                    "\n"
                    "Exit status: 0 done, 1 a file could not be read or written, 2 usage.\n");
        return 0;
    }
    if (command == "ls" && argc == 3) return List(argv[2]);
    if (command == "cat" && argc == 4) return Cat(argv[2], argv[3]);
    if (command == "make" && argc >= 3) return Make(argv[2], argc - 3, argv + 3);
    std::fprintf(stderr, "usage: orderview cfb ls FILE | cat FILE PATH | make OUT PATH=SIZE...\n");
    return 2;
}

}  // namespace ovcli
