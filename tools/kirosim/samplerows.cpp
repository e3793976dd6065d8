#include "tools/kirosim/samplerows.h"

#include <cstring>

namespace kirosim
{

namespace
{

constexpr FLOAT FullScale = HistogramBins;  ///< of signals here, so that their whole part is their bin
constexpr INT32 NoBin     = HistogramBins + 1;  ///< counts what is not to be counted

}  // namespace

SampleExposure::SampleExposure() : m_counts{}, m_group(0)
{
    for (BinsOfGroup& rGroup : m_bins)
    {
        rGroup.fill({NoBin, NoBin, NoBin, NoBin, NoBin, NoBin, NoBin, NoBin});
    }
}

/// Scaling by a power of two changes no bits of sums.
VOID SampleExposure::ExposeRow(const SampleRows& rSamples, UINT32 row, const RowSignals& rSignals, RowLight& rLight)
{
    using Lanes        = FLOAT __attribute__((vector_size(LaneCount * sizeof(FLOAT))));
    using IntegerLanes = INT32 __attribute__((vector_size(LaneCount * sizeof(INT32))));

    const Lanes  zero{};
    const Lanes  one      = zero + 1.0f;
    const Lanes  full     = zero + FullScale;
    const FLOAT* pSamples = rSamples.Row(row);
    const UINT32 count    = rSamples.Count();
    for (UINT32 column = 0; column < GridWidth; column += LaneCount)
    {
        BinsOfGroup&       rExposed = m_bins[m_group];
        const BinsOfGroup& rCounted = m_bins[1 - m_group];
        Lanes              factors;
        Lanes              added;
        Lanes              sums    = zero;
        Lanes              clipped = zero;
        std::memcpy(&factors, &rSignals.factors[column], sizeof(factors));
        std::memcpy(&added, &rSignals.added[column], sizeof(added));
        factors *= FullScale;
        added *= FullScale;
        for (UINT32 sample = 0; sample < count; ++sample)
        {
            Lanes light;
            std::memcpy(&light, pSamples + size_t{sample} * GridWidth + column, sizeof(light));
            const Lanes        signal  = light * factors + added;
            const IntegerLanes isBelow = signal < full;
            const Lanes        value   = isBelow ? signal : full;
            const IntegerLanes bins    = __builtin_convertvector(value, IntegerLanes);
            sums += value;
            clipped += isBelow ? zero : one;
            std::memcpy(&rExposed[sample], &bins, sizeof(bins));
            Count(rCounted[sample]);
        }
        sums /= FullScale;
        std::memcpy(&rLight.sums[column], &sums, sizeof(sums));
        std::memcpy(&rLight.clipped[column], &clipped, sizeof(clipped));
        m_group = 1 - m_group;
    }
}

inline VOID SampleExposure::Count(const BinsOfLanes& rBins)
{
    ++m_counts[0][rBins[0]];
    ++m_counts[1][rBins[1]];
    ++m_counts[2][rBins[2]];
    ++m_counts[3][rBins[3]];
    ++m_counts[4][rBins[4]];
    ++m_counts[5][rBins[5]];
    ++m_counts[6][rBins[6]];
    ++m_counts[7][rBins[7]];
}

VOID SampleExposure::StoreHistogram(UINT32 weight, INT* pBins)
{
    for (const BinsOfLanes& rBins : m_bins[1 - m_group])
    {
        Count(rBins);
    }
    Counts sums{};
    for (const Counts& rCounts : m_counts)
    {
        for (UINT32 bin = 0; bin < sums.size(); ++bin)
        {
            sums[bin] += rCounts[bin];
        }
    }
    sums[HistogramBins - 1] += sums[HistogramBins];
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        pBins[bin] = sums[bin] * static_cast<INT>(weight);
    }
}

}  // namespace kirosim
