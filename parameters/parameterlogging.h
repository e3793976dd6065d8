/// @file
/// The logger of the tuning store.
#pragma once

#include "platform/tavotypes.h"

class IParameterLoggingAPI;

class ParameterLogging
{
public:
    enum ParameterLogLevel : UINT32
    {
        Debug   = 0,
        Warning = 1,
        Error   = 2
    };

    /// Longest message, terminator included; what is longer is cut.
    static constexpr size_t MaxMessage = 4096;

    /// Writes one message to the system log, with the calling thread's ID and the identity of pLog in front.
    /// @param pLog decides by its LoggingEnabled whether the message is written; null writes always
    static VOID Write(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat, ...)
        __attribute__((format(printf, 3, 4)));
};

/// On whose behalf a message is written.
class IParameterLoggingAPI
{
public:
    /// @return a text for log lines, empty or null if there is none; owned by the object
    virtual const CHAR* GetLoggingIdentifier() const = 0;

    virtual bool LoggingEnabled(ParameterLogging::ParameterLogLevel level) const = 0;

    virtual ~IParameterLoggingAPI() = default;
};
