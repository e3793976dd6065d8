#include "parameters/recordloader.h"

#include <cstring>
#include <optional>

#include "parameters/memberloader.h"
#include "parameters/parameterfilesymboltable.h"
#include "schema/recordwalk.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::ValueType;

namespace
{

/// Clears all members but those that a file does not hold.
VOID ZeroRecord(const RecordDescription& rRecord, BYTE* pRecord)
{
    for (const RecordMember& rMember : rRecord.Members())
    {
        if (!rMember.IsStored())
        {
            continue;
        }
        if (rMember.type == ValueType::Record && rMember.form == Form::Single)
        {
            ZeroRecord(*rMember.pRecord, pRecord + rMember.offset);
        }
        else
        {
            std::memset(pRecord + rMember.Begin(), 0, rMember.End() - rMember.Begin());
        }
    }
}

/// @return whether the caller was the last user of an object that records may share
bool ReleaseObject(VOID* pObject, ParameterFileSymbolTable* pTable)
{
    return pTable == nullptr || pTable->ReleaseDupObject(pObject);
}

VOID UnloadTexts(CHAR** ppTexts, UINT32 count, ParameterFileSymbolTable* pTable)
{
    for (UINT32 index = 0; index < count; ++index)
    {
        if (ppTexts[index] != nullptr && ReleaseObject(ppTexts[index], pTable))
        {
            FreeTuningMemory(ppTexts[index]);
        }
        ppTexts[index] = nullptr;
    }
}

/// Gives back what the values themselves own; for values that own nothing, nothing.
VOID UnloadValues(const RecordMember& rMember, BYTE* pValues, UINT32 count, ParameterFileSymbolTable* pTable)
{
    if (rMember.type == ValueType::Text)
    {
        UnloadTexts(reinterpret_cast<CHAR**>(pValues), count, pTable);
    }
    else if (rMember.type == ValueType::Record && rMember.pRecord->ownsMemory)
    {
        for (UINT32 index = 0; index < count; ++index)
        {
            RecordLoader::Unload(*rMember.pRecord, pValues + static_cast<size_t>(index) * rMember.valueSize, pTable);
        }
    }
}

}  // namespace

VOID RecordLoader::LoadModule(const RecordDescription& rRecord, VOID* pRecord, ParameterFileSymbolTableEntry& rEntry,
                              UINT64 nameHash)
{
    LoadAllowance  ownAllowance                       = rEntry.Table->NewAllowance();
    LoadAllowance* pFileAllowance                     = rEntry.Table->FileAllowance();
    rEntry.Allowance                                  = (pFileAllowance != nullptr) ? pFileAllowance : &ownAllowance;
    std::optional<ParameterDefinitionElement> element = rEntry.Table->BuildModuleElement(nameHash);
    ParameterLoadParameters                   parameters;
    parameters.Entry           = &rEntry;
    parameters.NameHash        = nameHash;
    parameters.UseParent       = true;
    parameters.UseParentOffset = true;
    parameters.Element         = element.has_value() ? &*element : nullptr;
    parameters.Position        = rEntry.Position;
    ZeroRecord(rRecord, static_cast<BYTE*>(pRecord));
    Load(rRecord, pRecord, parameters);
    rEntry.Allowance = nullptr;
}

VOID RecordLoader::Load(const RecordDescription& rRecord, VOID* pRecord, const ParameterLoadParameters& rParameters)
{
    ParameterFileSymbolTableEntry& rEntry = *rParameters.Entry;
    if (!rEntry.ChargeWork(LoadAllowance::VisitCharge))
    {
        return;
    }
    ParameterDefinitionElement* pElement = nullptr;
    if (rParameters.Element != nullptr)
    {
        bool adjusted = false;
        pElement      = rEntry.AdjustPositionAndGetElement(rParameters, adjusted);
        const bool dropped =
            rParameters.Element->Verified.load(std::memory_order_relaxed) && !rParameters.Element->Info.has_value();
        const bool shapeless =
            pElement != nullptr && pElement->Info.has_value() && pElement->Info->Structure == nullptr;
        if ((pElement == nullptr && !dropped) || shapeless)
        {
            rEntry.LogNotFound("Load", rParameters.NameHash);
            return;
        }
        if (pElement != nullptr && !adjusted && !rParameters.UseParent)
        {
            pElement->Verified.store(true, std::memory_order_relaxed);
        }
    }
    MemberLoader(rRecord, static_cast<BYTE*>(pRecord), rEntry, pElement, rParameters.LoadDataLimit).LoadAll();
}

VOID RecordLoader::LoadArray(const RecordDescription& rRecord, VOID* pItems, UINT32 count,
                             const ParameterLoadParameters& rParameters)
{
    if (pItems == nullptr)
    {
        return;
    }
    ParameterLoadParameters item = rParameters;
    for (UINT32 index = 0; index < count; ++index)
    {
        item.Index = index;
        Load(rRecord, static_cast<BYTE*>(pItems) + static_cast<size_t>(index) * rRecord.size, item);
    }
}

VOID RecordLoader::Unload(const RecordDescription& rRecord, VOID* pRecord, ParameterFileSymbolTable* pTable)
{
    BYTE* const pBytes = static_cast<BYTE*>(pRecord);
    for (const RecordMember& rMember : rRecord.Members())
    {
        if (!tuning::OwnsMemory(rMember))
        {
            continue;
        }
        BYTE* const pPlace = pBytes + rMember.offset;
        if (rMember.form != Form::Variable)
        {
            UnloadValues(rMember, pPlace, rMember.count, pTable);
            continue;
        }
        VOID* const pArray = tuning::Load<VOID*>(pPlace);
        if (pArray != nullptr && ReleaseObject(pArray, pTable))
        {
            UnloadValues(rMember, static_cast<BYTE*>(pArray), tuning::Load<UINT32>(pBytes + rMember.countOffset),
                         pTable);
            FreeTuningMemory(pArray);
        }
        tuning::SetCount(rMember, pBytes, 0, nullptr);
    }
}
