/// @file
/// Files that a program has begun and not finished. They go when it ends, also when a signal ends it.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace program
{

/// A file of a name that nobody has, made beside a target. Gone with this object unless it was kept.
class Temporary
{
public:
    /// Makes and opens the file: beside rTarget, for the user's umask.
    /// @throws std::system_error if that cannot be done
    explicit Temporary(const std::string& rTarget);
    ~Temporary();
    Temporary(const Temporary&)            = delete;
    Temporary& operator=(const Temporary&) = delete;

    const std::string& Path() const
    {
        return m_path;
    }

    /// Open for writing, as long as this object.
    int Descriptor() const
    {
        return m_descriptor;
    }

    /// Closes the file and gives it the target's name.
    /// @throws std::system_error if that cannot be done
    VOID Replace(const std::string& rTarget);

private:
    std::string m_path;
    int         m_descriptor;
    size_t      m_slot;
};

/// Ends the program by a signal, as the signal does by itself, once all temporary files are gone. Safe in a handler.
VOID EndBySignal(int signal);

}  // namespace program
