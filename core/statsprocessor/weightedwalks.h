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
    CKIROWeightedWalks();

    /// Other values come in: what was measured is no more.
    VOID BeginFrame()
    {
        m_bIsNewFrame = TRUE;
    }

    /// @param pTable 256 weights @param pValues of the channel, unchanged until the next BeginFrame()
    /// @return nothing for a table that has to be measured alone
    std::optional<CKIROWeightedWalk::Sums> Measure(const WeightedWalkKey& rKey, const FLOAT* pTable,
                                                   const FLOAT* pValues);

    /// Takes up a table that was measured alone. @param rRegions, rWeights as they were configured for it
    VOID Add(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions, const CKIRO2DMetIterator& rWeights,
             FLOAT totalWeight);

private:
    /// Walks of a tuning: a channel of each exposure under a few regions, more than one where there are many tables.
    static constexpr UINT32 WalkMax = 8;

    static constexpr UINT64 FirstFrame = 2;  ///< so that walks that were never used count as forgotten

    CKIROWeightedWalk* FindWithRoom(const WeightedWalkKey& rKey);
    CKIROWeightedWalk* FindUnused();

    TavoArray<CKIROWeightedWalk> m_pWalks;
    UINT32                       m_expected;  ///< the walk that is likely to have the table that is asked for next
    UINT64                       m_frame;     ///< counts those in which a mean was asked for: metering may skip some
    BOOL                         m_bIsNewFrame;
};
