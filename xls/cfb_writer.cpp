#include "xls/detail/cfb_writer.h"

#include <cstring>

namespace xls {
namespace cfb {

namespace {

constexpr std::size_t kSector = 512;
constexpr std::size_t kPerSector = kSector / 4;
constexpr std::size_t kDifatPerSector = kPerSector - 1;

std::size_t Ceil(std::uint64_t value, std::size_t unit) { return static_cast<std::size_t>((value + unit - 1) / unit); }

// The size of a stream entry's content, held or made while writing.
std::uint64_t ContentSize(const Entry& entry) { return entry.produce ? entry.size : entry.data.size(); }

// Makes a stream's content with its producer, checking that it comes out at the stated size.
bool Produce(const Entry& entry, const std::function<bool(const void*, std::size_t)>& put)
{
    std::uint64_t made = 0;
    return entry.produce([&](const void* data, std::size_t size) {
        made += size;
        return made <= entry.size && put(data, size);
    }) && made == entry.size;
}

struct Links {
    std::uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
    std::uint8_t color = 1;
};

// A balanced tree over children[lo, hi): the middle is the root. Nodes on the last, partly
// filled level are red and all others black, so every path has the same black height.
std::uint32_t BuildTree(const std::vector<std::uint32_t>& children, std::size_t lo, std::size_t hi, int depth,
                        int fullLevels, std::vector<Links>& links)
{
    if (lo >= hi) return kNoStream;
    const std::size_t mid = lo + (hi - lo) / 2;
    const std::uint32_t node = children[mid];
    links[node].left = BuildTree(children, lo, mid, depth + 1, fullLevels, links);
    links[node].right = BuildTree(children, mid + 1, hi, depth + 1, fullLevels, links);
    links[node].color = depth < fullLevels ? 1 : 0;
    return node;
}

void PutEntry(std::uint8_t* p, const Entry& entry, const Links& links, std::uint32_t start, std::uint64_t size)
{
    const std::size_t units = entry.name.size() < 32 ? entry.name.size() : 31;
    for (std::size_t i = 0; i < units; ++i) Put16(p + 2 * i, entry.name[i]);
    Put16(p + 64, static_cast<std::uint16_t>(units ? (units + 1) * 2 : 0));
    p[66] = entry.type;
    p[67] = links.color;
    Put32(p + 68, links.left);
    Put32(p + 72, links.right);
    Put32(p + 76, links.child);
    std::memcpy(p + 80, entry.clsid, 16);
    Put32(p + 96, entry.stateBits);
    std::memcpy(p + 100, entry.times, 16);
    Put32(p + 116, start);
    Put32(p + 120, static_cast<std::uint32_t>(size));
}

}  // namespace

bool WriteImage(const std::vector<Entry>& entries, std::vector<std::uint8_t>& image)
{
    std::vector<std::uint8_t> made;
    if (!WriteImage(entries, [&made](const void* data, std::size_t size) {
            const auto* bytes = static_cast<const std::uint8_t*>(data);
            made.insert(made.end(), bytes, bytes + size);
            return true;
        }))
        return false;
    image = std::move(made);
    return true;
}

bool WriteImage(const std::vector<Entry>& input, const std::function<bool(const void*, std::size_t)>& put)
{
    // Compact: keep used entries in their order, renumbered (the root stays 0).
    std::vector<std::uint32_t> renumber(input.size(), kNoStream);
    std::vector<std::uint32_t> order;
    for (std::uint32_t i = 0; i < input.size(); ++i)
        if (input[i].type != kUnused) {
            renumber[i] = static_cast<std::uint32_t>(order.size());
            order.push_back(i);
        }
    const std::size_t count = order.size();

    std::vector<Links> links(count);
    for (std::size_t k = 0; k < count; ++k) {
        const Entry& entry = input[order[k]];
        std::vector<std::uint32_t> children;
        for (std::uint32_t c : entry.children)
            if (c < renumber.size() && renumber[c] != kNoStream) children.push_back(renumber[c]);
        int fullLevels = 0;
        while ((std::size_t{2} << fullLevels) - 1 <= children.size()) ++fullLevels;
        links[k].child = BuildTree(children, 0, children.size(), 0, fullLevels, links);
    }
    links[0].color = 1;

    // Sizes of the parts.
    std::size_t miniSectors = 0, bigSectors = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const Entry& entry = input[order[k]];
        if (entry.type != kStream) continue;
        if (ContentSize(entry) < kMiniCutoff)
            miniSectors += Ceil(ContentSize(entry), kMiniSectorSize);
        else
            bigSectors += Ceil(ContentSize(entry), kSector);
    }
    const std::size_t dirSectors = Ceil(count * kDirEntrySize, kSector);
    const std::size_t miniFatSectors = Ceil(miniSectors, kPerSector);
    const std::size_t miniStreamBytes = miniSectors * kMiniSectorSize;
    const std::size_t miniStreamSectors = Ceil(miniStreamBytes, kSector);
    const std::size_t dataSectors = dirSectors + miniFatSectors + miniStreamSectors + bigSectors;
    std::size_t fatSectors = 1, difatSectors = 0;
    for (;;) {
        difatSectors = fatSectors > kHeaderDifatEntries ? Ceil(fatSectors - kHeaderDifatEntries, kDifatPerSector) : 0;
        if (fatSectors * kPerSector >= dataSectors + fatSectors + difatSectors) break;
        ++fatSectors;
    }
    // Everything before the large streams is laid out here; the large streams follow it.
    const std::size_t headSectors = fatSectors + difatSectors + dataSectors - bigSectors;
    std::vector<std::uint8_t> image((headSectors + 1) * kSector, 0);
    auto sector = [&](std::size_t n) { return image.data() + (n + 1) * kSector; };

    std::vector<std::uint32_t> fat(fatSectors * kPerSector, kFree);
    std::vector<std::uint32_t> miniFat(miniFatSectors * kPerSector, kFree);
    std::size_t next = 0;
    for (std::size_t i = 0; i < fatSectors; ++i) fat[next++] = kFatSector;
    const std::size_t firstDifat = next;
    for (std::size_t i = 0; i < difatSectors; ++i) fat[next++] = kDifatSector;
    auto chain = [](std::vector<std::uint32_t>& table, std::size_t& cursor, std::size_t length) {
        const std::size_t first = cursor;
        for (std::size_t i = 0; i < length; ++i, ++cursor)
            table[cursor] = i + 1 < length ? static_cast<std::uint32_t>(cursor + 1) : kEndOfChain;
        return length ? static_cast<std::uint32_t>(first) : kEndOfChain;
    };
    const std::uint32_t firstDir = chain(fat, next, dirSectors);
    const std::uint32_t firstMiniFat = chain(fat, next, miniFatSectors);
    const std::uint32_t firstMiniStream = chain(fat, next, miniStreamSectors);

    // Streams: place small ones' data, record start sectors.
    std::vector<std::uint32_t> starts(count, kEndOfChain);
    std::vector<const Entry*> big;
    std::size_t miniNext = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const Entry& entry = input[order[k]];
        const std::uint64_t size = ContentSize(entry);
        if (entry.type != kStream || size == 0) continue;
        if (size < kMiniCutoff) {
            std::uint8_t* at = sector(firstMiniStream) + miniNext * kMiniSectorSize;
            starts[k] = chain(miniFat, miniNext, Ceil(size, kMiniSectorSize));
            // The mini stream lies in consecutive sectors, so its bytes are contiguous here.
            if (!entry.produce)
                std::memcpy(at, entry.data.data(), entry.data.size());
            else if (!Produce(entry, [&at](const void* data, std::size_t n) {
                         std::memcpy(at, data, n);
                         at += n;
                         return true;
                     }))
                return false;
        } else {
            starts[k] = chain(fat, next, Ceil(size, kSector));
            big.push_back(&entry);
        }
    }

    // Directory.
    for (std::size_t k = 0; k < count; ++k) {
        const Entry& entry = input[order[k]];
        std::uint32_t start = starts[k];
        std::uint64_t size = entry.type == kStream ? ContentSize(entry) : 0;
        if (k == 0) {
            start = miniStreamBytes ? firstMiniStream : kEndOfChain;
            size = miniStreamBytes;
        }
        PutEntry(sector(firstDir) + k * kDirEntrySize, entry, links[k], start, size);
    }
    for (std::size_t i = 0; i < fat.size(); ++i) Put32(sector(i / kPerSector) + 4 * (i % kPerSector), fat[i]);
    for (std::size_t i = 0; i < miniFat.size(); ++i)
        Put32(sector(firstMiniFat + i / kPerSector) + 4 * (i % kPerSector), miniFat[i]);

    // Header and extension sectors.
    std::uint8_t* h = image.data();
    std::memcpy(h, kSignature, sizeof kSignature);
    Put16(h + 24, 0x003B);
    Put16(h + 26, 3);
    Put16(h + 28, 0xFFFE);
    Put16(h + 30, 9);
    Put16(h + 32, 6);
    Put32(h + 44, static_cast<std::uint32_t>(fatSectors));
    Put32(h + 48, firstDir);
    Put32(h + 56, kMiniCutoff);
    Put32(h + 60, miniFatSectors ? firstMiniFat : kEndOfChain);
    Put32(h + 64, static_cast<std::uint32_t>(miniFatSectors));
    Put32(h + 68, difatSectors ? static_cast<std::uint32_t>(firstDifat) : kEndOfChain);
    Put32(h + 72, static_cast<std::uint32_t>(difatSectors));
    for (std::size_t i = 0; i < kHeaderDifatEntries; ++i)
        Put32(h + 76 + 4 * i, i < fatSectors ? static_cast<std::uint32_t>(i) : kFree);
    for (std::size_t d = 0; d < difatSectors; ++d) {
        std::uint8_t* p = sector(firstDifat + d);
        for (std::size_t i = 0; i < kDifatPerSector; ++i) {
            const std::size_t fatIndex = kHeaderDifatEntries + d * kDifatPerSector + i;
            Put32(p + 4 * i, fatIndex < fatSectors ? static_cast<std::uint32_t>(fatIndex) : kFree);
        }
        Put32(p + 4 * kDifatPerSector,
              d + 1 < difatSectors ? static_cast<std::uint32_t>(firstDifat + d + 1) : kEndOfChain);
    }
    if (!put(image.data(), image.size())) return false;
    static const std::uint8_t kPadding[kSector] = {};
    for (const Entry* entry : big) {
        const std::size_t tail = ContentSize(*entry) % kSector;
        const bool written = entry->produce ? Produce(*entry, put) : put(entry->data.data(), entry->data.size());
        if (!written || (tail && !put(kPadding, kSector - tail))) return false;
    }
    return true;
}

}  // namespace cfb
}  // namespace xls
