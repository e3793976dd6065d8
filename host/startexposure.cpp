#include "host/startexposure.h"

#include <algorithm>

namespace
{

FLOAT RatioOf(UINT64 above, UINT64 below)
{
    return (below > 0) ? static_cast<FLOAT>(above) / static_cast<FLOAT>(below) : 1.0f;
}

/// The master's exposures come with a failure: what counts is whether they are there.
bool HasAnswered(KiroResult result, const KIROAlgoStartExposureInfo& rInfo)
{
    const bool isFilled = std::all_of(std::begin(rInfo.convergedExposures), std::end(rInfo.convergedExposures),
                                      [](UINT64 exposure) { return exposure > 0; });
    return isFilled && (result == 0 || rInfo.type == KIROStartExpDCFollow);
}

KiroStartExposure Taken(const KIROAlgoStartExposureInfo& rInfo)
{
    const UINT64*     pExposures = rInfo.convergedExposures;
    KiroStartExposure start{};
    start.source = rInfo.type;
    std::copy(std::begin(rInfo.convergedExposures), std::end(rInfo.convergedExposures), start.exposures);
    std::copy(std::begin(rInfo.targetExposures), std::end(rInfo.targetExposures), start.targets);
    // Sources that give no gains say it with the exposures.
    start.ADRCGain      = (rInfo.compenADRCGain > 0.0f)
                              ? rInfo.compenADRCGain
                              : RatioOf(pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureShort]);
    start.darkBoostGain = (rInfo.compensationDarkBoostGain > 0.0f)
                              ? rInfo.compensationDarkBoostGain
                              : RatioOf(pExposures[AECAlgoExposureLong], pExposures[AECAlgoExposureSafe]);
    if (rInfo.bIsLuxInitialized == TRUE)
    {
        start.luxIndex = rInfo.luxIndex;
    }
    return start;
}

KiroStartExposure Fixed(UINT64 exposure)
{
    KiroStartExposure start{};
    std::fill(std::begin(start.exposures), std::end(start.exposures), exposure);
    std::fill(std::begin(start.targets), std::end(start.targets), exposure);
    start.ADRCGain      = 1.0f;
    start.darkBoostGain = 1.0f;
    return start;
}

}  // namespace

std::vector<KIROAlgoStartExpType> KiroStartSources(const KiroStartSituation& rSituation)
{
    std::vector<KIROAlgoStartExpType> sources;
    if (rSituation.isPreflash)
    {
        sources.push_back(KIROStartExpPreflash);
    }
    if (rSituation.isFollowing)
    {
        sources.push_back(KIROStartExpDCFollow);
    }
    // With a light sensor the exposures of the last session are its warm start, which it checks.
    if (rSituation.hasLightSensor)
    {
        sources.push_back(KIROStartExpExtLightData);
    }
    if (rSituation.hasPreviousMode)
    {
        sources.push_back(KIROStartExpPrevMode);
    }
    return sources;
}

KiroStartExposure KiroAskStartExposure(IKIROCoreAlgo* pAlgo, const KiroStartRequest& rRequest)
{
    for (const KIROAlgoStartExpType source : rRequest.sources)
    {
        KIROAlgoStartExposureInfo info{};
        info.type     = source;
        info.evFactor = rRequest.evFactor;
        if (source == KIROStartExpExtLightData)
        {
            std::copy(std::begin(rRequest.warmExposures), std::end(rRequest.warmExposures), info.convergedExposures);
            std::copy(std::begin(rRequest.warmTargets), std::end(rRequest.warmTargets), info.targetExposures);
        }
        if (HasAnswered(pAlgo->GetStartUpExposure(pAlgo, &info), info))
        {
            return Taken(info);
        }
    }
    return Fixed(rRequest.fixedExposure);
}

VOID KiroApplyStartExposure(const KiroStartExposure& rStart, KIROMeteringOutput& rMetering,
                            KIROConvergenceOutput& rConvergence)
{
    std::copy(std::begin(rStart.targets), std::end(rStart.targets), rMetering.exposures);
    std::copy(std::begin(rStart.exposures), std::end(rStart.exposures), rConvergence.exposures);
    rConvergence.predictiveGain        = 1.0f;
    rConvergence.compensationADRC      = rStart.ADRCGain;
    rConvergence.compensationDarkBoost = rStart.darkBoostGain;
    rConvergence.mfhdrLongADRC         = 1.0f;
    rConvergence.convergedShortBlend   = 1.0f;
}
