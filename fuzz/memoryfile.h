/// @file
/// A file without a name, which is opened by the path of its descriptor.
#pragma once

#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "platform/tavotypes.h"

namespace fuzz
{

class MemoryFile
{
public:
    MemoryFile(const BYTE* pData, size_t size) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC))
    {
        if (m_descriptor < 0 || write(m_descriptor, pData, size) != static_cast<ssize_t>(size))
        {
            std::abort();
        }
        m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
    }

    ~MemoryFile()
    {
        (VOID) close(m_descriptor);
    }

    MemoryFile(const MemoryFile&)            = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const CHAR* Path() const
    {
        return m_path.c_str();
    }

    VOID Cut(size_t size) const
    {
        (VOID) !ftruncate(m_descriptor, static_cast<off_t>(size));
    }

private:
    int         m_descriptor;
    std::string m_path;
};

}  // namespace fuzz
