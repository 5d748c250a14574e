#include "generate.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "cli_support.h"
#include "generate_writer.h"
#include "progress.h"

namespace {

const char kUsage[] =
    "usage: orderview generate --orders N --output DIR [--seed S] [--quiet]\n"
    "\n"
    "Writes a synthetic main folder to DIR/sys: quotes, commodities, symbols, contract months,\n"
    "accounts with insurance settings and alert stocks, and one trading day of N orders\n"
    "(1 to 10,000,000) with their deals, plus a cancel or change request record for some\n"
    "cancelled or changed orders. The same seed (default 1) writes the same files.\n"
    "\n"
    "  --orders N    number of orders\n"
    "  --output DIR  main folder, created if missing\n"
    "  --seed S      random seed, a non-negative integer\n"
    "  --quiet       no progress bar and no closing line\n"
    "  -h, --help    this text\n"
    "\n"
    "Numbers are decimal. Every file is written under a temporary name and renamed into place at\n"
    "the end: an interrupted run (SIGINT, SIGTERM) keeps the folder's old files. A closing line on\n"
    "standard error says what was written.\n";

bool ParseCount(const char* text, std::uint64_t max, std::uint64_t& out)
{
    if (!text || !*text || std::strlen(text) > 20) return false;
    std::uint64_t value = 0;
    for (const char* c = text; *c; ++c) {
        if (*c < '0' || *c > '9') return false;
        const unsigned digit = static_cast<unsigned>(*c - '0');
        if (value > (max - digit) / 10) return false;
        value = value * 10 + digit;
    }
    out = value;
    return true;
}

int Usage(const std::string& message)
{
    std::fprintf(stderr, "orderview generate: %s\n%s", message.c_str(), kUsage);
    return 2;
}

}  // namespace

int GenerateCommand(int argc, char** argv)
{
    std::uint64_t orders = 0, seed = 1;
    bool haveOrders = false;
    std::string output;
    bool quiet = false;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i] ? argv[i] : "";
        if (option == "--help" || option == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (option == "--quiet") {
            quiet = true;
            continue;
        }
        if (option != "--orders" && option != "--output" && option != "--seed")
            return Usage((option.empty() || option[0] != '-' ? "unexpected argument '" : "unknown option '") + option + "'");
        if (i + 1 >= argc || !argv[i + 1]) return Usage(option + " needs a value");
        const char* value = argv[++i];
        if (option == "--orders") {
            if (!ParseCount(value, 10000000, orders) || orders == 0)
                return Usage(std::string("--orders must be 1 to 10000000, not '") + value + "'");
            haveOrders = true;
        } else if (option == "--seed") {
            if (!ParseCount(value, UINT64_MAX, seed)) return Usage(std::string("bad --seed '") + value + "'");
        } else {
            output = value;
            if (output.empty()) return Usage("--output needs a folder");
        }
    }
    if (!haveOrders) return Usage("--orders is required");
    if (output.empty()) return Usage("--output is required");

    std::string error;
    bool written;
    {
        // SIGINT and SIGTERM stop the run at the next order; its files are removed, the folder's
        // old ones stay, and the program ends by the signal.
        ovcli::HeldSignals held;
        ovcli::Progress progress("generate", static_cast<std::size_t>(orders), quiet);
        written = orderview::generate::WriteMainFolder(output, orders, seed, error, [&](std::uint64_t done) {
            progress.Step(static_cast<std::size_t>(done));
            return !ovcli::HeldSignals::Pending();
        });
        progress.Clear();
        if (!written && ovcli::HeldSignals::Pending()) return 1;  // the signal ends the program here
    }
    if (!written) {
        std::fprintf(stderr, "orderview generate: %s\n", error.c_str());
        return 1;
    }
    if (!quiet) {
        std::string count = std::to_string(orders), grouped;
        for (std::size_t i = 0; i < count.size(); ++i) {
            if (i && (count.size() - i) % 3 == 0) grouped += ',';
            grouped += count[i];
        }
        std::fprintf(stderr, "wrote %s orders to %s\n", grouped.c_str(), output.c_str());
    }
    return 0;
}
