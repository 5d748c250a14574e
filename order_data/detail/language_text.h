// The library's one way to a language text (internal): the installed host's text of an id.
#pragma once

#include "order_data/cstring.h"
#include "order_data/host_api.h"

namespace orderview {
namespace detail {

// The host's language text of `id`; an empty id is the empty text and asks nothing.
inline CString LangText(const CString& id)
{
    return id.IsEmpty() ? CString() : BKOrderInterface::GetBKInterface().LangGetLangString(id);
}

}  // namespace detail
}  // namespace orderview
