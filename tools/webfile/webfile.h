/// @file
/// Files that the build puts into a program: scripts, styles and pages for a browser. See cmake/embedfiles.cmake.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace webfile
{

struct File
{
    std::string_view name;  ///< without folders
    std::string_view content;
};

/// For the files that the build writes. @param pBytes lives as long as the program
inline File MakeFile(std::string_view name, const unsigned char* pBytes, std::size_t size)
{
    return {name, {reinterpret_cast<const char*>(pBytes), size}};
}

/// @return null if there is none of that name
inline const File* Find(std::span<const File> files, std::string_view name)
{
    for (const File& rFile : files)
    {
        if (rFile.name == name)
        {
            return &rFile;
        }
    }
    return nullptr;
}

}  // namespace webfile
