/// @file
/// "-" in place of a file: standard input where it is read, standard output where it is written.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace program
{

inline bool IsStandardStream(const std::string& rPath)
{
    return rPath == "-";
}

/// What messages call a file that is read.
inline std::string InputName(const std::string& rPath)
{
    return IsStandardStream(rPath) ? "stdin" : rPath;
}

/// What messages call a file that is written.
inline std::string OutputName(const std::string& rPath)
{
    return IsStandardStream(rPath) ? "stdout" : rPath;
}

}  // namespace program
