// Strict parsers for the texts of the default host's tables (internal).
#pragma once

#include <cstdint>
#include <string>

namespace orderview {
namespace detail {

// Each returns false (leaving `out` as it was) unless the whole text is a valid value.
bool ParseUInt(const std::string& text, std::uint64_t max, std::uint64_t& out);
bool ParseInt(const std::string& text, std::int32_t& out);
bool ParseDouble(const std::string& text, double& out);
bool ParseBool(const std::string& text, bool& out);        // 0/1, true/false, yes/no, empty = false
bool ParseCharCode(const std::string& text, std::uint32_t& out);  // one character, or empty = 0

}  // namespace detail
}  // namespace orderview
