#include "parameters/definitionlayout.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "parameters/parameterlogging.h"

namespace
{

constexpr UINT32 RecordCountSize = 4;  ///< byte count in front of each record
constexpr UINT32 PointerPairSize = 8;  ///< count, or a text's length, and the ID of an entry
constexpr UINT32 FloatSize       = 4;

/// Bytes that a member takes inside its record.
/// @param countedArrays fixed arrays have a count in front
UINT64 StoredBytes(const ParameterDefinitionElement& rElement, bool countedArrays)
{
    const ParameterDefinitionElementInfo& rInfo      = *rElement.Info;
    const bool                            fixedArray = rInfo.IsFixed() && !rInfo.IsPointer();
    const UINT64                          count      = rInfo.MaxCount;
    UINT64                                bytes      = (fixedArray && countedArrays) ? ArrayCountSize : 0;
    if (rInfo.IsPointer() || rInfo.IsString())
    {
        bytes += fixedArray ? count * PointerPairSize : PointerPairSize;
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
    LayoutBuilder(const ParameterDefinitions::StructureMap& rStructures, bool countedArrays,
                  const IParameterLoggingAPI* pLog)
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
        rStructure.Size = RecordCountSize;
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
        rInfo.Structure = entry->second.get();
        return rInfo.Structure;
    }

    static UINT32 Saturated(UINT64 size)
    {
        return static_cast<UINT32>(std::min<UINT64>(size, std::numeric_limits<UINT32>::max()));
    }

    const ParameterDefinitions::StructureMap& m_rStructures;
    const bool                                m_countedArrays;
    const IParameterLoggingAPI* const         m_pLog;
    std::vector<Step>                         m_path;
};

}  // namespace

VOID LayOutStructures(const ParameterDefinitions::StructureMap& rStructures, bool countedArrays,
                      const IParameterLoggingAPI* pLog)
{
    LayoutBuilder layout(rStructures, countedArrays, pLog);
    for (const auto& [id, rpStructure] : rStructures)
    {
        layout.Populate(*rpStructure);
    }
}
