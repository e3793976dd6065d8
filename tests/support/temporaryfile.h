/// @file
/// Files that only their test knows.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

/// A place of this process for a file or a folder; what stands there goes with the object.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string& rName) : path(testing::TempDir() + std::to_string(getpid()) + "." + rName)
    {
    }

    ~TemporaryFile()
    {
        std::filesystem::remove_all(path);
    }

    TemporaryFile(const TemporaryFile&)            = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// @param rBytes a text or a sequence of bytes
    /// @return the path
    template <typename Bytes> const std::string& Write(const Bytes& rBytes) const
    {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(rBytes.data()), static_cast<std::streamsize>(rBytes.size()));
        return path;
    }

    const std::string path;
};
