#include "platform/tavocommonutils.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/tavodesk.h"

namespace
{

std::atomic<UINT64> g_allocations{0};
std::atomic<UINT64> g_releases{0};
std::atomic<UINT64> g_bytes{0};

VOID WriteToStderr(const CHAR* pLine)
{
    const size_t length = std::strlen(pLine);
    const bool   ended  = length > 0 && pLine[length - 1] == '\n';
    std::fprintf(stderr, ended ? "%s" : "%s\n", pLine);
}

TavoDesk::SystemLogSink g_sink         = nullptr;  ///< null for the default, which keeps errors only
VOID*                   g_pSinkContext = nullptr;

}  // namespace

namespace TavoDesk
{

AllocationCounters GetAllocationCounters()
{
    return {g_allocations.load(std::memory_order_relaxed), g_releases.load(std::memory_order_relaxed),
            g_bytes.load(std::memory_order_relaxed)};
}

VOID SetSystemLogSink(SystemLogSink sink, VOID* pContext)
{
    g_sink         = sink;
    g_pSinkContext = pContext;
}

}  // namespace TavoDesk

VOID* TavoCalloc(size_t size, UINT alignment, INT, INT, const CHAR*, UINT)
{
    // aligned_alloc wants a size that is a multiple of the alignment, and the alignment at least that of a pointer.
    const size_t useAlignment = (alignment < sizeof(VOID*)) ? sizeof(VOID*) : alignment;
    if (size > SIZE_MAX - useAlignment)
    {
        return nullptr;
    }
    const size_t useSize = (size + useAlignment - 1) / useAlignment * useAlignment;
    VOID*        pMemory = std::aligned_alloc(useAlignment, (useSize == 0) ? useAlignment : useSize);
    if (pMemory != nullptr)
    {
        std::memset(pMemory, 0, useSize);
        g_allocations.fetch_add(1, std::memory_order_relaxed);
        g_bytes.fetch_add(size, std::memory_order_relaxed);
    }
    return pMemory;
}

VOID TavoFree(VOID* pMemory, INT, const CHAR*, UINT)
{
    if (pMemory != nullptr)
    {
        g_releases.fetch_add(1, std::memory_order_relaxed);
        std::free(pMemory);
    }
}

namespace Tavo
{

UINT64 g_logInfo[LogLevelCount] = {};
BOOL   g_logInfoUpdated         = FALSE;

VOID Log::LogSystem(UINT64 group, const CHAR* pLetter, UINT32 level, const CHAR* pFormat, ...)
{
    // A line that nobody reads is not put together.
    if (g_sink == nullptr && (pLetter == nullptr || pLetter[0] != 'E'))
    {
        return;
    }
    CHAR    line[8192];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(line, sizeof(line), pFormat, arguments);
    va_end(arguments);
    if (g_sink != nullptr)
    {
        g_sink(g_pSinkContext, group, pLetter, level, line);
    }
    else
    {
        WriteToStderr(line);
    }
}

const CHAR* Log::GetFileName(const CHAR* pPath)
{
    const CHAR* pSlash = std::strrchr(pPath, '/');
    return (pSlash != nullptr) ? pSlash + 1 : pPath;
}

INT32 OsUtils::GetProcessID()
{
    return static_cast<INT32>(::getpid());
}

INT32 OsUtils::GetThreadID()
{
    // Every line of the tuning store's log asks for it.
    static thread_local const INT32 threadID = static_cast<INT32>(::syscall(SYS_gettid));
    return threadID;
}

size_t OsUtils::StrLCpy(CHAR* pDestination, const CHAR* pSource, size_t size)
{
    const size_t length = std::strlen(pSource);
    if (size > 0)
    {
        const size_t copied = (length < size - 1) ? length : size - 1;
        std::memcpy(pDestination, pSource, copied);
        pDestination[copied] = '\0';
    }
    return length;
}

size_t OsUtils::StrLCat(CHAR* pDestination, const CHAR* pSource, size_t size)
{
    const size_t used = ::strnlen(pDestination, size);
    if (used == size)
    {
        return size + std::strlen(pSource);
    }
    return used + StrLCpy(pDestination + used, pSource, size - used);
}

INT32 OsUtils::StrNICmp(const CHAR* pFirst, const CHAR* pSecond, size_t count)
{
    return ::strncasecmp(pFirst, pSecond, count);
}

}  // namespace Tavo
