#include "parameters/definitionlayout.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"

namespace
{

constexpr UINT32 FloatSize = 4;

/// Bytes that a member takes inside its record.
/// @param countedArrays fixed arrays have a count in front
UINT64 StoredBytes(const ParameterDefinitionElement& rElement, bool countedArrays)
{
    const ParameterDefinitionElementInfo& rInfo      = *rElement.Info;
    const bool                            fixedArray = rInfo.IsFixed() && !rInfo.IsPointer();
    const UINT64                          count      = rInfo.MaxCount;
    UINT64                                bytes      = (fixedArray && countedArrays) ? tuning::StoredCountSize : 0;
    if (rInfo.IsPointer() || rInfo.IsString())
    {
        bytes += fixedArray ? count * tuning::StoredPairSize : tuning::StoredPairSize;
    }
    else if (rInfo.IsFloat())
    {
        bytes += count * FloatSize;
    }
    else
    {
        bytes += count * rElement.GetSize();
    }
    return bytes;
}

/// Computes the sizes of a structure and of those that it contains. Files nest structures as deep as they like, so the
/// way down is kept on a list of its own. A structure that contains itself sees the size that it has so far.
class LayoutBuilder
{
public:
    LayoutBuilder(ParameterDefinitions::StructureMap& rStructures, bool countedArrays, const IParameterLoggingAPI* pLog)
        : m_rStructures(rStructures), m_countedArrays(countedArrays), m_pLog(pLog)
    {
    }

    VOID Populate(ParameterDefinitionStructure& rStructure)
    {
        Enter(rStructure);
        while (!m_path.empty())
        {
            Step& rStep = m_path.back();
            if (rStep.nextChild == rStep.pStructure->Members.Count())
            {
                m_path.pop_back();
                continue;
            }
            ParameterDefinitionElement&   rChild = rStep.pStructure->Members[rStep.nextChild];
            ParameterDefinitionStructure* pInner = LinkStructure(rChild);
            if (pInner != nullptr && pInner->Size == 0 && Enter(*pInner))
            {
                continue;
            }
            rChild.Info->ParentOffset = rStep.pStructure->Size;
            rStep.pStructure->Size    = Saturated(rStep.pStructure->Size + StoredBytes(rChild, m_countedArrays));
            ++rStep.nextChild;
        }
    }

private:
    struct Step
    {
        ParameterDefinitionStructure* pStructure;
        size_t                        nextChild;
    };

    /// @return false if there is nothing to compute
    bool Enter(ParameterDefinitionStructure& rStructure)
    {
        if (rStructure.Size != 0 || rStructure.Members.Count() == 0)
        {
            return false;
        }
        rStructure.Size = tuning::StoredCountSize;
        m_path.push_back({&rStructure, 0});
        return true;
    }

    ParameterDefinitionStructure* LinkStructure(ParameterDefinitionElement& rChild) const
    {
        ParameterDefinitionElementInfo& rInfo = *rChild.Info;
        if (!rInfo.IsStructure() || rInfo.Structure != nullptr)
        {
            return rInfo.Structure;
        }
        const auto entry = m_rStructures.find(rInfo.ID);
        if (entry == m_rStructures.end())
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "PopulateOffsetSizeStructure structure not found: ID: %u, NameHash: %lld\n",
                                    rInfo.ID, static_cast<INT64>(rChild.NameHash));
            return nullptr;
        }
        rInfo.Structure = &entry->second;
        return rInfo.Structure;
    }

    static UINT32 Saturated(UINT64 size)
    {
        return static_cast<UINT32>(std::min<UINT64>(size, std::numeric_limits<UINT32>::max()));
    }

    ParameterDefinitions::StructureMap& m_rStructures;
    const bool                          m_countedArrays;
    const IParameterLoggingAPI* const   m_pLog;
    std::vector<Step>                   m_path;
};

/// @return whether a member stands in the file as the row of its record's table says
bool IsStoredAs(const ParameterDefinitionElement& rElement, const tuning::RecordMember& rMember)
{
    const ParameterDefinitionElementInfo* pInfo = rElement.GetInfo();
    if (pInfo == nullptr || rElement.NameHash != rMember.nameHash || pInfo->ParentOffset != rMember.storedOffset)
    {
        return false;
    }
    const bool isSingleText = rMember.type == tuning::ValueType::Text && rMember.form == tuning::Form::Single;
    const bool isSameForm   = (rMember.form == tuning::Form::Variable)   ? pInfo->IsPointer()
                              : (rMember.form == tuning::Form::Optional) ? pInfo->IsOptional()
                              : isSingleText
                                  ? pInfo->IsSingleText()
                                  : pInfo->IsFixedArrayOf(rMember.count) && pInfo->IsFixed() == rMember.HasStoredCount();
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        return isSameForm && pInfo->IsStructure() && pInfo->Structure != nullptr &&
               (rMember.HasCount() || pInfo->Structure->IsLayoutOf(*rMember.pRecord));
    case tuning::ValueType::Text:
        return isSameForm && pInfo->IsString();
    default:
        return isSameForm && ParameterUtils::IsExactType(rMember.type, &rElement);
    }
}

}  // namespace

bool ParameterDefinitionStructure::IsLayoutOf(const tuning::RecordDescription& rRecord)
{
    if (m_pSame.load(std::memory_order_relaxed) == &rRecord)
    {
        return true;
    }
    if (Size != rRecord.storedSize || m_pOther.load(std::memory_order_relaxed) == &rRecord)
    {
        return false;
    }
    const bool isSame = HasLayoutOf(rRecord);
    (isSame ? m_pSame : m_pOther).store(&rRecord, std::memory_order_relaxed);
    return isSame;
}

bool ParameterDefinitionStructure::HasLayoutOf(const tuning::RecordDescription& rRecord)
{
    UINT32 position = 0;
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        if (!rMember.IsStored())
        {
            continue;
        }
        if (position == Members.Count() || !IsStoredAs(Members[position], rMember))
        {
            return false;
        }
        ++position;
    }
    return position == Members.Count();
}

VOID LayOutStructures(ParameterDefinitions::StructureMap& rStructures, bool countedArrays,
                      const IParameterLoggingAPI* pLog)
{
    LayoutBuilder layout(rStructures, countedArrays, pLog);
    for (auto& [id, rStructure] : rStructures)
    {
        layout.Populate(rStructure);
    }
}
