#include "tools/kirosim/samplerows.h"

#include <cstring>

namespace kirosim
{

SampleExposure::SampleExposure() : m_counts{}, m_group(0)
{
    for (BinsOfGroup& rGroup : m_bins)
    {
        rGroup.fill({HistogramBins, HistogramBins, HistogramBins, HistogramBins, HistogramBins, HistogramBins,
                     HistogramBins, HistogramBins});
    }
}

VOID SampleExposure::ExposeRow(const SampleRows& rSamples, UINT32 row, const RowSignals& rSignals, RowLight& rLight)
{
    using Lanes        = FLOAT __attribute__((vector_size(LaneCount * sizeof(FLOAT))));
    using IntegerLanes = INT32 __attribute__((vector_size(LaneCount * sizeof(INT32))));

    const Lanes  zero{};
    const Lanes  full     = zero + 1.0f;
    const Lanes  last     = zero + static_cast<FLOAT>(HistogramBins - 1);
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
        for (UINT32 sample = 0; sample < count; ++sample)
        {
            Lanes light;
            std::memcpy(&light, pSamples + size_t{sample} * GridWidth + column, sizeof(light));
            const Lanes signal = light * factors + added;
            const Lanes value  = (signal < full) ? signal : full;
            const Lanes scaled = value * static_cast<FLOAT>(HistogramBins);
            const Lanes bin    = (scaled < last) ? scaled : last;
            sums += value;
            clipped += (signal < full) ? zero : full;
            const IntegerLanes bins = __builtin_convertvector(bin, IntegerLanes);
            std::memcpy(&rExposed[sample], &bins, sizeof(bins));
            Count(rCounted[sample]);
        }
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
    ++m_counts[0][rBins[4]];
    ++m_counts[1][rBins[5]];
    ++m_counts[2][rBins[6]];
    ++m_counts[3][rBins[7]];
}

VOID SampleExposure::StoreHistogram(UINT32 weight, INT* pBins)
{
    for (const BinsOfLanes& rBins : m_bins[1 - m_group])
    {
        Count(rBins);
    }
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        const INT count = m_counts[0][bin] + m_counts[1][bin] + m_counts[2][bin] + m_counts[3][bin];
        pBins[bin]      = count * static_cast<INT>(weight);
    }
}

}  // namespace kirosim
