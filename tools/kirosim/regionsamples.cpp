#include "tools/kirosim/regionsamples.h"

#include <cstring>

#include "platform/tavoprocessors.h"

namespace kirosim
{

namespace
{

constexpr FLOAT FullScale = HistogramBins;      ///< of signals here, so that their whole part is their bin
constexpr INT32 NoBin     = HistogramBins + 1;  ///< counts what is not to be counted

}  // namespace

SampleExposure::SampleExposure() : m_counts{}, m_next(0)
{
    for (BinsOfGroup& rGroup : m_bins)
    {
        rGroup.fill({NoBin, NoBin, NoBin, NoBin, NoBin, NoBin, NoBin, NoBin});
    }
}

/// Scaling by a power of two changes no bits of sums.
TAVO_FOR_EACH_PROCESSOR
VOID SampleExposure::ExposeGroup(const RegionSamples& rSamples, UINT32 group, const GroupSignals& rSignals,
                                 GroupLight& rLight)
{
    const Lanes        zero{};
    const Lanes        one      = zero + 1.0f;
    const Lanes        full     = zero + FullScale;
    const FLOAT*       pSamples = rSamples.Group(group);
    const UINT32       count    = rSamples.Count();
    BinsOfGroup&       rExposed = m_bins[m_next];
    const BinsOfGroup& rCounted = m_bins[1 - m_next];
    const Lanes        factors  = rSignals.factors * FullScale;
    const Lanes        added    = rSignals.added * FullScale;
    Lanes              sums     = zero;
    Lanes              clipped  = zero;
    for (UINT32 sample = 0; sample < count; ++sample)
    {
        Lanes light;
        Load(pSamples + size_t{sample} * GroupWidth, light);
        const Lanes        signal  = light * factors + added;
        const IntegerLanes isBelow = signal < full;
        const Lanes        value   = isBelow ? signal : full;
        const IntegerLanes bins    = __builtin_convertvector(value, IntegerLanes);
        sums += value;
        clipped += isBelow ? zero : one;
        std::memcpy(&rExposed[sample], &bins, sizeof(bins));
        Count(rCounted[sample]);
    }
    rLight = {sums / FullScale, clipped};
    m_next = 1 - m_next;
}

inline VOID SampleExposure::Count(const BinsOfSample& rBins)
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
    for (const BinsOfSample& rBins : m_bins[1 - m_next])
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
