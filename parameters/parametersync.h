/// @file
/// The tuning store's lock and counter.
#pragma once

#include <atomic>
#include <mutex>

#include "platform/tavotypes.h"

/// A recursive mutex; works with std::lock_guard.
class ParameterMutex
{
public:
    VOID lock()
    {
        m_mutex.lock();
    }

    VOID unlock()
    {
        m_mutex.unlock();
    }

private:
    std::recursive_mutex m_mutex;
};

using ParameterRefCount = std::atomic<INT32>;
