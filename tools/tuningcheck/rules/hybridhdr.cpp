#include "tools/tuningcheck/rules/hybridhdr.h"

#include <fmt/format.h>

#include "schema/kirohdrsensor.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirohdrsensor::HybridHDRType;

/// What ADRC may reach while the sensor bins, unless somebody sets another cap.
constexpr FLOAT BinnedCap = 3.0F;

VOID CheckThreshold(const kiroglobalelements::TriggerSystemEndLevelType& rZone, const RecordJudge& rJudge)
{
    if (rZone.triggerData <= 1.0F || rZone.triggerData >= BinnedCap)
    {
        rJudge.Error("triggerData", fmt::format("is {}", rZone.triggerData),
                     fmt::format("above 1 and below {} (ADRC gain)", BinnedCap),
                     "otherwise the sensor never takes one of its modes");
    }
}

VOID CheckThresholds(const HybridHDRType& rHybrid, const RecordJudge& rJudge)
{
    if (rHybrid.enableHybridHDR != FALSE && rHybrid.drcGainSwitchThresholdTrigger.trigger2DataCount == 0)
    {
        rJudge.Error("drcGainSwitchThresholdTrigger", "has no zones", "thresholds in trigger2Data");
    }
}

}  // namespace

VOID CheckHybridHDR(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<kiroglobalelements::TriggerSystemEndLevelType>(rModule, rFindings, CheckThreshold);
    JudgeEach<HybridHDRType>(rModule, rFindings, CheckThresholds);
}

}  // namespace tuningcheck
