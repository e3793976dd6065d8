#include "core/statsprocessor/weightedwalks.h"

std::optional<CKIROWeightedWalk::Sums>
CKIROWeightedWalks::Measure(const WeightedWalkKey& rKey, const CKIRO2DMetIterator& rWeights, const FLOAT* pValues)
{
    if (m_bIsNewFrame == TRUE)
    {
        m_bIsNewFrame = FALSE;
        ++m_frame;
    }
    for (UINT32 step = 0; step < m_walkCount; ++step)
    {
        const UINT32 index = (m_expected + step) % m_walkCount;
        if (!m_pWalks[index]->IsFor(rKey))
        {
            continue;
        }
        const auto sums = m_pWalks[index]->Measure(rWeights, pValues, m_frame);
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
    pWalk->AddTable(rWeights, totalWeight, m_frame);
}

CKIROWeightedWalk* CKIROWeightedWalks::FindWithRoom(const WeightedWalkKey& rKey)
{
    for (UINT32 index = 0; index < m_walkCount; ++index)
    {
        if (m_pWalks[index]->IsFor(rKey) && !m_pWalks[index]->IsFull())
        {
            return m_pWalks[index].get();
        }
    }
    return nullptr;
}

/// A walk that is still in use keeps its place: with more of them than there is room for, each would begin anew in
/// every frame.
/// @return null if all are, and no further one is to be had
CKIROWeightedWalk* CKIROWeightedWalks::FindUnused()
{
    for (UINT32 index = 0; index < m_walkCount; ++index)
    {
        if (m_pWalks[index]->LastFrame() + 1 < m_frame)
        {
            return m_pWalks[index].get();
        }
    }
    return NewWalk();
}

CKIROWeightedWalk* CKIROWeightedWalks::NewWalk()
{
    if (m_walkCount == WalkMax)
    {
        return nullptr;
    }
    m_pWalks[m_walkCount] = TavoNew<CKIROWeightedWalk>();
    return (m_pWalks[m_walkCount] != nullptr) ? m_pWalks[m_walkCount++].get() : nullptr;
}
