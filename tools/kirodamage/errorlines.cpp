#include "tools/kirodamage/errorlines.h"

#include "platform/tavodesk.h"

namespace kirodamage::errorlines
{

namespace
{

UINT64 g_count = 0;  ///< a trial has one thread

VOID CountLine(VOID*, UINT64, const CHAR* pLetter, UINT32, const CHAR*)
{
    g_count += (pLetter[0] == 'E') ? 1 : 0;
}

}  // namespace

VOID Watch()
{
    TavoDesk::SetSystemLogSink(&CountLine, nullptr);
}

UINT64 Count()
{
    return g_count;
}

}  // namespace kirodamage::errorlines
