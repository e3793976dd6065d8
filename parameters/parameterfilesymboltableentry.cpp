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
    DataSize    = 0;
    IsModule    = false;
    Data        = nullptr;
    Position    = 0;
    OwnedData.reset();
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
    return Table->HasArrayCounts();
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
    if (!Table->HasRecordSizes())
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
    return Table->GetDupObject(IsModule, DuplicateID, rSite, count);
}

VOID ParameterFileSymbolTableEntry::SetDupObject(VOID* pObject, const ReadingSite& rSite, UINT32 count) const
{
    Table->SetDupObject(IsModule, DuplicateID, pObject, rSite, count);
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
