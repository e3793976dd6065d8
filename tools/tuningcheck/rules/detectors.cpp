#include "tools/tuningcheck/rules/detectors.h"

#include <fmt/format.h>

#include "schema/kiroscenechangedetector.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiroscenechangedetector;

VOID CheckStage(const AECSCDType& rDetector, const RecordJudge& rJudge)
{
    if (rDetector.enable != FALSE && rDetector.priority == kiroscenechangedetector::Invalid)
    {
        rJudge.Error("priority", "is Invalid", "a stage of the frame: MeteringStart to EndOfFrame",
                     "an enabled detector without a stage never runs");
    }
}

/// A detector reads triggers alone, and does not run if one of its trees names another bank, be it with entry 0.
VOID CheckDriver(const DataBankType& rBank, const CHAR* pMember, const RecordJudge& rJudge)
{
    if (rBank.dataID == 0 && rBank.bankID != BankIDTriggers)
    {
        rJudge.Error(pMember, fmt::format("is {}, or left out", EnumeratorText(rBank.bankID)),
                     "{bankID: BankIDTriggers, dataID: 0}, or a trigger",
                     "with another bank the detector does not run, even where the tree does not depend on the value");
    }
}

template <typename Tree> VOID CheckDrivers(const Tree& rTree, const RecordJudge& rJudge)
{
    const AECSCDType* pDetector = rJudge.Around<AECSCDType>();
    if (pDetector != nullptr && pDetector->enable != FALSE)
    {
        CheckDriver(rTree.trigger1DataBank, "trigger1DataBank", rJudge);
        CheckDriver(rTree.trigger2DataBank, "trigger2DataBank", rJudge);
    }
}

VOID CheckBaseline(const SCDetectionThresConfigType& rConfig, const RecordJudge& rJudge)
{
    if (rConfig.baselineType == UseFixedBaseline && rConfig.bUsePercentageError != FALSE &&
        rConfig.fixedBaselineValue <= 0.0F)
    {
        rJudge.Error("fixedBaselineValue", fmt::format("is {}", rConfig.fixedBaselineValue),
                     "above 0 with bUsePercentageError", "there are no percent of a baseline of 0");
    }
}

VOID CheckHoldTime(const kiroglobalelements::TriggerSystemEndLevelType& rZone, const RecordJudge& rJudge)
{
    if (rJudge.Around<HoldTimeConfigType>() != nullptr && rZone.triggerData < 0.0F)
    {
        rJudge.Error("triggerData", fmt::format("is {}", rZone.triggerData), "0 or more (s)");
    }
}

}  // namespace

VOID CheckDetectors(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<AECSCDType>(rModule, rFindings, CheckStage);
    JudgeEach<SCThresTriggerDataType>(rModule, rFindings, CheckDrivers<SCThresTriggerDataType>);
    JudgeEach<ThreeLevelDataBankTriggerSystemType>(rModule, rFindings,
                                                   CheckDrivers<ThreeLevelDataBankTriggerSystemType>);
    JudgeEach<SCDetectionThresConfigType>(rModule, rFindings, CheckBaseline);
    JudgeEach<kiroglobalelements::TriggerSystemEndLevelType>(rModule, rFindings, CheckHoldTime);
}

}  // namespace tuningcheck
