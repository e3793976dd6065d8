/// @file
/// Reading optional parts of tuning records.
#pragma once

#include "platform/tavotypes.h"

namespace tuningvalues
{

/// @return a text for logs, also for null
inline const CHAR* TextOf(const CHAR* pText)
{
    return (pText != nullptr) ? pText : "";
}

/// @return the count of a tuned array, 0 for an array that is not there
template <typename T> UINT32 CountOf(const T* pArray, UINT32 count)
{
    return (pArray != nullptr) ? count : 0;
}

}  // namespace tuningvalues
