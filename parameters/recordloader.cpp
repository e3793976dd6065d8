#include "parameters/recordloader.h"

#include <cstring>

#include "parameters/parameterfilesymboltable.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::ValueType;

namespace
{

VOID* PointerAt(const BYTE* pPlace)
{
    VOID* pPointer = nullptr;
    std::memcpy(&pPointer, pPlace, sizeof(pPointer));
    return pPointer;
}

VOID StorePointer(BYTE* pPlace, VOID* pPointer)
{
    std::memcpy(pPlace, &pPointer, sizeof(pPointer));
}

UINT32& CountOf(BYTE* pRecord, const RecordMember& rMember)
{
    return *reinterpret_cast<UINT32*>(pRecord + rMember.countOffset);
}

UINT32& IDOf(BYTE* pRecord, const RecordMember& rMember)
{
    return *reinterpret_cast<UINT32*>(pRecord + rMember.idOffset);
}

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

/// Reads one member by the reader that fits its type and form.
class MemberLoader
{
public:
    MemberLoader(const RecordDescription& rRecord, BYTE* pRecord, const ParameterLoadParameters& rParameters)
        : m_rRecord(rRecord), m_pRecord(pRecord), m_parameters(rParameters), m_rEntry(*rParameters.Entry)
    {
    }

    VOID Load(UINT32 index)
    {
        const RecordMember& rMember = m_rRecord.pMembers[index];
        if (!rMember.IsStored())
        {
            return;
        }
        m_parameters.NameHash  = rMember.nameHash;
        const ReadingSite site = ReadingSite::OfMember(m_rRecord, index);
        switch (rMember.type)
        {
        case ValueType::Record:
            LoadRecord(rMember, site);
            break;
        case ValueType::Text:
            LoadText(rMember, site);
            break;
        default:
            LoadValue(rMember, site);
            break;
        }
    }

private:
    VOID LoadValue(const RecordMember& rMember, const ReadingSite& rSite)
    {
        BYTE* const pPlace = m_pRecord + rMember.offset;
        switch (rMember.form)
        {
        case Form::Variable:
        {
            VOID* pArray = nullptr;
            m_rEntry.ReadSimpleTypeArray(pArray, rMember.type, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember), 0,
                                         m_parameters, rSite);
            StorePointer(pPlace, pArray);
            break;
        }
        case Form::Optional:
            m_rEntry.ReadOptionalSimpleType(pPlace, rMember.type, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember),
                                            m_parameters);
            break;
        default:
            m_rEntry.ReadSimpleTypeFixedArray(pPlace, rMember.type, rMember.count, m_parameters);
            break;
        }
    }

    VOID LoadRecord(const RecordMember& rMember, const ReadingSite& rSite)
    {
        BYTE* const              pPlace = m_pRecord + rMember.offset;
        const RecordDescription& rInner = *rMember.pRecord;
        switch (rMember.form)
        {
        case Form::Variable:
        {
            VOID* pArray = nullptr;
            m_rEntry.ReadStructureArray(rInner, pArray, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember), 0,
                                        m_parameters, rSite);
            StorePointer(pPlace, pArray);
            break;
        }
        case Form::Optional:
            m_rEntry.ReadOptionalStructure(rInner, pPlace, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember),
                                           m_parameters);
            break;
        case Form::Fixed:
            m_rEntry.ReadStructureFixedArray(rInner, pPlace, rMember.count, m_parameters);
            break;
        default:
        {
            ParameterLoadParameters nested = m_parameters;
            nested.UseParent               = false;
            nested.UseParentOffset         = true;
            RecordLoader::Load(rInner, pPlace, nested);
            break;
        }
        }
    }

    VOID LoadText(const RecordMember& rMember, const ReadingSite& rSite)
    {
        BYTE* const  pPlace  = m_pRecord + rMember.offset;
        CHAR** const ppTexts = reinterpret_cast<CHAR**>(pPlace);
        switch (rMember.form)
        {
        case Form::Variable:
        {
            CHAR** ppArray = nullptr;
            m_rEntry.ReadStringArray(ppArray, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember), 0, m_parameters,
                                     rSite);
            StorePointer(pPlace, ppArray);
            break;
        }
        case Form::Optional:
            m_rEntry.ReadOptionalString(*ppTexts, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember), m_parameters,
                                        rSite);
            break;
        case Form::Fixed:
            m_rEntry.ReadStringFixedArray(ppTexts, rMember.count, m_parameters, rSite);
            break;
        default:
            m_rEntry.ReadString(*ppTexts, m_parameters, rSite);
            break;
        }
    }

    const RecordDescription&       m_rRecord;
    BYTE* const                    m_pRecord;
    ParameterLoadParameters        m_parameters;
    ParameterFileSymbolTableEntry& m_rEntry;
};

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
    LoadAllowance  ownAllowance   = rEntry.Table->NewAllowance();
    LoadAllowance* pFileAllowance = rEntry.Table->FileAllowance();
    rEntry.Allowance              = (pFileAllowance != nullptr) ? pFileAllowance : &ownAllowance;
    const std::unique_ptr<ParameterDefinitionElement> pElement = rEntry.Table->BuildModuleElement(nameHash);
    ParameterLoadParameters                           parameters;
    parameters.Entry           = &rEntry;
    parameters.NameHash        = nameHash;
    parameters.UseParent       = true;
    parameters.UseParentOffset = true;
    parameters.Element         = pElement.get();
    parameters.Position        = rEntry.Position;
    Load(rRecord, pRecord, parameters);
    rEntry.Allowance = nullptr;
}

VOID RecordLoader::Load(const RecordDescription& rRecord, VOID* pRecord, const ParameterLoadParameters& rParameters)
{
    BYTE* const                    pBytes = static_cast<BYTE*>(pRecord);
    ParameterFileSymbolTableEntry& rEntry = *rParameters.Entry;
    ZeroRecord(rRecord, pBytes);
    if (!rEntry.ChargeWork(LoadAllowance::VisitCharge))
    {
        return;
    }

    ParameterLoadParameters child = rParameters;
    child.UseParent               = false;
    child.Element                 = nullptr;
    child.Index                   = 0;
    if (rParameters.Element != nullptr)
    {
        bool                        adjusted = false;
        ParameterDefinitionElement* pElement = rEntry.AdjustPositionAndGetElement(rParameters, adjusted);
        const bool                  dropped =
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
        child.Element = pElement;
    }
    child.Position      = rEntry.Position;
    child.LoadDataLimit = rEntry.ReadLoadDataLimit(rParameters.LoadDataLimit);

    MemberLoader loader(rRecord, pBytes, child);
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        loader.Load(index);
    }
    rEntry.UpdatePosition(child.LoadDataLimit);
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
        BYTE* const pPlace = pBytes + rMember.offset;
        if (rMember.form != Form::Variable)
        {
            UnloadValues(rMember, pPlace, rMember.count, pTable);
            continue;
        }
        VOID* const pArray = PointerAt(pPlace);
        if (pArray != nullptr && ReleaseObject(pArray, pTable))
        {
            UnloadValues(rMember, static_cast<BYTE*>(pArray), CountOf(pBytes, rMember), pTable);
            FreeTuningMemory(pArray);
        }
        StorePointer(pPlace, nullptr);
        CountOf(pBytes, rMember) = 0;
    }
}
