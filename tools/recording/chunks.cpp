#include "tools/recording/chunks.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>
#include <sys/stat.h>

#include "tools/program/filekind.h"

namespace recording
{

namespace
{

constexpr CHAR   Magic[8]    = {'K', 'I', 'R', 'O', 'R', 'E', 'C', '\n'};
constexpr size_t PrefixSize  = 2 * sizeof(UINT32);  // type and size of a chunk
constexpr size_t ChecksumEnd = sizeof(UINT32);

struct Header
{
    CHAR   magic[8];
    UINT32 version;
    UINT32 checksum;  ///< of what stands before it
};

using ChecksumTables = std::array<std::array<UINT32, 256>, 8>;

/// Table n takes a byte that n bytes follow: eight bytes at a time, since statistics are large.
constexpr ChecksumTables BuildTables()
{
    constexpr UINT32 polynomial = 0xEDB88320;
    ChecksumTables   tables{};
    for (UINT32 index = 0; index < 256; ++index)
    {
        UINT32 value = index;
        for (UINT32 bit = 0; bit < 8; ++bit)
        {
            value = (value >> 1) ^ (((value & 1) != 0) ? polynomial : 0);
        }
        tables[0][index] = value;
    }
    for (size_t table = 1; table < tables.size(); ++table)
    {
        for (UINT32 index = 0; index < 256; ++index)
        {
            const UINT32 before  = tables[table - 1][index];
            tables[table][index] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}

std::span<const BYTE> BytesOf(const VOID* pBytes, size_t size)
{
    return {static_cast<const BYTE*>(pBytes), size};
}

std::string NameOf(UINT32 type)
{
    std::string name;
    for (UINT32 shift = 0; shift < 32; shift += 8)
    {
        const auto letter = static_cast<CHAR>(type >> shift);
        name += (letter >= 'A' && letter <= 'Z') ? letter : '?';
    }
    return name;
}

[[noreturn]] VOID ThrowSystem(const std::string& rPath)
{
    throw std::runtime_error(rPath + ": " + std::strerror(errno));
}

}  // namespace

UINT32 ChecksumOf(std::span<const BYTE> bytes, UINT32 seed)
{
    static constexpr ChecksumTables tables = BuildTables();

    UINT32 value = ~seed;
    for (; bytes.size() >= tables.size(); bytes = bytes.subspan(tables.size()))
    {
        UINT32 words[2];
        std::memcpy(words, bytes.data(), sizeof(words));
        words[0] ^= value;
        value = 0;
        for (size_t byte = 0; byte < 4; ++byte)
        {
            value ^=
                tables[7 - byte][(words[0] >> (8 * byte)) & 0xFF] ^ tables[3 - byte][(words[1] >> (8 * byte)) & 0xFF];
        }
    }
    for (const BYTE byte : bytes)
    {
        value = tables[0][(byte ^ value) & 0xFF] ^ (value >> 8);
    }
    return ~value;
}

ChunkWriter::ChunkWriter(const std::string& rPath)
    : m_target(program::EndOfLinks(rPath)), m_path(m_target + PartSuffix), m_file(nullptr, &std::fclose)
{
    if (const std::string kind = program::UnusableKind(rPath); !kind.empty())
    {
        throw std::runtime_error(fmt::format("{}: is {}, expected a file", rPath, kind));
    }
    m_file.reset(std::fopen(m_path.c_str(), "wb"));
    if (m_file == nullptr)
    {
        ThrowSystem(rPath);
    }
    Header header{};
    std::memcpy(header.magic, Magic, sizeof(Magic));
    header.version  = FileVersion;
    header.checksum = ChecksumOf(BytesOf(&header, sizeof(header) - sizeof(header.checksum)));
    Put(&header, sizeof(header));
}

VOID ChunkWriter::Write(ChunkType type, std::span<const BYTE> payload)
{
    const UINT32 prefix[] = {static_cast<UINT32>(type), static_cast<UINT32>(payload.size())};
    UINT32       checksum = ChecksumOf(BytesOf(prefix, sizeof(prefix)));
    checksum              = ChecksumOf(payload, checksum);
    Put(prefix, sizeof(prefix));
    Put(payload.data(), payload.size());
    Put(&checksum, sizeof(checksum));
}

VOID ChunkWriter::Put(const VOID* pBytes, size_t size)
{
    if (size > 0 && std::fwrite(pBytes, 1, size, m_file.get()) != size)
    {
        ThrowSystem(m_path);
    }
}

VOID ChunkWriter::Flush()
{
    if (std::fflush(m_file.get()) != 0)
    {
        ThrowSystem(m_path);
    }
}

VOID ChunkWriter::Commit()
{
    if (std::fclose(m_file.release()) != 0 || std::rename(m_path.c_str(), m_target.c_str()) != 0)
    {
        ThrowSystem(m_target);
    }
}

ChunkReader::ChunkReader(const std::string& rPath)
    : m_file(std::fopen(rPath.c_str(), "rb"), &std::fclose), m_size(0), m_offset(0)
{
    struct stat status
    {
    };
    if (m_file == nullptr || fstat(fileno(m_file.get()), &status) != 0)
    {
        ThrowSystem(rPath);
    }
    if (!S_ISREG(status.st_mode))
    {
        throw std::runtime_error(rPath + ": no plain file");
    }
    m_size = static_cast<UINT64>(status.st_size);
    ReadHeader(rPath);
}

VOID ChunkReader::ReadHeader(const std::string& rPath)
{
    Header       header{};
    const size_t size = std::min<UINT64>(sizeof(header), m_size);
    if (size < sizeof(Magic) || !Take(&header, size) || std::memcmp(header.magic, Magic, sizeof(Magic)) != 0)
    {
        throw std::runtime_error(rPath + ": no recording, expected one of kirosim run --record");
    }
    if (size < sizeof(header))
    {
        throw std::runtime_error(fmt::format("{}: cut at byte {}, within the header", rPath, m_size));
    }
    if (header.checksum != ChecksumOf(BytesOf(&header, sizeof(header) - sizeof(header.checksum))))
    {
        throw std::runtime_error(rPath + ": the header is damaged");
    }
    if (header.version != FileVersion)
    {
        throw std::runtime_error(
            fmt::format("{}: a recording of version {}, expected {}", rPath, header.version, FileVersion));
    }
}

bool ChunkReader::Take(VOID* pBytes, size_t size)
{
    if (size > m_size - m_offset || std::fread(pBytes, 1, size, m_file.get()) != size)
    {
        return false;
    }
    m_offset += size;
    return true;
}

std::optional<Chunk> ChunkReader::Next()
{
    if (!m_damage.empty() || m_offset == m_size)
    {
        return std::nullopt;
    }
    const UINT64 start     = m_offset;
    UINT32       prefix[2] = {};
    if (!Take(prefix, sizeof(prefix)))
    {
        m_damage = fmt::format("cut at byte {}, within the beginning of a chunk", m_size);
        return std::nullopt;
    }
    const auto [type, size] = prefix;
    if (UINT64{size} + ChecksumEnd > m_size - m_offset)
    {
        m_damage = fmt::format("cut or damaged at byte {}: a chunk {} of {} bytes, but only {} are left", start,
                               NameOf(type), PrefixSize + size + ChecksumEnd, m_size - start);
        return std::nullopt;
    }
    Chunk  chunk    = {static_cast<ChunkType>(type), start, std::vector<BYTE>(size)};
    UINT32 checksum = 0;
    if (!Take(chunk.payload.data(), size) || !Take(&checksum, sizeof(checksum)))
    {
        m_damage = fmt::format("cannot be read at byte {}", start);
        return std::nullopt;
    }
    if (checksum != ChecksumOf(chunk.payload, ChecksumOf(BytesOf(prefix, sizeof(prefix)))))
    {
        m_damage = fmt::format("damaged at byte {}: the checksum of a chunk {} does not fit", start, NameOf(type));
        return std::nullopt;
    }
    return chunk;
}

}  // namespace recording
