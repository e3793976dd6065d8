#include "tools/tuningcheck/rules/lightstart.h"

#include <fmt/format.h>

#include "schema/kirostartup.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirostartup::LightDataTriggerDataType;

constexpr UINT32 Safe = 2;

VOID CheckStart(const LightDataTriggerDataType& rStart, const RecordJudge& rJudge)
{
    const FLOAT safe = static_cast<FLOAT>(rStart.initialExposure[Safe]);
    if (safe < rStart.exposureZone.start || safe > rStart.exposureZone.end)
    {
        rJudge.AdviseIn("initialExposure", Safe, fmt::format("is {}", rStart.initialExposure[Safe]),
                        fmt::format("{} to {} (gain times ns), the exposureZone", rStart.exposureZone.start,
                                    rStart.exposureZone.end),
                        "the zone does not trust an exposure that it starts with itself");
    }
}

}  // namespace

VOID CheckLightStart(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<LightDataTriggerDataType>(rModule, rFindings, CheckStart);
}

}  // namespace tuningcheck
