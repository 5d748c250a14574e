#include "options.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>

namespace ovcli {

bool Options::Parse(int argc, char** argv, int first, const std::set<std::string>& valued,
                    const std::set<std::string>& flags)
{
    for (int i = first; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "-h" && flags.count("help")) {
            values_["help"] = "1";
            continue;
        }
        if (arg.size() >= 2 && arg[0] == '-' && arg[1] != '-') {
            error_ = "unknown option " + arg;
            return false;
        }
        if (arg.size() < 3 || arg.compare(0, 2, "--") != 0) {
            positional_.push_back(arg);
            continue;
        }
        std::string name = arg.substr(2), value;
        const auto eq = name.find('=');
        const bool inlineValue = eq != std::string::npos;
        if (inlineValue) {
            value = name.substr(eq + 1);
            name = name.substr(0, eq);
        }
        if (flags.count(name) && !inlineValue) {
            values_[name] = "1";
        } else if (valued.count(name)) {
            if (!inlineValue) {
                if (i + 1 >= argc) {
                    error_ = "option --" + name + " needs a value";
                    return false;
                }
                value = argv[++i];
            }
            values_[name] = value;
        } else {
            error_ = "unknown option --" + name;
            return false;
        }
    }
    return true;
}

std::string Options::Get(const std::string& name, const std::string& fallback) const
{
    const auto it = values_.find(name);
    return it == values_.end() ? fallback : it->second;
}

bool Options::GetInt(const std::string& name, long long min, long long max, long long& out)
{
    // Decimal, or hexadecimal after "0x": a leading zero does not make a number octal.
    const std::string text = Get(name);
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const std::string digits = hex ? text.substr(2) : text;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(digits.c_str(), &end, hex ? 16 : 10);
    if (digits.empty() || !std::isxdigit(static_cast<unsigned char>(digits[0])) || *end || errno == ERANGE ||
        value < min || value > max) {
        error_ = "--" + name + " wants a number from " + std::to_string(min) + " to " + std::to_string(max) +
                 ", not '" + text + "'";
        return false;
    }
    out = value;
    return true;
}

}  // namespace ovcli
