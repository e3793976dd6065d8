/// @file
/// A parameter file on disk, read piece by piece.
#pragma once

#include <array>
#include <atomic>
#include <cstdio>

#include "parameters/parametersync.h"
#include "parameters/tuningmemory.h"
#include "platform/tavotypes.h"

class IParameterLoggingAPI;

/// Reads a file whose stream is open only while references exist, so that the file can be replaced on disk in between.
/// A file that has changed when it is opened again, or that was written to while it was open, is marked modified, for
/// good: from then on every read fails, until the tuning is loaded anew. Another modification time or size, or other
/// last bytes, tell a change. One that cannot be opened again is gone until it can. All operations may be called from
/// any thread.
class ParameterBinaryFile
{
public:
    /// Longest file name, terminator included.
    static constexpr size_t MaxFileName = 1024;

    /// Opens the file and takes the first reference.
    /// @param pFileName null, or a name of 1023 or more characters, leaves the object invalid
    /// @param pLog      must outlive the object
    ParameterBinaryFile(const CHAR* pFileName, const IParameterLoggingAPI* pLog);
    ~ParameterBinaryFile();
    ParameterBinaryFile(const ParameterBinaryFile&)            = delete;
    ParameterBinaryFile& operator=(const ParameterBinaryFile&) = delete;

    const CHAR* FileName() const
    {
        return m_fileName;
    }

    /// Bytes of the file when it was opened; what lies beyond 4 GB is out of reach. For the thread that loads the file.
    UINT32 Length() const
    {
        return m_length;
    }

    /// @return whether the file could be opened at first
    bool IsValid() const
    {
        return m_isValid;
    }

    /// Reads count bytes from offset + rPosition, and on success moves rPosition behind them and up to the next
    /// multiple of alignment.
    /// @return true if all bytes were read and the file was not found modified
    bool Read(VOID* pDestination, UINT64 offset, UINT64& rPosition, UINT32 count, UINT32 alignment);

    /// Reads count bytes from offset into a new block. @return null on failure
    TuningBlock Read(UINT64 offset, UINT32 count);

    /// Takes the whole file in memory, from which it is read until it is closed: the many pieces of a load.
    /// @param pWhole Length() bytes, as Read gave them
    VOID KeepInMemory(TuningBlock pWhole);

    /// @return the whole file while it is kept in memory, otherwise null. For the thread that loads the file
    const BYTE* Whole() const
    {
        return m_pWhole.get();
    }

    /// Adds adjust to the number of references; the first one opens the file, the last one closes it.
    /// @return the number of references
    INT32 Reference(INT32 adjust);

    /// @return whether nothing can be read at the moment: the file was found modified, or could not be opened again
    bool IsLost() const
    {
        return m_isGone || m_isModified;
    }

    /// @return whether nothing can be read for good: the next open of a file that is gone may find it again
    bool IsModified() const
    {
        return m_isModified;
    }

    /// Looks once more at the file that is open. @return false if what was read of it since may be of another state,
    /// or if it has been closed
    bool IsUnchanged();

    /// Checks the checksum at the end of a whole file.
    static bool ValidateCRC(const BYTE* pBuffer, UINT32 length, bool isCrc64, const IParameterLoggingAPI* pLog);

private:
    static constexpr UINT32 ReadBufferSize  = 1024;
    static constexpr UINT32 ReadBufferCount = 3;
    static constexpr UINT32 MaxReadAttempts = 4;

    /// A piece of the file in memory.
    struct ReadBuffer
    {
        BYTE   Buffer[ReadBufferSize];
        UINT32 Offset;
        UINT32 Length;  ///< 0 for a buffer that was never filled
    };

    /// What tells one state of a file from another. Not its inode: some file systems number a file anew when they have
    /// forgotten it.
    struct State
    {
        INT64  modTime = 0;  ///< ns since the epoch
        INT64  size    = 0;
        UINT64 end     = 0;  ///< its last bytes, which hold the checksum

        bool operator==(const State&) const = default;
    };

    bool        ReadState(State& rState) const;
    VOID        Open(bool logFailure);
    VOID        Reopen(INT32 adjust);
    VOID        Close();
    bool        MayRead(const VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count) const;
    bool        ReadCached(VOID* pDestination, UINT64 filePosition, UINT32 count);
    bool        ReadDirect(VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count);
    bool        ReadOnce(VOID* pDestination, UINT64 offset, UINT64 position, UINT32 count);
    ReadBuffer* GetBuffer(UINT32 offset, UINT32 count);
    ReadBuffer& ChooseVictim(UINT32 offset);

    FILE*                                   m_file   = nullptr;
    UINT32                                  m_length = 0;
    TuningBlock                             m_pWhole;  ///< the file's bytes; null unless it is kept in memory
    ParameterRefCount                       m_refCnt{0};
    std::array<ReadBuffer, ReadBufferCount> m_readBufs{};
    bool                                    m_useReadBufs           = true;
    CHAR                                    m_fileName[MaxFileName] = {};
    bool                                    m_isValid               = false;
    std::atomic<bool>                       m_isModified            = false;
    std::atomic<bool>                       m_isGone                = false;  ///< the last try to open it again failed
    bool                                    m_wasOpen               = false;
    State                                   m_state;  ///< all zeros before the first open
    ParameterMutex                          m_pbfMutex;
    const IParameterLoggingAPI*             m_logAPI;
};
