#include "tools/program/progress.h"

#include <fmt/format.h>
#include <unistd.h>

namespace program
{

namespace
{

constexpr std::chrono::milliseconds Interval{200};

/// To the beginning of the line, and all of it blank.
constexpr std::string_view NewLine = "\r\033[K";

/// As one write each: it comes between the lines of others, not into them.
VOID WriteToTerminal(std::string_view text)
{
    (VOID) !write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

Progress::Progress(std::string what) : m_what(std::move(what)), m_isTerminal(isatty(STDERR_FILENO) != 0)
{
}

Progress::~Progress()
{
    Clear();
}

VOID Progress::Show(std::string_view text)
{
    if (IsDue())
    {
        Write(text);
    }
}

VOID Progress::Show(UINT64 done, UINT64 total)
{
    if (IsDue())
    {
        Write((total > 0) ? fmt::format("{} of {}", done, total) : fmt::format("{}", done));
    }
}

VOID Progress::Clear()
{
    if (m_isShown)
    {
        WriteToTerminal(NewLine);
        m_isShown = false;
    }
}

bool Progress::IsDue()
{
    if (!m_isTerminal)
    {
        return false;
    }
    const Clock::time_point now = Clock::now();
    if (now < m_next)
    {
        return false;
    }
    m_next = now + Interval;
    return true;
}

VOID Progress::Write(std::string_view text)
{
    WriteToTerminal(fmt::format("{}{}: {}", NewLine, m_what, text));
    m_isShown = true;
}

}  // namespace program
