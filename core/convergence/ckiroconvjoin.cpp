// What becomes of a frame that the stretch and DRC both have moved.

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/convergencestages.h"

using exposurearithmetic::IndexBase;
using kiroconvergence::AECConvDRCStretchAggType;
using kiroconvergence::AggTypeCascade;
using kiroconvergence::AggTypeDisableDRCInPredictive;
using kiroconvergence::AggTypeDRCPrefParallel;

namespace convergencestages
{

namespace
{

/// Both wish Short below Safe.
VOID JoinDRCAndStretch(AECConvDRCStretchAggType aggType, FLOAT stretchRatio, FLOAT drcRatio,
                       const KIROLogExposures& rDRC, KIROConvCoreOutput& rJoined)
{
    switch (aggType)
    {
    case AggTypeDRCPrefParallel:
        if (!(stretchRatio > drcRatio))
        {
            rJoined.predGain    = 1.0f;
            rJoined.sensiLog103 = rDRC;
            STATS_LOG_TRACE("KIROCONVRG DRC > Stretch, Keep DRC and set PG to unity");
        }
        else if (rJoined.predGain < drcRatio)
        {
            rJoined.predGain = 1.0f;
            STATS_LOG_TRACE("KIROCONVRG drcRatio < predGain, Keep DRC and set PG to unity");
        }
        else
        {
            rJoined.predGain = rJoined.predGain / drcRatio;
            STATS_LOG_TRACE("KIROCONVRG drcRatio < predGain, Keep DRC and set PG: %f", rJoined.predGain);
        }
        break;
    case AggTypeCascade:
        rJoined.sensiLog103 = rDRC;
        rJoined.sensiLog103[AECAlgoExposureShort] -= static_cast<DOUBLE>(exposurearithmetic::SensiLog103(stretchRatio));
        STATS_LOG_TRACE("KIROCONVRG Cascade pred and DRC together");
        break;
    case AggTypeDisableDRCInPredictive:
        STATS_LOG_TRACE("KIROCONVRG Consider only stretch predictive gain");
        break;
    default:
        break;
    }
}

}  // namespace

VOID DRCStretchAggregator(AECConvDRCStretchAggType aggType, const KIROLogExposures& rDRC, KIROConvCoreOutput& rOutput)
{
    const DOUBLE safeExp  = rOutput.sensiLog103[AECAlgoExposureSafe];
    const FLOAT  drcRatio = std::pow(IndexBase, static_cast<FLOAT>(safeExp - rDRC[AECAlgoExposureShort]));
    const FLOAT  stretchRatio =
        std::pow(IndexBase, static_cast<FLOAT>(safeExp - rOutput.sensiLog103[AECAlgoExposureShort]));

    rOutput.sensiLog103[AECAlgoExposureLong] = rDRC[AECAlgoExposureLong];
    if (stretchRatio > 1.0f && drcRatio > 1.0f)
    {
        JoinDRCAndStretch(aggType, stretchRatio, drcRatio, rDRC, rOutput);
    }
    else if (stretchRatio > 1.0f)
    {
        STATS_LOG_TRACE("KIROCONVRG Use normal/predictive output");
    }
    else if (stretchRatio < 1.0f)
    {
        STATS_LOG_TRACE("KIROCONVRG Not valid");
    }
    else if (drcRatio > 1.0f)
    {
        rOutput.predGain    = 1.0f;
        rOutput.sensiLog103 = rDRC;
        STATS_LOG_TRACE("KIROCONVRG Use DRC output");
    }
    else
    {
        STATS_LOG_TRACE("KIROCONVRG Use normal/predictive output");
    }
}

}  // namespace convergencestages
