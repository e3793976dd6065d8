#include "tools/tuningcheck/rules/fixedgains.h"

#include "schema/kirodbsnapshot.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirodbsnapshot;

VOID CheckGains(const ExposureConfigType& rConfig, const RecordJudge& rJudge)
{
    const bool isBracket = rJudge.Around<BracketingExposureType>() != nullptr;
    const bool isRead    = isBracket && rJudge.Around<SnapshotTuningType>()->bApplyDRCWhenBracketing != FALSE;
    if (isRead && rConfig.method == FixedDRCFromTuning && rConfig.fixedDRC.triggerSystemCount == 0)
    {
        rJudge.Error("fixedDRC", "has no zones", "gains in triggerSystem for the method FixedDRCFromTuning");
    }
}

}  // namespace

VOID CheckFixedGains(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<ExposureConfigType>(rModule, rFindings, CheckGains);
}

}  // namespace tuningcheck
