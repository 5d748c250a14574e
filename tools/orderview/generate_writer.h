// Writes a synthetic main folder: reference tables and one trading day of orders and deals.
#pragma once

#include <cstdint>
#include <string>

namespace orderview {
namespace generate {

// Writes `folder`/sys/... for `orders` orders, the same files for the same seed. Orders and
// deals are written as they are made, so memory does not grow with the count. False with a
// message naming the file when a folder or file could not be written.
bool WriteMainFolder(const std::string& folder, std::uint64_t orders, std::uint64_t seed, std::string& error);

}  // namespace generate
}  // namespace orderview
