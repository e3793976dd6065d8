/// Log lines of hostile input are put together, as a host's would be, and go nowhere: millions of them would bury a
/// report.
#include <cstring>

#include "platform/tavodesk.h"

namespace
{

volatile size_t g_logged = 0;

VOID Discard(VOID*, UINT64, const CHAR*, UINT32, const CHAR* pLine)
{
    g_logged = g_logged + std::strlen(pLine);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    TavoDesk::SetSystemLogSink(Discard, nullptr);
    return 0;
}
