#include "tools/tuningcheck/rules/hybridhdr.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/kiroconvergence.h"
#include "schema/kirohdrsensor.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirohdrsensor::HybridHDRType;

/// What smoothed ADRC may reach while the sensor bins, unless somebody sets another cap.
constexpr FLOAT BinnedCap = 3.0F;

/// One zone may well keep the sensor in one of its modes; all of them make the switch pointless.
VOID CheckThresholds(const HybridHDRType& rHybrid, bool isCapped, const RecordJudge& rJudge)
{
    const auto& rTree = rHybrid.drcGainSwitchThresholdTrigger;
    const auto  zones = ListOf(rTree.trigger2Data, rTree.trigger2DataCount);
    if (rHybrid.enableHybridHDR == FALSE)
    {
        return;
    }
    if (zones.empty())
    {
        rJudge.Error("drcGainSwitchThresholdTrigger", "has no zones", "thresholds in trigger2Data");
    }
    else if (std::ranges::all_of(zones, [](const auto& rZone) { return rZone.triggerData <= 1.0F; }))
    {
        rJudge.Error("drcGainSwitchThresholdTrigger", "has no threshold above 1", "one above 1 (ADRC gain)",
                     "otherwise the sensor never bins");
    }
    else if (isCapped && std::ranges::all_of(zones, [](const auto& rZone) { return rZone.triggerData >= BinnedCap; }))
    {
        rJudge.Advise("drcGainSwitchThresholdTrigger", fmt::format("has no threshold below {}", BinnedCap),
                      fmt::format("one below {} (ADRC gain), the cap while the sensor bins", BinnedCap),
                      "otherwise it bins for ever; right if something sets trigger 54, the cap");
    }
}

}  // namespace

VOID CheckHybridHDR(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule = rView.Find("kirohdrsensor");
    if (pModule == nullptr)
    {
        return;
    }
    const auto* pConvergence = rView.Get<kiroconvergence::KIROConvergenceType>("kiroconvergence");
    const bool  isCapped     = pConvergence != nullptr && pConvergence->smoothADRC.enableSmoothDRC != FALSE;
    JudgeEach<HybridHDRType>(*pModule, rFindings,
                             [isCapped](const HybridHDRType& rHybrid, const RecordJudge& rJudge)
                             { CheckThresholds(rHybrid, isCapped, rJudge); });
}

}  // namespace tuningcheck
