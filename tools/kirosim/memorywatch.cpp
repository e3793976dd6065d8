#include "tools/kirosim/memorywatch.h"

#include <fstream>
#include <stdexcept>

#include <malloc.h>
#include <unistd.h>

namespace kirosim
{

INT64 HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<INT64>(info.uordblks + info.hblkhd);
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
