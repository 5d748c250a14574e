// Writes a synthetic main folder: reference tables and one trading day of orders and deals.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace orderview {
namespace generate {

// Writes `folder`/sys/... for `orders` orders, the same files for the same seed. Orders and
// deals are written as they are made, so memory does not grow with the count. False with a
// message naming the file when a folder or file could not be written. Every file is written
// under a temporary name and renamed into place at the end, so a run that fails or is stopped
// leaves the folder's old files. `onOrder` (when set) is called before each order with the
// count written; when it returns false the run stops with the error "interrupted".
bool WriteMainFolder(const std::string& folder, std::uint64_t orders, std::uint64_t seed, std::string& error,
                     const std::function<bool(std::uint64_t)>& onOrder = {});

}  // namespace generate
}  // namespace orderview
