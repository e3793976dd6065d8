// The point to which the flash has moved the colour of the reference cells, and the colour of the LEDs that follows
// from it.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/cficmanager.h"
#include "core/extension/flashtable.h"

using exposurearithmetic::Epsilon;

namespace
{

/// A colour, or a way between two colours.
struct Point
{
    FLOAT rg;
    FLOAT bg;
};

Point operator+(Point first, Point second)
{
    return {first.rg + second.rg, first.bg + second.bg};
}

Point operator-(Point first, Point second)
{
    return {first.rg - second.rg, first.bg - second.bg};
}

Point operator*(FLOAT factor, Point point)
{
    return {factor * point.rg, factor * point.bg};
}

FLOAT Length(Point way)
{
    return std::sqrt(way.rg * way.rg + way.bg * way.bg);
}

/// False for a NaN as well: such a measurement is no sample.
bool IsWithin(FLOAT value, FLOAT low, FLOAT high)
{
    return value >= low && value <= high;
}

bool HasPoint(const KIROFICCalTuningPoints& rPoints, INT32 led1, INT32 led2)
{
    const KIROFICMixedPower* pEnd = rPoints.point + rPoints.numPoints;
    return std::any_of(rPoints.point, pEnd,
                       [=](const KIROFICMixedPower& rPoint) { return rPoint.LED1 == led1 && rPoint.LED2 == led2; });
}

/// LED 1 of the tuning point that a zone names; an index beyond the points stands for the nearest one.
INT32 LED1Of(const KIROFICCalTuningPoints& rPoints, FLOAT index)
{
    const INT32 last = std::max(rPoints.numPoints - 1, 0);
    return rPoints.point[std::clamp(exposurearithmetic::SaturateToINT32(index), 0, last)].LED1;
}

VOID LogSkip(const CHAR* pReason)
{
    STATS_LOG_TRACE("AECCoreInline: skip inline processing - %s", pReason);
}

}  // namespace

VOID CFICManager::GetFlashInfluencedInfo(KIROFICState calState)
{
    const bool                 isPreflash = calState == FICStatePreFlash;
    const KIROAlgoFlashOutput& rEstimate  = isPreflash ? m_flashLowEst : m_flashHighEst;
    const auto&                rPoints    = isPreflash ? m_LEDTuneCalInfoLow : m_LEDTuneCalInfoHigh;
    KIROFICFlashRegionsInfo&   rFlash     = isPreflash ? m_preflashInfo : m_fullflashInfo;
    rFlash.isValid                        = MeasureInfluence(rEstimate, rPoints, rFlash);
}

/// @return whether the frame gave a sample; the reason is logged if not
BOOL CFICManager::MeasureInfluence(const KIROAlgoFlashOutput& rEstimate, const KIROFICCalTuningPointsInfo& rPoints,
                                   KIROFICFlashRegionsInfo& rFlash)
{
    if (HasPoint(rPoints.calInfo, rEstimate.LED1Setting, rEstimate.LED2Setting))
    {
        LogSkip("same as calibration position");
        return FALSE;
    }
    if (!GetReferenceStats())
    {
        LogSkip("invalid stats");
        return FALSE;
    }
    Point sum{0.0f, 0.0f};
    for (UINT32 i = 0; i < m_refRegInfo.numRegions; ++i)
    {
        const UINT32 cell = m_refRegInfo.regionIdx[i];
        sum               = sum + Point{m_rgbg.rg[cell], m_rgbg.bg[cell]};
    }
    const FLOAT regions = std::max(static_cast<FLOAT>(m_refRegInfo.numRegions), Epsilon);
    rFlash.rgSum += sum.rg / regions;
    rFlash.bgSum += sum.bg / regions;
    ++rFlash.flashCnt;
    return SetTarget(rEstimate, rPoints.tuningInfo, rFlash);
}

/// @return false without the two channels, or when their grid is not the one in which the reference cells were found
bool CFICManager::GetReferenceStats()
{
    return GetRgBgStats() == 0 && m_rgbg.width == m_refRegInfo.width && m_rgbg.height == m_refRegInfo.height;
}

/// The colour of the LEDs. The measured point lies on the way from neutral to that colour, at a share of it that
/// depends on how far the flash outshines the scene; so only the direction is measured, and the distance is taken from
/// the estimate.
BOOL CFICManager::SetTarget(const KIROAlgoFlashOutput& rEstimate, const KIROFICCalTuningPoints& rPoints,
                            KIROFICFlashRegionsInfo& rFlash) const
{
    const Point reference         = {m_refRegInfo.refRG, m_refRegInfo.refBG};
    const Point estimate          = {rEstimate.RGRatio, rEstimate.BGRatio};
    const FLOAT count             = static_cast<FLOAT>(rFlash.flashCnt);
    const Point influenced        = {rFlash.rgSum / count, rFlash.bgSum / count};
    const Point wayToEstimate     = estimate - reference;
    const FLOAT estimateDistance  = std::max(Length(wayToEstimate), Epsilon);
    const FLOAT influenceDistance = Length(influenced - reference);
    const FLOAT distanceRatio     = influenceDistance / estimateDistance;
    if (!IsWithin(distanceRatio, m_distMin, m_distMax))
    {
        LogSkip("out of distance range");
        return FALSE;
    }
    const FLOAT divisor   = std::max(distanceRatio, Epsilon);
    const Point fullPower = {(influenced.rg - reference.rg) / divisor + reference.rg,
                             (influenced.bg - reference.bg) / divisor + reference.bg};
    if (!IsWithin(fullPower.rg, estimate.rg - m_shiftMax, estimate.rg + m_shiftMax) ||
        !IsWithin(fullPower.bg, estimate.bg - m_shiftMax, estimate.bg + m_shiftMax))
    {
        LogSkip("out of RG, BG range");
        return FALSE;
    }
    const KIROFICTargetZoneDataType shares = TargetZoneData(rPoints, rEstimate.LED1Setting);

    // How far the sample goes along the way to the estimate, and how far off it.
    const Point pulled       = influenced + shares.distancePCT * (fullPower - influenced);
    const FLOAT share        = Length(pulled - reference) / estimateDistance;
    const Point line         = reference + share * wayToEstimate;
    const Point shifted      = line + shares.targetShiftPCT * (pulled - line);
    const FLOAT lineDistance = Length(line - reference);
    const Point wayToTarget  = shifted - reference;
    const Point target       = reference + (lineDistance / std::max(Length(wayToTarget), Epsilon)) * wayToTarget;

    rFlash.targetRG = target.rg;
    rFlash.targetBG = target.bg;
    rFlash.LED1     = rEstimate.LED1Setting;
    rFlash.LED2     = rEstimate.LED2Setting;
    STATS_LOG_TRACE("AECCoreInline: LED1 %d, LED2 %d, RG %f, BG %f", rFlash.LED1, rFlash.LED2, rFlash.targetRG,
                    rFlash.targetBG);
    return TRUE;
}

/// The shares of the zone in which LED 1 lies, or between two zones by the distance to them. The mixes of a row descend
/// in LED 1.
KIROFICTargetZoneDataType CFICManager::TargetZoneData(const KIROFICCalTuningPoints& rPoints, INT32 led1) const
{
    const UINT32 zones = m_tarZoneTrigger.numZones;
    for (UINT32 i = 0; i < zones; ++i)
    {
        const KIROFICTargetZoneType& rZone = m_tarZoneTrigger.targetZone[i];
        const INT32                  end   = LED1Of(rPoints, rZone.zoneTrigger.end);
        if (i + 1 == zones || end <= led1)
        {
            return rZone.zoneData;
        }
        const KIROFICTargetZoneType& rNext = m_tarZoneTrigger.targetZone[i + 1];
        const INT32                  start = LED1Of(rPoints, rNext.zoneTrigger.start);
        if (start < led1)
        {
            const FLOAT ratio = flashtable::Difference(end, led1) / flashtable::Difference(end, start);
            return {flashtable::Between(rZone.zoneData.distancePCT, rNext.zoneData.distancePCT, ratio),
                    flashtable::Between(rZone.zoneData.targetShiftPCT, rNext.zoneData.targetShiftPCT, ratio)};
        }
    }
    return {1.0f, 1.0f};
}
