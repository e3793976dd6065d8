/// @file
/// Debug records of a run in a file: a header, then the record of each frame as the core has filled it.
///
///     offset  size  what
///          0     8  "KIRODBG", ended by a zero
///          8     4  version of this form, 1
///         12     4  bytes of a record
///         16        records, one after another, up to the end of the file
///
/// Numbers have the byte order of the machine, which is little-endian wherever the core runs.
#pragma once

#include <memory>
#include <string>

#include "interface/aecdebugdata.h"
#include "tools/tuningfile/filereplacement.h"

namespace debugdata
{

/// Writes records as a run goes on. The file is there once Commit has been called.
class DebugFileWriter
{
public:
    /// @throws tuningfile::InputError, as all functions do, if the file cannot be written
    explicit DebugFileWriter(const std::string& rPath);

    VOID Add(const AECDebugData& rRecord);

    VOID Commit()
    {
        m_file.Commit();
    }

private:
    tuningfile::FileReplacement m_file;
};

class DebugFileReader
{
public:
    /// @param name for messages
    /// @throws tuningfile::InputError if the file cannot be read, is no file of debug records, or is cut
    DebugFileReader(const std::string& rPath, std::string name);
    explicit DebugFileReader(const std::string& rPath) : DebugFileReader(rPath, rPath)
    {
    }

    ~DebugFileReader();
    DebugFileReader(const DebugFileReader&)            = delete;
    DebugFileReader& operator=(const DebugFileReader&) = delete;

    UINT64 Count() const
    {
        return m_count;
    }

    /// @param index below Count
    /// @return a record that stays until the next call @throws tuningfile::InputError
    const AECDebugData& Read(UINT64 index);

private:
    VOID ReadHeader();
    VOID ReadAt(UINT64 offset, VOID* pBytes, size_t size) const;

    std::string                   m_name;
    int                           m_descriptor;
    UINT64                        m_count;
    std::unique_ptr<AECDebugData> m_pRecord;
};

}  // namespace debugdata
