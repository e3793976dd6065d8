/// @file
/// The logger of a host that wants no log.
#pragma once

#include "platform/tavotypes.h"

inline VOID DiscardLog(const CHAR*, INT32, const CHAR*, UINT32, UINT32, const CHAR*, ...)
{
}
