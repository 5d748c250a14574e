// The system's own profile API as an oracle (Windows builds, run under Wine in CI): random
// sequences of reads and writes go through the library and through kernel32, each on its own
// copy of the same file, and must give the same answers and leave the same bytes.
//
// Where Windows and Wine are known to differ, the library follows Windows, so those inputs are
// left out of the random sequences (docs/profile-files.md lists them with their
// reasons; profile_file_test.cpp checks the Windows answers):
//   - a section line without ']' or with text after it, a key asked for with a leading ';', and
//     the section "" (Wine parses these lines differently);
//   - tabs around names passed in (Windows trims only spaces), quotes around a default (Wine
//     removes them), and leading blanks in a written value (Wine removes them);
//   - writes into a file that is not in the form the API writes (Wine rewrites the whole file,
//     dropping blank lines, spaces around '=', comments of a deleted section and text after ']');
//   - deleting from a missing file (Windows creates an empty file, Wine none);
//   - a quoted value that, with its quotes, does not fit the buffer (Windows cuts the value
//     without its quotes; Wine cuts it with them and then drops the opening quote); such calls
//     are recognised and counted, not compared;
//   - the content of a cut enumeration (its length agrees), and a key list asked for with a
//     buffer of fewer than 3 bytes (Windows answers 0, Wine the default).
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/profile_file.h"
#include "support/temp_folder.h"

namespace {

// Names collide often on purpose: a handful of sections and keys in several letter cases.
const char* const kSections[] = {"Order", "ORDER", "order", "Deal", "s", "S", "Main Cfg", "main cfg"};
const char* const kKeys[] = {"Qty", "qty", "QTY", "Price", "k", "K", "Long Key", "x1"};
const char* const kValues[] = {"1", "0", "v", "", "two words", "a=b", "\"quoted\"", "'single'", "\"half",
                               "12.5", "-7", "0x1F", "0o17", "0b101", "4294967297", "+3", "42A", "B9",
                               "  spaced  ", ";semi", "#hash", "[bracket]", "x\ty"};
const char* const kDefaults[] = {"", "def", "default  ", " lead", "a\tb", "0"};
const char* const kBreaks[] = {"\r\n", "\n", "\r"};

struct Random {
    std::mt19937 engine;
    explicit Random(std::uint32_t seed) : engine(seed) {}
    std::size_t Below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(engine); }
    bool OneIn(std::size_t n) { return Below(n) == 0; }
    template <class T, std::size_t N>
    const T& Pick(const T (&items)[N]) { return items[Below(N)]; }
};

// A name as written in a file: spaces or tabs around it, which lookups ignore.
std::string Padded(Random& random, const std::string& name)
{
    const char* const pads[] = {"", "", " ", "  ", "\t"};
    return random.Pick(pads) + name + random.Pick(pads);
}

// A file with odd spacing, comments, duplicates, quotes, bare lines and mixed line breaks, in
// the part of the syntax Windows and Wine read alike.
std::string MessyFile(Random& random)
{
    std::string text;
    const std::size_t lines = random.Below(14);
    const std::string usualBreak = random.Pick(kBreaks);
    for (std::size_t i = 0; i < lines; ++i) {
        switch (random.Below(i == 0 ? 1 : 9)) {
        case 0: text += Padded(random, "[" + Padded(random, random.Pick(kSections)) + "]"); break;
        case 1: text += ";" + std::string(random.Pick(kKeys)) + "=" + random.Pick(kValues); break;
        case 2: text += ""; break;
        case 3: text += Padded(random, random.Pick(kKeys)); break;
        default: text += Padded(random, random.Pick(kKeys)) + "=" + Padded(random, random.Pick(kValues)); break;
        }
        text += random.OneIn(6) ? random.Pick(kBreaks) : usualBreak;
    }
    if (random.OneIn(4) && !text.empty()) text.pop_back();  // no break after the last line
    return text;
}

// A file as the API writes it: CRLF, no blanks around '=', each section once with its keys.
std::string TidyFile(Random& random)
{
    const char* const names[] = {"Order", "Deal", "s", "Main Cfg"};
    std::string text;
    const std::size_t sections = random.Below(5);
    for (std::size_t s = 0; s < sections; ++s) {
        text += std::string("[") + names[s] + "]\r\n";
        for (std::size_t k = random.Below(4); k > 0; --k) {
            std::string value = random.Pick(kValues);
            if (!value.empty() && (value[0] == ' ' || value.back() == ' ')) value = "v";
            text += std::string(random.Pick(kKeys)) + "=" + value + "\r\n";
        }
    }
    return text;
}

std::string Bytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// One call, and what it answered.
struct Outcome {
    std::string call;
    std::string answer;
};

class Oracle {
public:
    Oracle(const std::string& libraryFile, const std::string& systemFile)
        : lib_(libraryFile), sys_(systemFile) {}

    // GetPrivateProfileStringA with a buffer of `size` bytes; null names enumerate.
    void ReadString(const char* app, const char* key, const char* def, std::uint32_t size)
    {
        std::vector<char> a(size + 8, '\x7f'), b(size + 8, '\x7f');
        const std::uint32_t na = orderview::GetPrivateProfileStringA(app, key, def, a.data(), size, lib_.c_str());
        const DWORD nb = ::GetPrivateProfileStringA(app, key, def, b.data(), size, sys_.c_str());
        std::ostringstream call;
        call << "GetPrivateProfileStringA(" << Show(app) << ", " << Show(key) << ", " << Show(def) << ", " << size << ")";
        // A cut enumeration is known to hold other names on Wine: only its length is compared.
        const bool cutList = (!app || !key) && size >= 3 && nb == size - 2;
        const std::size_t shown = cutList ? 0 : std::min<std::size_t>(size, (!app || !key) ? nb + 2 : nb + 1);
        if (app && key && size >= 2 && nb == size - 2 && na != nb && QuotedValueCut(app, key, def, size, na, a.data())) {
            ++quotedCuts_;  // Windows cuts the value without its quotes, Wine with them
            return;
        }
        Compare(call.str(), std::to_string(na) + " " + Show(std::string(a.data(), std::min<std::size_t>(size, shown))),
                std::to_string(nb) + " " + Show(std::string(b.data(), shown)));
    }

    void ReadInt(const char* app, const char* key, int def)
    {
        const unsigned na = orderview::GetPrivateProfileIntA(app, key, def, lib_.c_str());
        const unsigned nb = ::GetPrivateProfileIntA(app, key, def, sys_.c_str());
        std::ostringstream call;
        call << "GetPrivateProfileIntA(" << Show(app) << ", " << Show(key) << ", " << def << ")";
        Compare(call.str(), std::to_string(na), std::to_string(nb));
    }

    void Write(const char* app, const char* key, const char* value)
    {
        const bool a = orderview::WritePrivateProfileStringA(app, key, value, lib_.c_str()) != 0;
        const bool b = ::WritePrivateProfileStringA(app, key, value, sys_.c_str()) != 0;
        ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, sys_.c_str());  // flushes Wine's cache
        std::ostringstream call;
        call << "WritePrivateProfileStringA(" << Show(app) << ", " << Show(key) << ", " << Show(value) << ")";
        Compare(call.str(), std::to_string(a) + " " + Show(Bytes(lib_)), std::to_string(b) + " " + Show(Bytes(sys_)));
    }

    const std::vector<Outcome>& Log() const { return log_; }
    std::size_t QuotedCuts() const { return quotedCuts_; }
    bool Failed() const { return !mismatch_.empty(); }
    const std::string& Mismatch() const { return mismatch_; }

    static std::string Show(const char* text) { return text ? Show(std::string(text)) : "NULL"; }
    static std::string Show(const std::string& text)
    {
        std::string shown = "\"";
        for (const unsigned char c : text) {
            if (c >= 0x20 && c < 0x7f && c != '"' && c != '\\') {
                shown += static_cast<char>(c);
            } else {
                char hex[8];
                std::snprintf(hex, sizeof hex, "\\x%02x", c);
                shown += hex;
            }
        }
        return shown + "\"";
    }

private:
    // Whether the value is quoted and, with its quotes, longer than the buffer: both readers then
    // agree on the whole value, and the library's answer is as much of it as the buffer holds.
    bool QuotedValueCut(const char* app, const char* key, const char* def, std::uint32_t size, std::uint32_t got,
                        const char* text) const
    {
        char whole[512], raw[512];
        const std::uint32_t na = orderview::GetPrivateProfileStringA(app, key, def, whole, sizeof whole, lib_.c_str());
        const DWORD nb = ::GetPrivateProfileStringA(app, key, def, raw, sizeof raw, sys_.c_str());
        const std::string value(whole, na);
        return na == nb && value == std::string(raw, nb) && na + 2 >= size && got == std::min(na, size - 1) &&
               value.compare(0, got, text, got) == 0 && QuotedInFile(key);
    }
    // Whether some line of the library's copy holds `key` with a quoted value.
    bool QuotedInFile(const char* key) const
    {
        std::string text = Bytes(lib_);
        for (char& c : text)
            if (c == '\r') c = '\n';
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t eq = line.find('=');
            if (eq == std::string::npos || _stricmp(Trimmed(line.substr(0, eq)).c_str(), key) != 0) continue;
            const std::string value = Trimmed(line.substr(eq + 1));
            if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0]) return true;
        }
        return false;
    }
    static std::string Trimmed(const std::string& text)
    {
        const std::size_t b = text.find_first_not_of(" \t\v"), e = text.find_last_not_of(" \t\v");
        return b == std::string::npos ? std::string() : text.substr(b, e - b + 1);
    }

    void Compare(const std::string& call, const std::string& library, const std::string& system)
    {
        log_.push_back({call, system});
        if (library != system && mismatch_.empty())
            mismatch_ = call + "\n  library: " + library + "\n  kernel32: " + system;
    }

    std::string lib_, sys_;
    std::vector<Outcome> log_;
    std::string mismatch_;
    std::size_t quotedCuts_ = 0;
};

class ProfileOracle : public ::testing::Test {
protected:
    // Both copies of the file, fresh names for every sequence (Wine caches files by name).
    void Prepare(std::size_t sequence, const std::string* content)
    {
        libFile = folder.File("lib" + std::to_string(sequence) + ".ini");
        sysFile = folder.File("sys" + std::to_string(sequence) + ".ini");
        if (content) {
            folder.Write("lib" + std::to_string(sequence) + ".ini", *content);
            folder.Write("sys" + std::to_string(sequence) + ".ini", *content);
        }
    }
    void Clean()
    {
        std::filesystem::remove(libFile);
        std::filesystem::remove(sysFile);
    }
    static std::size_t Sequences()
    {
        const char* text = std::getenv("ORDERVIEW_ORACLE_SEQUENCES");
        return text && *text ? static_cast<std::size_t>(std::strtoul(text, nullptr, 10)) : 5000;
    }
    static std::string Describe(const std::string& content, const Oracle& oracle)
    {
        std::string text = "file: " + Oracle::Show(content) + "\n";
        for (const Outcome& outcome : oracle.Log()) text += "  " + outcome.call + " -> " + outcome.answer + "\n";
        return text + oracle.Mismatch();
    }

    ovtest::TempFolder folder;
    std::string libFile, sysFile;
};

// Reads of messy files: every lookup, enumeration and number, with buffers of 1 to 300 bytes.
TEST_F(ProfileOracle, ReadsOfAnyFileAgree)
{
    const std::size_t sequences = Sequences();
    std::size_t quotedCuts = 0;
    for (std::size_t i = 0; i < sequences; ++i) {
        Random random(static_cast<std::uint32_t>(i) + 1);
        const std::string content = MessyFile(random);
        Prepare(i, &content);
        Oracle oracle(libFile, sysFile);
        for (std::size_t call = random.Below(6) + 2; call > 0; --call) {
            const char* app = random.OneIn(8) ? nullptr : random.Pick(kSections);
            const char* key = random.OneIn(6) ? nullptr : random.Pick(kKeys);
            if (random.OneIn(3)) {
                oracle.ReadInt(app ? app : "s", key ? key : "k", static_cast<int>(random.Below(5)) - 2);
            } else {
                std::uint32_t size = random.OneIn(3) ? static_cast<std::uint32_t>(random.Below(300) + 1)
                                                     : static_cast<std::uint32_t>(random.Below(12) + 1);
                if (app && !key && size < 3) size = 3;  // Wine copies the default there, Windows nothing
                oracle.ReadString(app, key, random.OneIn(5) ? nullptr : random.Pick(kDefaults), size);
            }
        }
        Clean();
        ASSERT_FALSE(oracle.Failed()) << "sequence " << i << "\n" << Describe(content, oracle);
        quotedCuts += oracle.QuotedCuts();
    }
    RecordProperty("quoted_values_cut", static_cast<int>(quotedCuts));
    std::printf("%zu sequences agree; %zu cut quoted values counted as Windows counts them\n", sequences, quotedCuts);
}

// Writes (sets, key and section deletions) with reads between them, starting from a missing
// file or a file in the form the API writes; the files must stay byte for byte the same.
TEST_F(ProfileOracle, WritesAgreeByteForByte)
{
    const std::size_t sequences = Sequences();
    for (std::size_t i = 0; i < sequences; ++i) {
        Random random(static_cast<std::uint32_t>(i) + 1000003);
        const bool missing = random.OneIn(3);
        const std::string content = missing ? std::string() : TidyFile(random);
        Prepare(i, missing ? nullptr : &content);
        Oracle oracle(libFile, sysFile);
        for (std::size_t call = random.Below(6) + 1; call > 0; --call) {
            const char* app = random.Pick(kSections);
            const char* key = random.Pick(kKeys);
            switch (random.Below(6)) {
            case 0: oracle.ReadString(app, random.OneIn(3) ? nullptr : key, "def", 64); break;
            case 1: oracle.ReadInt(app, key, -1); break;
            case 2:
                if (std::filesystem::exists(sysFile)) oracle.Write(app, nullptr, nullptr);
                break;
            case 3:
                if (std::filesystem::exists(sysFile)) oracle.Write(app, key, nullptr);
                break;
            default: {
                const char* value = random.Pick(kValues);
                if (value[0] == ' ') value = "v";  // Wine removes leading blanks of a written value
                oracle.Write(app, key, value);
                break;
            }
            }
        }
        Clean();
        ASSERT_FALSE(oracle.Failed()) << "sequence " << i << "\n" << Describe(content, oracle);
    }
    std::printf("%zu sequences agree\n", sequences);
}

}  // namespace
