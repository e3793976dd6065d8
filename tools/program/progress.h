/// @file
/// How far long work is, for a person at a terminal.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/tavotypes.h"

namespace program
{

/// One line on standard error that is written over and over, and is gone afterwards. Where that is no terminal,
/// nothing: a pipe and a file keep what they have without it.
class Progress
{
public:
    /// @param what stands in front: what goes on
    explicit Progress(std::string what);
    ~Progress();
    Progress(const Progress&)            = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows how far it is. May be called as often as it likes: most calls only look at the clock.
    VOID Show(std::string_view text);

    /// Shows "DONE of TOTAL", without the total if that is 0.
    VOID Show(UINT64 done, UINT64 total);

    /// Makes room for other lines.
    VOID Clear();

private:
    using Clock = std::chrono::steady_clock;

    /// @return whether it is time for another line
    bool IsDue();
    VOID Write(std::string_view text);

    const std::string m_what;
    const bool        m_isTerminal;
    bool              m_isShown = false;
    Clock::time_point m_next    = {};
};

}  // namespace program
