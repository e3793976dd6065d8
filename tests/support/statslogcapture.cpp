#include "tests/support/statslogcapture.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

StatsLogCapture* StatsLogCapture::s_pInnermost = nullptr;

StatsLogCapture::StatsLogCapture() : m_pPrevious(gStatsLogger), m_pOuter(s_pInnermost)
{
    s_pInnermost = this;
    gStatsLogger = Receive;
}

StatsLogCapture::~StatsLogCapture()
{
    s_pInnermost = m_pOuter;
    gStatsLogger = m_pPrevious;
}

VOID StatsLogCapture::Receive(const CHAR*, INT32, const CHAR*, UINT32 group, UINT32 level, const CHAR* pFormat, ...)
{
    CHAR    text[2048];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof(text), pFormat, arguments);
    va_end(arguments);
    s_pInnermost->m_lines.push_back({group, level, text});
}

size_t StatsLogCapture::Count(UINT32 level, const std::string& rText) const
{
    return static_cast<size_t>(std::count_if(m_lines.begin(), m_lines.end(),
                                             [&](const Line& rLine)
                                             { return rLine.level == level && rLine.text == rText; }));
}

size_t StatsLogCapture::CountLevel(UINT32 level) const
{
    return static_cast<size_t>(
        std::count_if(m_lines.begin(), m_lines.end(), [=](const Line& rLine) { return rLine.level == level; }));
}

bool StatsLogCapture::Has(UINT32 level, const std::string& rText) const
{
    return Count(level, rText) > 0;
}

bool StatsLogCapture::HasPart(UINT32 level, const std::string& rPart) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&](const Line& rLine)
                       { return rLine.level == level && rLine.text.find(rPart) != std::string::npos; });
}

VOID StatsLogCapture::Clear()
{
    m_lines.clear();
}
