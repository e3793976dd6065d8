/// @file
/// Bytes that a library wants to read from a file, again and again, whatever becomes of the file that they came from.
#pragma once

#include <span>
#include <string>

#include "platform/tavotypes.h"

namespace program
{

/// A file in memory that only this process sees. Gone with this object.
class PrivateFile
{
public:
    /// @throws std::system_error if there is no memory or no descriptor for it
    explicit PrivateFile(std::span<const BYTE> bytes);
    ~PrivateFile();
    PrivateFile(const PrivateFile&)            = delete;
    PrivateFile& operator=(const PrivateFile&) = delete;

    /// A name under which this process can open it.
    std::string Path() const;

private:
    int m_descriptor;
};

}  // namespace program
