#include "core/statsprocessor/weightedwalks.h"

#include <algorithm>

CKIROWeightedWalks::CKIROWeightedWalks()
    : m_pWalks(TavoNewArray<CKIROWeightedWalk>(WalkMax)), m_frame(FirstFrame), m_bIsNewFrame(FALSE)
{
    if (m_pWalks == nullptr)
    {
        throw std::bad_alloc();
    }
}

CKIROWeightedWalk* CKIROWeightedWalks::Find(const WeightedWalkKey& rKey)
{
    for (UINT32 index = 0; index < WalkMax; ++index)
    {
        if (m_pWalks[index].IsFor(rKey))
        {
            return &m_pWalks[index];
        }
    }
    return nullptr;
}

std::optional<CKIROWeightedWalk::Sums> CKIROWeightedWalks::Measure(const WeightedWalkKey& rKey, const FLOAT* pTable,
                                                                   const FLOAT* pValues)
{
    if (m_bIsNewFrame == TRUE)
    {
        m_bIsNewFrame = FALSE;
        ++m_frame;
    }
    CKIROWeightedWalk* pWalk = Find(rKey);
    return (pWalk != nullptr) ? pWalk->Measure(pTable, pValues, m_frame) : std::nullopt;
}

VOID CKIROWeightedWalks::Add(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions,
                             const CKIRO2DMetIterator& rWeights, FLOAT totalWeight)
{
    CKIROWeightedWalk* pWalk = Find(rKey);
    if (pWalk == nullptr)
    {
        // A walk that is still in use keeps its place: with more of them than there is room for, each would begin anew
        // in every frame.
        pWalk = std::min_element(m_pWalks.get(), m_pWalks.get() + WalkMax,
                                 [](const CKIROWeightedWalk& rFirst, const CKIROWeightedWalk& rSecond)
                                 { return rFirst.LastFrame() < rSecond.LastFrame(); });
        if (pWalk->LastFrame() + 1 >= m_frame)
        {
            return;
        }
        pWalk->Begin(rKey, rRegions, rWeights);
    }
    pWalk->AddTable(rWeights.Table(), totalWeight, m_frame);
}
