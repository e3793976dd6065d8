#include "tools/kirosoak/residentmemory.h"

#include <fstream>
#include <stdexcept>
#include <string>

#include <unistd.h>

namespace kirosoak
{

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

}  // namespace kirosoak
