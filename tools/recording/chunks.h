/// @file
/// The file of a recording: a header, then chunks, each with its size and checksum. docs/recording.md says what they
/// hold.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace recording
{

constexpr UINT32 FileVersion = 2;

/// What a chunk is, four letters.
enum class ChunkType : UINT32
{
    Head     = 0x44414548,  ///< "HEAD"
    Tuning   = 0x454E5554,  ///< "TUNE"
    Instance = 0x54534E49,  ///< "INST"
    Host     = 0x54534F48,  ///< "HOST"
    Call     = 0x4C4C4143,  ///< "CALL"
    Done     = 0x454E4F44,  ///< "DONE"
    Tail     = 0x4C494154   ///< "TAIL"
};

struct Chunk
{
    ChunkType         type;
    UINT64            offset;  ///< of its first byte in the file
    std::vector<BYTE> payload;
};

/// Writes a file as the run goes on, beside its place: a run that dies leaves what it has done so far, under the name
/// with PartSuffix, and what had the name before is still there.
class ChunkWriter
{
public:
    static constexpr CHAR PartSuffix[] = ".part";

    /// @throws std::runtime_error, as the other functions do, if the file cannot be written
    explicit ChunkWriter(const std::string& rPath);

    VOID Write(ChunkType type, std::span<const BYTE> payload);

    /// Hands what was written to the system.
    VOID Flush();

    /// Gives the file its name. Nothing is written afterwards.
    VOID Commit();

private:
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    VOID Put(const VOID* pBytes, size_t size);

    std::string m_target;
    std::string m_path;  ///< while it is written
    File        m_file;
};

class ChunkReader
{
public:
    /// @throws std::runtime_error if the file cannot be read, is no recording, or one of another version
    explicit ChunkReader(const std::string& rPath);

    /// @return the next chunk; none at the end of the file, or where what follows is no whole chunk: then Damage says
    ///         so, and nothing more is read
    std::optional<Chunk> Next();

    /// What is wrong, and where; empty while nothing is.
    const std::string& Damage() const
    {
        return m_damage;
    }

private:
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    bool Take(VOID* pBytes, size_t size);
    VOID ReadHeader(const std::string& rPath);

    File        m_file;
    UINT64      m_size;    ///< of the file
    UINT64      m_offset;  ///< of what is read next
    std::string m_damage;
};

/// @return CRC-32 of the bytes
UINT32 ChecksumOf(std::span<const BYTE> bytes, UINT32 seed = 0);

}  // namespace recording
