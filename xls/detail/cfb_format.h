// The compound file format: constants, the header, directory entries and little-endian access
// (internal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "xls/little_endian.h"

namespace xls {
namespace cfb {

constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFatSector = 0xFFFFFFFD;
constexpr std::uint32_t kDifatSector = 0xFFFFFFFC;
constexpr std::uint32_t kMaxRegular = 0xFFFFFFFA;  // sector numbers above this are special
constexpr std::uint32_t kNoStream = 0xFFFFFFFF;    // an absent directory link

constexpr std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t kHeaderDifatEntries = 109;
constexpr std::size_t kDirEntrySize = 128;
constexpr std::uint32_t kMiniCutoff = 4096;
constexpr std::size_t kMiniSectorSize = 64;
constexpr std::size_t kMaxNameUnits = 31;  // plus the terminator in 32 code units

enum EntryType : std::uint8_t { kUnused = 0, kStorage = 1, kStream = 2, kRoot = 5 };

inline std::uint16_t Get16(const std::uint8_t* p) { return le::U16(p); }
inline std::uint32_t Get32(const std::uint8_t* p) { return le::U32(p); }
using le::Put16;
using le::Put32;

// One directory entry with its place in the storage tree.
struct Entry {
    std::u16string name;
    std::uint8_t type = kUnused;
    std::uint8_t color = 1;
    std::uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
    std::uint8_t clsid[16] = {};
    std::uint32_t stateBits = 0;
    std::uint8_t times[16] = {};  // creation and modification
    std::uint32_t start = kEndOfChain;
    std::uint64_t size = 0;
    // Tree built from the links: children in directory order.
    int parent = -1;
    std::vector<std::uint32_t> children;
    // Content of a stream once it is held in memory (for writing).
    std::vector<std::uint8_t> data;
    // For writing instead of `data`: makes the stream's `size` bytes, handing them to `put` in
    // pieces as the file is written; false when `put` fails or it cannot make them.
    std::function<bool(const std::function<bool(const void*, std::size_t)>& put)> produce;
};

// Directory order: shorter names first, then code unit by code unit as unsigned values.
inline bool DirectoryLess(const std::u16string& a, const std::u16string& b)
{
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

}  // namespace cfb
}  // namespace xls
