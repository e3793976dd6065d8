#include "core/statsprocessor/weightedwalks.h"

#include <algorithm>

CKIROWeightedWalks::CKIROWeightedWalks()
    : m_pWalks(TavoNewArray<CKIROWeightedWalk>(WalkMax)), m_expected(0), m_frame(FirstFrame), m_bIsNewFrame(FALSE)
{
    if (m_pWalks == nullptr)
    {
        throw std::bad_alloc();
    }
}

std::optional<CKIROWeightedWalk::Sums> CKIROWeightedWalks::Measure(const WeightedWalkKey& rKey, const FLOAT* pTable,
                                                                   const FLOAT* pValues)
{
    if (m_bIsNewFrame == TRUE)
    {
        m_bIsNewFrame = FALSE;
        ++m_frame;
    }
    for (UINT32 step = 0; step < WalkMax; ++step)
    {
        const UINT32 index = (m_expected + step) % WalkMax;
        if (!m_pWalks[index].IsFor(rKey))
        {
            continue;
        }
        const auto sums = m_pWalks[index].Measure(pTable, pValues, m_frame);
        if (sums.has_value())
        {
            m_expected = index;
            return sums;
        }
    }
    return std::nullopt;
}

VOID CKIROWeightedWalks::Add(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions,
                             const CKIRO2DMetIterator& rWeights, FLOAT totalWeight)
{
    if (!CKIROWeightedWalk::TakesTable(rWeights.Table()))
    {
        return;
    }
    CKIROWeightedWalk* pWalk = FindWithRoom(rKey);
    if (pWalk == nullptr)
    {
        pWalk = FindUnused();
        if (pWalk == nullptr)
        {
            return;
        }
        pWalk->Begin(rKey, rRegions, rWeights);
    }
    pWalk->AddTable(rWeights.Table(), totalWeight, m_frame);
}

CKIROWeightedWalk* CKIROWeightedWalks::FindWithRoom(const WeightedWalkKey& rKey)
{
    CKIROWeightedWalk* pEnd   = m_pWalks.get() + WalkMax;
    CKIROWeightedWalk* pFound = std::find_if(
        m_pWalks.get(), pEnd, [&rKey](const CKIROWeightedWalk& rWalk) { return rWalk.IsFor(rKey) && !rWalk.IsFull(); });
    return (pFound != pEnd) ? pFound : nullptr;
}

/// A walk that is still in use keeps its place: with more of them than there is room for, each would begin anew in
/// every frame.
/// @return null if all are
CKIROWeightedWalk* CKIROWeightedWalks::FindUnused()
{
    CKIROWeightedWalk* pOldest = std::min_element(m_pWalks.get(), m_pWalks.get() + WalkMax,
                                                  [](const CKIROWeightedWalk& rFirst, const CKIROWeightedWalk& rSecond)
                                                  { return rFirst.LastFrame() < rSecond.LastFrame(); });
    return (pOldest->LastFrame() + 1 < m_frame) ? pOldest : nullptr;
}
