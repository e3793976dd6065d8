// What a sanitizer is told in this program; without one nobody asks.

#include "platform/tavocommonutils.h"

extern "C" TAVO_VISIBLE const CHAR* __asan_default_options();
extern "C" TAVO_VISIBLE const CHAR* __lsan_default_suppressions();

/// A request above the campaign's limit ends the process.
const CHAR* __asan_default_options()
{
    return "max_allocation_size_mb=64:allocator_may_return_null=0";
}

/// The function table of an instance outlives it: a host may still look at it after DestroyInstance.
const CHAR* __lsan_default_suppressions()
{
    return "leak:CreateKiroCoreAlgo\n";
}
