/// @file
/// Writes tuning records into parameter files by their tables, for tests that want whole records in a file.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "schema/tuningrecord.h"
#include "tests/support/parameterfilebuilder.h"
#include "tools/tuningfile/recordblocks.h"

class RecordWriter
{
public:
    explicit RecordWriter(ParameterFileBuilder& rBuilder) : m_rBuilder(rBuilder)
    {
    }

    /// The block of a record, for files of version 6.0.0 and later. What the record points to becomes data entries.
    std::vector<BYTE> Encode(const tuning::RecordDescription& rRecord, const VOID* pRecord);

    /// Writes definitions of the record and of all records in it. @return the structure ID
    UINT32 Define(const tuning::RecordDescription& rRecord);

    /// Definitions of a record's members, for tests that define them a little differently. Nested records are defined.
    std::vector<DefinedMember> Members(const tuning::RecordDescription& rRecord);

    /// Adds a module with its record and, at its first instance, its definition. @return ID of the entry
    UINT32 AddModule(const CHAR* pName, const VersionUnion& rVersion, UINT32 modeId,
                     const tuning::RecordDescription& rRecord, const VOID* pRecord);

    /// Gives equal arrays and texts one block, as files do in which readers share them.
    bool m_sharesData = false;

private:
    UINT32            AddData(const std::vector<BYTE>& rBlock);
    std::vector<BYTE> BytesOf(const tuningfile::RecordBlockPool& rPool, UINT32 block);

    ParameterFileBuilder&                              m_rBuilder;
    std::map<const tuning::RecordDescription*, UINT32> m_defined;
    std::map<std::string, bool>                        m_definedModules;
    std::map<std::vector<BYTE>, UINT32>                m_data;  ///< first entry with these bytes
};
