#include "core/statsprocessor/ckiro2dmetiterator.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::SaturateToUINT32;

CKIRO2DMetIterator::CKIRO2DMetIterator()
    : m_area{}, m_roiWidth(0), m_roiHeight(0), m_roiStartHeight(0), m_roiStartWidth(0), m_roiEndHeight(0),
      m_roiEndWidth(0), m_ipStatswidth(0), m_ipStatsHeight(0), m_rowStart(0), m_pRowWeights(nullptr), m_2DWeightTable{},
      m_tableNumber(0), m_pColumnEntry(m_columns.Entries({})), m_pRowEntry(m_rows.Entries({}))
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
    const Area area = {width, height, rROI.x, rROI.y, rROI.dx, rROI.dy, bUseDefaultCoordMethod};
    if (area != m_area)
    {
        m_area = area;
        ResolveArea();
    }
    if (!IsSameTable(m_2DWeightTable, pTable))
    {
        std::copy_n(pTable, TableSize, m_2DWeightTable);
        ++m_tableNumber;
    }
    SelectRow(0);
    return TRUE;
}

VOID CKIRO2DMetIterator::ResolveArea()
{
    const FLOAT w  = static_cast<FLOAT>(m_area.width);
    const FLOAT h  = static_cast<FLOAT>(m_area.height);
    m_roiEndWidth  = SaturateToUINT32(std::ceil((m_area.x + m_area.dx) * w));
    m_roiEndHeight = SaturateToUINT32(std::ceil((m_area.y + m_area.dy) * h));
    if (m_area.bUseDefaultCoordMethod == TRUE)
    {
        m_roiStartWidth  = SaturateToUINT32(std::floor((w - 1.0f) * m_area.x));
        m_roiStartHeight = SaturateToUINT32(std::floor((h - 1.0f) * m_area.y));
        m_roiWidth       = (m_roiEndWidth == m_roiStartWidth) ? 1 : m_roiEndWidth - m_roiStartWidth;
        m_roiHeight      = (m_roiEndHeight == m_roiStartHeight) ? 1 : m_roiEndHeight - m_roiStartHeight;
    }
    else
    {
        m_roiStartWidth  = SaturateToUINT32(std::trunc(m_area.x * w));
        m_roiStartHeight = SaturateToUINT32(std::trunc(m_area.y * h));
        m_roiWidth       = m_roiEndWidth - m_roiStartWidth;
        m_roiHeight      = m_roiEndHeight - m_roiStartHeight;
    }
    m_ipStatswidth  = m_area.width;
    m_ipStatsHeight = m_area.height;
    m_pColumnEntry  = m_columns.Entries({m_ipStatswidth, m_roiStartWidth, m_roiEndWidth, m_roiWidth});
    m_pRowEntry     = m_rows.Entries({m_ipStatsHeight + 1, m_roiStartHeight, m_roiEndHeight, m_roiHeight});
}

/// Table column or row of a grid column or row, nearest neighbour.
INT16 CKIRO2DMetIterator::EntryOf(UINT32 position, const Axis& rAxis)
{
    // The end is included: weights reach one region behind the ROI, whose luma counts.
    if (position < rAxis.start || position > rAxis.end)
    {
        return OutsideROI;
    }
    const FLOAT scaled =
        static_cast<FLOAT>(position - rAxis.start) / static_cast<FLOAT>(rAxis.size) * static_cast<FLOAT>(TableWidth);
    return static_cast<INT16>(std::min(SaturateToUINT32(std::round(scaled)), TableWidth - 1));
}

const INT16* CKIRO2DMetIterator::ResolvedAxes::Entries(const Axis& rAxis)
{
    for (const Resolved& rResolved : m_axes)
    {
        if (rResolved.axis == rAxis)
        {
            return rResolved.entries;
        }
    }
    Resolved& rResolved = m_axes[m_next];
    m_next              = (m_next + 1) % Count;
    rResolved.axis      = rAxis;
    for (UINT32 position = 0; position < rAxis.count; ++position)
    {
        rResolved.entries[position] = EntryOf(position, rAxis);
    }
    return rResolved.entries;
}

VOID CKIRO2DMetIterator::SelectRow(UINT32 index)
{
    const UINT32 row = (m_ipStatswidth == 0) ? 0 : index / m_ipStatswidth;
    m_rowStart       = row * m_ipStatswidth;
    m_pRowWeights    = (row > m_ipStatsHeight || m_pRowEntry[row] == OutsideROI)
                           ? nullptr
                           : m_2DWeightTable + TableWidth * static_cast<size_t>(m_pRowEntry[row]);
}

INT32 CKIRO2DMetIterator::EntryOfRegion(UINT32 index) const
{
    const UINT32 row    = (m_ipStatswidth == 0) ? 0 : index / m_ipStatswidth;
    const UINT32 column = index - row * m_ipStatswidth;
    if (row > m_ipStatsHeight || column >= m_ipStatswidth || m_pRowEntry[row] == OutsideROI ||
        m_pColumnEntry[column] == OutsideROI)
    {
        return OutsideROI;
    }
    return m_pRowEntry[row] * static_cast<INT32>(TableWidth) + m_pColumnEntry[column];
}

FLOAT CKIRO2DMetIterator::WeightOutside(UINT32 index) const
{
    STATS_LOG_TRACE("Index out of ROI:%d", index);
    return NoWeight;
}
