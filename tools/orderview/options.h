// Command-line options of the orderview program: "--name value" pairs and "--flag" switches.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace ovcli {

class Options {
public:
    // Parses argv[first..]; `valued` names the options that take a value, `flags` those that
    // do not ("-h" stands for "--help" when "help" is a flag). False (with Error() set) on an
    // unknown option (long or short) or a missing value.
    bool Parse(int argc, char** argv, int first, const std::set<std::string>& valued,
               const std::set<std::string>& flags);

    bool Has(const std::string& name) const { return values_.count(name) != 0; }
    std::string Get(const std::string& name, const std::string& fallback = "") const;
    // The value as a whole number in [min, max], decimal or "0x" hexadecimal ("010" is ten);
    // false (with Error() set) when it is not one.
    bool GetInt(const std::string& name, long long min, long long max, long long& out);
    const std::vector<std::string>& Positional() const { return positional_; }
    const std::string& Error() const { return error_; }

private:
    std::map<std::string, std::string> values_;
    std::vector<std::string> positional_;
    std::string error_;
};

}  // namespace ovcli
