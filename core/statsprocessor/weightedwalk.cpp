#include "core/statsprocessor/weightedwalk.h"

#include <algorithm>
#include <cmath>

#include "core/statsprocessor/exactsum.h"
#include "core/statsprocessor/statschannels.h"
#include "platform/tavoprocessors.h"

namespace
{

/// Regions in the order of a walk, and the tables' entries that weigh them.
struct RegionList
{
    const UINT32* pRegions;
    const BYTE*   pEntries;
    UINT32        count;
};

/// Constant numbers of groups and lanes, and groups that are unrolled, keep all sums in vector registers.
template <UINT32 Groups>
VOID AddRegions(const RegionList& rRegions, const FLOAT* pValues, FLOAT clamp, const WeightLanes* pLanes, FLOAT* pSums)
{
    FLOAT sums[Groups][WeightLanes::Count] = {};
    for (UINT32 step = 0; step < rRegions.count; ++step)
    {
        const FLOAT value = std::min(pValues[rRegions.pRegions[step]], clamp);
#pragma GCC unroll 4
        for (UINT32 group = 0; group < Groups; ++group)
        {
            const FLOAT* pWeights = pLanes[group].entries[rRegions.pEntries[step]];
            for (UINT32 lane = 0; lane < WeightLanes::Count; ++lane)
            {
                sums[group][lane] = std::fma(pWeights[lane], value, sums[group][lane]);
            }
        }
    }
    std::copy_n(sums[0], Groups * WeightLanes::Count, pSums);
}

/// @param tableCount lanes that hold a table; those behind are walked as far as their group takes part
/// @param pSums      one for each of CKIROWeightedWalk::TableMax lanes
TAVO_FOR_EACH_PROCESSOR
VOID AddRegions(const RegionList& rRegions, const FLOAT* pValues, FLOAT clamp, const WeightLanes* pLanes,
                UINT32 tableCount, FLOAT* pSums)
{
    static_assert(CKIROWeightedWalk::TableMax == 4 * WeightLanes::Count);
    if (tableCount <= WeightLanes::Count)
    {
        AddRegions<1>(rRegions, pValues, clamp, pLanes, pSums);
    }
    else if (tableCount <= 2 * WeightLanes::Count)
    {
        AddRegions<2>(rRegions, pValues, clamp, pLanes, pSums);
    }
    else
    {
        AddRegions<4>(rRegions, pValues, clamp, pLanes, pSums);
    }
}

}  // namespace

bool WeightedWalkKey::operator==(const WeightedWalkKey& rOther) const
{
    return channel == rOther.channel && clamp == rOther.clamp && roi.x == rOther.roi.x && roi.y == rOther.roi.y &&
           roi.dx == rOther.roi.dx && roi.dy == rOther.roi.dy && IsSameShape(resolution, rOther.resolution);
}

VOID CKIROWeightedWalk::Begin(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions,
                              const CKIRO2DMetIterator& rWeights)
{
    m_key           = rKey;
    m_lastFrame     = 0;
    m_walkedFrame   = 0;
    m_pWalkedValues = nullptr;
    m_tableCount    = 0;
    m_expected      = 0;
    UINT32 count    = 0;
    bool   isInside = true;
    rRegions.ForEachRegion(
        [&](UINT32 region)
        {
            const INT32 entry = rWeights.EntryOfRegion(region);
            isInside          = isInside && entry >= 0 && count < GridRegionCountMax;
            if (isInside)
            {
                m_region[count] = region;
                m_entry[count]  = static_cast<BYTE>(entry);
                ++count;
            }
        });
    m_regionCount      = isInside ? count : 0;
    const UINT32* pEnd = m_region + m_regionCount;
    m_isUnbroken       = std::adjacent_find(static_cast<const UINT32*>(m_region), pEnd,
                                            [](UINT32 one, UINT32 next) { return next != one + 1; }) == pEnd;
}

/// All lanes take all regions, so none may be left out; and which bits a NaN keeps is not the same in a lane.
bool CKIROWeightedWalk::TakesTable(const FLOAT* pTable)
{
    return std::all_of(pTable, pTable + CKIRO2DMetIterator::TableSize,
                       [](FLOAT weight) { return std::isfinite(weight) && weight != CKIRO2DMetIterator::NoWeight; });
}

VOID CKIROWeightedWalk::AddTable(const CKIRO2DMetIterator& rWeights, FLOAT totalWeight, UINT64 frame)
{
    m_lastFrame = frame;
    if (m_regionCount == 0)
    {
        return;
    }
    const FLOAT* pTable = rWeights.Table();
    Table&       rTable = m_tables[m_tableCount];
    rTable.number       = rWeights.TableNumber();
    std::copy_n(pTable, CKIRO2DMetIterator::TableSize, rTable.weights);
    for (UINT32 entry = 0; entry < CKIRO2DMetIterator::TableSize; ++entry)
    {
        Lane(entry, m_tableCount) = pTable[entry];
    }
    rTable.isOfOnes =
        std::all_of(pTable, pTable + CKIRO2DMetIterator::TableSize, [](FLOAT weight) { return weight == 1.0f; });
    rTable.totalWeight = totalWeight;
    rTable.lastFrame   = frame;
    rTable.isWalked    = false;
    ++m_tableCount;
}

std::optional<CKIROWeightedWalk::Sums> CKIROWeightedWalk::Measure(const CKIRO2DMetIterator& rWeights,
                                                                  const FLOAT* pValues, UINT64 frame)
{
    const bool isWalked = m_pWalkedValues == pValues && m_walkedFrame == frame;
    if (!isWalked)
    {
        DropForgotten(frame);
    }
    const UINT32 index = FindTable(rWeights);
    if (index == NotFound)
    {
        return std::nullopt;
    }
    Table& rTable    = m_tables[index];
    rTable.lastFrame = frame;
    m_lastFrame      = frame;
    m_expected       = index + 1;
    if (!isWalked || !rTable.isWalked)
    {
        Walk(pValues);
        m_pWalkedValues = pValues;
        m_walkedFrame   = frame;
    }
    return Sums{rTable.sum, rTable.totalWeight};
}

UINT32 CKIROWeightedWalk::FindTable(const CKIRO2DMetIterator& rWeights)
{
    for (UINT32 step = 0; step < m_tableCount; ++step)
    {
        const UINT32 index  = (m_expected + step) % m_tableCount;
        Table&       rTable = m_tables[index];
        if (rTable.number == rWeights.TableNumber() ||
            CKIRO2DMetIterator::IsSameTable(rTable.weights, rWeights.Table()))
        {
            rTable.number = rWeights.TableNumber();
            return index;
        }
    }
    return NotFound;
}

/// The last table takes the place of one that nobody has asked for since the frame before the last.
VOID CKIROWeightedWalk::DropForgotten(UINT64 frame)
{
    for (UINT32 index = 0; index < m_tableCount;)
    {
        if (m_tables[index].lastFrame + 1 >= frame)
        {
            ++index;
            continue;
        }
        --m_tableCount;
        m_tables[index] = m_tables[m_tableCount];
        for (UINT32 entry = 0; entry < CKIRO2DMetIterator::TableSize; ++entry)
        {
            Lane(entry, index) = Lane(entry, m_tableCount);
        }
    }
}

VOID CKIROWeightedWalk::Walk(const FLOAT* pValues)
{
    if (m_tableCount == 1 && m_tables[0].isOfOnes)
    {
        m_tables[0].sum      = AddUnweighted(pValues);
        m_tables[0].isWalked = true;
        return;
    }
    const RegionList regions = {m_region, m_entry, m_regionCount};
    FLOAT            sums[TableMax];
    AddRegions(regions, pValues, m_key.clamp, m_lanes, m_tableCount, sums);
    for (UINT32 index = 0; index < m_tableCount; ++index)
    {
        m_tables[index].sum      = sums[index];
        m_tables[index].isWalked = true;
    }
}

/// For a table of ones. A fused multiply-add by 1 is an addition, for which the next one waits less long, and no order
/// matters where none of them rounds. Of several NaNs, which have no order among numbers, another one may stay.
FLOAT CKIROWeightedWalk::AddUnweighted(const FLOAT* pValues) const
{
    FLOAT sum = 0.0f;
    if (m_isUnbroken &&
        exactsum::Add(pValues + m_region[0], m_regionCount, m_key.clamp, m_key.resolution.bitDepth, sum))
    {
        return sum;
    }
    sum = 0.0f;
    for (UINT32 step = 0; step < m_regionCount; ++step)
    {
        sum += std::min(pValues[m_region[step]], m_key.clamp);
    }
    return sum;
}
