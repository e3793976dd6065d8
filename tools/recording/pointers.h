/// @file
/// Pointers among the inputs of a call, for writing and reading alike.
#pragma once

#include "tools/recording/identities.h"

namespace recording
{

/// Whether there is something; a replay gets zeroed memory for it. What it holds follows.
template <typename A, typename T> bool Pointer(A& rInputs, const CHAR* pName, T*& rpTarget)
{
    if constexpr (A::IsReading)
    {
        return rInputs.PresenceInto(pName, rpTarget);
    }
    else
    {
        return rInputs.Presence(pName, rpTarget);
    }
}

/// The same for something that may not be read; a replay gets some zeros.
template <typename A> bool Blank(A& rInputs, const CHAR* pName, VOID*& rpTarget)
{
    constexpr size_t size = 64;
    if constexpr (A::IsReading)
    {
        rpTarget = rInputs.Presence(pName) ? rInputs.Memory().Make(size) : nullptr;
        return rpTarget != nullptr;
    }
    else
    {
        return rInputs.Presence(pName, rpTarget);
    }
}

}  // namespace recording
