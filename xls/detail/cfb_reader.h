// Reads a compound file image held in memory (internal). Every stored number is checked before
// it is used: sector numbers against the table, chains for loops and length, directory links for
// range and cycles, stream sizes against their chains, the mini stream against the root's stream.
#pragma once

#include <cstdint>
#include <vector>

#include "xls/detail/cfb_format.h"

namespace xls {
namespace cfb {

class Reader {
public:
    // Parses the header, the tables and the directory; false when the image is not a compound
    // file or is damaged beyond the tolerances of the format. The image must outlive the reader.
    bool Parse(const std::uint8_t* data, std::size_t size);

    const std::vector<Entry>& entries() const { return entries_; }
    std::vector<Entry>& entries() { return entries_; }
    // The whole content of a stream entry; false when its chain cannot hold its size.
    bool ReadStream(std::uint32_t index, std::vector<std::uint8_t>& out) const;
    // The bytes of a stream entry where they lie in the image, when its sectors follow one
    // another whole within the file (as writers lay out a large stream); false otherwise, and
    // then ReadStream copies it.
    bool StreamInPlace(std::uint32_t index, const std::uint8_t*& data, std::size_t& size) const;

private:
    bool ReadHeader();
    bool LoadFat();
    bool LoadMiniFat();
    bool LoadDirectory();
    bool BuildTree();
    // The first `needed` sectors of a chain (all of it when needed is 0); false on a sector outside
    // the table, a loop, or a chain shorter than needed. When `lenient`, a loop or a sector outside
    // the table ends the chain instead (the directory and mini table of damaged files are read
    // that far, as other readers do).
    bool Chain(std::uint32_t start, const std::vector<std::uint32_t>& table, std::size_t needed,
               std::vector<std::uint32_t>& out, bool lenient = false) const;
    // Copies the part of sector n that lies in the file to dst; the rest of dst is left as it was.
    void ReadSector(std::uint32_t n, std::uint8_t* dst) const;
    bool SectorInFile(std::uint32_t n) const;

    const std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t sectorSize_ = 512;
    int majorVersion_ = 3;
    std::uint32_t miniCutoff_ = kMiniCutoff;
    std::vector<std::uint32_t> fat_;
    std::vector<std::uint32_t> miniFat_;
    std::vector<std::uint8_t> miniStream_;
    std::vector<Entry> entries_;
};

}  // namespace cfb
}  // namespace xls
