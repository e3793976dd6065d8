#include "tools/kirodamage/heapwatch.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>

#include "platform/tavocommonutils.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KIRO_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KIRO_SANITIZED
#endif
#endif

#ifdef KIRO_SANITIZED

extern "C" TAVO_VISIBLE const CHAR* __asan_default_options()
{
    return "max_allocation_size_mb=64:allocator_may_return_null=0";
}

/// The function table of an instance stays allocated on purpose.
extern "C" TAVO_VISIBLE const CHAR* __lsan_default_suppressions()
{
    return "leak:CreateKiroCoreAlgo\n";
}

namespace heapwatch
{

VOID Start()
{
}

Report Read()
{
    return {};
}

bool IsCounting()
{
    return false;
}

}  // namespace heapwatch

#else

// The functions below take the place of the C library's entry points in the whole process; operator new and TavoCalloc
// end here, too.
extern "C"
{
    VOID* __libc_malloc(size_t size);
    VOID* __libc_calloc(size_t count, size_t size);
    VOID* __libc_realloc(VOID* pMemory, size_t size);
    VOID* __libc_memalign(size_t alignment, size_t size);
    VOID  __libc_free(VOID* pMemory);
}

namespace
{

std::atomic<UINT64> g_largest{0};
std::atomic<INT64>  g_held{0};
std::atomic<INT64>  g_most{0};
std::atomic<INT64>  g_heldAtStart{0};

/// Relaxed and not exact between threads: a trial has one.
VOID* Count(VOID* pMemory, size_t size)
{
    if (size > g_largest.load(std::memory_order_relaxed))
    {
        g_largest.store(size, std::memory_order_relaxed);
    }
    const INT64 held = g_held.load(std::memory_order_relaxed) + static_cast<INT64>(malloc_usable_size(pMemory));
    g_held.store(held, std::memory_order_relaxed);
    if (held > g_most.load(std::memory_order_relaxed))
    {
        g_most.store(held, std::memory_order_relaxed);
    }
    return pMemory;
}

VOID Uncount(VOID* pMemory)
{
    g_held.store(g_held.load(std::memory_order_relaxed) - static_cast<INT64>(malloc_usable_size(pMemory)),
                 std::memory_order_relaxed);
}

}  // namespace

extern "C"
{
    TAVO_VISIBLE VOID* malloc(size_t size) noexcept
    {
        return Count(__libc_malloc(size), size);
    }

    TAVO_VISIBLE VOID* calloc(size_t count, size_t size) noexcept
    {
        size_t     whole     = 0;
        const bool isTooMuch = __builtin_mul_overflow(count, size, &whole);
        return Count(__libc_calloc(count, size), isTooMuch ? SIZE_MAX : whole);
    }

    TAVO_VISIBLE VOID* realloc(VOID* pMemory, size_t size) noexcept
    {
        const size_t before = malloc_usable_size(pMemory);
        VOID*        pMoved = __libc_realloc(pMemory, size);
        if (pMoved != nullptr || size == 0)
        {
            g_held.store(g_held.load(std::memory_order_relaxed) - static_cast<INT64>(before),
                         std::memory_order_relaxed);
        }
        return Count(pMoved, size);
    }

    TAVO_VISIBLE VOID* aligned_alloc(size_t alignment, size_t size) noexcept
    {
        return Count(__libc_memalign(alignment, size), size);
    }

    TAVO_VISIBLE VOID* memalign(size_t alignment, size_t size) noexcept
    {
        return Count(__libc_memalign(alignment, size), size);
    }

    TAVO_VISIBLE int posix_memalign(VOID** ppMemory, size_t alignment, size_t size) noexcept
    {
        *ppMemory = Count(__libc_memalign(alignment, size), size);
        return (*ppMemory != nullptr) ? 0 : ENOMEM;
    }

    TAVO_VISIBLE void free(VOID* pMemory) noexcept
    {
        Uncount(pMemory);
        __libc_free(pMemory);
    }
}

namespace heapwatch
{

VOID Start()
{
    g_largest     = 0;
    g_heldAtStart = g_held.load();
    g_most        = g_held.load();
}

Report Read()
{
    return {g_largest, static_cast<UINT64>(g_most - g_heldAtStart), g_held - g_heldAtStart};
}

bool IsCounting()
{
    return true;
}

}  // namespace heapwatch

#endif
