// Writes a directory with its streams as a version 3 compound file image (internal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "xls/detail/cfb_format.h"

namespace xls {
namespace cfb {

// Lays out the entries (entry 0 the root; children lists in directory order; stream content in
// `data`) as a compound file: table sectors first, then the directory, the mini table, the mini
// stream and the large streams, each chain in consecutive sectors. Unused entries are dropped.
// Sibling links are rebuilt as balanced red-black trees.
// The image goes to `image`; false (and `image` as it was) when a stream's producer fails.
bool WriteImage(const std::vector<Entry>& entries, std::vector<std::uint8_t>& image);
// The same image handed to `put` in pieces, the large streams straight from their entries (no
// copy of the whole image is made); false as soon as `put` fails.
bool WriteImage(const std::vector<Entry>& entries, const std::function<bool(const void*, std::size_t)>& put);

}  // namespace cfb
}  // namespace xls
