// Strict parsers for the texts of the default host's tables (internal).
#pragma once

#include <cstdint>
#include <string_view>

namespace orderview {
namespace detail {

// Each returns false (leaving `out` as it was) unless the whole text is a valid value.
bool ParseUInt(std::string_view text, std::uint64_t max, std::uint64_t& out);
bool ParseInt(std::string_view text, std::int32_t& out);
bool ParseDouble(std::string_view text, double& out);
bool ParseBool(std::string_view text, bool& out);        // 0/1, true/false, yes/no, empty = false
bool ParseCharCode(std::string_view text, std::uint32_t& out);  // one character, or empty = 0

}  // namespace detail
}  // namespace orderview
