// Priorities of antibanding over luma and over ADRC, with a fade between two thresholds each.

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/extensionparameters.h"
#include "core/metering/ckiromodmetering.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;

namespace
{

/// A fade narrower than this is widened to it.
constexpr FLOAT FadeRangeMin = 1000.0f;

/// Data of the flicker control parameter.
constexpr UINT32 FlickerAlwaysData = 1;

bool IsShareOfMinimum(FLOAT factor)
{
    return factor > 0.0f && factor <= 1.0f;
}

/// @return whether the named parameter, if there is one, lets antibanding pull the safe exposure
bool IsFlickerControlOn(IKIROContextManager& rContext)
{
    extensionparameters::Parameter parameter{};
    if (extensionparameters::GetFlickerControl(*rContext.GetTuningData(), parameter) != 0)
    {
        return true;
    }
    return rContext.GetContextEvent(AECCustomContext1) == TRUE || parameter.data[FlickerAlwaysData] > Epsilon;
}

/// @param clamp from here on Safe is pulled all the way
/// @param exit  up to here it is too dark for a pull to be worth it
/// @return what Safe is pulled to; none where it is not
std::optional<UINT64> PulledSafe(UINT64 safeExposure, UINT64 antibandingExposure, FLOAT clamp, FLOAT exit)
{
    const FLOAT atb  = static_cast<FLOAT>(antibandingExposure);
    const FLOAT safe = static_cast<FLOAT>(safeExposure);
    if (safe > clamp)
    {
        return antibandingExposure;
    }
    if (!(safe > exit))
    {
        return std::nullopt;
    }
    FLOAT range = clamp - exit;
    if (range < FadeRangeMin)
    {
        STATS_LOG_WARNING("warning: very small exit range clamp %f exit %f", clamp, exit);
        range = FadeRangeMin;
    }
    const FLOAT w = (clamp - safe) / range;
    return SaturateToUINT64(std::fma(w, safe, (1.0f - w) * atb));
}

/// Sets Safe; Short and Long keep their distances from it.
VOID MoveSafe(UINT64 newSafe, UINT64* pExposures)
{
    const FLOAT safe                 = static_cast<FLOAT>(pExposures[AECAlgoExposureSafe]);
    const FLOAT safeOverShort        = safe / static_cast<FLOAT>(pExposures[AECAlgoExposureShort]);
    const FLOAT longOverSafe         = static_cast<FLOAT>(pExposures[AECAlgoExposureLong]) / safe;
    const bool  isShortSafe          = std::abs(1.0f - safeOverShort) < Epsilon;
    const bool  isLongSafe           = std::abs(1.0f - longOverSafe) < Epsilon;
    const FLOAT newSafeFloat         = static_cast<FLOAT>(newSafe);
    pExposures[AECAlgoExposureSafe]  = newSafe;
    pExposures[AECAlgoExposureShort] = isShortSafe ? newSafe : SaturateToUINT64(newSafeFloat / safeOverShort);
    pExposures[AECAlgoExposureLong]  = isLongSafe ? newSafe : SaturateToUINT64(longOverSafe * newSafeFloat);
}

}  // namespace

VOID CKIROMetering::CalculateAntibandingPriority(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) const
{
    if (!IsFlickerControlOn(m_rContextManager))
    {
        return;
    }
    const auto& rTuning = tuningaccess::Require_kirometering(*m_rContextManager.GetTuningData()).antibandingMetering;
    PullSafeToAntibanding(rTuning.antibandingVsLuma, rInput.minAntibandingExposure, rOutput.exposures);

    const StatisticsAntibanding mode = m_rContextManager.GetInput()->flickerComp;
    if ((mode == StatisticsAntibanding50Hz || mode == StatisticsAntibanding60Hz) &&
        rOutput.exposures[AECAlgoExposureShort] < rOutput.exposures[AECAlgoExposureSafe])
    {
        CalculateAntibandingADRCPriority(rInput, rOutput);
    }
}

VOID CKIROMetering::PullSafeToAntibanding(const kirometering::AntibandingPrioOverLumaType& rTuning,
                                          UINT64 antibandingExposure, UINT64* pExposures) const
{
    const FLOAT clampF = rTuning.clampThresholdAsFactorOfMinExposure;
    const FLOAT exitF  = rTuning.exitThresholdAsFactorOfMinExposure;
    if (!(clampF > exitF && IsShareOfMinimum(clampF) && IsShareOfMinimum(exitF)))
    {
        STATS_LOG_WARNING("tuning issue: clamp %f exit %f", clampF, exitF);
        return;
    }
    const UINT64 oldShort = pExposures[AECAlgoExposureShort];
    const UINT64 oldSafe  = pExposures[AECAlgoExposureSafe];
    const UINT64 oldLong  = pExposures[AECAlgoExposureLong];
    if (rTuning.enableAntibandingPrioOverLuma != TRUE || oldSafe >= antibandingExposure)
    {
        return;
    }

    const FLOAT                 atb     = static_cast<FLOAT>(antibandingExposure);
    const std::optional<UINT64> newSafe = PulledSafe(oldSafe, antibandingExposure, clampF * atb, exitF * atb);
    if (!newSafe)
    {
        return;
    }
    MoveSafe(*newSafe, pExposures);
    STATS_LOG_TRACE("antibanding luma atb %llu modified target exposures from %llu %llu %llu to %llu %llu %llu",
                    antibandingExposure, oldShort, oldLong, oldSafe, pExposures[AECAlgoExposureShort],
                    pExposures[AECAlgoExposureLong], pExposures[AECAlgoExposureSafe]);
}

VOID CKIROMetering::CalculateAntibandingADRCPriority(const KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) const
{
    const auto& rTuning =
        tuningaccess::Require_kirometering(*m_rContextManager.GetTuningData()).antibandingMetering.antibandingVsADRC;
    const FLOAT exitF = rTuning.exitThresholdAsFactorOfMinExposure;
    if (!IsShareOfMinimum(exitF))
    {
        STATS_LOG_WARNING("tuning issue exit threshold %f", exitF);
        return;
    }
    UINT64*      pExposures = rOutput.exposures;
    const UINT64 atb        = rInput.minAntibandingExposure;
    const UINT64 oldShort   = pExposures[AECAlgoExposureShort];
    const UINT64 safe       = pExposures[AECAlgoExposureSafe];
    if (rTuning.enableAntibandingPrioOverADRC != TRUE || oldShort >= atb)
    {
        return;
    }

    const FLOAT atbFloat  = static_cast<FLOAT>(atb);
    const FLOAT safeFloat = static_cast<FLOAT>(safe);
    FLOAT       exit      = exitF * atbFloat;
    FLOAT       range     = atbFloat - exit;
    if (range < FadeRangeMin)
    {
        STATS_LOG_WARNING("warning: threshold exitThresholdAsFactorOfMinExposure %f is very close to 1.0", exitF);
        range = FadeRangeMin;
        exit  = atbFloat - FadeRangeMin;
    }
    UINT64 newShort = atb;
    if (safe < atb)
    {
        if (!(safeFloat > exit))
        {
            return;
        }
        const FLOAT w        = (atbFloat - safeFloat) / range;
        const FLOAT adrcGain = safeFloat / static_cast<FLOAT>(oldShort);
        newShort             = SaturateToUINT64(safeFloat / (adrcGain * w + (1.0f - w)));
    }
    pExposures[AECAlgoExposureShort] = newShort;
    STATS_LOG_TRACE("antibanding ADRC atb %llu modified target exposures from %llu %llu %llu to %llu %llu %llu", atb,
                    oldShort, pExposures[AECAlgoExposureLong], safe, newShort, pExposures[AECAlgoExposureLong], safe);
}
