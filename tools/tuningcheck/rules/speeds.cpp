#include "tools/tuningcheck/rules/speeds.h"

#include <fmt/format.h>

#include "schema/kirodbconvbase.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbconvbase;

/// At this share of the way a frame ends as far beyond the target as it was before it.
constexpr FLOAT SwingingSpeed = 2.0F;

VOID CheckSpeed(const ConvBaseCoreDataType& rSpeeds, const RecordJudge& rJudge)
{
    const AECConvCappingType capping = rJudge.Around<DBConvBaseCoreData>()->cappingType;
    const bool               isHeld =
        capping == CappingTypeSystemDelay || (capping == CappingTypeRatio && rSpeeds.baseCapping <= 1.0F);
    if (rSpeeds.baseSpeed >= SwingingSpeed && !isHeld)
    {
        rJudge.Error("baseSpeed", fmt::format("is {}", rSpeeds.baseSpeed),
                     fmt::format("below {} (share) without a cap on the way to the target", SwingingSpeed),
                     "the exposure swings about its target for ever; 1 goes all the way at once");
    }
}

}  // namespace

VOID CheckSpeeds(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<ConvBaseCoreDataType>(rModule, rFindings, CheckSpeed);
}

}  // namespace tuningcheck
