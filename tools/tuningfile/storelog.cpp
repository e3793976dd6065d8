#include "tools/tuningfile/storelog.h"

#include "platform/tavodesk.h"

namespace tuningfile
{

namespace
{

/// Takes off a leading part of a line up to and with a mark, if the line has it.
VOID DropThrough(std::string_view& rLine, std::string_view mark)
{
    const size_t found = rLine.find(mark);
    if (found != std::string_view::npos)
    {
        rLine.remove_prefix(found + mark.size());
    }
}

}  // namespace

std::string_view MessageOf(std::string_view line)
{
    DropThrough(line, "): ");
    if (line.starts_with("0x"))
    {
        DropThrough(line, " ");
        if (line.starts_with("("))
        {
            DropThrough(line, "): ");
        }
    }
    while (line.ends_with('\n'))
    {
        line.remove_suffix(1);
    }
    return line;
}

StoreLog::StoreLog()
{
    TavoDesk::SetSystemLogSink(&StoreLog::Collect, this);
}

StoreLog::~StoreLog()
{
    TavoDesk::SetSystemLogSink(nullptr, nullptr);
}

VOID StoreLog::Collect(VOID* pThis, UINT64, const CHAR* pLetter, UINT32, const CHAR* pLine)
{
    std::string line(pLetter);
    line.append(": ").append(MessageOf(pLine));
    static_cast<StoreLog*>(pThis)->m_lines.push_back(std::move(line));
}

}  // namespace tuningfile
