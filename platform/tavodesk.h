/// @file
/// What the desk stand-in of the utility library offers beyond the device's library: allocation counters for the
/// benchmark and a sink for the system log. Nothing in core/ or parameters/ may use it.
#pragma once

#include "platform/tavocommonutils.h"

namespace TavoDesk
{

/// Calls of TavoCalloc and TavoFree since the process started, and bytes asked for.
struct AllocationCounters
{
    UINT64 allocations;
    UINT64 releases;
    UINT64 bytes;
};

TAVO_VISIBLE AllocationCounters GetAllocationCounters();

/// Receives each formatted line of the system log.
/// @param group, pLetter, level as given to Tavo::Log::LogSystem
typedef VOID (*SystemLogSink)(VOID* pContext, UINT64 group, const CHAR* pLetter, UINT32 level, const CHAR* pLine);

/// Installs the sink. Null restores the default, which writes lines of letter "E" to stderr.
/// Not synchronised: install before other threads log.
TAVO_VISIBLE VOID SetSystemLogSink(SystemLogSink sink, VOID* pContext);

}  // namespace TavoDesk
