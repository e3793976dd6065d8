// What the driver itself writes into the host's debug record.

#include <algorithm>
#include <cstring>

#include "core/base/debugdata.h"
#include "core/base/tuningaccess.h"
#include "core/ckirocore.h"
#include "core/contextdebugdata.h"
#include "interface/ikirodebugdata.h"
#include "schema/kiroextension.h"

namespace
{

/// What a channel of no known type points to nobody can tell: its values stay out.
VOID PopulateStatsChannelDebugData(const KIROCntStatsOut& rStats, AECDebugStatsChList& rChannel)
{
    const KIROCoreChInfo& rData  = rStats.channelData;
    rChannel.frameID             = rStats.frameID;
    rChannel.bChannelEnabled     = static_cast<UINT8>(rData.bChannelEnabled);
    rChannel.statsType           = static_cast<UINT8>(rStats.type);
    rChannel.resolution.width    = rStats.resolution.width;
    rChannel.resolution.height   = rStats.resolution.height;
    rChannel.resolution.binCount = rStats.resolution.binCount;
    rChannel.resolution.bitDepth = rStats.resolution.bitDepth;
    debugdata::SetName(rChannel.channelName, rData.pChannelName);
    if (rData.Data.pFData == nullptr)
    {
        return;
    }
    if (rStats.type == kiroglobalelements::KIROStatsHist)
    {
        const UINT32 bins = std::min<UINT32>(rStats.resolution.binCount, AECDebugHistogramSizeMax);
        std::memcpy(rChannel.channelData.valHist, rData.Data.pIData, bins * sizeof(UINT32));
    }
    else if (rStats.type == kiroglobalelements::KIROStatsGrid)
    {
        const UINT64 regions = static_cast<UINT64>(rStats.resolution.width) * rStats.resolution.height;
        std::memcpy(rChannel.channelData.valGrid, rData.Data.pFData,
                    std::min<UINT64>(regions, AECDebugGridSizeMax) * sizeof(FLOAT));
    }
}

VOID PopulateStatsResult(const KIROStatsList& rStats, AECDebugDataStatsProcResult& rResult)
{
    rResult.bayerGridROI.left      = rStats.bayerGridROI.left;
    rResult.bayerGridROI.top       = rStats.bayerGridROI.top;
    rResult.bayerGridROI.width     = rStats.bayerGridROI.width;
    rResult.bayerGridROI.height    = rStats.bayerGridROI.height;
    rResult.bIsTouchAEC            = static_cast<UINT8>(rStats.bIsTorchAEC);
    rResult.bPrepareBeforePreflash = static_cast<UINT8>(rStats.prepareBeforePreflash);
    std::memset(rResult.channels, 0, sizeof(rResult.channels));
    rResult.numOfChannels = 0;
    for (UINT32 index = 0; index < std::min<UINT32>(rStats.count, AECDebugChannelCount); ++index)
    {
        PopulateStatsChannelDebugData(rStats.pList[index], rResult.channels[index]);
        ++rResult.numOfChannels;
    }
}

}  // namespace

/// The flag that tells whether the channels follow is written even while debug data are off.
VOID CKIROCore::PopulateStatsDebugData(const KIROStatsList& rStats)
{
    const BOOL bVerbose =
        tuningaccess::Require_kiroextension(*m_contManager.GetTuningData()).verboseDebugDataEnable.StatsList;
    m_contManager.GetDebugDataInfo().GetDebugData().extensionInfo.statsListVerboseDebugDataEnable =
        static_cast<UINT8>(bVerbose);
    AECDebugData* pDebug = debugdata::Enabled(m_contManager);
    if (pDebug != nullptr && bVerbose == TRUE)
    {
        PopulateStatsResult(rStats, pDebug->statsProcResult);
    }
}

VOID CKIROCore::PopulateMeteringDebugData(const KIROMeteringOutput& rOutput)
{
    AECDebugData* pDebug = debugdata::Enabled(m_contManager);
    for (UINT32 type = 0; pDebug != nullptr && type < AECAlgoExposureCount; ++type)
    {
        pDebug->meteringInfo.mtrExposures[type] = rOutput.mtrExposures[type];
        pDebug->meteringInfo.exposures[type]    = rOutput.exposures[type];
    }
}

/// A settled frame after a settled frame is not pushed, so that a long settled stretch keeps one entry.
VOID CKIROCore::PopulateFrameHistoryDebugData()
{
    AECDebugData* pDebug = debugdata::Enabled(m_contManager);
    if (pDebug == nullptr)
    {
        return;
    }
    AECDebugDataFrameHistoryType& rHistory = pDebug->frameHistoryInfo;
    rHistory.currentFrame                  = debugdata::Frame(m_currFrame);
    if (rHistory.currentFrame.bIsAECSettled == 1 && rHistory.pastFrames[0].bIsAECSettled == 1)
    {
        return;
    }
    std::memmove(&rHistory.pastFrames[1], &rHistory.pastFrames[0],
                 sizeof(rHistory.pastFrames) - sizeof(rHistory.pastFrames[0]));
    rHistory.pastFrames[0] = rHistory.currentFrame;
}
