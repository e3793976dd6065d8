#include "host/delaywatch.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace
{

/// Longest time between two pictures that are compared, frames: the light changes meanwhile.
constexpr UINT64 GapMax = 3;

// Regions that show the light as it is, shares of full scale: neither in the noise nor with clipped samples.
constexpr FLOAT LumaMin = 0.01f;
constexpr FLOAT LumaMax = 0.6f;

/// Least number of such regions.
constexpr size_t RegionsMin = 16;

/// A step of the exposure is one change; more than one must have missed. Light that moves is in the changes, too: a
/// delay must come closer than in the bends.
constexpr DelayEvidence::Scale ChangeScale = {0.02, 0.06, 1.25, 0.1};

/// A step bends the change twice, there and back. No light that moves steadily is in the bends: smaller ones tell.
constexpr DelayEvidence::Scale BendScale = {0.01, 0.03, 2.5, 0.15};

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

DelayWatch::DelayWatch() : m_changes(ChangeScale), m_bends(BendScale)
{
}

VOID DelayWatch::Restart(DOUBLE exposure)
{
    m_exposures.fill(EVOf(exposure));
    PassOver();
}

VOID DelayWatch::PassOver()
{
    for (Picture& rPicture : m_pictures)
    {
        rPicture.frameID = 0;
    }
}

VOID DelayWatch::AddExposure(UINT64 frameID, DOUBLE exposure)
{
    m_exposures[frameID % m_exposures.size()] = EVOf(exposure);
}

VOID DelayWatch::AddStatistics(UINT64 frameID, const KIROCntStatsOut& rLuma)
{
    std::rotate(m_pictures.begin(), m_pictures.end() - 1, m_pictures.end());
    Picture& rNewest   = m_pictures.front();
    rNewest.frameID    = frameID;
    rNewest.isCompared = false;
    rNewest.fullScale  = FullScaleOf(rLuma);
    rNewest.luma.assign(rLuma.channelData.Data.pFData, rLuma.channelData.Data.pFData + RegionsOf(rLuma));
    m_ratios.reserve(rNewest.luma.size());
    const bool isChangeTold = IsBehind(0, GapMax) && CompareChange();
    const bool isBendTold   = IsBehind(0, 1) && IsBehind(1, 1) && CompareBend();
    if (isChangeTold || isBendTold)
    {
        FindDelay();
    }
}

/// Whether there is a picture before one of the last, at most as many frames ago.
bool DelayWatch::IsBehind(size_t picture, UINT64 gapMax) const
{
    const UINT64 before = m_pictures[picture + 1].frameID;
    return before != 0 && m_pictures[picture].frameID - before <= gapMax;
}

bool DelayWatch::CompareChange()
{
    const ByDelay predicted = PredictedChange(0);
    const bool    isTold    = m_changes.AreApart(predicted) && SeenChange(0).has_value();
    if (isTold)
    {
        m_changes.Add(*SeenChange(0), predicted);
    }
    return isTold;
}

bool DelayWatch::CompareBend()
{
    ByDelay       predicted = PredictedChange(0);
    const ByDelay before    = PredictedChange(1);
    std::transform(predicted.begin(), predicted.end(), before.begin(), predicted.begin(), std::minus<>());
    const bool isTold = m_bends.AreApart(predicted) && SeenChange(0).has_value() && SeenChange(1).has_value();
    if (isTold)
    {
        m_bends.Add(*SeenChange(0) - *SeenChange(1), predicted);
    }
    return isTold;
}

VOID DelayWatch::FindDelay()
{
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        if (m_changes.IsBelieved(delay) || m_bends.IsBelieved(delay))
        {
            m_delay = delay;
        }
    }
}

/// How a picture has to differ from the one before, EV.
DelayWatch::ByDelay DelayWatch::PredictedChange(size_t picture) const
{
    ByDelay predicted{};
    for (UINT8 delay = 1; delay <= DelayMax; ++delay)
    {
        predicted[delay] =
            WrittenEV(m_pictures[picture].frameID + 1 - delay) - WrittenEV(m_pictures[picture + 1].frameID + 1 - delay);
    }
    return predicted;
}

/// Of one of the last frames; the ring goes round, and so do frames of before the first one.
DOUBLE DelayWatch::WrittenEV(UINT64 frameID) const
{
    return m_exposures[frameID % m_exposures.size()];
}

/// How a picture differs from the one before, EV: of the regions that show it, the one in the middle, since things
/// move. Found when it is asked for, since a camera at rest need not know.
const std::optional<DOUBLE>& DelayWatch::SeenChange(size_t picture)
{
    Picture&       rNow    = m_pictures[picture];
    const Picture& rBefore = m_pictures[picture + 1];
    if (rNow.isCompared)
    {
        return rNow.change;
    }
    const FLOAT least   = LumaMin * rNow.fullScale;
    const FLOAT most    = LumaMax * rNow.fullScale;
    const auto  isShown = [least, most](FLOAT luma) { return luma >= least && luma <= most; };
    rNow.isCompared     = true;
    m_ratios.clear();
    for (size_t region = 0; rNow.luma.size() == rBefore.luma.size() && region < rNow.luma.size(); ++region)
    {
        if (isShown(rNow.luma[region]) && isShown(rBefore.luma[region]))
        {
            m_ratios.push_back(rNow.luma[region] / rBefore.luma[region]);
        }
    }
    rNow.change.reset();
    if (m_ratios.size() >= RegionsMin)
    {
        const auto middle = m_ratios.begin() + static_cast<ptrdiff_t>(m_ratios.size() / 2);
        std::nth_element(m_ratios.begin(), middle, m_ratios.end());
        rNow.change = std::log2(static_cast<DOUBLE>(*middle));
    }
    return rNow.change;
}
