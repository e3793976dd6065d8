/// @file
/// A number of the running camera that a tuning tool can watch.
#pragma once

#include <cstdio>

#include "platform/tavotypes.h"

#pragma pack(push, 1)
/// Part of the wire format.
struct ParameterCTValue
{
    UINT32 ID;
    DOUBLE Value;

    VOID ToString(CHAR* pText, size_t size) const
    {
        std::snprintf(pText, size, "%u=%f", ID, Value);
    }
};
#pragma pack(pop)

static_assert(sizeof(ParameterCTValue) == 12);
