// From samples to knees: where enough samples of a knee's neighbourhood agree, their mean becomes the knee's colour.

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/extension/cficmanager.h"
#include "core/extension/flashtable.h"

using kiroflash::LEDMixType;

namespace
{

/// Adjacent parts of the span that must hold the agreeing samples.
constexpr INT32 WindowSize = 3;

VOID AddPoint(KIROFICKneeInfo& rKnee, FLOAT rg, FLOAT bg)
{
    if (rKnee.count >= KIROFICKneeSampleCountMax)
    {
        STATS_LOG_WARNING("AECCoreInline: knee has more than %d samples, sample is ignored", KIROFICKneeSampleCountMax);
        return;
    }
    KIROFICKneeMinMaxInfo& rSpan = rKnee.minmax;
    if (rKnee.count == 0)
    {
        rSpan = {rg, rg, bg, bg};
    }
    rSpan.minRG              = std::min(rSpan.minRG, rg);
    rSpan.maxRG              = std::max(rSpan.maxRG, rg);
    rSpan.minBG              = std::min(rSpan.minBG, bg);
    rSpan.maxBG              = std::max(rSpan.maxBG, bg);
    rKnee.ratio[rKnee.count] = {rg, bg};
    ++rKnee.count;
}

/// Moves both knees of the sample's zone by what the sample differs from the tuned colour there.
/// @param pKnee the first of the two knees
VOID AddSample(const KIROFICRawData& rSample, const LEDMixType& rStart, const LEDMixType& rEnd, KIROFICKneeInfo* pKnee)
{
    const FLOAT weight = flashtable::Difference(rSample.led1Setting, rStart.LED1Setting) /
                         flashtable::Difference(rEnd.LED1Setting, rStart.LED1Setting);
    const FLOAT shiftRG = rSample.rgRatio - flashtable::Between(rStart.RGRatio, rEnd.RGRatio, weight);
    const FLOAT shiftBG = rSample.bgRatio - flashtable::Between(rStart.BGRatio, rEnd.BGRatio, weight);
    AddPoint(pKnee[0], rStart.RGRatio + shiftRG, rStart.BGRatio + shiftBG);
    AddPoint(pKnee[1], rEnd.RGRatio + shiftRG, rEnd.BGRatio + shiftBG);
}

/// One colour of a knee's samples, split by value into equal parts of their span.
class Regions
{
public:
    Regions(const KIROFICKneeInfo& rKnee, FLOAT KIROFICKneeRGBGData::*pRatio, FLOAT min, FLOAT max, INT32 regions)
    {
        const FLOAT step = (max - min) / static_cast<FLOAT>(regions);
        for (UINT32 i = 0; i < rKnee.count; ++i)
        {
            const FLOAT value  = rKnee.ratio[i].*pRatio;
            INT32       region = regions - 1;
            while (region >= 0 && !(value >= min + static_cast<FLOAT>(region) * step))
            {
                --region;
            }
            if (region >= 0)
            {
                ++m_count[region];
                m_sum[region] += value;
            }
        }
    }

    UINT32 WindowCount(INT32 first) const
    {
        return m_count[first] + m_count[first + 1] + m_count[first + 2];
    }

    FLOAT WindowMean(INT32 first) const
    {
        return (m_sum[first] + m_sum[first + 1] + m_sum[first + 2]) / static_cast<FLOAT>(WindowCount(first));
    }

private:
    UINT32 m_count[KIROFICFactoringRegionsMax]{};
    FLOAT  m_sum[KIROFICFactoringRegionsMax]{};
};

}  // namespace

VOID CFICManager::FactorFICData()
{
    CollectKneePoints();
    for (UINT32 knee = 0; knee < m_ficInfo.numOfKnees; ++knee)
    {
        FactorKnee(m_kneeInfoLow[knee], true, m_ficInfo.kneeData[knee]);
        FactorKnee(m_kneeInfoHigh[knee], false, m_ficInfo.kneeData[knee]);
    }
}

VOID CFICManager::CollectKneePoints()
{
    std::fill(std::begin(m_kneeInfoLow), std::end(m_kneeInfoLow), KIROFICKneeInfo{});
    std::fill(std::begin(m_kneeInfoHigh), std::end(m_kneeInfoHigh), KIROFICKneeInfo{});
    const auto& rTable  = tuningaccess::Require_kiroflash(*m_rContext.GetTuningData()).LEDMatching;
    const auto  lowRow  = flashtable::RowOf(rTable, 0, m_ficInfo.numOfKnees);
    const auto  highRow = flashtable::RowOf(rTable, INT64{rTable.countPower} - 1, m_ficInfo.numOfKnees);
    if (lowRow.empty())
    {
        return;
    }
    const INT64 lowPower = static_cast<INT64>(lowRow[0].LED1Setting) + lowRow[0].LED2Setting;
    for (UINT32 i = 0; i < m_ficInfo.rawDataCount; ++i)
    {
        const KIROFICRawData& rSample = m_ficInfo.rawData[i];
        const bool            isLow   = rSample.led1Setting + rSample.led2Setting == lowPower;
        const auto&           rRow    = isLow ? lowRow : highRow;
        const UINT32          zone    = rSample.zoneIdx;
        // A blob may come from another table.
        if (zone + 1 < rRow.size() && rRow[zone].LED1Setting != rRow[zone + 1].LED1Setting)
        {
            AddSample(rSample, rRow[zone], rRow[zone + 1], (isLow ? m_kneeInfoLow : m_kneeInfoHigh) + zone);
        }
    }
}

/// Learns the colour of a knee if both colours of enough samples lie close together.
VOID CFICManager::FactorKnee(const KIROFICKneeInfo& rKneeInfo, bool isLow, KIROFICKneeData& rKnee) const
{
    if (rKneeInfo.count == 0 || rKneeInfo.count < m_minKneeCnt || m_numOfFactoringRegions < WindowSize)
    {
        return;
    }
    const KIROFICKneeMinMaxInfo& rSpan = rKneeInfo.minmax;
    const Regions rgRegions(rKneeInfo, &KIROFICKneeRGBGData::rg, rSpan.minRG, rSpan.maxRG, m_numOfFactoringRegions);
    const Regions bgRegions(rKneeInfo, &KIROFICKneeRGBGData::bg, rSpan.minBG, rSpan.maxBG, m_numOfFactoringRegions);
    const FLOAT   count = rKneeInfo.count;

    // A colour stays confident once it was, so the window that is taken need not be the one that made it so.
    bool  isRGConf = false;
    bool  isBGConf = false;
    INT32 window   = 0;
    for (; window <= m_numOfFactoringRegions - WindowSize; ++window)
    {
        isRGConf = isRGConf || static_cast<FLOAT>(rgRegions.WindowCount(window)) / count >= m_confidenceThPCT;
        isBGConf = isBGConf || static_cast<FLOAT>(bgRegions.WindowCount(window)) / count >= m_confidenceThPCT;
        if (isRGConf && isBGConf)
        {
            break;
        }
    }
    if (!isRGConf || !isBGConf)
    {
        return;
    }
    if (rgRegions.WindowCount(window) == 0 || bgRegions.WindowCount(window) == 0)
    {
        STATS_LOG_ERROR("AECCoreInline: agreeing RG and BG samples lie too far apart, knee stays");
        return;
    }
    const FLOAT rgRatio                            = rgRegions.WindowMean(window);
    const FLOAT bgRatio                            = bgRegions.WindowMean(window);
    (isLow ? rKnee.rgRatioLow : rKnee.rgRatioHigh) = rgRatio;
    (isLow ? rKnee.bgRatioLow : rKnee.bgRatioHigh) = bgRatio;
    (isLow ? rKnee.confLEDLow : rKnee.confLEDHigh) = FICConfHigh;
    STATS_LOG_TRACE("AECCoreInline: %s RG %f, BG %f, ConfHigh", isLow ? "low" : "high", rgRatio, bgRatio);
}
