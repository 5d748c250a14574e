// Process-wide smart-order registries: reset for tests and tools.
#pragma once

#include "order_data/visibility.h"

namespace orderview {

// Empties every smart-order registry (OCO, SMT, moving SMT, market-order flags and symbols),
// as they are when the library has just been loaded.
ORDERVIEW_API void ResetSmartOrderRegistries();

}  // namespace orderview
