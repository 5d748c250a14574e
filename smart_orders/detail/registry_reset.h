// Reset hooks of the registry units (internal).
#pragma once

namespace orderview {
namespace detail {
void ResetOcoRegistries();
void ResetSmtRegistries();
void ResetMoveSmtRegistry();
void ResetMarketRegistries();
}  // namespace detail
}  // namespace orderview
