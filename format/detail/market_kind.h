// Market kinds as the lists and checks group them (internal).
#pragma once

#include <cstdint>

namespace orderview {
namespace detail {

// '0', '1', '2', '4', '7', '8': futures and options; every other kind is a stock kind.
inline bool IsFuturesKind(std::uint32_t marketKind)
{
    return marketKind == '0' || marketKind == '1' || marketKind == '2' || marketKind == '4' ||
           marketKind == '7' || marketKind == '8';
}

}  // namespace detail
}  // namespace orderview
