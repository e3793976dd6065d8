#include "tools/tuningcheck/rules/tablegenerators.h"

#include <fmt/format.h>

#include "schema/kiromtrtablegen.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiromtrtablegen;

VOID CheckSpeckles(const SpeckleScreenType& rScreen, const RecordJudge& rJudge)
{
    if (rScreen.enable != FALSE && rScreen.range.start == rScreen.range.end)
    {
        rJudge.Error("range", fmt::format("starts and ends at {}", rScreen.range.start), "an end above the start",
                     "a range without width is refused");
    }
}

VOID CheckMask(const GeneratorEndLevelDataType& rZone, const RecordJudge& rJudge)
{
    const bool isMask = rJudge.Around<PrecisionFlashType>() != nullptr;
    if (isMask && (rZone.triggerData < 0.0F || rZone.triggerData > 1.0F))
    {
        rJudge.Error("triggerData", fmt::format("is {}", rZone.triggerData), "0 to 1 (share) in a mask",
                     "the share by which a region belongs to it");
    }
}

VOID CheckAverage(const GeneratorOutputType& rOutput, const RecordJudge& rJudge)
{
    if (rOutput.enableGetWeightAverage != FALSE && rOutput.outputWeightAverageTriggerID < 1)
    {
        rJudge.Error("outputWeightAverageTriggerID", fmt::format("is {}", rOutput.outputWeightAverageTriggerID),
                     "1 or more (ID) with enableGetWeightAverage", "the trigger that receives the mean of the weights");
    }
}

}  // namespace

VOID CheckTableGenerators(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<SpeckleScreenType>(rModule, rFindings, CheckSpeckles);
    JudgeEach<GeneratorEndLevelDataType>(rModule, rFindings, CheckMask);
    JudgeEach<GeneratorOutputType>(rModule, rFindings, CheckAverage);
}

}  // namespace tuningcheck
