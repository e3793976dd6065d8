/// @file
/// The files of one command: an output must not be an input of it, nor another output.
#pragma once

#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace program
{

/// Collects what a command reads and writes, and compares it before any of it is opened. A file may be read twice.
class CommandFiles
{
public:
    /// @param name what a person calls the file: the option, or "the tuning". No path is no file
    VOID Reads(std::string name, const std::string& rPath);
    VOID Writes(std::string name, const std::string& rPath);

    /// @throws std::runtime_error that names the first two that are one file, whatever their spelling
    VOID Check() const;

private:
    struct File
    {
        std::string name;
        std::string path;
        bool        isWritten;
    };

    VOID        Add(std::string name, const std::string& rPath, bool isWritten);
    static bool IsOne(const File& rOne, const File& rOther);

    std::vector<File> m_files;
};

}  // namespace program
