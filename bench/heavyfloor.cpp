#include "bench/heavyfloor.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <stdexcept>
#include <string_view>

#include "bench/heavytuning.h"
#include "platform/tavoprocessors.h"

namespace
{

constexpr FLOAT ClampShare = 0.98f;  ///< of full scale

const KIROCntStatsOut& FindChannel(const KIROStatsList& rStats, std::string_view name)
{
    for (UINT32 index = 0; index < rStats.count; ++index)
    {
        if (rStats.pList[index].channelData.pChannelName == name)
        {
            return rStats.pList[index];
        }
    }
    throw std::runtime_error("the statistics lack a channel of the heavy tuning");
}

FLOAT LumaWeight(FLOAT luma)
{
    using namespace heavytuning;
    if (luma <= LumaFull)
    {
        return 1.0f;
    }
    return (luma < LumaNone) ? 1.0f - (luma - LumaFull) / (LumaNone - LumaFull) : 0.0f;
}

FLOAT EdgeWeight(FLOAT distance, FLOAT half)
{
    return (distance > half) ? std::max(1.0f - (distance - half) / heavytuning::ColorFallOff, 0.0f) : 1.0f;
}

}  // namespace

HeavyFloor::HeavyFloor(const KIROStatsList& rStats)
    : m_rSafeLuma(FindChannel(rStats, "SafeLuma")), m_rShortLuma(FindChannel(rStats, "ShortLuma")),
      m_rSafeRG(FindChannel(rStats, "SafeRG")), m_rSafeBG(FindChannel(rStats, "SafeBG")),
      m_rSafeHist(FindChannel(rStats, "SafeHist")), m_rShortHist(FindChannel(rStats, "ShortHist")),
      m_clamp(ClampShare * static_cast<FLOAT>((1 << m_rSafeLuma.resolution.bitDepth) - 1))
{
    const UINT32 width  = m_rSafeLuma.resolution.width;
    const UINT32 height = m_rSafeLuma.resolution.height;
    for (UINT32 region = 0; region < width * height; ++region)
    {
        m_weights.push_back(1.0f + static_cast<FLOAT>(region % width) / static_cast<FLOAT>(width));
    }
    const auto   part = [](FLOAT share, UINT32 size) { return static_cast<UINT32>(share * static_cast<FLOAT>(size)); };
    const UINT32 top  = part(heavytuning::ROIStart, height);
    const UINT32 left = part(heavytuning::ROIStart, width);
    const UINT32 rows = part(heavytuning::ROISize, height);
    const UINT32 columns = part(heavytuning::ROISize, width);
    for (UINT32 row = top; row < top + rows; ++row)
    {
        for (UINT32 column = left; column < left + columns; ++column)
        {
            m_roiRegions.push_back(row * width + column);
        }
    }
}

TAVO_FOR_EACH_PROCESSOR
VOID HeavyFloor::Run() const
{
    // Every chain is walked: the compiler must not see that calculators of one kind yield one result.
    const auto take = [](FLOAT result)
    {
        benchmark::DoNotOptimize(result);
        benchmark::ClobberMemory();
    };
    take(RunExtremeColors());
    for (UINT32 calculator = 0; calculator < heavytuning::WholeGridCount; ++calculator)
    {
        take(RunWholeGrid(m_rSafeLuma.channelData.Data.pFData));
    }
    for (UINT32 calculator = 0; calculator < heavytuning::ROIGridCount; ++calculator)
    {
        take(RunGrid(m_rShortLuma.channelData.Data.pFData, m_roiRegions));
    }
    for (UINT32 calculator = 0; calculator < heavytuning::HistCount; ++calculator)
    {
        take(RunHistogram((calculator < heavytuning::HistPercentileCount) ? m_rShortHist : m_rSafeHist));
    }
}

FLOAT HeavyFloor::RunWholeGrid(const FLOAT* pValues) const
{
    const FLOAT* pWeights = m_weights.data();
    const size_t count    = m_weights.size();
    FLOAT        total    = 0.0f;
    FLOAT        sum      = 0.0f;
    for (size_t region = 0; region < count; ++region)
    {
        total += pWeights[region];
        sum = std::fma(pWeights[region], std::min(pValues[region], m_clamp), sum);
    }
    return sum / total;
}

FLOAT HeavyFloor::RunGrid(const FLOAT* pValues, const std::vector<UINT32>& rRegions) const
{
    FLOAT total = 0.0f;
    FLOAT sum   = 0.0f;
    for (const UINT32 region : rRegions)
    {
        total += m_weights[region];
        sum = std::fma(m_weights[region], std::min(pValues[region], m_clamp), sum);
    }
    return sum / total;
}

FLOAT HeavyFloor::RunHistogram(const KIROCntStatsOut& rChannel) const
{
    FLOAT total = 0.0f;
    FLOAT sum   = 0.0f;
    for (UINT32 bin = 0; bin < rChannel.resolution.binCount; ++bin)
    {
        const FLOAT weight = static_cast<FLOAT>(static_cast<UINT32>(rChannel.channelData.Data.pIData[bin]));
        total += weight;
        sum = std::fma(weight, std::min(rChannel.channelData.pValLUT[bin], m_clamp), sum);
    }
    return sum / total;
}

FLOAT HeavyFloor::RunExtremeColors() const
{
    std::array<ColorBox, heavytuning::ExtremeColorCount> boxes;
    std::transform(std::begin(heavytuning::ColorBoxes), std::end(heavytuning::ColorBoxes), boxes.begin(),
                   [](const FLOAT(&rBox)[4])
                   {
                       const FLOAT rgHalf = rBox[2] / 2.0f;
                       const FLOAT bgHalf = rBox[3] / 2.0f;
                       return ColorBox{rBox[0] + rgHalf, rBox[1] + bgHalf, rgHalf, bgHalf, 0.0f};
                   });
    const FLOAT* pLuma = m_rSafeLuma.channelData.Data.pFData;
    const FLOAT* pRG   = m_rSafeRG.channelData.Data.pFData;
    const FLOAT* pBG   = m_rSafeBG.channelData.Data.pFData;
    for (size_t region = 0; region < m_weights.size(); ++region)
    {
        const FLOAT luma = std::min(pLuma[region], m_clamp);
        for (ColorBox& rBox : boxes)
        {
            const FLOAT weight = std::min(EdgeWeight(std::abs(pRG[region] - rBox.rgCentre), rBox.rgHalf),
                                          EdgeWeight(std::abs(pBG[region] - rBox.bgCentre), rBox.bgHalf));
            rBox.weightedCount = std::fma(weight, LumaWeight(luma), rBox.weightedCount);
        }
    }
    return boxes[0].weightedCount + boxes[1].weightedCount;
}
