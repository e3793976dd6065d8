#include "core/base/debugdata.h"

#include <algorithm>
#include <cstring>

#include "core/base/tuningaccess.h"
#include "interface/ikirodebugdata.h"
#include "schema/kiroextension.h"

namespace debugdata
{

namespace
{

INT16 DataID(INT32 dataID)
{
    constexpr INT32 dataIDMax = 0x7FFF;
    return static_cast<INT16>(std::clamp(dataID, -1, dataIDMax));
}

}  // namespace

AECDebugData* Enabled(IKIROContextManager& rContext)
{
    IKIRODebugData& rDebugData = rContext.GetDebugDataInfo();
    return (rDebugData.IsDebugDataEnabled() == TRUE) ? &rDebugData.GetDebugData() : nullptr;
}

VOID SetName(CHAR (&rName)[AECDebugNameLength], const CHAR* pText)
{
    std::memset(rName, 0, sizeof(rName));
    if (pText != nullptr)
    {
        std::memcpy(rName, pText, strnlen(pText, sizeof(rName)));
    }
}

VOID AppendCalculator(IKIROContextManager& rContext, const CHAR* pDescription, INT32 calculatorID, INT32 api,
                      const kirometeringstatscalculator::CalculatorIntegerRangeType& rOutputStorage,
                      const FLOAT* pResults, UINT32 resultCount)
{
    AECDebugData* pDebug = Enabled(rContext);
    if (pDebug == nullptr ||
        tuningaccess::Require_kiroextension(*rContext.GetTuningData()).verboseDebugDataEnable.StatsCalculator != TRUE)
    {
        return;
    }
    AECDebugDataMeteringType& rMetering = pDebug->meteringInfo;
    if (rMetering.calculatorCount < AECDebugCalculatorCount)
    {
        AECDebugCalculatorType entry{};
        SetName(entry.description, pDescription);
        entry.calculatorID = calculatorID;
        entry.APISelection = static_cast<UINT8>(api);
        entry.outputStart  = DataID(rOutputStorage.start);
        entry.outputEnd    = DataID(rOutputStorage.end);
        for (UINT32 result = 0; result < resultCount; ++result)
        {
            entry.results[result] = pResults[result];
        }
        rMetering.calculators[rMetering.calculatorCount] = entry;
    }
    rMetering.calculatorCount = static_cast<UINT16>(rMetering.calculatorCount + 1);
}

AECDebugBank Bank(const DataBankType& rBank)
{
    return {static_cast<UINT8>(rBank.bankID), DataID(rBank.dataID)};
}

FrameExposureInfoType Exposure(const KIROExposureSetType& rSet)
{
    return {rSet.gain, rSet.time, rSet.indx, rSet.corr, rSet.exposure, rSet.ISO};
}

FrameHistoryInfoType Frame(const AECFrameHistory& rFrame)
{
    FrameHistoryInfoType info{};
    info.frameID       = static_cast<UINT32>(rFrame.frameID);
    info.isStartConfig = static_cast<UINT8>(rFrame.isStartConfig);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        info.exposureSets[type]    = Exposure(rFrame.exposureSets[type]);
        info.exposureTargets[type] = rFrame.exposureTargets[type];
    }
    info.averageLuma             = rFrame.averageLuma;
    info.luxIndex                = rFrame.luxIndex;
    info.bIsAECSettled           = static_cast<UINT8>(rFrame.bIsAECSettled);
    info.bIsBrightnessSettled    = static_cast<UINT8>(rFrame.bIsBrightnessSettled);
    info.previewEVFactor         = rFrame.evFactor;
    info.previewEVSetting        = rFrame.evUIVal;
    info.predictiveGain          = rFrame.predictiveGain;
    info.shortStretchOffset      = rFrame.shortStretchOffset;
    info.FPS                     = rFrame.FPS;
    info.postRawSensitivityBoost = rFrame.postRawSensitivityBoost;
    info.bIsSnapshot             = static_cast<UINT8>(rFrame.bIsSnapshot);
    return info;
}

}  // namespace debugdata
