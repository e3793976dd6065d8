/// @file
/// Answers which of the 16 x 16 metering weights applies to a region of a grid.
#pragma once

#include <cstring>

#include "core/statsprocessor/ckirogriditerator.h"

class CKIRO2DMetIterator
{
public:
    static constexpr FLOAT  NoWeight   = -1.0f;
    static constexpr UINT32 TableWidth = 16;
    static constexpr UINT32 TableSize  = TableWidth * TableWidth;

    CKIRO2DMetIterator();
    CKIRO2DMetIterator(const CKIRO2DMetIterator&)            = delete;
    CKIRO2DMetIterator& operator=(const CKIRO2DMetIterator&) = delete;

    /// Of tables' bits. They are the same where weights are, but for a NaN and the sign of a 0.
    static bool IsSameTable(const VOID* pOne, const VOID* pOther)
    {
        return std::memcmp(pOne, pOther, TableSize * sizeof(FLOAT)) == 0;
    }

    /// @param pTable 256 weights, row-major; copied, since they may be asked for after a change of tuning
    /// @return 1, or 0 for a grid of more columns or rows than a channel can have
    BOOL Configure(UINT32 width, UINT32 height, const AECAlgoROI& rROI, const FLOAT* pTable,
                   BOOL bUseDefaultCoordMethod);

    /// @return the weight of a region, NoWeight outside the ROI
    FLOAT GetWeight(UINT32 index)
    {
        // A walk mostly stays in a row, which is looked up once.
        if (index - m_rowStart >= m_ipStatswidth) [[unlikely]]
        {
            SelectRow(index);
        }
        const UINT32 column = index - m_rowStart;
        if (m_pRowWeights != nullptr && column < m_ipStatswidth && m_pColumnEntry[column] != OutsideROI) [[likely]]
        {
            return m_pRowWeights[m_pColumnEntry[column]];
        }
        return WeightOutside(index);
    }

    /// @return which entry of the table weighs a region; -1 outside the ROI
    INT32 EntryOfRegion(UINT32 index) const;

    /// The weights in use, all TableSize of them.
    const FLOAT* Table() const
    {
        return m_2DWeightTable;
    }

    /// Counts the weights that have been in use here: those of one number are the same.
    UINT64 TableNumber() const
    {
        return m_tableNumber;
    }

private:
    static constexpr INT16 OutsideROI = -1;

    /// Which of the table's 16 columns or rows the grid's columns or rows fall on.
    struct Axis
    {
        UINT32 count;  ///< columns or rows of the grid
        UINT32 start;
        UINT32 end;
        UINT32 size;

        bool operator==(const Axis&) const = default;
    };

    /// What a request asks the weights for; a ROI's own weight has no part in it.
    struct Area
    {
        UINT32 width;
        UINT32 height;
        FLOAT  x;
        FLOAT  y;
        FLOAT  dx;
        FLOAT  dy;
        BOOL   bUseDefaultCoordMethod;

        bool operator==(const Area&) const = default;
    };

    VOID         ResolveArea();
    static INT16 EntryOf(UINT32 position, const Axis& rAxis);

    /// Table entries of the columns or of the rows of a grid, so that a region costs no division. The requests of a
    /// tuning have few grids and ROIs between them.
    class ResolvedAxes
    {
    public:
        /// @return by position; until the next call
        const INT16* Entries(const Axis& rAxis);

    private:
        struct Resolved
        {
            Axis  axis;
            INT16 entries[GridRegionCountMax + 1];  ///< one row more, which an ROI down to the last row includes
        };

        static constexpr UINT32 Count = 4;

        Resolved m_axes[Count] = {};
        UINT32   m_next        = 0;  ///< the one that a further axis takes
    };

    [[gnu::cold]] VOID  SelectRow(UINT32 index);
    [[gnu::cold]] FLOAT WeightOutside(UINT32 index) const;

    Area         m_area;  ///< which the members up to the row are resolved for, none at first
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
    FLOAT        m_2DWeightTable[TableSize];
    UINT64       m_tableNumber;

    ResolvedAxes m_columns;
    ResolvedAxes m_rows;
    const INT16* m_pColumnEntry;  ///< of the grid's columns
    const INT16* m_pRowEntry;
};
