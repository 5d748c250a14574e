// Little-endian integers and doubles, assembled and split byte by byte so that files read and
// write the same on any host; the record layer reads and writes every field through them.
#pragma once

#include <cstdint>
#include <cstring>

namespace xls {
namespace le {

inline std::uint16_t U16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | (p[1] << 8)); }
inline std::uint32_t U32(const std::uint8_t* p)
{
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}
// Written as one expression, which compilers turn into a single load on little-endian hosts.
inline double F64(const std::uint8_t* p)
{
    const std::uint64_t bits = static_cast<std::uint64_t>(U32(p)) | (static_cast<std::uint64_t>(U32(p + 4)) << 32);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}
inline void Put16(std::uint8_t* p, std::uint16_t v)
{
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}
inline void Put32(std::uint8_t* p, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
inline void PutF64(std::uint8_t* p, double v)
{
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    for (int i = 0; i < 8; ++i) p[i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

}  // namespace le
}  // namespace xls
