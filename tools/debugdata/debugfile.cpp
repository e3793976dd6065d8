#include "tools/debugdata/debugfile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/tuningfile/inputerror.h"

using tuningfile::InputError;

namespace debugdata
{

namespace
{

struct Header
{
    CHAR   magic[8];
    UINT32 version;
    UINT32 recordSize;
};
static_assert(sizeof(Header) == 16);

constexpr Header ThisHeader = {{'K', 'I', 'R', 'O', 'D', 'B', 'G', '\0'}, 1, sizeof(AECDebugData)};

/// A page of a file, which takes no room while it is all zero.
constexpr UINT64 PageSize = 4096;

std::span<const BYTE> BytesOf(const auto& rRecord)
{
    return {reinterpret_cast<const BYTE*>(&rRecord), sizeof(rRecord)};
}

}  // namespace

DebugFileWriter::DebugFileWriter(const std::string& rPath) : m_file(rPath)
{
    m_file.Write(BytesOf(ThisHeader));
}

/// Most of a record is empty most of the time: pages without anything become holes.
VOID DebugFileWriter::Add(const AECDebugData& rRecord)
{
    std::span<const BYTE> rest = BytesOf(rRecord);
    while (!rest.empty())
    {
        const UINT64                toPageEnd = PageSize - m_file.Size() % PageSize;
        const std::span<const BYTE> piece     = rest.first(std::min<UINT64>(toPageEnd, rest.size()));
        rest                                  = rest.subspan(piece.size());
        if (std::all_of(piece.begin(), piece.end(), [](BYTE byte) { return byte == 0; }))
        {
            m_file.Skip(piece.size());
        }
        else
        {
            m_file.Write(piece);
        }
    }
}

DebugFileReader::DebugFileReader(const std::string& rPath, std::string name)
    : m_name(std::move(name)), m_descriptor(open(rPath.c_str(), O_RDONLY | O_CLOEXEC)), m_count(0),
      m_pRecord(std::make_unique<AECDebugData>())
{
    if (m_descriptor < 0)
    {
        throw InputError(fmt::format("{}: cannot be opened: {}", m_name, std::strerror(errno)));
    }
    try
    {
        ReadHeader();
    }
    catch (...)
    {
        (VOID) close(m_descriptor);
        throw;
    }
}

DebugFileReader::~DebugFileReader()
{
    (VOID) close(m_descriptor);
}

VOID DebugFileReader::ReadHeader()
{
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
    {
        throw InputError(fmt::format("{}: expected a plain file", m_name));
    }
    const UINT64 size = static_cast<UINT64>(status.st_size);
    Header       header{};
    ReadAt(0, &header, std::min<UINT64>(size, sizeof(header)));
    if (std::memcmp(header.magic, ThisHeader.magic, sizeof(header.magic)) != 0)
    {
        throw InputError(fmt::format("{}: no file of debug records, expected one of kirosim run --debug-data", m_name));
    }
    if (size < sizeof(header))
    {
        throw InputError(fmt::format("{}: cut within the header", m_name));
    }
    if (header.version != ThisHeader.version || header.recordSize != ThisHeader.recordSize)
    {
        throw InputError(fmt::format("{}: version {} with records of {} bytes, expected version {} and {} bytes",
                                     m_name, header.version, header.recordSize, ThisHeader.version,
                                     ThisHeader.recordSize));
    }
    m_count = (size - sizeof(header)) / sizeof(AECDebugData);
    if (const UINT64 excess = (size - sizeof(header)) % sizeof(AECDebugData); excess != 0)
    {
        throw InputError(
            fmt::format("{}: cut within record {}: {} of {} bytes", m_name, m_count + 1, excess, sizeof(AECDebugData)));
    }
}

const AECDebugData& DebugFileReader::Read(UINT64 index)
{
    ReadAt(sizeof(Header) + index * sizeof(AECDebugData), m_pRecord.get(), sizeof(AECDebugData));
    return *m_pRecord;
}

VOID DebugFileReader::ReadAt(UINT64 offset, VOID* pBytes, size_t size) const
{
    for (size_t done = 0; done < size;)
    {
        const ssize_t length =
            pread(m_descriptor, static_cast<BYTE*>(pBytes) + done, size - done, static_cast<off_t>(offset + done));
        if (length == 0 || (length < 0 && errno != EINTR))
        {
            throw InputError(fmt::format("{}: cannot be read: {}", m_name,
                                         (length == 0) ? "it has become shorter" : std::strerror(errno)));
        }
        done += (length > 0) ? static_cast<size_t>(length) : 0;
    }
}

}  // namespace debugdata
