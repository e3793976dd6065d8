/// @file
/// One process at a time: a lock that goes with the process, however that ends.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace program
{

class FileLock
{
public:
    /// Makes the file if there is none, and waits until nobody else holds it.
    /// @throws std::system_error if it cannot be opened or locked
    explicit FileLock(const std::string& rPath);
    ~FileLock();
    FileLock(const FileLock&)            = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int m_descriptor;
};

}  // namespace program
