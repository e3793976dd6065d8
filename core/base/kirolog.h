/// @file
/// Logging of the core.
///
/// STATS_LOG_... goes to the host's stats logger, which filters by level, unless the host has said that it takes no
/// lines of a level. Arguments of trace are not evaluated then, so these must have no effect. The logger is read
/// without a null test: a host must supply it. SYSTEM_LOG_... goes to the system log; configuration and verbose lines
/// are gated by the group masks.
#pragma once

#include <atomic>

#include "interface/ikirocorealgo.h"
#include "platform/tavocommonutils.h"

namespace kirolog
{

constexpr UINT32 StatsGroup   = 2;
constexpr UINT32 LevelError   = 2;
constexpr UINT32 LevelWarning = 4;
constexpr UINT32 LevelRare    = 16;
constexpr UINT32 LevelTrace   = 32;

constexpr UINT64 SystemGroup   = 0x2000000;  // bit 25
constexpr UINT32 SystemError   = 1;
constexpr UINT32 SystemConfig  = 3;
constexpr UINT32 SystemVerbose = 5;

/// @return whether lines of this level reach the system log; error lines are not gated
inline bool IsSystemLevelOn(UINT32 level)
{
    return Tavo::g_logInfoUpdated == FALSE || (Tavo::g_logInfo[level] & SystemGroup) != 0;
}

/// Type of gStatsLogger with its format checked by the compiler.
typedef VOID (*CheckedStatsLogger)(const CHAR*, INT32, const CHAR*, UINT32, UINT32, const CHAR*, ...)
    __attribute__((format(printf, 6, 7)));

/// The logger of all instances, which the creation of one may replace while others log.
inline std::atomic_ref<StatsLogger> SharedLogger()
{
    return std::atomic_ref<StatsLogger>(gStatsLogger);
}

inline CheckedStatsLogger Logger()
{
    return SharedLogger().load(std::memory_order_acquire);
}

/// @return whether the host takes lines of the level
inline bool IsTaken(UINT32 level)
{
    return (std::atomic_ref<UINT32>(gStatsLogLevels).load(std::memory_order_relaxed) & level) != 0;
}

inline VOID DropLine(const CHAR*, INT32, const CHAR*, UINT32, UINT32, const CHAR*, ...)
{
}

/// The logger of what ought not to happen: branches that call it are laid apart from the code of a frame, the test of
/// the level along with them.
[[gnu::cold, gnu::noinline]] inline CheckedStatsLogger RareLogger(UINT32 level)
{
    return IsTaken(level) ? Logger() : DropLine;
}

}  // namespace kirolog

#define STATS_LOG_LINE(logger, level, ...)                                                                             \
    logger(__FILE_NAME__, __LINE__, __func__, kirolog::StatsGroup, level, __VA_ARGS__)

#define STATS_LOG_SELDOM(level, ...) STATS_LOG_LINE(kirolog::RareLogger(level), level, __VA_ARGS__)

#define STATS_LOG_ERROR(...) STATS_LOG_SELDOM(kirolog::LevelError, __VA_ARGS__)
#define STATS_LOG_WARNING(...) STATS_LOG_SELDOM(kirolog::LevelWarning, __VA_ARGS__)
#define STATS_LOG_RARE(...) STATS_LOG_SELDOM(kirolog::LevelRare, __VA_ARGS__)
#define STATS_LOG_TRACE(...)                                                                                           \
    do                                                                                                                 \
    {                                                                                                                  \
        if (kirolog::IsTaken(kirolog::LevelTrace)) [[unlikely]]                                                        \
        {                                                                                                              \
            STATS_LOG_LINE(kirolog::Logger(), kirolog::LevelTrace, __VA_ARGS__);                                       \
        }                                                                                                              \
    } while (false)

#define SYSTEM_LOG_LINE(letter, level, tag, format, ...)                                                               \
    Tavo::Log::LogSystem(kirolog::SystemGroup, letter, level, tag "%d %d [STATS_AEC] %s:%d %s() " format,              \
                         Tavo::OsUtils::GetProcessID(), Tavo::OsUtils::GetThreadID(), __FILE_NAME__, __LINE__,         \
                         __func__ __VA_OPT__(, ) __VA_ARGS__)

#define SYSTEM_LOG_ERROR(format, ...)                                                                                  \
    SYSTEM_LOG_LINE("E", kirolog::SystemError, "[ERROR]", format __VA_OPT__(, ) __VA_ARGS__)

#define SYSTEM_LOG_CONFIG(format, ...)                                                                                 \
    do                                                                                                                 \
    {                                                                                                                  \
        if (kirolog::IsSystemLevelOn(kirolog::SystemConfig))                                                           \
        {                                                                                                              \
            SYSTEM_LOG_LINE("I", kirolog::SystemConfig, "[CONFIG]", format __VA_OPT__(, ) __VA_ARGS__);                \
        }                                                                                                              \
    } while (false)

#define SYSTEM_LOG_VERBOSE(format, ...)                                                                                \
    do                                                                                                                 \
    {                                                                                                                  \
        if (kirolog::IsSystemLevelOn(kirolog::SystemVerbose))                                                          \
        {                                                                                                              \
            SYSTEM_LOG_LINE("V", kirolog::SystemVerbose, "[ VERB]", format __VA_OPT__(, ) __VA_ARGS__);                \
        }                                                                                                              \
    } while (false)
