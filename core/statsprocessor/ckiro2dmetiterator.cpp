#include "core/statsprocessor/ckiro2dmetiterator.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::SaturateToUINT32;

namespace
{

constexpr UINT32 TableWidth  = 16;
constexpr UINT32 TableSize   = TableWidth * TableWidth;
constexpr FLOAT  NoWeight    = -1.0f;
constexpr INT16  OutsideROI  = -1;

/// Table column or row of a grid column or row, nearest neighbour.
INT16 EntryOf(UINT32 position, UINT32 start, UINT32 end, UINT32 size)
{
    // The end is included: weights reach one region behind the ROI, and tuned tables depend on it.
    if (position < start || position > end)
    {
        return OutsideROI;
    }
    const FLOAT scaled = static_cast<FLOAT>(position - start) / static_cast<FLOAT>(size) * static_cast<FLOAT>(TableWidth);
    return static_cast<INT16>(std::min(SaturateToUINT32(std::round(scaled)), TableWidth - 1));
}

} // namespace

CKIRO2DMetIterator::CKIRO2DMetIterator()
    : m_roiWidth(0), m_roiHeight(0), m_roiStartHeight(0), m_roiStartWidth(0), m_roiEndHeight(0), m_roiEndWidth(0),
      m_ipStatswidth(0), m_ipStatsHeight(0), m_p2DWeightTable(nullptr), m_bIterateRaw(FALSE), m_columnEntry{},
      m_rowEntry{}
{
}

BOOL CKIRO2DMetIterator::Configure(UINT32 width, UINT32 height, const AECAlgoROI& rROI, const FLOAT* pTable,
                                   BOOL bUseDefaultCoordMethod)
{
    if (width > GridRegionCountMax || height > GridRegionCountMax)
    {
        STATS_LOG_ERROR("grid of %d x %d exceeds %d regions", width, height, GridRegionCountMax);
        return FALSE;
    }
    const FLOAT w   = static_cast<FLOAT>(width);
    const FLOAT h   = static_cast<FLOAT>(height);
    m_roiEndWidth   = SaturateToUINT32(std::ceil((rROI.x + rROI.dx) * w));
    m_roiEndHeight  = SaturateToUINT32(std::ceil((rROI.y + rROI.dy) * h));
    if (bUseDefaultCoordMethod == TRUE)
    {
        m_roiStartWidth  = SaturateToUINT32(std::floor((w - 1.0f) * rROI.x));
        m_roiStartHeight = SaturateToUINT32(std::floor((h - 1.0f) * rROI.y));
        m_roiWidth       = (m_roiEndWidth == m_roiStartWidth) ? 1 : m_roiEndWidth - m_roiStartWidth;
        m_roiHeight      = (m_roiEndHeight == m_roiStartHeight) ? 1 : m_roiEndHeight - m_roiStartHeight;
    }
    else
    {
        m_roiStartWidth  = SaturateToUINT32(std::trunc(rROI.x * w));
        m_roiStartHeight = SaturateToUINT32(std::trunc(rROI.y * h));
        m_roiWidth       = m_roiEndWidth - m_roiStartWidth;
        m_roiHeight      = m_roiEndHeight - m_roiStartHeight;
    }
    m_p2DWeightTable = pTable;
    m_ipStatswidth   = width;
    m_ipStatsHeight  = height;
    m_bIterateRaw    = (rROI.x == 0.0f && rROI.y == 0.0f && rROI.dx == 1.0f && rROI.dy == 1.0f &&
                     width == TableWidth && height == TableWidth)
                           ? TRUE
                           : FALSE;
    ResolveEntries();
    return TRUE;
}

VOID CKIRO2DMetIterator::ResolveEntries()
{
    for (UINT32 column = 0; column < m_ipStatswidth; ++column)
    {
        m_columnEntry[column] = EntryOf(column, m_roiStartWidth, m_roiEndWidth, m_roiWidth);
    }
    for (UINT32 row = 0; row <= m_ipStatsHeight; ++row)
    {
        m_rowEntry[row] = EntryOf(row, m_roiStartHeight, m_roiEndHeight, m_roiHeight);
    }
}

FLOAT CKIRO2DMetIterator::GetWeight(UINT32 index) const
{
    if (index < TableSize && m_bIterateRaw == TRUE)
    {
        return m_p2DWeightTable[index];
    }
    const UINT32 row    = (m_ipStatswidth == 0) ? 0 : index / m_ipStatswidth;
    const UINT32 column = index - row * m_ipStatswidth;
    if (row > m_ipStatsHeight || column >= m_ipStatswidth || m_rowEntry[row] == OutsideROI ||
        m_columnEntry[column] == OutsideROI)
    {
        return WeightOutside(index);
    }
    return m_p2DWeightTable[static_cast<UINT32>(m_columnEntry[column]) +
                            TableWidth * static_cast<UINT32>(m_rowEntry[row])];
}

FLOAT CKIRO2DMetIterator::WeightOutside(UINT32 index) const
{
    STATS_LOG_TRACE("Index out of ROI:%d", index);
    return NoWeight;
}
