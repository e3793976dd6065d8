/// @file
/// Reads the mode sections of a parameter file into trees of modes.
#pragma once

#include <memory>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "parameters/parametermodetable.h"

class ParameterBinaryFile;
class ParameterSetManager;

/// Works through the sections in file order, each giving one table. A row that contradicts itself is left out, with an
/// error; what decides whether the file is refused is the last section alone.
class ModeSectionReader
{
public:
    /// @param rManager   receives errors and log lines
    /// @param bufferMode modes count as loaded from the start
    ModeSectionReader(ParameterSetManager& rManager, const BinaryFileHeader& rHeader, bool bufferMode);

    /// @param pBuffer the whole file; not used if there is a file object
    /// @param pFile   null to read from the buffer
    /// @param rTables receives the tables, as far as they could be read
    bool Read(const BYTE* pBuffer, UINT64 length, ParameterBinaryFile* pFile, const std::vector<SectionInfo>& rSections,
              std::vector<std::unique_ptr<ParameterModeTable>>& rTables);

private:
    /// A mode entry as a file stores it.
    struct Row
    {
        UINT32    id;
        ModeUnion mode;
        UINT32    parentId;
        UINT32    linkId;
        UINT32    flags;

        bool HasLink() const
        {
            return linkId != BinaryFileFormat::NoLink;
        }
    };

    std::unique_ptr<ParameterModeTable> MakeDefaultTable() const;
    bool                                CheckSection(const BYTE* pSection, UINT32 size, UINT32 ordinal) const;
    bool ReadTable(const BYTE* pSection, UINT64 length, ParameterModeTable& rTable) const;
    Row  ReadRow(const BYTE* pSection, UINT64 length, UINT64& rPosition) const;
    bool CheckRow(const Row& rRow, const ParameterModeTable& rTable) const;
    VOID PlaceRow(const Row& rRow, ParameterModeTable& rTable) const;

    ParameterSetManager&    m_rManager;
    const BinaryFileHeader& m_rHeader;
    const bool              m_bufferMode;
    const UINT32            m_nameSize;
    const UINT32            m_entrySize;
};
