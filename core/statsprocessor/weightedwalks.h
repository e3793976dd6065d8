/// @file
/// The walks that the weighted means of a tuning share.
///
/// Which tables are asked for is known from the frame before: the first mean that is asked for on a walk yields all of
/// them. A table that is new is measured alone, and joins the walk for the next frame.
#pragma once

#include "core/base/tavomemory.h"
#include "core/statsprocessor/weightedwalk.h"

class CKIROWeightedWalks
{
public:
    /// Other values come in: what was measured is no more.
    VOID BeginFrame()
    {
        m_bIsNewFrame = TRUE;
    }

    /// @param rWeights of one iterator at all times, whose tables it numbers @param pValues of the channel, unchanged
    /// until the next BeginFrame()
    /// @return nothing for a table that has to be measured alone
    std::optional<CKIROWeightedWalk::Sums> Measure(const WeightedWalkKey& rKey, const CKIRO2DMetIterator& rWeights,
                                                   const FLOAT* pValues);

    /// Takes up a table that was measured alone. @param rRegions, rWeights as they were configured for it
    VOID Add(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions, const CKIRO2DMetIterator& rWeights,
             FLOAT totalWeight);

private:
    /// Walks of a tuning: a channel of each exposure under a few regions, more than one where there are many tables.
    /// There are as many as were in use at a time; each takes 80 kB.
    static constexpr UINT32 WalkMax = 16;

    static constexpr UINT64 FirstFrame = 1;

    CKIROWeightedWalk* FindWithRoom(const WeightedWalkKey& rKey);
    CKIROWeightedWalk* FindUnused();
    CKIROWeightedWalk* NewWalk();

    TavoPtr<CKIROWeightedWalk> m_pWalks[WalkMax];
    UINT32                     m_walkCount   = 0;
    UINT32                     m_expected    = 0;  ///< the walk that is likely to have the table that is asked for next
    UINT64                     m_frame       = FirstFrame;  ///< counts those in which a mean was asked for
    BOOL                       m_bIsNewFrame = FALSE;
};
