#include "tools/kirosim/memorywatch.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include <malloc.h>
#include <unistd.h>

namespace kirosim
{

VOID RestartWithoutHeapCaches(CHAR* const* pArguments)
{
    constexpr const CHAR* tunables = "GLIBC_TUNABLES";
    constexpr const CHAR* noCaches = "glibc.malloc.tcache_count=0";

    const CHAR* const pPresent = std::getenv(tunables);
    const std::string present  = (pPresent != nullptr) ? pPresent : "";
    if (present.find(noCaches) != std::string::npos)
    {
        return;
    }
    (VOID) setenv(tunables, (present.empty() ? noCaches : present + ":" + noCaches).c_str(), 1);
    (VOID) execv("/proc/self/exe", pArguments);  // an emulator may not be able to
}

INT64 HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<INT64>(info.uordblks) + static_cast<INT64>(info.hblkhd);
}

INT64 ResidentBytes()
{
    constexpr const CHAR* path = "/proc/self/statm";

    std::ifstream file(path);
    INT64         size     = 0;
    INT64         resident = 0;
    if (!(file >> size >> resident))
    {
        throw std::runtime_error(std::string(path) + ": cannot be read");
    }
    return resident * sysconf(_SC_PAGESIZE);
}

}  // namespace kirosim
