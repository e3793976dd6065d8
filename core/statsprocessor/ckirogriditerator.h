/// @file
/// Walks the regions of a grid channel that lie in an ROI and under the active cells of a tile.
#pragma once

#include <algorithm>
#include <iterator>

#include "core/statsprocessor/ikiroiterator.h"

/// Regions that a walk can visit when it is not raw, and active cells of a tile.
constexpr UINT32 GridRegionCountMax = 3072;
constexpr UINT32 GridPatternCellMax = 100;

/// A tile under which every region is active.
inline constexpr UINT32              ActiveCell     = 1;
inline constexpr KIROSubsamplingInfo SingleCellTile = {&ActiveCell, 1, 1};

/// An ROI that does not fall on region borders.
struct ROIInterpInfo
{
    UINT32 roiWidth;  ///< whole regions touched
    UINT32 roiHeight;
    FLOAT  fracLeft;  ///< share of the outermost regions that lies outside the ROI
    FLOAT  fracRight;
    FLOAT  fracTop;
    FLOAT  fracBottom;
};

class CKIROGridIterator final : public IKIROIterator
{
public:
    CKIROGridIterator();

    /// Must precede Configure. The record stays the caller's.
    VOID SetStats(const KIROCntStatsOut* pStats)
    {
        m_pStats = pStats;
    }

    /// @param bUseDefaultCoordMethod 1 for whole regions, 0 for the interpolating form that also yields fractions
    /// @return 1, or 0 when the walk would leave the channel or the tables of the iterator
    BOOL Configure(const KIROItrConfig& rConfig, BOOL bUseDefaultCoordMethod);

    /// The form with defaults: null pointers become the full frame and a tile of one active cell. Both pointers are
    /// null afterwards, and rInfo holds the channel's type and shape when the result is 1.
    BOOL Configure(KIROItrConfig& rConfig, KIROItrInfo& rInfo, BOOL bUseDefaultCoordMethod);

    BOOL          HasNext() override;
    FLOAT         NextGridData() override;
    KIROHistData* NextHistData() override;
    UINT32        GetTotalNumOfRegions() override;

    /// @return the next region index; 0 when exhausted
    UINT32 Next();

    const ROIInterpInfo& GetROIInterpInfo() const
    {
        return m_interpInfo;
    }

    /// Calls visit(regionIndex) for all regions in order, without the cost of Next().
    template <typename Visit> VOID ForEachRegion(Visit&& visit) const
    {
        ForRegions(0, m_estNumOfRegions, visit);
    }

    /// The same for a part of the walk.
    /// @param first number in the walk, from 0
    /// @param end   behind the last one, up to GetTotalNumOfRegions()
    template <typename Visit> VOID ForRegions(UINT32 first, UINT32 end, Visit&& visit) const
    {
        if (m_bIterateRaw == TRUE)
        {
            for (UINT32 index = first; index < end; ++index)
            {
                visit(index);
            }
            return;
        }
        UINT32 left = end - first;
        UINT32 cell = (left > 0) ? first % m_activePatterns : 0;
        for (UINT32 block = (left > 0) ? first / m_activePatterns : 0; left > 0; ++block, cell = 0)
        {
            for (; cell < m_activePatterns && left > 0; ++cell, --left)
            {
                visit(m_blockStart[block] + m_blockOffset[cell]);
            }
        }
    }

    /// What a channel holds for a part of the walk.
    /// @param rCopy receives it where it does not stand as one piece of that length, with zeros behind
    /// @return Length values
    template <size_t Length>
    const FLOAT* Gather(const FLOAT* pValues, UINT32 first, UINT32 end, FLOAT (&rCopy)[Length]) const
    {
        if (m_bIterateRaw == TRUE && end - first == Length)
        {
            return pValues + first;
        }
        FLOAT* pOut = rCopy;
        ForRegions(first, end, [&](UINT32 index) { *pOut++ = pValues[index]; });
        std::fill(pOut, std::end(rCopy), 0.0f);
        return rCopy;
    }

private:
    struct Geometry;

    /// Where the placements of a tile begin; requests mostly share it.
    struct BlockGrid
    {
        UINT32 start;  ///< region index of the first
        UINT32 columns;
        UINT32 rows;
        UINT32 columnStep;
        UINT32 rowStep;

        bool operator==(const BlockGrid&) const = default;
    };

    VOID     ConfigureRaw();
    Geometry ResolveGeometry(const AECAlgoROI& rROI, BOOL bUseDefaultCoordMethod);
    bool     FillTables(const Geometry& rGeometry, const KIROSubsamplingInfo& rTile);
    bool     PlaceCells(const KIROSubsamplingInfo& rTile, UINT64& rLastOffset);
    bool     LeavesGrid(const Geometry& rGeometry, const KIROSubsamplingInfo& rTile, const BlockGrid& rBlocks,
                        UINT64 lastOffset) const;
    VOID     PlaceBlocks(const BlockGrid& rBlocks);

    const KIROCntStatsOut* m_pStats;
    BOOL                   m_bIterateRaw;
    BlockGrid              m_placedBlocks;                     ///< which m_blockStart holds
    UINT32                 m_blockStart[GridRegionCountMax];   ///< first region of each tile placement
    UINT32                 m_blockOffset[GridPatternCellMax];  ///< from the tile's origin, per active cell
    UINT32                 m_activePatterns;
    UINT32                 m_activeBlocks;
    UINT32                 m_currentIndex;
    UINT32                 m_estNumOfRegions;
    ROIInterpInfo          m_interpInfo;
};
