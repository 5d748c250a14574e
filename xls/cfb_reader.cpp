#include "xls/detail/cfb_reader.h"

#include <algorithm>
#include <cstring>

namespace xls {
namespace cfb {

bool Reader::SectorInFile(std::uint32_t n) const
{
    return n <= kMaxRegular && (static_cast<std::uint64_t>(n) + 1) * sectorSize_ < size_;
}

void Reader::ReadSector(std::uint32_t n, std::uint8_t* dst) const
{
    if (!SectorInFile(n)) return;  // a block past the end leaves the buffer as it was
    const std::size_t offset = (static_cast<std::size_t>(n) + 1) * sectorSize_;
    std::memcpy(dst, data_ + offset, std::min(sectorSize_, size_ - offset));
}

bool Reader::Parse(const std::uint8_t* data, std::size_t size)
{
    data_ = data;
    size_ = size;
    fat_.clear();
    miniFat_.clear();
    miniStream_.clear();
    entries_.clear();
    return ReadHeader() && LoadFat() && LoadMiniFat() && LoadDirectory() && BuildTree();
}

bool Reader::ReadHeader()
{
    if (size_ < 512 || std::memcmp(data_, kSignature, sizeof kSignature) != 0) return false;
    const std::uint16_t sectorShift = Get16(data_ + 30);
    const std::uint16_t miniShift = Get16(data_ + 32);
    if ((sectorShift != 9 && sectorShift != 12) || miniShift != 6) return false;
    sectorSize_ = std::size_t{1} << sectorShift;
    majorVersion_ = Get16(data_ + 26);
    miniCutoff_ = Get32(data_ + 56);
    return true;
}

bool Reader::LoadFat()
{
    const std::uint32_t declared = Get32(data_ + 44);
    const std::size_t perSector = sectorSize_ / 4;
    const std::size_t sectorsInFile = size_ / sectorSize_;
    // The table sectors: the header's list, then the extension (DIFAT) chain. A declared count
    // larger than the list is cut where the list ends, as readers of real files do.
    std::vector<std::uint32_t> tableSectors;
    for (std::size_t i = 0; i < kHeaderDifatEntries && tableSectors.size() < declared; ++i) {
        const std::uint32_t n = Get32(data_ + 76 + 4 * i);
        if (n > kMaxRegular) break;
        tableSectors.push_back(n);
    }
    std::uint32_t difat = Get32(data_ + 68);
    std::vector<std::uint8_t> buffer(sectorSize_);
    std::size_t visited = 0;
    while (tableSectors.size() < declared && difat <= kMaxRegular) {
        if (!SectorInFile(difat) || ++visited > sectorsInFile) return false;  // outside, or a loop
        std::fill(buffer.begin(), buffer.end(), 0xFF);
        ReadSector(difat, buffer.data());
        bool ended = false;
        for (std::size_t i = 0; i + 1 < perSector && tableSectors.size() < declared; ++i) {
            const std::uint32_t n = Get32(buffer.data() + 4 * i);
            if (n > kMaxRegular) {
                ended = true;
                break;
            }
            tableSectors.push_back(n);
        }
        if (ended) break;
        difat = Get32(buffer.data() + 4 * (perSector - 1));
    }
    if (tableSectors.size() > sectorsInFile) return false;
    fat_.reserve(tableSectors.size() * perSector);
    for (std::uint32_t n : tableSectors) {
        // A table sector past the end of a truncated file reads as free entries.
        std::fill(buffer.begin(), buffer.end(), 0xFF);
        ReadSector(n, buffer.data());
        for (std::size_t i = 0; i < perSector; ++i) fat_.push_back(Get32(buffer.data() + 4 * i));
    }
    return !fat_.empty();
}

bool Reader::Chain(std::uint32_t start, const std::vector<std::uint32_t>& table, std::size_t needed,
                   std::vector<std::uint32_t>& out, bool lenient) const
{
    out.clear();
    out.reserve(needed ? std::min(needed, table.size()) : 0);
    std::vector<bool> seen(table.size(), false);
    for (std::uint32_t n = start; n != kEndOfChain && (needed == 0 || out.size() < needed); n = table[n]) {
        if (lenient && (n >= table.size() || seen[n])) break;
        if (n >= table.size() || seen[n]) return false;
        seen[n] = true;
        out.push_back(n);
    }
    return needed == 0 || out.size() >= needed;
}

bool Reader::LoadMiniFat()
{
    const std::uint32_t start = Get32(data_ + 60);
    const std::uint32_t count = Get32(data_ + 64);
    if (count == 0 || start == kEndOfChain) return true;
    std::vector<std::uint32_t> sectors;
    if (!Chain(start, fat_, 0, sectors, true)) return false;
    if (sectors.size() > count) sectors.resize(count);
    const std::size_t perSector = sectorSize_ / 4;
    std::vector<std::uint8_t> buffer(sectorSize_);
    miniFat_.reserve(sectors.size() * perSector);
    for (std::uint32_t n : sectors) {
        std::fill(buffer.begin(), buffer.end(), 0xFF);
        ReadSector(n, buffer.data());
        for (std::size_t i = 0; i < perSector; ++i) miniFat_.push_back(Get32(buffer.data() + 4 * i));
    }
    return true;
}

bool Reader::LoadDirectory()
{
    std::vector<std::uint32_t> sectors;
    if (!Chain(Get32(data_ + 48), fat_, 0, sectors, true) || sectors.empty()) return false;
    if (sectors.size() > size_ / sectorSize_) return false;  // more directory than file
    std::vector<std::uint8_t> buffer(sectorSize_);
    for (std::uint32_t n : sectors) {
        std::fill(buffer.begin(), buffer.end(), 0);
        ReadSector(n, buffer.data());
        bool sectorEnded = false;
        for (std::size_t k = 0; k < sectorSize_ / kDirEntrySize; ++k) {
            const std::uint8_t* p = buffer.data() + k * kDirEntrySize;
            Entry entry;
            const std::size_t nameUnits = std::min<std::size_t>(Get16(p + 64) / 2, 32);
            for (std::size_t i = 0; i < nameUnits; ++i) {
                const char16_t unit = static_cast<char16_t>(Get16(p + 2 * i));
                if (unit == 0) break;
                entry.name += unit;
            }
            // The first entry without a name ends its sector; the rest of it counts as unused.
            if (entry.name.empty()) sectorEnded = true;
            if (!sectorEnded) {
                const std::uint8_t type = p[66];
                entry.type = (type == kStorage || type == kStream || type == kRoot) ? type : static_cast<std::uint8_t>(kUnused);
                entry.color = p[67];
                entry.left = Get32(p + 68);
                entry.right = Get32(p + 72);
                entry.child = Get32(p + 76);
                std::memcpy(entry.clsid, p + 80, 16);
                entry.stateBits = Get32(p + 96);
                std::memcpy(entry.times, p + 100, 16);
                entry.start = Get32(p + 116);
                entry.size = Get32(p + 120);
                if (majorVersion_ >= 4) entry.size |= static_cast<std::uint64_t>(Get32(p + 124)) << 32;
            }
            entries_.push_back(std::move(entry));
        }
    }
    return !entries_.empty() && entries_[0].type == kRoot;
}

bool Reader::BuildTree()
{
    std::vector<bool> placed(entries_.size(), false);
    placed[0] = true;
    std::vector<std::uint32_t> storages = {0};
    std::vector<std::uint32_t> stack;
    while (!storages.empty()) {
        const std::uint32_t parent = storages.back();
        storages.pop_back();
        // In-order walk of the parent's sibling tree, without recursion. A link to an unused entry
        // (or one of no known type) counts as absent, so its own links are never followed.
        auto link = [&](std::uint32_t n) { return n < entries_.size() && entries_[n].type == kUnused ? kNoStream : n; };
        std::uint32_t node = link(entries_[parent].child);
        stack.clear();
        while (node != kNoStream || !stack.empty()) {
            while (node != kNoStream) {
                if (node >= entries_.size() || placed[node]) return false;  // outside, or a cycle
                placed[node] = true;
                stack.push_back(node);
                node = link(entries_[node].left);
            }
            node = stack.back();
            stack.pop_back();
            entries_[node].parent = static_cast<int>(parent);
            entries_[parent].children.push_back(node);
            if (entries_[node].type == kStorage) storages.push_back(node);
            node = link(entries_[node].right);
        }
    }
    // The mini stream is the root's stream.
    const Entry& root = entries_[0];
    if (root.size == 0) return true;
    std::vector<std::uint32_t> sectors;
    const std::size_t needed = static_cast<std::size_t>((root.size + sectorSize_ - 1) / sectorSize_);
    // No stream holds more than the file does: memory stays bounded by the file size. A damaged
    // mini stream is left empty, so that only the small streams fail to read.
    if (root.size > size_ || !Chain(root.start, fat_, needed, sectors)) return true;
    miniStream_.assign(static_cast<std::size_t>(root.size), 0);
    std::vector<std::uint8_t> buffer(sectorSize_);
    for (std::size_t i = 0; i < sectors.size(); ++i) {
        std::fill(buffer.begin(), buffer.end(), 0);
        ReadSector(sectors[i], buffer.data());
        const std::size_t at = i * sectorSize_;
        std::memcpy(miniStream_.data() + at, buffer.data(), std::min(sectorSize_, miniStream_.size() - at));
    }
    return true;
}

bool Reader::ReadStream(std::uint32_t index, std::vector<std::uint8_t>& out) const
{
    out.clear();
    if (index >= entries_.size() || entries_[index].type != kStream) return false;
    const Entry& entry = entries_[index];
    if (entry.size == 0) return true;
    std::vector<std::uint32_t> sectors;
    if (entry.size < miniCutoff_) {
        const std::size_t needed = static_cast<std::size_t>((entry.size + kMiniSectorSize - 1) / kMiniSectorSize);
        if (entry.size > miniStream_.size() || !Chain(entry.start, miniFat_, needed, sectors))
            return false;
        out.resize(static_cast<std::size_t>(entry.size));
        for (std::size_t i = 0; i < sectors.size(); ++i) {
            const std::size_t at = i * kMiniSectorSize;
            const std::size_t length = std::min(kMiniSectorSize, out.size() - at);
            const std::size_t from = static_cast<std::size_t>(sectors[i]) * kMiniSectorSize;
            if (from + length > miniStream_.size()) {  // beyond the root's stream
                out.clear();
                return false;
            }
            std::memcpy(out.data() + at, miniStream_.data() + from, length);
        }
        return true;
    }
    const std::size_t needed = static_cast<std::size_t>((entry.size + sectorSize_ - 1) / sectorSize_);
    if (entry.size > size_ || !Chain(entry.start, fat_, needed, sectors)) return false;
    out.resize(static_cast<std::size_t>(entry.size));
    std::vector<std::uint8_t> buffer(sectorSize_);
    for (std::size_t i = 0; i < sectors.size(); ++i) {
        const std::size_t at = i * sectorSize_;
        const std::size_t length = std::min(sectorSize_, out.size() - at);
        if (length == sectorSize_) {
            ReadSector(sectors[i], out.data() + at);
        } else {
            std::fill(buffer.begin(), buffer.end(), 0);
            ReadSector(sectors[i], buffer.data());
            std::memcpy(out.data() + at, buffer.data(), length);
        }
    }
    return true;
}

bool Reader::StreamInPlace(std::uint32_t index, const std::uint8_t*& data, std::size_t& size) const
{
    if (index >= entries_.size() || entries_[index].type != kStream) return false;
    const Entry& entry = entries_[index];
    if (entry.size == 0 || entry.size < miniCutoff_ || entry.size > size_) return false;
    // The chain must run through `needed` sectors one after the other: each entry of the table
    // names the next sector (such a chain cannot loop, so no list of the sectors is made).
    const std::size_t needed = static_cast<std::size_t>((entry.size + sectorSize_ - 1) / sectorSize_);
    const std::size_t first = entry.start;
    if (first >= fat_.size() || needed > fat_.size() - first) return false;
    for (std::size_t i = 0; i + 1 < needed; ++i)
        if (fat_[first + i] != first + i + 1) return false;
    const std::size_t offset = (first + 1) * sectorSize_;
    if (offset > size_ || entry.size > size_ - offset) return false;
    data = data_ + offset;
    size = static_cast<std::size_t>(entry.size);
    return true;
}

}  // namespace cfb
}  // namespace xls
