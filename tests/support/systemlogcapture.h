/// @file
/// Collects the lines of the system log while it lives.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "platform/tavodesk.h"

class SystemLogCapture
{
public:
    struct Line
    {
        std::string letter;  ///< "E", "W", "I" or "V"
        std::string text;
    };

    SystemLogCapture()
    {
        TavoDesk::SetSystemLogSink(Collect, this);
    }

    ~SystemLogCapture()
    {
        TavoDesk::SetSystemLogSink(nullptr, nullptr);
    }

    SystemLogCapture(const SystemLogCapture&)            = delete;
    SystemLogCapture& operator=(const SystemLogCapture&) = delete;

    /// @return how many lines of the class contain the text; an empty class counts all
    size_t Count(const std::string& rText, const std::string& rLetter = "") const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return static_cast<size_t>(std::count_if(m_lines.begin(), m_lines.end(),
                                                 [&](const Line& rLine) {
                                                     return rLine.text.find(rText) != std::string::npos &&
                                                            (rLetter.empty() || rLine.letter == rLetter);
                                                 }));
    }

    bool Has(const std::string& rText, const std::string& rLetter = "") const
    {
        return Count(rText, rLetter) > 0;
    }

    size_t Size() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines.size();
    }

    /// All lines in one text, for the message of a failing test.
    std::string Text() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        std::string                 text;
        for (const Line& rLine : m_lines)
        {
            text += rLine.letter + " " + rLine.text + (rLine.text.ends_with('\n') ? "" : "\n");
        }
        return text;
    }

    VOID Clear()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_lines.clear();
    }

private:
    static VOID Collect(VOID* pContext, UINT64, const CHAR* pLetter, UINT32, const CHAR* pLine)
    {
        SystemLogCapture&           rThis = *static_cast<SystemLogCapture*>(pContext);
        std::lock_guard<std::mutex> lock(rThis.m_mutex);
        rThis.m_lines.push_back({pLetter, pLine});
    }

    mutable std::mutex m_mutex;
    std::vector<Line>  m_lines;
};
