// The mix of a row whose colour is the wanted one. Colours lie in a plane: red over green (RG) across, blue over green
// (BG) upwards. The mixes of a row are a polyline in it.

#include <cmath>

#include "core/base/kirolog.h"
#include "core/extension/cflashcurrentestimator.h"
#include "core/extension/flashtable.h"

using exposurearithmetic::Epsilon;
using kiroflash::LEDMixType;

namespace
{

constexpr FLOAT SlopeMin       = 1e-7f;
constexpr FLOAT InverseSlope   = 1e7f;   ///< of SlopeMin
constexpr FLOAT UndefinedSlope = -1.0f;  ///< of mixes without extent in RG

bool IsSame(FLOAT first, FLOAT second)
{
    return std::abs(first - second) < Epsilon;
}

/// A segment of the polyline and the point of it that was chosen; start and end are the same for a mix itself.
struct Segment
{
    INT32 start;
    INT32 end;
};

/// RG of the point of the line through two mixes that is nearest to a colour.
/// @param rSlope receives the slope of the line
FLOAT ProjectOnLine(const LEDMixType& rFirst, const LEDMixType& rSecond, FLOAT rg, FLOAT bg, FLOAT& rSlope)
{
    rSlope = (rFirst.BGRatio - rSecond.BGRatio) / (rFirst.RGRatio - rSecond.RGRatio);
    FLOAT perpendicular;
    FLOAT divisor;
    if (std::abs(rSlope) < SlopeMin)
    {
        STATS_LOG_WARNING("slope close to zero %f", rSlope);
        const bool isPositive = rSlope > 0.0f;
        rSlope                = isPositive ? SlopeMin : -SlopeMin;
        perpendicular         = isPositive ? -InverseSlope : InverseSlope;
        divisor               = isPositive ? InverseSlope : -InverseSlope;
    }
    else
    {
        perpendicular = -1.0f / rSlope;
        divisor       = rSlope + 1.0f / rSlope;
    }
    return ((bg - perpendicular * rg) - (rFirst.BGRatio - rFirst.RGRatio * rSlope)) / divisor;
}

/// Whether the point with this RG belongs to the segment from mix to mix + 1, or lies beyond an end of the polyline
/// there.
bool SelectSegment(const LEDMixType* pMixes, INT32 mix, INT32 mixSize, FLOAT ledRgRatio, Segment& rSegment)
{
    const FLOAT start       = pMixes[mix].RGRatio;
    const FLOAT end         = pMixes[mix + 1].RGRatio;
    const bool  isRising    = start <= end;
    const bool  isBeforeIt  = isRising ? (ledRgRatio < start) : (ledRgRatio > start);
    const bool  isAfterIt   = isRising ? (ledRgRatio > end) : (ledRgRatio < end);
    const INT32 lastSegment = mixSize - 2;
    if (isBeforeIt && mix == 0)
    {
        rSegment = {0, 0};
        return true;
    }
    if (isAfterIt && mix == lastSegment)
    {
        rSegment = {mixSize - 1, mixSize - 1};
        return true;
    }
    rSegment = {mix, mix + 1};
    return !isBeforeIt && !isAfterIt && !std::isnan(ledRgRatio);
}

/// Share of the way from start to end in RG.
FLOAT InterpRatio(const LEDMixType& rStart, const LEDMixType& rEnd, FLOAT ledRgRatio)
{
    return (rStart.RGRatio - ledRgRatio) / (rStart.RGRatio - rEnd.RGRatio);
}

VOID SetCurrents(const LEDMixType* pMixes, Segment segment, FLOAT interpRatio, KIROAlgoFlashOutput& rOut)
{
    rOut.LED1Setting =
        flashtable::CurrentBetween(pMixes[segment.start].LED1Setting, pMixes[segment.end].LED1Setting, interpRatio);
    rOut.LED2Setting =
        flashtable::Saturated(static_cast<INT64>(pMixes[0].LED1Setting) + pMixes[0].LED2Setting - rOut.LED1Setting);
}

/// Share of the way from start to end in whole milliamperes, which is what the LEDs will do.
FLOAT CurrentRatio(const LEDMixType& rStart, const LEDMixType& rEnd, INT32 led1Setting)
{
    return flashtable::Difference(rStart.LED1Setting, led1Setting) /
           flashtable::Difference(rStart.LED1Setting, rEnd.LED1Setting);
}

VOID SetColour(const LEDMixType* pMixes, Segment segment, FLOAT ratio, FlashCurrentEstimate& rOut)
{
    const LEDMixType& rStart    = pMixes[segment.start];
    const LEDMixType& rEnd      = pMixes[segment.end];
    rOut.LEDCombination.RGRatio = flashtable::Between(rStart.RGRatio, rEnd.RGRatio, ratio);
    rOut.LEDCombination.BGRatio = flashtable::Between(rStart.BGRatio, rEnd.BGRatio, ratio);
    rOut.LEDCombination.flux    = flashtable::Between(rStart.flux, rEnd.flux, ratio);
    rOut.mixIdx1                = segment.start;
    rOut.mixIdx2                = segment.end;
}

VOID TakeMix(const LEDMixType* pMixes, INT32 mix, FlashCurrentEstimate& rOut)
{
    rOut.LEDCombination.LED1Setting = pMixes[mix].LED1Setting;
    rOut.LEDCombination.LED2Setting = pMixes[mix].LED2Setting;
    SetColour(pMixes, {mix, mix}, 0.0f, rOut);
}

/// How much of the first and of the last mix is in the result.
VOID SetEntryRatios(const LEDMixType* pMixes, INT32 mixSize, KIROAlgoFlashOutput& rOut)
{
    const INT32 first = pMixes[0].LED1Setting;
    const INT32 last  = pMixes[mixSize - 1].LED1Setting;
    if (first == last)
    {
        STATS_LOG_ERROR("issue with tuning: same LED setting %d for first mix 0 and last mix %d", first, mixSize - 1);
        rOut.firstEntryRatio = 0.0f;
    }
    else
    {
        rOut.firstEntryRatio = flashtable::Difference(rOut.LED1Setting, last) / flashtable::Difference(first, last);
    }
    rOut.lastEntryRatio = 1.0f - rOut.firstEntryRatio;
}

/// Slope of the straight line from the first to the last mix.
FLOAT OverallSlope(const LEDMixType& rFirst, const LEDMixType& rLast, INT32 mixSize)
{
    if (mixSize < 2 || IsSame(rFirst.RGRatio, rLast.RGRatio))
    {
        STATS_LOG_ERROR(
            "issue with tuning: either mix size == 1 %d or rg ratio same for first %.2f and last %.2f mixes", mixSize,
            rFirst.RGRatio, rLast.RGRatio);
        return UndefinedSlope;
    }
    const FLOAT slope = (rFirst.BGRatio - rLast.BGRatio) / (rFirst.RGRatio - rLast.RGRatio);
    if (std::abs(slope) < SlopeMin)
    {
        STATS_LOG_WARNING("slope close to zero %f", slope);
        return (slope > 0.0f) ? SlopeMin : -SlopeMin;
    }
    return slope;
}

/// RG of the point in which the line of mixes meets the line of the intersection slope through the colour.
FLOAT Intersect(const LEDMixType& rFirst, FLOAT ledSlope, FLOAT rg, FLOAT bg, FLOAT intersectSlope)
{
    constexpr FLOAT parallel = 1.0f;
    if (IsSame(ledSlope, intersectSlope))
    {
        STATS_LOG_ERROR("issue with tuning: LEDSlope %.2f same as intersection slope %.2f", ledSlope, intersectSlope);
        return parallel;
    }
    return ((bg - rg * intersectSlope) - (rFirst.BGRatio - ledSlope * rFirst.RGRatio)) / (ledSlope - intersectSlope);
}

/// @return the second mix of the first pair with this RG between them; 0 if there is none
INT32 FindPair(const LEDMixType* pMixes, INT32 mixSize, FLOAT ledRgRatio)
{
    for (INT32 mix = 1; mix < mixSize; ++mix)
    {
        const auto [low, high] = std::minmax(pMixes[mix - 1].RGRatio, pMixes[mix].RGRatio);
        if (low <= ledRgRatio && ledRgRatio <= high)
        {
            return mix;
        }
    }
    return 0;
}

VOID InterpolatePair(const LEDMixType* pMixes, Segment segment, FLOAT ledRgRatio, FlashCurrentEstimate& rOut)
{
    const LEDMixType& rStart      = pMixes[segment.start];
    const LEDMixType& rEnd        = pMixes[segment.end];
    FLOAT             interpRatio = 1.0f;
    if (IsSame(rStart.RGRatio, rEnd.RGRatio))
    {
        STATS_LOG_ERROR("issue with tuning: rg ratio %.2f same for mixes %d and %d", rStart.RGRatio, segment.start,
                        segment.end);
    }
    else
    {
        interpRatio = InterpRatio(rStart, rEnd, ledRgRatio);
    }
    SetCurrents(pMixes, segment, interpRatio, rOut.LEDCombination);

    FLOAT diff = 0.0f;
    if (rStart.LED1Setting == rEnd.LED1Setting)
    {
        STATS_LOG_ERROR("issue with tuning: same LED setting %d for mixes %d and %d", rStart.LED1Setting, segment.start,
                        segment.end);
    }
    else
    {
        diff = CurrentRatio(rStart, rEnd, rOut.LEDCombination.LED1Setting);
    }
    SetColour(pMixes, segment, diff, rOut);
}

}  // namespace

FLOAT CFlashCurrentEstimator::GetMixLEDSettings(const LEDMixType* pMixes, FLOAT rg, FLOAT bg,
                                                FLOAT dualLEDIntersectSlope, INT32 mixSize, FlashCurrentEstimate* pOut)
{
    for (INT32 mix = 0; mix + 1 < mixSize; ++mix)
    {
        if (IsSame(pMixes[mix].RGRatio, pMixes[mix + 1].RGRatio))
        {
            continue;
        }
        FLOAT       ledSlope;
        Segment     segment;
        const FLOAT ledRgRatio = ProjectOnLine(pMixes[mix], pMixes[mix + 1], rg, bg, ledSlope);
        if (!SelectSegment(pMixes, mix, mixSize, ledRgRatio, segment))
        {
            continue;
        }
        const LEDMixType& rStart = pMixes[segment.start];
        const LEDMixType& rEnd   = pMixes[segment.end];
        const FLOAT interpRatio  = IsSame(rStart.RGRatio, rEnd.RGRatio) ? 1.0f : InterpRatio(rStart, rEnd, ledRgRatio);
        KIROAlgoFlashOutput& rCombination = pOut->LEDCombination;
        SetCurrents(pMixes, segment, interpRatio, rCombination);
        const FLOAT diff =
            (rStart.LED1Setting == rEnd.LED1Setting) ? 1.0f : CurrentRatio(rStart, rEnd, rCombination.LED1Setting);
        SetColour(pMixes, segment, diff, *pOut);
        SetEntryRatios(pMixes, mixSize, rCombination);
        return ledSlope;
    }
    return InterpolateMixSettings(pMixes, rg, bg, dualLEDIntersectSlope, mixSize, pOut);
}

FLOAT CFlashCurrentEstimator::InterpolateMixSettings(const LEDMixType* pMixes, FLOAT rg, FLOAT bg,
                                                     FLOAT dualLEDIntersectSlope, INT32 mixSize,
                                                     FlashCurrentEstimate* pOut)
{
    const INT32       last       = mixSize - 1;
    const LEDMixType& rFirst     = pMixes[0];
    const LEDMixType& rLast      = pMixes[last];
    const FLOAT       ledSlope   = OverallSlope(rFirst, rLast, mixSize);
    const FLOAT       ledRgRatio = Intersect(rFirst, ledSlope, rg, bg, dualLEDIntersectSlope);
    const bool        isRising   = rFirst.RGRatio <= rLast.RGRatio;
    const INT32       mix        = FindPair(pMixes, mixSize, ledRgRatio);
    if (isRising ? (ledRgRatio < rFirst.RGRatio) : (ledRgRatio > rFirst.RGRatio))
    {
        TakeMix(pMixes, 0, *pOut);
    }
    else if (isRising ? (ledRgRatio > rLast.RGRatio) : (ledRgRatio < rLast.RGRatio))
    {
        TakeMix(pMixes, last, *pOut);
    }
    else if (mix > 0)
    {
        InterpolatePair(pMixes, {mix - 1, mix}, ledRgRatio, *pOut);
    }
    else
    {
        STATS_LOG_ERROR("issue with tuning: no mixes around rg ratio %.2f", ledRgRatio);
        TakeMix(pMixes, 0, *pOut);
    }
    SetEntryRatios(pMixes, mixSize, pOut->LEDCombination);
    return ledSlope;
}
