#include "tools/program/commandfiles.h"

#include <stdexcept>

#include <fmt/format.h>

#include "tools/program/filekind.h"
#include "tools/program/standardstreams.h"

namespace program
{

VOID CommandFiles::Reads(std::string name, const std::string& rPath)
{
    Add(std::move(name), rPath, false);
}

VOID CommandFiles::Writes(std::string name, const std::string& rPath)
{
    Add(std::move(name), rPath, true);
}

VOID CommandFiles::Add(std::string name, const std::string& rPath, bool isWritten)
{
    if (!rPath.empty())
    {
        m_files.push_back({std::move(name), rPath, isWritten});
    }
}

bool CommandFiles::IsOne(const File& rOne, const File& rOther)
{
    // Both may be the same socket or terminal, and what is read from it is not what is written to it.
    return (IsStandardStream(rOne.path) || IsStandardStream(rOther.path))
               ? rOne.path == rOther.path && rOne.isWritten == rOther.isWritten
               : IsSameFile(rOne.path, rOther.path);
}

VOID CommandFiles::Check() const
{
    for (size_t later = 1; later < m_files.size(); ++later)
    {
        const File& rLater = m_files[later];
        for (size_t earlier = 0; earlier < later; ++earlier)
        {
            const File& rEarlier = m_files[earlier];
            if ((rLater.isWritten || rEarlier.isWritten) && IsOne(rLater, rEarlier))
            {
                throw std::runtime_error(fmt::format("{}: both {} and {}, expected a file of its own for each",
                                                     OutputName(rLater.path), rEarlier.name, rLater.name));
            }
        }
    }
}

}  // namespace program
