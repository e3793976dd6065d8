/// @file
/// The samples of the sensor's regions, and what an exposure makes of them.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

constexpr UINT32 SamplesPerRegion = 16;
constexpr UINT32 HistogramBins    = 256;

/// Regions side by side in a row, to which the same is done at a time.
constexpr UINT32 GroupWidth = 8;
constexpr UINT32 GroupCount = GridSize / GroupWidth;

static_assert(GridWidth % GroupWidth == 0);

/// A number of each region of a group. A compiler splits what its machine has no vectors for.
using Lanes        = FLOAT __attribute__((vector_size(GroupWidth * sizeof(FLOAT))));
using IntegerLanes = INT32 __attribute__((vector_size(GroupWidth * sizeof(INT32))));

inline VOID Load(const FLOAT* pNumbers, Lanes& rLanes)
{
    std::memcpy(&rLanes, pNumbers, sizeof(rLanes));
}

inline VOID Store(const Lanes& rLanes, FLOAT* pNumbers)
{
    std::memcpy(pNumbers, &rLanes, sizeof(rLanes));
}

/// Light on the samples. Those of a group of regions lie side by side: one of each region, then the next of each.
class RegionSamples
{
public:
    /// @param count samples of a region that differ; each stands for SamplesPerRegion / count
    explicit RegionSamples(UINT32 count) : m_count(count), m_light(static_cast<size_t>(GridSize) * count)
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

    const FLOAT* Group(UINT32 group) const
    {
        return &m_light[static_cast<size_t>(group) * m_count * GroupWidth];
    }

    std::vector<FLOAT>& All()
    {
        return m_light;
    }

private:
    size_t IndexOf(UINT32 region, UINT32 sample) const
    {
        return (static_cast<size_t>(region / GroupWidth) * m_count + sample) * GroupWidth + region % GroupWidth;
    }

    UINT32             m_count;
    std::vector<FLOAT> m_light;
};

/// What makes signals of a group's samples: the signal of a sample is its light times the factor and what is added.
struct GroupSignals
{
    Lanes factors;
    Lanes added;
};

/// What a group of regions comes to. Full scale of a sample is 1.
struct GroupLight
{
    Lanes sums;
    Lanes clipped;  ///< number of the samples at full scale
};

/// One exposure, group by group, and the histogram of its samples.
class SampleExposure
{
public:
    SampleExposure();

    /// What is no number clips.
    VOID ExposeGroup(const RegionSamples& rSamples, UINT32 group, const GroupSignals& rSignals, GroupLight& rLight);

    /// Stores the counts of the samples of all groups exposed. @param weight samples that each of them stands for
    VOID StoreHistogram(UINT32 weight, INT* pBins);

private:
    using BinsOfSample = std::array<INT32, GroupWidth>;
    using BinsOfGroup  = std::array<BinsOfSample, SamplesPerRegion>;

    /// By bin. Behind the bins one for what clips, and a place for what is not to be counted; as many entries as
    /// vectors have room for.
    using Counts = std::array<UINT16, HistogramBins + GroupWidth>;

    static_assert(GridSize * SamplesPerRegion <= UINT16_MAX);

    VOID Count(const BinsOfSample& rBins);

    /// Of each place in a group: samples side by side are often alike, and in one list each would wait for the one
    /// before.
    std::array<Counts, GroupWidth> m_counts;

    /// A frame takes as long as its counts take to be stored, one for each sample. All else happens beside that, if no
    /// count waits for a bin: while a group is exposed, the group before it is counted.
    alignas(sizeof(BinsOfSample)) std::array<BinsOfGroup, 2> m_bins;
    UINT32 m_next;  ///< of the two that is exposed next
};

}  // namespace kirosim
