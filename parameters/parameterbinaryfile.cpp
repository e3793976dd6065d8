#include "parameters/parameterbinaryfile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"
#include "parameters/parsercrc.h"
#include "platform/tavocommonutils.h"

ParameterBinaryFile::ParameterBinaryFile(const CHAR* pFileName, const IParameterLoggingAPI* pLog) : m_logAPI(pLog)
{
    if (pFileName == nullptr)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile constructor called with null file name\n");
        return;
    }
    const size_t length = std::strlen(pFileName);
    if (length >= MaxFileName - 1)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile constructor file name length (%lld) exceeds max length: %d\n",
                                static_cast<INT64>(length), static_cast<INT32>(MaxFileName - 1));
        return;
    }
    Tavo::OsUtils::StrLCpy(m_fileName, pFileName, sizeof(m_fileName));
    Reference(1);
    m_isValid = m_file != nullptr;
}

ParameterBinaryFile::~ParameterBinaryFile()
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    const INT32                     references = m_refCnt.load();
    if (references > 1)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile deleted with outstanding references: %u\n", references);
    }
    Close();
}

VOID ParameterBinaryFile::Open(bool logFailure)
{
    if (m_file != nullptr)
    {
        return;
    }
    m_file = std::fopen(m_fileName, "rbe");
    if (m_file == nullptr)
    {
        m_isGone = m_wasOpen;
        if (logFailure)
        {
            ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                    "ParameterBinaryFile::Open failed to open file, errno: %d, file name: %s\n", errno,
                                    m_fileName);
        }
        return;
    }
    // The read buffers of this class are the only ones: reads jump too far for a stream's own to be of use.
    (VOID) std::setvbuf(m_file, nullptr, _IONBF, 0);
    State state;
    if (!ReadState(state))
    {
        Close();
        m_isGone = m_wasOpen;
        return;
    }
    const bool firstOpen = !std::exchange(m_wasOpen, true);
    if (!firstOpen && state != m_state)
    {
        m_isModified = true;
        ParameterLogging::Write(m_logAPI, ParameterLogging::Warning,
                                "ParameterBinaryFile::Open, file modified, must reload\n");
    }
    if (firstOpen || m_isModified)
    {
        m_state  = state;
        m_length = static_cast<UINT32>(std::clamp<INT64>(state.size, 0, std::numeric_limits<UINT32>::max()));
    }
    m_isGone = false;  // last: whoever sees it back sees whether it is modified, see IsLost
}

bool ParameterBinaryFile::ReadState(State& rState) const
{
    struct stat status = {};
    if (::fstat(fileno(m_file), &status) != 0)
    {
        return false;
    }
    rState.modTime     = static_cast<INT64>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    rState.size        = status.st_size;
    rState.end         = 0;
    const off_t offset = std::max<INT64>(rState.size - static_cast<INT64>(sizeof(rState.end)), 0);
    return ::pread(fileno(m_file), &rState.end, sizeof(rState.end), offset) >= 0;
}

bool ParameterBinaryFile::IsUnchanged()
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    State                           state;
    if (m_file == nullptr || !ReadState(state))
    {
        return false;
    }
    if (state != m_state && !m_isModified)
    {
        m_isModified = true;
        ParameterLogging::Write(m_logAPI, ParameterLogging::Warning,
                                "ParameterBinaryFile::IsUnchanged, file modified while it was read, must reload\n");
    }
    return !IsLost();
}

VOID ParameterBinaryFile::Close()
{
    m_pWhole.reset();
    if (m_file != nullptr)
    {
        std::fclose(m_file);
        m_file = nullptr;
    }
}

VOID ParameterBinaryFile::KeepInMemory(TuningBlock pWhole)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    m_pWhole = std::move(pWhole);
}

bool ParameterBinaryFile::Read(VOID* pDestination, UINT64 offset, UINT64& rPosition, UINT32 count, UINT32 alignment)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    if (!MayRead(pDestination, offset, rPosition, count) || !m_isValid || m_isModified)
    {
        return count == 0 && !m_isModified;
    }
    if (m_pWhole != nullptr)
    {
        std::memcpy(pDestination, m_pWhole.get() + offset + rPosition, count);
    }
    else if (const bool cacheable = count <= ReadBufferSize && m_useReadBufs;
             !(cacheable && ReadCached(pDestination, offset + rPosition, count)) &&
             !ReadDirect(pDestination, offset, rPosition, count))
    {
        return false;
    }
    rPosition += ParameterUtils::Padded(count, alignment);
    return !m_isModified;
}

TuningBlock ParameterBinaryFile::Read(UINT64 offset, UINT32 count)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    // A size that the file cannot have is refused by the read below; it must not be allocated before.
    const bool  possible = count <= m_length;
    TuningBlock pBlock(static_cast<BYTE*>(AllocateTuningMemory(possible ? count : 0)));
    UINT64      position = 0;
    if (pBlock == nullptr || !Read(pBlock.get(), offset, position, count, 1))
    {
        return nullptr;
    }
    return pBlock;
}

bool ParameterBinaryFile::MayRead(const VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count) const
{
    const CHAR* const pFault = (m_file == nullptr)         ? "null file"
                               : (pDestination == nullptr) ? "null value"
                               : (m_length == 0)           ? "a zero length file"
                                                           : nullptr;
    if (pFault != nullptr)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error, "ParameterBinaryFile::Read called with %s\n",
                                pFault);
        return false;
    }
    const UINT64 filePosition = offset + position;
    if (filePosition > m_length || count > m_length - filePosition)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile::Read attempted to read past the end of the file, offset: %u, "
                                "pos: %u, count: %u, length: %u\n",
                                static_cast<UINT32>(offset), static_cast<UINT32>(position), count, m_length);
        return false;
    }
    return true;
}

bool ParameterBinaryFile::ReadCached(VOID* pDestination, UINT64 filePosition, UINT32 count)
{
    const UINT32      position = static_cast<UINT32>(filePosition);
    const ReadBuffer* pCached  = GetBuffer(position, count);
    if (pCached == nullptr)
    {
        return false;
    }
    if (position < pCached->Offset)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile::Read filePos < buffer Offset, filePos: %u, Offset: %u\n",
                                position, pCached->Offset);
        return false;
    }
    if (static_cast<UINT64>(position - pCached->Offset) + count > pCached->Length)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile::Read filePos - buffer->Offset + count > buffer->Length, "
                                "filePos: %u, Offset: %u, count: %u, Length: %u\n",
                                position, pCached->Offset, count, pCached->Length);
        return false;
    }
    std::memcpy(pDestination, pCached->Buffer + (position - pCached->Offset), count);
    return true;
}

bool ParameterBinaryFile::ReadDirect(VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count)
{
    for (UINT32 attempt = 1;; ++attempt)
    {
        if (ReadOnce(pDestination, offset, position, count))
        {
            return true;
        }
        if (attempt == MaxReadAttempts)
        {
            return false;
        }
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error, "ParameterBinaryFile::Read failed, retrying\n");
        Close();
        Open(true);
        if (m_isModified)
        {
            return false;
        }
    }
}

bool ParameterBinaryFile::ReadOnce(VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count)
{
    if (m_file == nullptr)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile::Read fseek failed, file not open\n");
        return false;
    }
    const UINT64 filePosition = offset + position;
    const INT32  result       = ::fseeko(m_file, static_cast<off_t>(filePosition), SEEK_SET);
    if (result != 0)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "ParameterBinaryFile::Read fseek failed, ferror: %d, return value %d, offset: %d\n",
                                std::ferror(m_file), result, static_cast<INT32>(filePosition));
        return false;
    }
    const size_t actual = std::fread(pDestination, 1, count, m_file);
    if (actual != count)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "Read failed to read from file, ferror: %d, offset: %u, pos: %u, requested: %lld, "
                                "actual: %lld\n",
                                std::ferror(m_file), static_cast<UINT32>(offset), static_cast<UINT32>(position),
                                static_cast<INT64>(count), static_cast<INT64>(actual));
        return false;
    }
    return true;
}

ParameterBinaryFile::ReadBuffer* ParameterBinaryFile::GetBuffer(UINT32 offset, UINT32 count)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    const auto                      holder = std::find_if(m_readBufs.begin(), m_readBufs.end(),
                                                          [&](const ReadBuffer& rBuffer)
                                                          {
                                         return rBuffer.Length > 0 && offset >= rBuffer.Offset &&
                                                static_cast<UINT64>(offset) + count <=
                                                    static_cast<UINT64>(rBuffer.Offset) + rBuffer.Length;
                                     });
    if (holder != m_readBufs.end())
    {
        return &*holder;
    }

    ReadBuffer& rVictim = ChooseVictim(offset);
    rVictim.Offset      = offset;
    rVictim.Length      = ReadBufferSize;
    if (m_length <= ReadBufferSize)
    {
        rVictim.Offset = 0;
        rVictim.Length = m_length;
    }
    else if (offset > m_length - ReadBufferSize)
    {
        rVictim.Offset = m_length - ReadBufferSize;
    }

    UINT64 position   = 0;
    m_useReadBufs     = false;
    const bool filled = Read(rVictim.Buffer, rVictim.Offset, position, rVictim.Length, 1);
    m_useReadBufs     = true;
    if (!filled)
    {
        rVictim.Length = 0;
        return nullptr;
    }
    return &rVictim;
}

ParameterBinaryFile::ReadBuffer& ParameterBinaryFile::ChooseVictim(UINT32 offset)
{
    const auto unused = std::find_if(m_readBufs.begin(), m_readBufs.end(),
                                     [](const ReadBuffer& rBuffer) { return rBuffer.Length == 0; });
    if (unused != m_readBufs.end())
    {
        return *unused;
    }
    const auto distance = [offset](const ReadBuffer& rBuffer)
    { return (offset > rBuffer.Offset) ? offset - rBuffer.Offset : rBuffer.Offset - offset; };
    return *std::min_element(m_readBufs.begin(), m_readBufs.end(),
                             [&](const ReadBuffer& rFirst, const ReadBuffer& rSecond)
                             { return distance(rFirst) < distance(rSecond); });
}

VOID ParameterBinaryFile::Reopen(INT32 adjust)
{
    const INT32 count = m_refCnt.load();
    if (count != 0)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "FileReference Adjust: %d, RefCount: %u, Binary File was null when file "
                                "reference was %u\n",
                                adjust, count, count);
    }
    const bool wasGone = m_isGone;
    Open(false);
    if (m_file == nullptr && !wasGone)  // said once, and tried again
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "FileReference Adjust: %d, RefCount: %u, Failed to open binary file '%s' "
                                "errno: %d\n",
                                adjust, count, m_fileName, errno);
    }
}

INT32 ParameterBinaryFile::Reference(INT32 adjust)
{
    std::lock_guard<ParameterMutex> lock(m_pbfMutex);
    const INT32                     count = m_refCnt.load();
    if (adjust > 0)
    {
        if (m_file == nullptr)
        {
            Reopen(adjust);
        }
        m_refCnt.store(count + adjust);
    }
    else if (adjust < 0 && m_file != nullptr)
    {
        if (count + adjust < 0)
        {
            ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                    "FileReference Adjust: %d, RefCount: %u, File Reference is less than adjust "
                                    "amount\n",
                                    adjust, count);
        }
        m_refCnt.store(count + adjust);
        if (count + adjust < 1)
        {
            Close();
            m_refCnt.store(0);
        }
    }
    else if (adjust < 0 && m_isGone)
    {
        m_refCnt.store(std::max(count + adjust, 0));  // taken in vain, as was said then
    }
    else if (adjust < 0)
    {
        ParameterLogging::Write(m_logAPI, ParameterLogging::Error,
                                "FileReference Remove: %d, RefCount: %i, Called when file was already closed\n", adjust,
                                count);
    }
    return m_refCnt.load();
}

bool ParameterBinaryFile::ValidateCRC(const BYTE* pBuffer, UINT32 length, bool isCrc64,
                                      const IParameterLoggingAPI* pLog)
{
    return isCrc64 ? ParserCRC64::Validate(pBuffer, length, true, pLog) : ParserCRC32::Validate(pBuffer, length, pLog);
}
