/// @file
/// Answers which of the 16 x 16 metering weights applies to a region of a grid.
#pragma once

#include "core/statsprocessor/ckirogriditerator.h"

class CKIRO2DMetIterator
{
public:
    CKIRO2DMetIterator();

    /// @param pTable 256 weights, row-major, borrowed
    /// @return 1, or 0 for a grid of more columns or rows than a channel can have
    BOOL Configure(UINT32 width, UINT32 height, const AECAlgoROI& rROI, const FLOAT* pTable,
                   BOOL bUseDefaultCoordMethod);

    /// @return the weight of a region, -1.0 outside the ROI
    FLOAT GetWeight(UINT32 index) const;

private:
    VOID  ResolveEntries();
    FLOAT WeightOutside(UINT32 index) const;

    UINT32       m_roiWidth;
    UINT32       m_roiHeight;
    UINT32       m_roiStartHeight;
    UINT32       m_roiStartWidth;
    UINT32       m_roiEndHeight;
    UINT32       m_roiEndWidth;
    UINT32       m_ipStatswidth;
    UINT32       m_ipStatsHeight;
    const FLOAT* m_p2DWeightTable;  ///< null until configured; every region then has no weight
    BOOL         m_bIterateRaw;
    // Table entry of each column and row of the grid, so that a region costs no division beyond its own.
    INT16 m_columnEntry[GridRegionCountMax];
    INT16 m_rowEntry[GridRegionCountMax + 1];  ///< one row more, which an ROI down to the last row includes
};
