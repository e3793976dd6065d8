/// @file
/// The tuning store's lock and counter.
#pragma once

#include <atomic>
#include <mutex>

#include "platform/tavotypes.h"

/// A recursive mutex; works with std::lock_guard and std::unique_lock.
class ParameterMutex
{
public:
    VOID lock()
    {
        m_mutex.lock();
    }

    bool try_lock()
    {
        return m_mutex.try_lock();
    }

    VOID unlock()
    {
        m_mutex.unlock();
    }

private:
    std::recursive_mutex m_mutex;
};

using ParameterRefCount = std::atomic<INT32>;
