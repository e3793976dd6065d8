/// @file
/// What the tuning store has to say about a file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

/// Collects the lines that the store logs, as long as the object lives; at most one object at a time.
class StoreLog
{
public:
    StoreLog();
    ~StoreLog();
    StoreLog(const StoreLog&)            = delete;
    StoreLog& operator=(const StoreLog&) = delete;

    /// Lines such as "E: Invalid binary header tag: x": the letter of the kind, and the message without the thread's
    /// number in front.
    const std::vector<std::string>& Lines() const
    {
        return m_lines;
    }

private:
    static VOID Collect(VOID* pThis, UINT64 group, const CHAR* pLetter, UINT32 level, const CHAR* pLine);

    std::vector<std::string> m_lines;
};

/// The message of a line such as "[ERROR] ParameterParser (Thread 1): 0x1 (tag): message\n".
std::string_view MessageOf(std::string_view line);

}  // namespace tuningfile
