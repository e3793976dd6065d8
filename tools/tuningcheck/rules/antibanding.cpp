#include "tools/tuningcheck/rules/antibanding.h"

#include <fmt/format.h>

#include "schema/kirometering.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirometering::AntibandingPrioOverLumaType;

VOID CheckThresholdOrder(const AntibandingPrioOverLumaType& rTuning, const RecordJudge& rJudge)
{
    if (rTuning.enableAntibandingPrioOverLuma != FALSE &&
        rTuning.clampThresholdAsFactorOfMinExposure <= rTuning.exitThresholdAsFactorOfMinExposure)
    {
        rJudge.Error(
            "clampThresholdAsFactorOfMinExposure", fmt::format("is {}", rTuning.clampThresholdAsFactorOfMinExposure),
            fmt::format("above {}, the exitThresholdAsFactorOfMinExposure", rTuning.exitThresholdAsFactorOfMinExposure),
            "otherwise it does not act");
    }
}

}  // namespace

VOID CheckAntibanding(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<AntibandingPrioOverLumaType>(rModule, rFindings, CheckThresholdOrder);
}

}  // namespace tuningcheck
