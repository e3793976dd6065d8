#include "bench/allocationcounter.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <malloc.h>

#include "platform/tavodesk.h"

// The C library's allocator stands in front of every other: operator new and TavoCalloc end here, too. The functions
// below take the place of its entry points in the whole process, the exposure core included, and pass on to it.
extern "C"
{
    VOID* __libc_malloc(size_t size);
    VOID* __libc_calloc(size_t count, size_t size);
    VOID* __libc_realloc(VOID* pMemory, size_t size);
    VOID* __libc_memalign(size_t alignment, size_t size);
}

namespace
{

std::atomic<UINT64> g_calls{0};

VOID CountCall()
{
    g_calls.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

extern "C"
{
    TAVO_VISIBLE VOID* malloc(size_t size) noexcept
    {
        CountCall();
        return __libc_malloc(size);
    }

    TAVO_VISIBLE VOID* calloc(size_t count, size_t size) noexcept
    {
        CountCall();
        return __libc_calloc(count, size);
    }

    TAVO_VISIBLE VOID* realloc(VOID* pMemory, size_t size) noexcept
    {
        CountCall();
        return __libc_realloc(pMemory, size);
    }

    TAVO_VISIBLE VOID* aligned_alloc(size_t alignment, size_t size) noexcept
    {
        CountCall();
        return __libc_memalign(alignment, size);
    }

    TAVO_VISIBLE VOID* memalign(size_t alignment, size_t size) noexcept
    {
        CountCall();
        return __libc_memalign(alignment, size);
    }

    TAVO_VISIBLE int posix_memalign(VOID** ppMemory, size_t alignment, size_t size) noexcept
    {
        CountCall();
        *ppMemory = __libc_memalign(alignment, size);
        return (*ppMemory != nullptr) ? 0 : ENOMEM;
    }
}

HeapCounters GetHeapCounters()
{
    return {TavoDesk::GetAllocationCounters().allocations, g_calls.load(std::memory_order_relaxed)};
}
