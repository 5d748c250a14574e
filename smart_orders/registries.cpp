#include "smart_orders/registries.h"

#include "smart_orders/detail/registry_reset.h"

namespace orderview {

void ResetSmartOrderRegistries()
{
    detail::ResetOcoRegistries();
    detail::ResetSmtRegistries();
    detail::ResetMoveSmtRegistry();
    detail::ResetMarketRegistries();
}

}  // namespace orderview
