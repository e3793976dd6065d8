/// @file
/// Captures what the core logs, so that a test can look for lines.
#pragma once

#include <string>
#include <vector>

#include "interface/ikirocorealgo.h"

constexpr UINT32 LevelError   = 2;
constexpr UINT32 LevelWarning = 4;
constexpr UINT32 LevelRare    = 16;
constexpr UINT32 LevelTrace   = 32;

/// Installs itself as the stats logger and restores the previous one on destruction. The innermost capture receives the
/// lines. Logging from several threads at once is not supported.
class StatsLogCapture
{
public:
    struct Line
    {
        UINT32      group;
        UINT32      level;
        std::string text;
    };

    StatsLogCapture();
    ~StatsLogCapture();
    StatsLogCapture(const StatsLogCapture&)            = delete;
    StatsLogCapture& operator=(const StatsLogCapture&) = delete;

    /// @return lines of exactly this text
    size_t Count(UINT32 level, const std::string& rText) const;

    /// @return lines of the level, whatever their text
    size_t CountLevel(UINT32 level) const;

    /// @return whether there is a line of exactly this text
    bool Has(UINT32 level, const std::string& rText) const;

    /// @return whether a line of the level contains the text
    bool HasPart(UINT32 level, const std::string& rPart) const;

    VOID Clear();

    const std::vector<Line>& Lines() const
    {
        return m_lines;
    }

private:
    static VOID Receive(const CHAR* pFileName, INT32 line, const CHAR* pFunctionName, UINT32 group, UINT32 level,
                        const CHAR* pFormat, ...);

    std::vector<Line> m_lines;
    StatsLogger       m_pPrevious;
    StatsLogCapture*  m_pOuter;

    static StatsLogCapture* s_pInnermost;
};
