/// @file
/// What the heavy tuning's calculators cost if their chains of additions are walked one after another, with nothing
/// around them: each addition waits for the one before. Chains that are walked side by side take less.
#pragma once

#include <vector>

#include "interface/kirostats.h"

class HeavyFloor
{
public:
    /// @param rStats the frame that the heavy tuning measures; must outlive this object
    explicit HeavyFloor(const KIROStatsList& rStats);

    VOID Run() const;

private:
    struct ColorBox
    {
        FLOAT rgCentre;
        FLOAT bgCentre;
        FLOAT rgHalf;
        FLOAT bgHalf;
        FLOAT weightedCount;
    };

    FLOAT RunGrid(const FLOAT* pValues, const std::vector<UINT32>& rRegions) const;
    FLOAT RunWholeGrid(const FLOAT* pValues) const;
    FLOAT RunHistogram(const KIROCntStatsOut& rChannel) const;
    FLOAT RunExtremeColors() const;

    const KIROCntStatsOut& m_rSafeLuma;
    const KIROCntStatsOut& m_rShortLuma;
    const KIROCntStatsOut& m_rSafeRG;
    const KIROCntStatsOut& m_rSafeBG;
    const KIROCntStatsOut& m_rSafeHist;
    const KIROCntStatsOut& m_rShortHist;
    std::vector<FLOAT>     m_weights;     ///< of each region
    std::vector<UINT32>    m_roiRegions;  ///< in the order of the walk
    FLOAT                  m_clamp;
};
