/// @file
/// Waits, and ends early on a signal that asks to stop.
#pragma once

#include <chrono>
#include <csignal>

namespace kirotune
{

class StopSignals
{
public:
    /// Takes SIGINT and SIGTERM from their handlers, so that a signal never cuts an exchange in two.
    StopSignals();

    /// @return whether such a signal has come until then
    bool CameUntil(std::chrono::steady_clock::time_point then) const;

private:
    sigset_t m_signals;
};

}  // namespace kirotune
