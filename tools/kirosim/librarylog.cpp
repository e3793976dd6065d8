#include "tools/kirosim/librarylog.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <vector>

#include <fmt/format.h>

#include "platform/tavodesk.h"
#include "tools/tuningfile/storelog.h"

namespace kirosim::librarylog
{

namespace
{

/// Levels of the stats log are bits, the graver the lower.
constexpr UINT32 LevelError   = 2;
constexpr UINT32 LevelWarning = 4;

bool g_isShown = false;

/// Where a pointer points differs from run to run: "(set)" instead, beside the "(nil)" of null ones.
std::string WithoutAddresses(std::string_view line)
{
    // After "0x". Machines differ in how high they map; hashes have more digits, and few other numbers as many.
    constexpr size_t minDigits = 9;
    constexpr size_t maxDigits = 12;

    std::string text;
    while (!line.empty())
    {
        const size_t end       = line.starts_with("0x") ? line.find_first_not_of("0123456789abcdef", 2) : 0;
        const size_t length    = std::min(end, line.size());
        const bool   isAddress = length >= 2 + minDigits && length <= 2 + maxDigits;
        text += isAddress ? "(set)" : std::string(line.substr(0, 1));
        line.remove_prefix(isAddress ? length : 1);
    }
    return text;
}

/// One line, whatever the message holds.
VOID Print(std::string line)
{
    while (!line.empty() && line.back() == '\n')
    {
        line.pop_back();
    }
    for (CHAR& rLetter : line)
    {
        rLetter = (rLetter == '\n') ? ' ' : rLetter;
    }
    (VOID) std::fprintf(stderr, "kirosim: %s\n", line.c_str());
}

VOID ShowSystemLine(VOID*, UINT64, const CHAR* pLetter, UINT32, const CHAR* pLine)
{
    const std::string_view letter(pLetter);
    if (g_isShown && (letter == "E" || letter == "W"))
    {
        Print(LineOf(letter, pLine));
    }
}

}  // namespace

VOID Show(bool isShown)
{
    g_isShown = isShown;
    // Without a sink of its own, errors of the system log go to stderr: what is wrong with a file comes as this
    // program's own line.
    TavoDesk::SetSystemLogSink(&ShowSystemLine, nullptr);
}

VOID Write(const CHAR* pFile, INT32 line, const CHAR*, UINT32, UINT32 level, const CHAR* pFormat, ...)
{
    if (!g_isShown || level > LevelWarning)
    {
        return;
    }
    va_list arguments;
    va_start(arguments, pFormat);
    std::vector<CHAR> text(1024);
    (VOID) std::vsnprintf(text.data(), text.size(), pFormat, arguments);
    va_end(arguments);
    Print(fmt::format("{}: {}:{}: {}", (level <= LevelError) ? "error" : "warning", pFile, line,
                      WithoutAddresses(text.data())));
}

std::string LineOf(std::string_view letter, std::string_view line)
{
    constexpr std::string_view coreMark = "[STATS_AEC] ";

    const std::string_view level = (letter == "E") ? "error" : "warning";
    if (const size_t mark = line.find(coreMark); mark != std::string_view::npos)
    {
        line.remove_prefix(mark + coreMark.size());
        const size_t place = line.find(' ');
        const size_t text  = line.find("() ");
        if (place < text && text != std::string_view::npos)
        {
            return fmt::format("{}: {}: {}", level, line.substr(0, place), WithoutAddresses(line.substr(text + 3)));
        }
        return fmt::format("{}: {}", level, WithoutAddresses(line));
    }
    return fmt::format("{}: tuning store: {}", level, WithoutAddresses(tuningfile::MessageOf(line)));
}

}  // namespace kirosim::librarylog
