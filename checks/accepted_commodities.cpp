#include "checks/accepted_commodities.h"

#include <cstring>
#include <vector>

#include "order_data/host_api.h"

namespace {

// Finds `comId` in an accepted list; the record's id is NUL-terminated within its field.
template <class Record>
bool FindAccepted(const std::vector<Record>& list, const CString& comId, Record& accepted)
{
    if (comId.IsEmpty()) return false;
    for (const Record& record : list) {
        const size_t length = strnlen(record.szComId, sizeof record.szComId);
        if (length == static_cast<size_t>(comId.GetLength()) && std::memcmp(record.szComId, comId.GetString(), length) == 0) {
            accepted = record;
            return true;
        }
    }
    return false;
}

}  // namespace

bool g_bGetForeignAccptTradeCom(const CString& comId, CAcceptComFfuture& accepted)
{
    return FindAccepted(OrderBK_GetForeignAccptCom(), comId, accepted);
}

bool g_bGetFOptionAccptTradeCom(const CString& comId, CAcceptComFoption& accepted)
{
    return FindAccepted(OrderBK_GetFOptionAccptCom(), comId, accepted);
}
