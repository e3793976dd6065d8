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

/// Reads the members of one record.
class MemberLoader
{
public:
    /// @param rEntry      stands at the record
    /// @param pDefinition of the record, null if there is none
    /// @param limit       end of what may be read of the entry
    MemberLoader(const RecordDescription& rRecord, BYTE* pRecord, ParameterFileSymbolTableEntry& rEntry,
                 ParameterDefinitionElement* pDefinition, UINT32 limit)
        : m_rRecord(rRecord), m_pRecord(pRecord), m_rEntry(rEntry)
    {
        m_parameters.Entry         = &rEntry;
        m_parameters.Element       = pDefinition;
        m_parameters.Position      = rEntry.Position;
        m_parameters.LoadDataLimit = rEntry.ReadLoadDataLimit(limit);
    }

    VOID LoadAll()
    {
        const auto* pInfo = (m_parameters.Element != nullptr) ? m_parameters.Element->GetInfo() : nullptr;
        ParameterDefinitionStructure* pStructure = (pInfo != nullptr) ? pInfo->Structure : nullptr;
        const bool                    isPlain    = IsPlain(pStructure);
        UINT32                        position   = 0;  // among the members that are stored
        for (UINT32 index = 0; index < m_rRecord.memberCount; ++index)
        {
            const RecordMember& rMember = m_rRecord.pMembers[index];
            if (!rMember.IsStored())
            {
                continue;
            }
            if (isPlain && m_rEntry.Position == m_parameters.Position + rMember.storedOffset)
            {
                LoadInPlace(index, (pStructure != nullptr) ? &pStructure->Members[position] : nullptr);
            }
            else
            {
                Load(index, nullptr);
            }
            ++position;
        }
        m_rEntry.UpdatePosition(m_parameters.LoadDataLimit);
    }

private:
    /// @return whether the file has the record as the code declares it, and all of it: then each member stands where
    ///         the table says, as long as those before it have the size that they should
    bool IsPlain(ParameterDefinitionStructure* pStructure) const
    {
        return m_rEntry.IsFixedCountVersion() && m_rEntry.Data != nullptr &&
               m_parameters.LoadDataLimit <= m_rEntry.DataSize &&
               m_parameters.LoadDataLimit == m_parameters.Position + m_rRecord.storedSize &&
               (pStructure == nullptr || pStructure->IsLayoutOf(m_rRecord));
    }

    /// Reads a member of a plain record that stands where it should.
    /// @param pDefinition of the member, null if there is none
    VOID LoadInPlace(UINT32 index, ParameterDefinitionElement* pDefinition)
    {
        const RecordMember& rMember = m_rRecord.pMembers[index];
        if (rMember.HasCount() || rMember.type == ValueType::Text)
        {
            Load(index, pDefinition);
        }
        else if (rMember.type != ValueType::Record)
        {
            if (!CopyValues(rMember, pDefinition))
            {
                Load(index, pDefinition);
            }
        }
        else if (rMember.form == Form::Fixed)
        {
            Load(index, pDefinition);
        }
        else if (m_rEntry.ChargeWork(LoadAllowance::VisitCharge))
        {
            MarkVerified(pDefinition);
            MemberLoader(*rMember.pRecord, m_pRecord + rMember.offset, m_rEntry, pDefinition,
                         m_parameters.LoadDataLimit)
                .LoadAll();
        }
    }

    /// Copies numbers. @return false if the file has another number of them
    bool CopyValues(const RecordMember& rMember, ParameterDefinitionElement* pDefinition)
    {
        const BYTE* pSource = m_rEntry.Data + m_rEntry.Position;
        if (rMember.HasStoredCount())
        {
            UINT32 count = 0;
            std::memcpy(&count, pSource, sizeof(count));
            if (count != rMember.count)
            {
                return false;
            }
            pSource += sizeof(count);
        }
        BYTE* const pPlace = m_pRecord + rMember.offset;
        if (rMember.count == 1 && rMember.valueSize == sizeof(UINT32))
        {
            std::memcpy(pPlace, pSource, sizeof(UINT32));  // most of them: no call
        }
        else
        {
            std::memcpy(pPlace, pSource, static_cast<size_t>(rMember.valueSize) * rMember.count);
        }
        m_rEntry.Position += tuning::StoredBytes(rMember);
        MarkVerified(pDefinition);
        return true;
    }

    static VOID MarkVerified(ParameterDefinitionElement* pDefinition)
    {
        if (pDefinition != nullptr)
        {
            pDefinition->Verified.store(true, std::memory_order_relaxed);
        }
    }

    /// Reads a member by the reader that fits its type and form.
    /// @param pDefinition its definition, if the entry is known to stand where that says; null to look for it
    VOID Load(UINT32 index, ParameterDefinitionElement* pDefinition)
    {
        const RecordMember& rMember = m_rRecord.pMembers[index];
        m_parameters.NameHash       = rMember.nameHash;
        m_parameters.Member         = pDefinition;
        const ReadingSite site      = ReadingSite::OfMember(m_rRecord, index);
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
