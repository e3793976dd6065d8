/// @file
/// The samples of the sensor's regions, and what an exposure makes of them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

constexpr UINT32 SamplesPerRegion = 16;
constexpr UINT32 HistogramBins    = 256;

/// Light on the samples. Those of a row of regions lie side by side, one of each region, then the next of each: what is
/// done to all regions of a row is done to several at a time.
class SampleRows
{
public:
    /// @param count samples of a region that differ; each stands for SamplesPerRegion / count
    explicit SampleRows(UINT32 count) : m_count(count), m_light(static_cast<size_t>(GridSize) * count)
    {
    }

    UINT32 Count() const
    {
        return m_count;
    }

    FLOAT& At(UINT32 region, UINT32 sample)
    {
        return m_light[IndexOf(region, sample)];
    }

    FLOAT At(UINT32 region, UINT32 sample) const
    {
        return m_light[IndexOf(region, sample)];
    }

    const FLOAT* Row(UINT32 row) const
    {
        return &m_light[static_cast<size_t>(row) * m_count * GridWidth];
    }

    std::vector<FLOAT>& All()
    {
        return m_light;
    }

private:
    size_t IndexOf(UINT32 region, UINT32 sample) const
    {
        return (static_cast<size_t>(region / GridWidth) * m_count + sample) * GridWidth + region % GridWidth;
    }

    UINT32             m_count;
    std::vector<FLOAT> m_light;
};

/// A number of each region of a row.
using RowOfRegions = std::array<FLOAT, GridWidth>;

/// What makes signals of a row's samples: the signal of a sample is its light times the factor and what is added.
struct RowSignals
{
    RowOfRegions factors;
    RowOfRegions added;
};

/// What a row of regions comes to. Full scale of a sample is 1.
struct RowLight
{
    RowOfRegions sums;
    RowOfRegions clipped;  ///< number of the samples at full scale
};

/// One exposure, row by row, and the histogram of its samples.
class SampleExposure
{
public:
    SampleExposure();

    /// What is no number clips.
    VOID ExposeRow(const SampleRows& rSamples, UINT32 row, const RowSignals& rSignals, RowLight& rLight);

    /// Stores the counts of the samples of all rows exposed. @param weight samples that each of them stands for
    VOID StoreHistogram(UINT32 weight, INT* pBins);

private:
    /// Regions that are exposed at a time. A compiler splits what its machine has no vectors for.
    static constexpr UINT32 LaneCount = 8;

    static_assert(GridWidth % LaneCount == 0);

    using BinsOfLanes = std::array<INT32, LaneCount>;
    using BinsOfGroup = std::array<BinsOfLanes, SamplesPerRegion>;

    /// By bin. Behind the bins one for what clips, and a place for what is not to be counted; as many entries as vectors
    /// have room for.
    using Counts = std::array<UINT16, HistogramBins + LaneCount>;

    static_assert(GridSize * SamplesPerRegion <= UINT16_MAX);

    VOID Count(const BinsOfLanes& rBins);

    /// Of each lane: samples side by side are often alike, and in one list each would wait for the one before.
    std::array<Counts, LaneCount> m_counts;

    /// A store for each sample is what exposing takes the time for; vector units work beside it, if none of it waits for
    /// them: while a group of regions is exposed, the group before it is counted.
    alignas(sizeof(BinsOfLanes)) std::array<BinsOfGroup, 2> m_bins;
    UINT32                     m_group;  ///< of the two that is exposed next
};

}  // namespace kirosim
