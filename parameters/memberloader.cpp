#include "parameters/memberloader.h"

#include <cstring>

#include "parameters/recordloader.h"
#include "schema/recordwalk.h"

using tuning::Form;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::ValueType;

namespace
{

UINT32& CountOf(BYTE* pRecord, const RecordMember& rMember)
{
    return *reinterpret_cast<UINT32*>(pRecord + rMember.countOffset);
}

UINT32& IDOf(BYTE* pRecord, const RecordMember& rMember)
{
    return *reinterpret_cast<UINT32*>(pRecord + rMember.idOffset);
}

VOID MarkVerified(ParameterDefinitionElement* pDefinition)
{
    if (pDefinition != nullptr)
    {
        pDefinition->Verified.store(true, std::memory_order_relaxed);
    }
}

}  // namespace

MemberLoader::MemberLoader(const RecordDescription& rRecord, BYTE* pRecord, ParameterFileSymbolTableEntry& rEntry,
                           ParameterDefinitionElement* pDefinition, UINT32 limit)
    : m_rRecord(rRecord), m_pRecord(pRecord), m_rEntry(rEntry)
{
    m_parameters.Entry         = &rEntry;
    m_parameters.Element       = pDefinition;
    m_parameters.Position      = rEntry.Position;
    m_parameters.LoadDataLimit = rEntry.ReadLoadDataLimit(limit);
}

VOID MemberLoader::LoadAll()
{
    const auto*                   pInfo = (m_parameters.Element != nullptr) ? m_parameters.Element->GetInfo() : nullptr;
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

/// @return whether the file has the record as the code declares it, and all of it: then each member stands where the
///         table says, as long as those before it have the size that they should
bool MemberLoader::IsPlain(ParameterDefinitionStructure* pStructure) const
{
    return m_rEntry.IsFixedCountVersion() && m_rEntry.Data != nullptr &&
           m_parameters.LoadDataLimit <= m_rEntry.DataSize &&
           m_parameters.LoadDataLimit == m_parameters.Position + m_rRecord.storedSize &&
           (pStructure == nullptr || pStructure->IsLayoutOf(m_rRecord));
}

/// Reads a member of a plain record that stands where it should.
/// @param pDefinition of the member, null if there is none
VOID MemberLoader::LoadInPlace(UINT32 index, ParameterDefinitionElement* pDefinition)
{
    const RecordMember& rMember = m_rRecord.pMembers[index];
    if (rMember.form == Form::Single && rMember.type == ValueType::Record)
    {
        if (m_rEntry.ChargeWork(LoadAllowance::VisitCharge))
        {
            MarkVerified(pDefinition);
            BYTE* const pPlace = m_pRecord + rMember.offset;
            MemberLoader(*rMember.pRecord, pPlace, m_rEntry, pDefinition, m_parameters.LoadDataLimit).LoadAll();
        }
    }
    else if (rMember.HasCount() || !IsNumber(rMember.type) || !CopyNumbers(rMember, pDefinition))
    {
        Load(index, pDefinition);
    }
}

/// Copies a number or a fixed array of numbers. @return false if the file has another count of them
bool MemberLoader::CopyNumbers(const RecordMember& rMember, ParameterDefinitionElement* pDefinition)
{
    const BYTE* pSource = m_rEntry.Data + m_rEntry.Position;
    if (rMember.HasStoredCount())
    {
        if (tuning::Load<UINT32>(pSource) != rMember.count)
        {
            return false;
        }
        pSource += tuning::StoredCountSize;
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

/// Reads a member by the reader that fits its type and form.
/// @param pDefinition its definition, if the entry is known to stand where that says; null to look for it
VOID MemberLoader::Load(UINT32 index, ParameterDefinitionElement* pDefinition)
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

VOID MemberLoader::LoadValue(const RecordMember& rMember, const ReadingSite& rSite)
{
    BYTE* const pPlace = m_pRecord + rMember.offset;
    switch (rMember.form)
    {
    case Form::Variable:
    {
        VOID* pArray = nullptr;
        m_rEntry.ReadSimpleTypeArray(pArray, rMember.type, CountOf(m_pRecord, rMember), IDOf(m_pRecord, rMember), 0,
                                     m_parameters, rSite);
        tuning::Store(pPlace, pArray);
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

VOID MemberLoader::LoadRecord(const RecordMember& rMember, const ReadingSite& rSite)
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
        tuning::Store(pPlace, pArray);
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

VOID MemberLoader::LoadText(const RecordMember& rMember, const ReadingSite& rSite)
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
        tuning::Store(pPlace, ppArray);
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
