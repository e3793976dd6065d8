/// @file
/// How long a read of the live tuning service may take.
#pragma once

#include <chrono>

#include "platform/tavotypes.h"

/// Counts from its construction. A negative time-out never passes.
class ReadTimeout
{
public:
    explicit ReadTimeout(INT32 seconds) : m_seconds(seconds), m_start(std::chrono::steady_clock::now())
    {
    }

    bool HasPassed() const
    {
        return m_seconds.count() >= 0 && std::chrono::steady_clock::now() - m_start >= m_seconds;
    }

private:
    const std::chrono::seconds                  m_seconds;
    const std::chrono::steady_clock::time_point m_start;
};
