/// @file
/// One walk over a grid for the weighted means of many tables.
///
/// A weighted mean is a chain of fused multiply-adds, each of which waits for the one before. The chains of several
/// tables do not wait for one another: walked side by side, sixteen take about as long as one, or thirty-two where
/// vectors are long, and each keeps its own order and bits.
#pragma once

#include <optional>

#include "core/statsprocessor/ckiro2dmetiterator.h"
#include "core/statsprocessor/ckirogriditerator.h"

/// Weights of tables that are walked side by side: of each entry of the tables, one lane for a table.
struct WeightLanes
{
    static constexpr UINT32 Count = 8;

    FLOAT entries[CKIRO2DMetIterator::TableSize][Count];
};

/// What decides which regions a weighted mean visits, in which order, and what they are clamped at.
struct WeightedWalkKey
{
    INT32                               channel;  ///< position in the ring of grids
    kirocorestatsconfig::ResolutionType resolution;
    AECAlgoROI                          roi;    ///< its weight has no part in it
    FLOAT                               clamp;  ///< in units of the channel

    bool operator==(const WeightedWalkKey& rOther) const;
};

class CKIROWeightedWalk
{
public:
    static constexpr UINT32 TableMax = 32;  ///< tables that are walked side by side

    /// Starts anew with the walk that a grid iterator is configured for.
    /// @param rWeights configured for the same grid and ROI
    VOID Begin(const WeightedWalkKey& rKey, const CKIROGridIterator& rRegions, const CKIRO2DMetIterator& rWeights);

    bool IsFor(const WeightedWalkKey& rKey) const
    {
        return m_lastFrame > 0 && m_key == rKey;
    }

    /// @return whether a table can share a walk: its weights leave out no region and are finite
    static bool TakesTable(const FLOAT* pTable);

    /// @return whether a further table needs a further walk
    bool IsFull() const
    {
        return m_regionCount > 0 && m_tableCount == TableMax;
    }

    /// Takes up a table for the next frames, unless the walk goes beyond what tables cover. It must not be full.
    /// @param rWeights    in use, of a table that can share a walk
    /// @param totalWeight of all regions of the walk, added in its order
    VOID AddTable(const CKIRO2DMetIterator& rWeights, FLOAT totalWeight, UINT64 frame);

    /// What one table's walk comes to.
    struct Sums
    {
        FLOAT weighted;
        FLOAT weights;
    };

    /// Walks all tables that were asked for in this frame or the one before, unless this has been done in the frame.
    /// @param pValues stay as they are for the whole frame
    /// @return nothing for a table that was not added
    std::optional<Sums> Measure(const CKIRO2DMetIterator& rWeights, const FLOAT* pValues, UINT64 frame);

    /// In which a table was asked for, 0 before the first.
    UINT64 LastFrame() const
    {
        return m_lastFrame;
    }

private:
    static constexpr UINT32 NotFound = TableMax;

    UINT32 FindTable(const CKIRO2DMetIterator& rWeights);
    VOID   DropForgotten(UINT64 frame);
    VOID   Walk(const FLOAT* pValues);
    FLOAT  AddUnweighted(const FLOAT* pValues) const;

    FLOAT& Lane(UINT32 entry, UINT32 table)
    {
        return m_lanes[table / WeightLanes::Count].entries[entry][table % WeightLanes::Count];
    }

    struct Table
    {
        FLOAT  weights[CKIRO2DMetIterator::TableSize];
        UINT64 number;  ///< under which the weights have been in use last
        bool   isOfOnes;
        FLOAT  totalWeight;
        FLOAT  sum;  ///< as of m_walkedFrame
        UINT64 lastFrame;
        bool   isWalked;  ///< its sum is of the last walk
    };

    WeightedWalkKey m_key;
    UINT32          m_regionCount;  ///< 0 if each table has to be measured alone
    bool            m_isUnbroken;   ///< each region follows the one before in the channel as well
    UINT64          m_lastFrame;
    UINT64          m_walkedFrame;
    const FLOAT*    m_pWalkedValues;  ///< null before the first walk
    UINT32          m_tableCount;
    UINT32          m_expected;  ///< the table that is likely to be asked for next: requests keep their order
    Table           m_tables[TableMax];
    UINT32          m_region[GridRegionCountMax];
    BYTE            m_entry[GridRegionCountMax];  ///< of a table, for each region of the walk
    WeightLanes     m_lanes[TableMax / WeightLanes::Count];
};
