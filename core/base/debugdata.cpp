#include "core/base/debugdata.h"

#include <algorithm>
#include <cstring>

namespace debugdata
{

INT16 DataID(INT32 dataID)
{
    constexpr INT32 dataIDMax = 0x7FFF;
    return static_cast<INT16>(std::clamp(dataID, -1, dataIDMax));
}

VOID SetName(CHAR (&rName)[AECDebugNameLength], const CHAR* pText)
{
    std::memset(rName, 0, sizeof(rName));
    if (pText != nullptr)
    {
        std::memcpy(rName, pText, strnlen(pText, sizeof(rName)));
    }
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
