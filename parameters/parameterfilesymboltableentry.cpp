#include "parameters/parameterfilesymboltableentry.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <limits>

#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterutils.h"

VOID ParameterFileSymbolTableEntry::Init(ParameterFileSymbolTable* pTable)
{
    Table       = pTable;
    ID          = 0;
    DuplicateID = 0;
    DataOffset  = 0;
    DataSize    = 0;
    Data        = nullptr;
    Position    = 0;
    OwnedData.reset();
    Module.reset();
}

bool ParameterFileSymbolTableEntry::LoadRow(const BYTE* pRows, UINT64 length, UINT64& rPosition, IModeTable* pModeTable,
                                            bool isModule, UINT32 id)
{
    constexpr UINT32    NameSize = 32;
    const VersionUnion& rVersion = Table->Version();
    const bool          named    = rVersion < BinaryFileFormat::StructSymbolsVersion;
    const auto          read     = [&](auto& rValue)
    { return ParameterUtils::ReadField(rValue, pRows, length, rPosition, GetAlignment(), GetLog()); };

    VersionUnion moduleVersion;
    UINT64       nameHash = 0;
    UINT64       reserved = 0;
    UINT32       modeId   = BinaryFileFormat::NoMode;

    ID = id;
    if (named && !read(ID))
    {
        return false;
    }
    if (isModule)
    {
        if (named)
        {
            ParameterUtils::ReadText(pRows, length, rPosition, NameSize, GetAlignment());
        }
        const bool hasReserved = rVersion < BinaryFileFormat::AlignedEndVersion && GetAlignment() == 1;
        if ((!named && !read(nameHash)) || !read(moduleVersion.Value) || (hasReserved && !read(reserved)) ||
            !read(modeId))
        {
            return false;
        }
    }
    if (!read(DataOffset) || !read(DataSize))
    {
        return false;
    }
    DuplicateID = ID;
    if (rVersion > BinaryFileFormat::AlignedEndVersion && !read(DuplicateID))
    {
        return false;
    }

    const UINT32 count = isModule ? Table->Count() : Table->DTCount();
    if (DuplicateID > count)
    {
        LogMessage(true,
                   isModule ? "Invalid DuplicateID value %u, should be less than module table count: %u\n"
                            : "Invalid DuplicateID value %u, should be less than data table count: %u\n",
                   DuplicateID, count);
    }
    if (isModule && modeId != BinaryFileFormat::NoMode)
    {
        Module = std::make_unique<ModuleData>(nameHash, ID, DuplicateID, moduleVersion, modeId, pModeTable,
                                              Table->m_pSetManager, Table, GetLog());
    }
    return true;
}

VOID ParameterFileSymbolTableEntry::ShareBlock(const ParameterFileSymbolTableEntry& rOther)
{
    Init(Table);
    ID          = rOther.ID;
    DuplicateID = rOther.DuplicateID;
    DataOffset  = rOther.DataOffset;
    DataSize    = rOther.DataSize;
    Data        = rOther.Data;
}

UINT32 ParameterFileSymbolTableEntry::GetAlignment() const
{
    return Table->Alignment();
}

const IParameterLoggingAPI* ParameterFileSymbolTableEntry::GetLog() const
{
    return Table->Log();
}

bool ParameterFileSymbolTableEntry::IsFixedCountVersion() const
{
    return Table->Version() >= BinaryFileFormat::MultiModeTableVersion;
}

bool ParameterFileSymbolTableEntry::ReadLimited(UINT32& rValue, UINT32 limit)
{
    if (ParameterUtils::ReadField(rValue, Data, std::min(limit, DataSize), Position, GetAlignment(), GetLog()))
    {
        return true;
    }
    LogMessage(true, "Insufficient data to read variable from symbol table entry\n");
    return false;
}

UINT32 ParameterFileSymbolTableEntry::ReadLoadDataLimit(UINT32 limit)
{
    if (Table->Version() < BinaryFileFormat::StructSymbolsVersion)
    {
        return NoLoadDataLimit;
    }
    UINT32 count = 0;
    if (!ReadLimited(count, limit))
    {
        count = NoLoadDataLimit;
    }
    const UINT64 end = Position + count;
    if (end > limit)
    {
        LogMessage(false, "Load limit (%u) exceeds available size (%u). XSD structure modified\n",
                   static_cast<UINT32>(end), limit);
        return limit;
    }
    return static_cast<UINT32>(end);
}

VOID ParameterFileSymbolTableEntry::UpdatePosition(UINT32 limit)
{
    if (limit == NoLoadDataLimit)
    {
        return;
    }
    if (Position != limit)
    {
        LogMessage(false,
                   "Binary file structure bytes (%u) does not match expected bytes (%u). XSD structure modified\n",
                   static_cast<UINT32>(Position), limit);
    }
    Position = limit;
}

ParameterDefinitionElement* ParameterFileSymbolTableEntry::FindElement(const ParameterLoadParameters& rParameters) const
{
    ParameterDefinitionElement* pElement = rParameters.Element;
    if (pElement == nullptr || !pElement->Info.has_value() || pElement->Info->Structure == nullptr)
    {
        return nullptr;
    }
    if (!rParameters.UseParent)
    {
        ParameterDefinitionStructure& rStructure = *pElement->Info->Structure;
        pElement                                 = rStructure.FindChild(rParameters.NameHash);
        if (pElement == nullptr)
        {
            rStructure.MissedMember.store(true, std::memory_order_relaxed);
        }
    }
    else if (rParameters.NameHash != pElement->NameHash)
    {
        LogMessage(true,
                   "%s: Use Parent requested, but parent name hash (0x%llx) does not match variable name hash "
                   "(0x%llx)\n",
                   "AdjustPositionAndGetElement", pElement->NameHash, rParameters.NameHash);
    }
    return pElement;
}

ParameterDefinitionElement*
ParameterFileSymbolTableEntry::AdjustPositionAndGetElement(const ParameterLoadParameters& rParameters,
                                                           bool&                          rAdjusted) const
{
    rAdjusted                            = false;
    ParameterDefinitionElement* pElement = FindElement(rParameters);
    if (pElement == nullptr || !pElement->Info.has_value())
    {
        return pElement;  // without Info it has matched before, so that its place is the code's
    }

    UINT64 expected =
        rParameters.Position + static_cast<UINT64>(rParameters.Element->Info->Structure->Size) * rParameters.Index;
    if (rParameters.UseParentOffset)
    {
        expected += pElement->Info->ParentOffset;
    }
    if (Position != expected)
    {
        rAdjusted = true;
        LogMessage(false, "Binary file position (%u) differs from expected (%u), XSD structure modified\n",
                   static_cast<UINT32>(expected), static_cast<UINT32>(Position));
        if (expected >= rParameters.LoadDataLimit)
        {
            LogMessage(true, "Error Reading 0x%llx: Adjusted position (%u) exceeds load limit (%u)\n",
                       rParameters.NameHash, static_cast<UINT32>(expected), rParameters.LoadDataLimit);
        }
    }
    return pElement;
}

VOID* ParameterFileSymbolTableEntry::GetDupObject(const ReadingSite& rSite, UINT32 count) const
{
    return Table->GetDupObject(Module != nullptr, DuplicateID, rSite, count);
}

VOID ParameterFileSymbolTableEntry::SetDupObject(VOID* pObject, const ReadingSite& rSite, UINT32 count) const
{
    Table->SetDupObject(Module != nullptr, DuplicateID, pObject, rSite, count);
}

VOID ParameterFileSymbolTableEntry::LogMessage(bool isError, const CHAR* pFormat, ...) const
{
    CHAR    message[ParameterLogging::MaxMessage];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(message, sizeof(message), pFormat, arguments);
    va_end(arguments);
    ParameterLogging::Write(GetLog(), isError ? ParameterLogging::Error : ParameterLogging::Warning, "%s", message);
}

VOID ParameterFileSymbolTableEntry::LogNotFound(const CHAR* pReader, UINT64 nameHash) const
{
    LogMessage(true, "%s: 0x%llx entry not found in the binary file, all values will be 0\n", pReader, nameHash);
}
