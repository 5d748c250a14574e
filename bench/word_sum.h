// The one pass over a file's bytes that the load floor and the load bound make: bytes summed
// eight at a time, so that reading, not adding, sets the time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

inline std::uint64_t SumWords(const unsigned char* bytes, std::size_t size)
{
    std::uint64_t sum = 0;
    std::size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, sizeof word);
        sum += word;
    }
    for (; i < size; ++i) sum += bytes[i];
    return sum;
}
