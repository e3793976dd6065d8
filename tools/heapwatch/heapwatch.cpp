#include "tools/heapwatch/heapwatch.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <malloc.h>

#include "platform/tavocommonutils.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KIRO_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KIRO_SANITIZED
#endif
#endif

namespace
{

std::atomic<UINT64> g_requests{0};
std::atomic<UINT64> g_largest{0};
std::atomic<INT64>  g_held{0};
std::atomic<INT64>  g_most{0};
std::atomic<INT64>  g_heldAtStart{0};

/// The largest request and the most held are not exact between threads; what is held is.
VOID Count(INT64 change)
{
    const INT64 held = g_held.fetch_add(change, std::memory_order_relaxed) + change;
    if (held > g_most.load(std::memory_order_relaxed))
    {
        g_most.store(held, std::memory_order_relaxed);
    }
}

VOID CountRequest(size_t size)
{
    g_requests.fetch_add(1, std::memory_order_relaxed);
    if (size > g_largest.load(std::memory_order_relaxed))
    {
        g_largest.store(size, std::memory_order_relaxed);
    }
}

}  // namespace

#ifdef KIRO_SANITIZED

// A sanitizer's allocator tells what it gives and takes. What was there before the first Start is not known.
extern "C"
{
    int    __sanitizer_install_malloc_and_free_hooks(VOID (*given)(const volatile VOID*, size_t),
                                                     VOID (*taken)(const volatile VOID*));
    size_t __sanitizer_get_allocated_size(const volatile VOID* pMemory);
}

namespace
{

VOID Given(const volatile VOID*, size_t size)
{
    CountRequest(size);
    Count(static_cast<INT64>(size));
}

VOID Taken(const volatile VOID* pMemory)
{
    if (pMemory != nullptr)
    {
        Count(-static_cast<INT64>(__sanitizer_get_allocated_size(pMemory)));
    }
}

VOID Watch()
{
    [[maybe_unused]] static const int installed = __sanitizer_install_malloc_and_free_hooks(Given, Taken);
}

constexpr bool IsWhole = false;

}  // namespace

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

/// Stands before each block; as long as the alignment that any block has.
struct alignas(std::max_align_t) Header
{
    size_t size;    ///< bytes that were asked for
    size_t offset;  ///< of the block in what the C library gave
};

Header* HeaderOf(VOID* pMemory)
{
    return static_cast<Header*>(pMemory) - 1;
}

size_t SizeOf(VOID* pMemory)
{
    return (pMemory != nullptr) ? HeaderOf(pMemory)->size : 0;
}

/// @return what to ask the C library for; too much for it when that is more than there are numbers
size_t WithHeader(size_t size, size_t offset)
{
    CountRequest(size);
    size_t whole = 0;
    return __builtin_add_overflow(size, offset, &whole) ? SIZE_MAX : whole;
}

/// @param pWhole of the C library; may be null
VOID* Block(VOID* pWhole, size_t size, size_t offset)
{
    if (pWhole == nullptr)
    {
        return nullptr;
    }
    VOID* const pMemory = static_cast<BYTE*>(pWhole) + offset;
    new (HeaderOf(pMemory)) Header{size, offset};
    Count(static_cast<INT64>(size));
    return pMemory;
}

VOID* AlignedBlock(size_t alignment, size_t size)
{
    const size_t offset = std::max(alignment, sizeof(Header));
    return Block(__libc_memalign(alignment, WithHeader(size, offset)), size, offset);
}

}  // namespace

extern "C"
{
    TAVO_VISIBLE VOID* malloc(size_t size) noexcept
    {
        return Block(__libc_malloc(WithHeader(size, sizeof(Header))), size, sizeof(Header));
    }

    TAVO_VISIBLE VOID* calloc(size_t count, size_t size) noexcept
    {
        size_t     whole     = 0;
        const bool isTooMuch = __builtin_mul_overflow(count, size, &whole);
        whole                = isTooMuch ? SIZE_MAX : whole;
        return Block(__libc_calloc(1, WithHeader(whole, sizeof(Header))), whole, sizeof(Header));
    }

    TAVO_VISIBLE VOID free(VOID* pMemory) noexcept
    {
        if (pMemory != nullptr)
        {
            const Header* const pHeader = HeaderOf(pMemory);
            Count(-static_cast<INT64>(pHeader->size));
            __libc_free(static_cast<BYTE*>(pMemory) - pHeader->offset);
        }
    }

    /// A block aligned above 16, or none, becomes one with a header right behind what the C library gives.
    static VOID* Moved(VOID* pMemory, size_t size)
    {
        VOID* const pMoved = malloc(size);
        if (pMoved != nullptr && pMemory != nullptr)
        {
            std::memcpy(pMoved, pMemory, std::min(size, SizeOf(pMemory)));
            free(pMemory);
        }
        return pMoved;
    }

    TAVO_VISIBLE VOID* realloc(VOID* pMemory, size_t size) noexcept
    {
        if (pMemory != nullptr && size == 0)
        {
            free(pMemory);
            return nullptr;
        }
        if (pMemory == nullptr || HeaderOf(pMemory)->offset != sizeof(Header))
        {
            return Moved(pMemory, size);
        }
        const size_t oldSize = SizeOf(pMemory);
        VOID* const  pWhole  = __libc_realloc(HeaderOf(pMemory), WithHeader(size, sizeof(Header)));
        if (pWhole != nullptr)
        {
            Count(-static_cast<INT64>(oldSize));
        }
        return Block(pWhole, size, sizeof(Header));
    }

    TAVO_VISIBLE VOID* aligned_alloc(size_t alignment, size_t size) noexcept
    {
        return AlignedBlock(alignment, size);
    }

    TAVO_VISIBLE VOID* memalign(size_t alignment, size_t size) noexcept
    {
        return AlignedBlock(alignment, size);
    }

    TAVO_VISIBLE int posix_memalign(VOID** ppMemory, size_t alignment, size_t size) noexcept
    {
        *ppMemory = AlignedBlock(alignment, size);
        return (*ppMemory != nullptr) ? 0 : ENOMEM;
    }

    TAVO_VISIBLE size_t malloc_usable_size(VOID* pMemory) noexcept
    {
        return SizeOf(pMemory);
    }
}

namespace
{

VOID Watch()
{
}

constexpr bool IsWhole = true;

}  // namespace

#endif

namespace heapwatch
{

VOID Start()
{
    Watch();
    g_largest     = 0;
    g_heldAtStart = g_held.load();
    g_most        = g_held.load();
}

Report Read()
{
    return {g_largest, static_cast<UINT64>(g_most - g_heldAtStart), g_held - g_heldAtStart};
}

UINT64 Requests()
{
    return g_requests.load(std::memory_order_relaxed);
}

bool IsCounting()
{
    return IsWhole;
}

}  // namespace heapwatch
