#include "core/statsprocessor/ckirogriditerator.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::SaturateToUINT32;

namespace
{

bool IsFullFrame(const AECAlgoROI& rROI)
{
    return rROI.dx == 1.0f && rROI.dy == 1.0f && rROI.x == 0.0f && rROI.y == 0.0f;
}

}  // namespace

/// An ROI in whole regions.
struct CKIROGridIterator::Geometry
{
    UINT32 start;  ///< region index of the upper left corner
    UINT32 width;
    UINT32 height;
};

CKIROGridIterator::CKIROGridIterator()
    : m_pStats(nullptr), m_bIterateRaw(FALSE), m_placedBlocks{}, m_blockStart{}, m_blockOffset{}, m_activePatterns(0),
      m_activeBlocks(0), m_currentIndex(0), m_estNumOfRegions(0), m_interpInfo{}
{
}

BOOL CKIROGridIterator::Configure(const KIROItrConfig& rConfig, BOOL bUseDefaultCoordMethod)
{
    m_bIterateRaw  = FALSE;
    m_currentIndex = 0;

    const bool                 hasTile = rConfig.pSSInfo != nullptr && rConfig.pSSInfo->pSSPattern != nullptr;
    const KIROSubsamplingInfo& rTile   = hasTile ? *rConfig.pSSInfo : SingleCellTile;
    const AECAlgoROI           roi     = (rConfig.pROIInfo != nullptr) ? *rConfig.pROIInfo : FullFrameROI;
    if (rConfig.pSSInfo == nullptr && rConfig.pROIInfo == nullptr)
    {
        ConfigureRaw();
        return TRUE;
    }
    // The size of the tile alone decides: a tile of one inactive cell takes all regions, not none.
    if (IsFullFrame(roi) && rTile.width == 1 && rTile.height == 1)
    {
        ConfigureRaw();
        return TRUE;
    }
    const Geometry geometry = ResolveGeometry(roi, bUseDefaultCoordMethod);
    return FillTables(geometry, rTile) ? TRUE : FALSE;
}

BOOL CKIROGridIterator::Configure(KIROItrConfig& rConfig, KIROItrInfo& rInfo, BOOL bUseDefaultCoordMethod)
{
    KIROItrConfig config;
    config.Set((rConfig.pSSInfo != nullptr) ? rConfig.pSSInfo : &SingleCellTile,
               (rConfig.pROIInfo != nullptr) ? rConfig.pROIInfo : &FullFrameROI);
    const BOOL result = Configure(config, bUseDefaultCoordMethod);
    if (result == TRUE)
    {
        rInfo.type       = m_pStats->type;
        rInfo.resolution = m_pStats->resolution;
    }
    rConfig.Reset();
    return result;
}

VOID CKIROGridIterator::ConfigureRaw()
{
    m_bIterateRaw     = TRUE;
    m_estNumOfRegions = m_pStats->resolution.width * m_pStats->resolution.height;
    STATS_LOG_TRACE("Iterate RAW stats. Size:%d", m_estNumOfRegions);
}

CKIROGridIterator::Geometry CKIROGridIterator::ResolveGeometry(const AECAlgoROI& rROI, BOOL bUseDefaultCoordMethod)
{
    const UINT32 gridWidth  = m_pStats->resolution.width;
    const UINT32 gridHeight = m_pStats->resolution.height;
    const FLOAT  width      = static_cast<FLOAT>(gridWidth);
    const FLOAT  height     = static_cast<FLOAT>(gridHeight);
    const FLOAT  left       = rROI.x * width;
    const FLOAT  right      = (rROI.x + rROI.dx) * width;
    const FLOAT  top        = rROI.y * height;
    const FLOAT  bottom     = (rROI.y + rROI.dy) * height;

    Geometry geometry{};
    if (bUseDefaultCoordMethod == TRUE)
    {
        const FLOAT roiWidth  = std::round(right) - std::round(left);
        const FLOAT roiHeight = std::round(bottom) - std::round(top);
        geometry.width        = (roiWidth == 0.0f) ? 1 : SaturateToUINT32(roiWidth);
        geometry.height       = (roiHeight == 0.0f) ? 1 : SaturateToUINT32(roiHeight);
        // The start is scaled by one region less than the size.
        const UINT32 startX = std::min(gridWidth - 1, SaturateToUINT32(std::round((width - 1.0f) * rROI.x)));
        const UINT32 startY = std::min(gridHeight - 1, SaturateToUINT32(std::round((height - 1.0f) * rROI.y)));
        geometry.start      = startX + gridWidth * startY;
        return geometry;
    }
    geometry.width          = SaturateToUINT32(std::ceil(right) - std::trunc(left));
    geometry.height         = SaturateToUINT32(std::ceil(bottom) - std::trunc(top));
    geometry.start          = SaturateToUINT32(std::trunc(left)) + gridWidth * SaturateToUINT32(std::trunc(top));
    m_interpInfo.roiWidth   = geometry.width;
    m_interpInfo.roiHeight  = geometry.height;
    m_interpInfo.fracLeft   = left - std::trunc(left);
    m_interpInfo.fracRight  = std::ceil(right) - right;
    m_interpInfo.fracTop    = top - std::trunc(top);
    m_interpInfo.fracBottom = std::ceil(bottom) - bottom;
    return geometry;
}

/// @return false when the walk would write behind the tables or read behind the channel; then nothing is visited
bool CKIROGridIterator::FillTables(const Geometry& rGeometry, const KIROSubsamplingInfo& rTile)
{
    const UINT32 gridWidth = m_pStats->resolution.width;
    const UINT64 gridSize  = static_cast<UINT64>(gridWidth) * m_pStats->resolution.height;
    const UINT32 blocksW   = (rTile.width == 0) ? 0 : rGeometry.width / rTile.width;
    const UINT32 blocksH   = (rTile.height == 0) ? 0 : rGeometry.height / rTile.height;

    m_activePatterns  = 0;
    m_activeBlocks    = 0;
    m_estNumOfRegions = 0;
    if (static_cast<UINT64>(blocksW) * blocksH > GridRegionCountMax)
    {
        STATS_LOG_ERROR("ROI of %d x %d tiles exceeds %d regions", blocksW, blocksH, GridRegionCountMax);
        return false;
    }
    const BlockGrid blocks     = {rGeometry.start, blocksW, blocksH, rTile.width, rTile.height * gridWidth};
    UINT64          lastOffset = 0;
    if (!PlaceCells(rTile, lastOffset) || LeavesGrid(rGeometry, rTile, blocks, lastOffset))
    {
        return false;
    }
    m_activeBlocks = blocksW * blocksH;
    PlaceBlocks(blocks);
    m_estNumOfRegions = m_activeBlocks * m_activePatterns;
    if (m_estNumOfRegions > gridSize)
    {
        STATS_LOG_TRACE("num regions %d exceeds width %d * height %d ; blocks %d pattern %d roi w %d h %d ss w %d h %d",
                        m_estNumOfRegions, gridWidth, m_pStats->resolution.height, m_activeBlocks, m_activePatterns,
                        rGeometry.width, rGeometry.height, rTile.width, rTile.height);
        m_estNumOfRegions = static_cast<UINT32>(gridSize);
    }
    STATS_LOG_TRACE("Block Count(h:%d w:%d) PatternSize:%d TotalReg:%d ROI (Start:%d, W:%d, H:%d)", blocksH, blocksW,
                    m_activePatterns, m_estNumOfRegions, rGeometry.start, rGeometry.width, rGeometry.height);
    return true;
}

/// Fills in where the active cells of the tile lie.
/// @param rLastOffset receives the last one's offset in regions, in 64 bits; untouched without active cells
/// @return false, with a log, for a tile with too many active cells
bool CKIROGridIterator::PlaceCells(const KIROSubsamplingInfo& rTile, UINT64& rLastOffset)
{
    for (UINT32 row = 0; row < rTile.height; ++row)
    {
        for (UINT32 column = 0; column < rTile.width; ++column)
        {
            if (rTile.pSSPattern[static_cast<UINT64>(row) * rTile.width + column] != ActiveCell)
            {
                continue;
            }
            if (m_activePatterns == GridPatternCellMax)
            {
                STATS_LOG_ERROR("tile of %d x %d exceeds %d active cells", rTile.width, rTile.height,
                                GridPatternCellMax);
                m_activePatterns = 0;
                return false;
            }
            rLastOffset                     = static_cast<UINT64>(row) * m_pStats->resolution.width + column;
            m_blockOffset[m_activePatterns] = static_cast<UINT32>(rLastOffset);
            ++m_activePatterns;
        }
    }
    return true;
}

/// @return whether the last cell of the last block lies beyond the channel's last region; logs if so
bool CKIROGridIterator::LeavesGrid(const Geometry& rGeometry, const KIROSubsamplingInfo& rTile,
                                   const BlockGrid& rBlocks, UINT64 lastOffset) const
{
    const UINT64 gridWidth = m_pStats->resolution.width;
    const UINT64 gridSize  = gridWidth * m_pStats->resolution.height;
    if (rBlocks.columns == 0 || rBlocks.rows == 0 || m_activePatterns == 0)
    {
        return false;
    }
    const UINT64 lastBlock = rGeometry.start + static_cast<UINT64>(rBlocks.rows - 1) * rTile.height * gridWidth +
                             static_cast<UINT64>(rBlocks.columns - 1) * rTile.width;
    if (lastBlock + lastOffset < gridSize)
    {
        return false;
    }
    STATS_LOG_ERROR("ROI start %d of %d x %d leaves the grid of %llu regions", rGeometry.start, rGeometry.width,
                    rGeometry.height, gridSize);
    return true;
}

VOID CKIROGridIterator::PlaceBlocks(const BlockGrid& rBlocks)
{
    if (rBlocks == m_placedBlocks)
    {
        return;
    }
    m_placedBlocks = rBlocks;
    for (UINT32 row = 0; row < rBlocks.rows; ++row)
    {
        for (UINT32 column = 0; column < rBlocks.columns; ++column)
        {
            m_blockStart[row * rBlocks.columns + column] =
                rBlocks.start + row * rBlocks.rowStep + column * rBlocks.columnStep;
        }
    }
}

BOOL CKIROGridIterator::HasNext()
{
    return (m_currentIndex < m_estNumOfRegions) ? TRUE : FALSE;
}

UINT32 CKIROGridIterator::Next()
{
    if (m_currentIndex >= m_estNumOfRegions)
    {
        return 0;
    }
    const UINT32 index = m_currentIndex++;
    if (m_bIterateRaw == TRUE)
    {
        return index;
    }
    return m_blockStart[index / m_activePatterns] + m_blockOffset[index % m_activePatterns];
}

FLOAT CKIROGridIterator::NextGridData()
{
    return m_pStats->channelData.Data.pFData[Next()];
}

KIROHistData* CKIROGridIterator::NextHistData()
{
    return nullptr;
}

UINT32 CKIROGridIterator::GetTotalNumOfRegions()
{
    return m_estNumOfRegions;
}
