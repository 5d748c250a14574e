// Feeds one input to the compound file reader the way a user's file reaches it: open, list,
// and read every stream. Shared by the fuzz target and the regression test of its findings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "xls/compound_file.h"

inline void FeedCompoundFile(const std::uint8_t* data, std::size_t size)
{
    xls::CompoundFile cf;
    if (!cf.OpenMemory(data, size)) return;
    std::vector<std::uint8_t> content;
    for (const auto& entry : cf.List())
        if (!entry.storage) cf.ReadStream(entry.path, content);
    std::wstring name;
    cf.FindStreamNoCase(L"workbook", name);
}
