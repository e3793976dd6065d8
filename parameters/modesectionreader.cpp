#include "parameters/modesectionreader.h"

#include <string>
#include <utility>

#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterlogging.h"
#include "parameters/parametersetmanager.h"
#include "parameters/parameterutils.h"

ModeSectionReader::ModeSectionReader(ParameterSetManager& rManager, const BinaryFileHeader& rHeader, bool bufferMode)
    : m_rManager(rManager), m_rHeader(rHeader), m_bufferMode(bufferMode),
      m_nameSize(BinaryFileFormat::GetModeTableNameSize(rHeader.Version)),
      m_entrySize(BinaryFileFormat::GetModeEntrySize(rHeader.Version))
{
}

bool ModeSectionReader::Read(const BYTE* pBuffer, UINT64 length, ParameterBinaryFile* pFile,
                             const std::vector<SectionInfo>&                   rSections,
                             std::vector<std::unique_ptr<ParameterModeTable>>& rTables)
{
    if (rSections.empty())
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Debug,
                                "ReadModeSection: No mode tables in binary, creating default\n");
        rTables.push_back(MakeDefaultTable());
        return true;
    }

    // A fault in an early section does not fail the load if a later one is clean: the last section that is parsed
    // decides. If an earlier fault counted, files that load today would be refused.
    bool   result    = true;
    UINT64 remaining = (pFile != nullptr) ? pFile->Length() : length;
    for (const SectionInfo& rSection : rSections)
    {
        // Sections on top of one another would make a small file as large as it likes.
        if (rSection.Size > remaining)
        {
            m_rManager.SetError("ReadModeSection: Failed, sections exceed the file");
            return false;
        }
        remaining -= rSection.Size;

        const UINT32 ordinal  = static_cast<UINT32>(rTables.size());
        const UINT32 rowCount = (rSection.Size < m_nameSize) ? 0 : (rSection.Size - m_nameSize) / m_entrySize;
        const UINT32 expected = m_nameSize + rowCount * m_entrySize;
        if (rSection.Size != expected)
        {
            ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                                    "ReadModeSection: ModeSize %d does not match expected size %d\n", rSection.Size,
                                    expected);
            continue;
        }

        TuningBlock       block;
        const BYTE* const pSection = BinaryFileFormat::GetSection(rSection, pBuffer, length, pFile, block);
        if (!CheckSection(pSection, rSection.Size, ordinal))
        {
            return false;
        }
        UINT64                 position = 0;
        const std::string_view name =
            ParameterUtils::ReadText(pSection, rSection.Size, position, m_nameSize, m_rHeader.Alignment);
        rTables.push_back(std::make_unique<ParameterModeTable>(std::string(name), ordinal, rowCount));
        result = ReadTable(pSection, rSection.Size, *rTables.back());
    }
    return result;
}

bool ModeSectionReader::CheckSection(const BYTE* pSection, UINT32 size, UINT32 ordinal) const
{
    if (pSection == nullptr)
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                                "ReadModeSection(%u): Failed to read %d bytes for mode table from binary file\n",
                                ordinal, size);
        m_rManager.SetError("ReadModeSection: Failed, buffer is nullptr");
        return false;
    }
    if (size == 0)
    {
        m_rManager.SetError("ReadModeSection: Failed, buffer length is 0");
        return false;
    }
    return true;
}

std::unique_ptr<ParameterModeTable> ModeSectionReader::MakeDefaultTable() const
{
    auto       pTable = std::make_unique<ParameterModeTable>(std::string(), 0, 1);
    ModeEntry* pRoot  = pTable->NewEntry();
    pRoot->Initialize(pTable.get(), 0, ModeUnion{}, nullptr);
    pRoot->Loaded    = true;
    pRoot->Preserve  = true;
    pTable->Modes[0] = {pRoot, 0};
    pTable->RootMode = pTable->Modes[0];
    return pTable;
}

bool ModeSectionReader::ReadTable(const BYTE* pSection, UINT64 length, ParameterModeTable& rTable) const
{
    bool   result   = true;
    UINT64 position = m_nameSize;
    for (UINT32 index = 0; index < rTable.Count(); ++index)
    {
        const Row row = ReadRow(pSection, length, position);
        if (CheckRow(row, rTable))
        {
            PlaceRow(row, rTable);
        }
        else
        {
            result = false;
        }
    }
    rTable.ResolveLinks();
    return result;
}

ModeSectionReader::Row ModeSectionReader::ReadRow(const BYTE* pSection, UINT64 length, UINT64& rPosition) const
{
    const auto readField = [&](auto& rField)
    { ParameterUtils::ReadField(rField, pSection, length, rPosition, m_rHeader.Alignment, &m_rManager); };

    Row row{};
    readField(row.id);
    readField(row.mode.Value);
    readField(row.parentId);
    row.linkId = BinaryFileFormat::NoLink;
    if (m_rHeader.Version >= BinaryFileFormat::LinkVersion)
    {
        readField(row.linkId);
    }
    if (m_rHeader.Version >= BinaryFileFormat::ModeFlagsVersion)
    {
        readField(row.flags);
    }
    return row;
}

bool ModeSectionReader::CheckRow(const Row& rRow, const ParameterModeTable& rTable) const
{
    const auto tableOf = BinaryFileFormat::GetModeTableIndex;
    const auto indexOf = BinaryFileFormat::GetModeIDValue;

    const UINT32 table = tableOf(rRow.id);
    if (table != rTable.Index)
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                                "ReadModeSection: Mode Table Index in Mode ID (%u) does not match expected (%u)\n",
                                table, rTable.Index);
        m_rManager.SetError("ReadModeSection: Index from Mode ID does not match expected");
        return false;
    }
    if (tableOf(rRow.parentId) != table)
    {
        ParameterLogging::Write(
            &m_rManager, ParameterLogging::Error,
            "ReadModeSection: Mode Table Index != Parent Table Index,Mode ID (%u), Parent ID (%u)\n", rRow.id,
            rRow.parentId);
        m_rManager.SetError("ReadModeSection: Mode Table Index != Parent Table Index");
        return false;
    }
    if (rRow.HasLink() && tableOf(rRow.linkId) != table)
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Error,
                                "ReadModeSection: Mode Table Index != Link Table Index, Mode ID (%u), Link ID (%u)\n",
                                rRow.id, rRow.linkId);
        m_rManager.SetError("ReadModeSection: Mode Table Index != Link Table Index");
        return false;
    }
    const std::pair<UINT32, const CHAR*> ids[] = {
        {rRow.id, "Mode ID"}, {rRow.parentId, "Parent Mode ID"}, {rRow.HasLink() ? rRow.linkId : 0, "Link Mode ID"}};
    for (const auto& [id, pName] : ids)
    {
        if (indexOf(id) >= rTable.Count())
        {
            m_rManager.SetError((std::string("ReadModeSection: ") + pName + " exceeds mode count").c_str());
            return false;
        }
    }
    return true;
}

VOID ModeSectionReader::PlaceRow(const Row& rRow, ParameterModeTable& rTable) const
{
    const auto     indexOf = BinaryFileFormat::GetModeIDValue;
    ModeEntryInfo& rSlot   = rTable.Modes[indexOf(rRow.id)];
    ModeEntry*     pParent = (rRow.id == rRow.parentId) ? nullptr : rTable.Modes[indexOf(rRow.parentId)].Entry;

    ModeEntry* pMode = pParent;
    if (pParent == nullptr || !pParent->Mode.IsModeMatch(rRow.mode))
    {
        ModeEntry** ppLink = rRow.HasLink() ? &rTable.Modes[indexOf(rRow.linkId)].Entry : nullptr;
        pMode              = rTable.NewEntry();
        pMode->Initialize(&rTable, rRow.id, rRow.mode, ppLink);
        pMode->Loaded   = m_bufferMode;
        pMode->Preserve = (rRow.flags & BinaryFileFormat::PreserveModeFlag) != 0;
    }
    // A row with the mode of its parent is the same mode over again: the tool splits a mode by hardware blocks.

    rSlot = {pMode, static_cast<BYTE>(rRow.mode.Group)};
    if (rTable.RootMode.Entry == nullptr)
    {
        rTable.RootMode = rSlot;
        pMode->Loaded   = true;
        pMode->Preserve = true;
        return;
    }
    const ModeType level = static_cast<ModeType>(rRow.mode.Mode);
    if (level == ModeType::Default || level == ModeType::Sensor)
    {
        pMode->Loaded   = true;
        pMode->Preserve = true;
    }
    if (pParent != nullptr && pMode != pParent)
    {
        pParent->AddMode(pMode);
    }
}
