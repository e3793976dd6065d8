#include "parameters/parameterlogging.h"

#include <cstdarg>
#include <cstdio>

#include "platform/tavocommonutils.h"

namespace
{

constexpr UINT64 LogGroup = 4096;

/// How a level appears in the system log.
struct LevelStyle
{
    const CHAR* pLetter;
    UINT32      systemLevel;
    const CHAR* pTag;
};

LevelStyle StyleOf(ParameterLogging::ParameterLogLevel level)
{
    switch (level)
    {
    case ParameterLogging::Error:
        return {"E", 1, "[ERROR]"};
    case ParameterLogging::Warning:
        return {"W", 2, "[WARNING]"};
    default:
        return {"V", 5, "[VERBOSE]"};
    }
}

}  // namespace

VOID ParameterLogging::Write(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat, ...)
{
    if (pLog != nullptr && !pLog->LoggingEnabled(level))
    {
        return;
    }

    CHAR    message[MaxMessage];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(message, sizeof(message), pFormat, arguments);
    va_end(arguments);

    CHAR thread[16];
    std::snprintf(thread, sizeof(thread), "%d", Tavo::OsUtils::GetThreadID());

    const LevelStyle  style       = StyleOf(level);
    const CHAR* const pIdentifier = (pLog != nullptr) ? pLog->GetLoggingIdentifier() : nullptr;
    const VOID* const pIdentity   = pLog;
    if (pLog == nullptr)
    {
        Tavo::Log::LogSystem(LogGroup, style.pLetter, style.systemLevel, "%s ParameterParser (Thread %s): %s",
                             style.pTag, thread, message);
    }
    else if (pIdentifier == nullptr || pIdentifier[0] == '\0')
    {
        Tavo::Log::LogSystem(LogGroup, style.pLetter, style.systemLevel, "%s ParameterParser (Thread %s): %p %s",
                             style.pTag, thread, pIdentity, message);
    }
    else
    {
        Tavo::Log::LogSystem(LogGroup, style.pLetter, style.systemLevel, "%s ParameterParser (Thread %s): %p (%s): %s",
                             style.pTag, thread, pIdentity, pIdentifier, message);
    }
}
