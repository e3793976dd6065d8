/// @file
/// Answers which of the 16 x 16 metering weights applies to a region of a grid.
#pragma once

#include "core/statsprocessor/ckirogriditerator.h"

class CKIRO2DMetIterator
{
public:
    static constexpr FLOAT NoWeight = -1.0f;

    CKIRO2DMetIterator();
    CKIRO2DMetIterator(const CKIRO2DMetIterator&)            = delete;
    CKIRO2DMetIterator& operator=(const CKIRO2DMetIterator&) = delete;

    /// @param pTable 256 weights, row-major; copied, since they may be asked for after a change of tuning
    /// @return 1, or 0 for a grid of more columns or rows than a channel can have
    BOOL Configure(UINT32 width, UINT32 height, const AECAlgoROI& rROI, const FLOAT* pTable,
                   BOOL bUseDefaultCoordMethod);

    /// @return the weight of a region, NoWeight outside the ROI
    FLOAT GetWeight(UINT32 index)
    {
        // A walk mostly stays in a row, which is looked up once.
        if (index - m_rowStart >= m_ipStatswidth)
        {
            SelectRow(index);
        }
        const UINT32 column = index - m_rowStart;
        return (m_pRowWeights != nullptr && column < m_ipStatswidth && m_columnEntry[column] != OutsideROI)
                   ? m_pRowWeights[m_columnEntry[column]]
                   : WeightOutside(index);
    }

private:
    static constexpr INT16  OutsideROI = -1;
    static constexpr UINT32 TableWidth = 16;

    /// Which of the table's 16 columns or rows the grid's columns or rows fall on.
    struct Axis
    {
        UINT32 count;  ///< columns or rows of the grid
        UINT32 start;
        UINT32 end;
        UINT32 size;

        bool operator==(const Axis&) const = default;
    };

    static INT16 EntryOf(UINT32 position, const Axis& rAxis);
    VOID         ResolveEntries();
    VOID         SelectRow(UINT32 index);
    FLOAT        WeightOutside(UINT32 index) const;

    UINT32       m_roiWidth;
    UINT32       m_roiHeight;
    UINT32       m_roiStartHeight;
    UINT32       m_roiStartWidth;
    UINT32       m_roiEndHeight;
    UINT32       m_roiEndWidth;
    UINT32       m_ipStatswidth;
    UINT32       m_ipStatsHeight;
    UINT32       m_rowStart;     ///< first region of the row of the last region that was asked for
    const FLOAT* m_pRowWeights;  ///< that row's part of the table, null outside the ROI and until configured
    FLOAT        m_2DWeightTable[TableWidth * TableWidth];
    // Table entry of each column and row of the grid, so that a region costs no division. Requests mostly share their
    // grid and ROI.
    Axis  m_columns;
    Axis  m_rows;
    INT16 m_columnEntry[GridRegionCountMax];
    INT16 m_rowEntry[GridRegionCountMax + 1];  ///< one row more, which an ROI down to the last row includes
};
