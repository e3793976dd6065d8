/// @file
/// Numbers of any alignment in the bytes of an input.
#pragma once

#include <cstring>

#include "platform/tavotypes.h"

namespace fuzz
{

template <typename T> T Load(const BYTE* pPlace)
{
    T value;
    std::memcpy(&value, pPlace, sizeof(value));
    return value;
}

template <typename T> VOID Store(BYTE* pPlace, T value)
{
    std::memcpy(pPlace, &value, sizeof(value));
}

}  // namespace fuzz
