/// @file
/// A file that is written piece by piece and takes the place of another once it is whole.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "platform/tavotypes.h"
#include "tools/program/temporaries.h"

namespace tuningfile
{

/// Writes to a temporary file beside the target. Without Commit nothing of it remains, and the target is as it was;
/// with it, the target keeps its owner and its mode. A link is followed. What is no file in a folder, such as
/// /dev/stdout, "-" for the same, or /dev/null, takes the bytes at once.
class FileReplacement
{
public:
    /// @throws InputError, as all functions do, if the file cannot be written or the target is no plain file
    explicit FileReplacement(const std::string& rPath);
    ~FileReplacement();
    FileReplacement(const FileReplacement&)            = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Appends bytes.
    VOID Write(std::span<const BYTE> bytes);

    /// Appends zeros, which take no room on the disk.
    VOID Skip(UINT64 bytes);

    /// Bytes so far.
    UINT64 Size() const
    {
        return m_size;
    }

    VOID Commit();

private:
    VOID OpenStream(std::optional<int> descriptor);
    VOID OpenTemporary();

    std::string                       m_path;       ///< as messages name it
    std::string                       m_target;     ///< what it stands for
    std::optional<program::Temporary> m_temporary;  ///< none for a stream, and behind Commit
    int                               m_stream;     ///< -1 for a file
    UINT64                            m_size;
};

}  // namespace tuningfile
