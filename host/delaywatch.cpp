#include "host/delaywatch.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Longest time between two pictures that are compared, frames: the light changes meanwhile.
constexpr UINT64 GapMax = 3;

// Regions that show the light as it is, shares of full scale: neither in the noise nor with clipped samples.
constexpr FLOAT LumaMin = 0.01f;
constexpr FLOAT LumaMax = 0.9f;

/// Least number of such regions.
constexpr size_t RegionsMin = 16;

/// Two delays are told apart by frames for which their predictions differ by as much, EV.
constexpr DOUBLE DifferenceMin = 0.02;

/// A difference weighs up to this, EV: larger ones are no surer.
constexpr DOUBLE WeightMax = 0.06;

/// Sum of the misses from which on a delay is given up: more than one frame that it misses altogether.
constexpr DOUBLE Evidence = 1.25 * WeightMax * WeightMax;

/// A delay that is believed may have missed by this share of what the others have.
constexpr DOUBLE ShareMax = 0.2;

/// What is left of a frame's weight when another one with a change has come.
constexpr DOUBLE Memory = 0.98;

/// How far off a prediction is, measured by how much the other one differs: where samples are clipped, the picture
/// changes by less than the exposure. What is off by more is light that has changed by itself, and counts no more.
DOUBLE MissOf(DOUBLE off, DOUBLE difference)
{
    const DOUBLE share = std::min(std::abs(off / difference), 1.0);
    const DOUBLE miss  = share * std::min(std::abs(difference), WeightMax);
    return miss * miss;
}

/// Without tuning an exposure may be 0.
DOUBLE EVOf(DOUBLE exposure)
{
    return std::log2(std::max(exposure, 1.0));
}

/// Of a grid of 16 bits at most.
FLOAT FullScaleOf(const KIROCntStatsOut& rGrid)
{
    return static_cast<FLOAT>((1 << std::clamp(rGrid.resolution.bitDepth, 1, 16)) - 1);
}

size_t RegionsOf(const KIROCntStatsOut& rGrid)
{
    return static_cast<size_t>(rGrid.resolution.width) * rGrid.resolution.height;
}

}  // namespace

VOID DelayWatch::Restart(DOUBLE exposure)
{
    m_exposures.fill(EVOf(exposure));
    PassOver();
}

VOID DelayWatch::PassOver()
{
    m_frameBefore = 0;
}

VOID DelayWatch::AddExposure(UINT64 frameID, DOUBLE exposure)
{
    m_exposures[frameID % m_exposures.size()] = EVOf(exposure);
}

VOID DelayWatch::AddStatistics(UINT64 frameID, const KIROCntStatsOut& rLuma)
{
    ByDelay<DOUBLE> predicted{};
    if (m_frameBefore != 0 && frameID - m_frameBefore <= GapMax && Predict(frameID, predicted))
    {
        if (const std::optional<DOUBLE> change = ChangeOf(rLuma); change.has_value())
        {
            Compare(*change, predicted);
        }
    }
    m_lumaBefore.assign(rLuma.channelData.Data.pFData, rLuma.channelData.Data.pFData + RegionsOf(rLuma));
    m_ratios.reserve(m_lumaBefore.size());
    m_frameBefore = frameID;
}

/// By how much the picture has changed since the one before, by delay, EV. @return whether delays differ in it
bool DelayWatch::Predict(UINT64 frameID, ByDelay<DOUBLE>& rPredicted) const
{
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        rPredicted[delay] = WrittenEV(frameID + 1 - delay) - WrittenEV(m_frameBefore + 1 - delay);
    }
    const auto [least, most] = std::minmax_element(rPredicted.begin() + 1, rPredicted.end());
    return *most - *least >= DifferenceMin;
}

/// Of one of the last frames; the ring goes round, and so do frames of before the first one.
DOUBLE DelayWatch::WrittenEV(UINT64 frameID) const
{
    return m_exposures[frameID % m_exposures.size()];
}

/// How the picture has changed, EV: of the regions that show it, the one in the middle, since things move.
std::optional<DOUBLE> DelayWatch::ChangeOf(const KIROCntStatsOut& rLuma)
{
    const size_t regions = RegionsOf(rLuma);
    const FLOAT  scale   = FullScaleOf(rLuma);
    const auto   isShown = [&](FLOAT luma) { return luma >= LumaMin * scale && luma <= LumaMax * scale; };
    m_ratios.clear();
    for (size_t region = 0; regions == m_lumaBefore.size() && region < regions; ++region)
    {
        const FLOAT now = rLuma.channelData.Data.pFData[region];
        if (isShown(now) && isShown(m_lumaBefore[region]))
        {
            m_ratios.push_back(now / m_lumaBefore[region]);
        }
    }
    if (m_ratios.size() < RegionsMin)
    {
        return std::nullopt;
    }
    const auto middle = m_ratios.begin() + static_cast<ptrdiff_t>(m_ratios.size() / 2);
    std::nth_element(m_ratios.begin(), middle, m_ratios.end());
    return std::log2(static_cast<DOUBLE>(*middle));
}

VOID DelayWatch::Compare(DOUBLE change, const ByDelay<DOUBLE>& rPredicted)
{
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        for (UINT8 other = 1; other <= DelayMax; ++other)
        {
            DOUBLE&      rMisses    = m_misses[delay][other];
            const DOUBLE difference = rPredicted[delay] - rPredicted[other];
            if (std::abs(difference) >= DifferenceMin)
            {
                rMisses = Memory * rMisses + MissOf(change - rPredicted[delay], difference);
            }
        }
    }
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        if (IsBelieved(delay))
        {
            m_delay = delay;
        }
    }
}

bool DelayWatch::IsBelieved(UINT8 delay) const
{
    for (UINT8 other = 1; other <= DelayMax; ++other)
    {
        if (other != delay &&
            (m_misses[other][delay] < Evidence || m_misses[delay][other] > ShareMax * m_misses[other][delay]))
        {
            return false;
        }
    }
    return true;
}
