#include "format/quote_items.h"

#include <vector>

#include "order_data/host_api.h"

X1Format g_xGetSymbolInfoByItem(unsigned char serviceId, const CString& symbolId, unsigned short itemNo)
{
    std::vector<X1Format> values;
    if (!BKOrderInterface::GetBKInterface().bGetItemDataByItemNo(serviceId, symbolId, {itemNo}, values,
                                                                 true, nullptr))
        return X1Format(itemNo, 0, 0.0);
    for (const X1Format& value : values)
        if (value.wGetItemNo() == itemNo) return value;
    return X1Format(itemNo, 0, 0.0);
}

double g_GetSymbolInfoByItem(unsigned char serviceId, const CString& symbolId, unsigned short itemNo)
{
    return static_cast<double>(g_xGetSymbolInfoByItem(serviceId, symbolId, itemNo));
}
