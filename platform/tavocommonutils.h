/// @file
/// The camera framework's utility library, as far as this system uses it.
/// On a device libtavocommonutils.so.0 comes with the framework; on a desk the stand-in of this folder takes its place.
#pragma once

#include "platform/tavotypes.h"

#define TAVO_VISIBLE __attribute__((visibility("default")))

/// Zero-filled memory, released with TavoFree.
/// @param alignment bytes, a power of two
/// @param tag       what the memory is for: 9 objects, 13 tuning data, 1 working buffers
/// The last three arguments are passed as 0, null, 0.
/// @return null when no memory is left
TAVO_VISIBLE VOID* TavoCalloc(size_t size, UINT alignment, INT tag, INT reserved, const CHAR* pFile, UINT line);

/// Releases memory of TavoCalloc. Null is allowed.
/// @param tag 16, 20 or 0
TAVO_VISIBLE VOID TavoFree(VOID* pMemory, INT tag, const CHAR* pFile, UINT line);

namespace Tavo
{

/// Number of levels in g_logInfo.
constexpr UINT32 LogLevelCount = 8;

/// Masks of enabled log groups, by level. Bit 25 is the group of the exposure core.
TAVO_VISIBLE extern UINT64 g_logInfo[LogLevelCount];

/// Zero until the masks have been configured; while it is zero every group counts as enabled.
TAVO_VISIBLE extern BOOL g_logInfoUpdated;

class TAVO_VISIBLE Log
{
public:
    /// Writes one line to the system log.
    /// @param group   group mask, 0x2000000 for the exposure core, 4096 for the tuning store
    /// @param pLetter class letter: "E", "W", "I" or "V"
    /// @param level   1 error, 2 warning, 3 configuration, 5 verbose
    static VOID LogSystem(UINT64 group, const CHAR* pLetter, UINT32 level, const CHAR* pFormat, ...)
        __attribute__((format(printf, 4, 5)));

    /// @return the base name inside pPath
    static const CHAR* GetFileName(const CHAR* pPath);
};

class TAVO_VISIBLE OsUtils
{
public:
    static INT32 GetProcessID();
    static INT32 GetThreadID();

    /// Bounded copy: at most size - 1 characters, always terminated. @return the length of pSource
    static size_t StrLCpy(CHAR* pDestination, const CHAR* pSource, size_t size);

    /// Bounded append, always terminated. @return the length that was wanted
    static size_t StrLCat(CHAR* pDestination, const CHAR* pSource, size_t size);

    /// Case-insensitive compare of at most count characters. @return 0 when equal
    static INT32 StrNICmp(const CHAR* pFirst, const CHAR* pSecond, size_t count);
};

}  // namespace Tavo
