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

std::vector<std::uint8_t> Pattern(std::uint64_t size)
{
    std::vector<std::uint8_t> data(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i * 131 + size * 7 + i / 256);
    return data;
}

int List(const char* file)
{
    xls::CompoundFile cf;
    if (!cf.Open(std::string(file))) {
        std::fprintf(stderr, "orderview cfb: %s: not a readable compound file\n", file);
        return 1;
    }
    for (const auto& entry : cf.List())
        std::printf("%c\t%llu\t%s\n", entry.storage ? 'D' : 'S', static_cast<unsigned long long>(entry.size),
                    ToSlashed(entry.path).c_str());
    return 0;
}

int Cat(const char* file, const char* path)
{
    xls::CompoundFile cf;
    std::vector<std::uint8_t> data;
    if (!cf.Open(std::string(file)) || !cf.ReadStream(ToStoragePath(path), data)) {
        std::fprintf(stderr, "orderview cfb: %s: cannot read %s\n", file, path);
        return 1;
    }
    return data.empty() || std::fwrite(data.data(), 1, data.size(), stdout) == data.size() ? 0 : 1;
}

int Make(const char* file, int count, char** items)
{
    xls::CompoundFile cf;
    if (!cf.Create(std::string(file))) return 1;
    for (int i = 0; i < count; ++i) {
        const std::string item = items[i];
        const std::size_t eq = item.rfind('=');
        if (eq == std::string::npos) return 2;
        const std::wstring path = ToStoragePath(item.substr(0, eq));
        const std::vector<std::uint8_t> data = Pattern(std::strtoull(item.c_str() + eq + 1, nullptr, 10));
        const int made = cf.MakeFile(path);
        if (made != xls::CompoundFile::kOk || !cf.WriteStream(path, data.data(), data.size())) {
            std::fprintf(stderr, "orderview cfb: cannot write %s (%d)\n", item.c_str(), made);
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
    if (command == "--help") {
        std::printf("usage: orderview cfb ls FILE | cat FILE PATH | make OUT PATH=SIZE...\n");
        return 0;
    }
    if (command == "ls" && argc == 3) return List(argv[2]);
    if (command == "cat" && argc == 4) return Cat(argv[2], argv[3]);
    if (command == "make" && argc >= 3) return Make(argv[2], argc - 3, argv + 3);
    std::fprintf(stderr, "usage: orderview cfb ls FILE | cat FILE PATH | make OUT PATH=SIZE...\n");
    return 2;
}

}  // namespace ovcli
