#include "interface/ckiroctrlcorecommon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extensionparameters.h"
#include "interface/kiroresults.h"
#include "schema/kiroev.h"

const CHAR* const g_pAECExtParamStringArray[AECExtParamMax + 1] = {
    "AECExtParamMultiCamPriorityMap",  "AECExtParamUnstableFaceProcess",     "AECExtParamTrackerProcess",
    "AECExtParamMFHDRFPSControl",      "AECExtParamMFHDRADRCControl",        "AECExtParamFlickerControl",
    "AECExtParamAWBInfoFaceROIFactor", "AECExtParamSnapshotExposureControl", "AECExtParamMax",
};

namespace
{

constexpr UINT32 AnyDataCount = 0xFFFFFFFF;

constexpr INT32  PeerMapID        = 0;
constexpr UINT32 PeerMapDataCount = 3;
// Not the name of AECExtParamMultiCamPriorityMap: one letter is another, and by that name the map is not found.
constexpr const CHAR* PeerMapName = "AECMulticamPriorityMap";

using Parameter = CKIROCtrlCoreCommon::Parameter;

/// @return the first entry that matches, null if there is none
template <typename Predicate>
const Parameter* FindParameter(const kiroparamextension::KIROParamExtensionType* pTuning, Predicate&& matches)
{
    if (pTuning == nullptr)
    {
        return nullptr;
    }
    const Parameter* pEnd = pTuning->extensionParam + pTuning->extensionParamCount;
    const Parameter* pFound =
        std::find_if(static_cast<const Parameter*>(pTuning->extensionParam), pEnd,
                     [&matches](const Parameter& rEntry) { return rEntry.Name != nullptr && matches(rEntry); });
    return (pFound == pEnd) ? nullptr : pFound;
}

bool IsActivePeer(const StatsPeerInfoCombo& rPeers, UINT32 index, UINT32 ownCameraId)
{
    return rPeers.isActive[index] == TRUE && rPeers.cameraId[index] != ownCameraId;
}

/// The slave that a master works with: by the tuned priority map if there is one, otherwise the first active peer.
/// @return index of the peer, StatsPeerCountMax if there is none
UINT32 SelectSlave(const StatsPeerInfoCombo& rPeers, const StatsCameraInfo& rCameraInfo,
                   const StatsTuningData& rTuningData)
{
    const Parameter* pMap = FindParameter(tuningaccess::Get_kiroparamextension(rTuningData),
                                          [](const Parameter& rEntry)
                                          {
                                              return rEntry.ID == PeerMapID &&
                                                     std::strcmp(rEntry.Name, PeerMapName) == 0 &&
                                                     rEntry.dataCount == PeerMapDataCount;
                                          });
    if (pMap == nullptr || pMap->enableFlag != TRUE)
    {
        UINT32 index = 0;
        while (index < StatsPeerCountMax && !IsActivePeer(rPeers, index, rCameraInfo.cameraId))
        {
            ++index;
        }
        return index;
    }
    STATS_LOG_TRACE("CID:%d, Role:MASTER, Priority map is available", rCameraInfo.cameraId);
    for (UINT32 rank = 0; rank < PeerMapDataCount; ++rank)
    {
        const UINT32 wanted = exposurearithmetic::SaturateToUINT32(pMap->data[rank]);
        for (UINT32 index = 0; index < StatsPeerCountMax; ++index)
        {
            if (rPeers.cameraId[index] != 0 && rPeers.cameraId[index] == wanted &&
                IsActivePeer(rPeers, index, rCameraInfo.cameraId))
            {
                return index;
            }
        }
    }
    return StatsPeerCountMax;
}

UINT32 SelectMaster(const StatsPeerInfoCombo& rPeers)
{
    UINT32 index = 0;
    while (index < StatsPeerCountMax &&
           !(rPeers.isActive[index] == TRUE && rPeers.algoRole[index] == StatsAlgoRoleMaster))
    {
        ++index;
    }
    return index;
}

constexpr std::array<const CHAR*, TriggerCtrlMax> BuildTriggerNames()
{
    constexpr const CHAR* named[] = {"CtrlPrev",         "CtrlTarget",     "CtrlTgtMatchDelta", "CtrlTgtPrevDelta",
                                     "CtrlDarkRatio",    "CtrlSatRatio",   "CtrlDirection",     "CtrlLux",
                                     "CtrlFPS",          "CtrlExpTime",    "CtrlGain",          "CtrlSensitivity",
                                     "CtrlLuma",         "CtrlGyro",       "CtrlDistance",      "FlashFlux",
                                     "FlashExpIncrease", "FlashInfluence", "SCDExternal1",      "SCDExternal2"};
    // All other IDs share one name; log readers of the field know it.
    std::array<const CHAR*, TriggerCtrlMax> names{};
    names.fill("CtrlNone");
    std::copy(std::begin(named), std::end(named), names.begin() + TriggerCtrlPrev);
    return names;
}

FLOAT BracketingMultiplier(const kiroev::EVCoreDataType& rTuning, INT32 ev)
{
    const FLOAT stops = static_cast<FLOAT>(ev) / static_cast<FLOAT>(std::max(rTuning.stepsPerEV, 1));
    const FLOAT adjustment =
        (stops > 0.0f) ? rTuning.bracketingEV.bracketingAdjForEVPos2 : rTuning.bracketingEV.bracketingAdjForEVNeg2;
    const FLOAT weight = std::max((2.0f - std::abs(stops)) * 0.5f, 0.0f);
    return std::pow(2.0f, (weight + (1.0f - weight) * adjustment) * stops);
}

}  // namespace

BOOL CKIROCtrlCoreCommon::MapMultiCamPeerInfo(const StatsPeerInfoCombo* pPeers, const StatsCameraInfo& rCameraInfo,
                                              const StatsTuningData& rTuningData, VOID*& rpPeerInfo)
{
    const UINT32 cameraId = rCameraInfo.cameraId;
    if (pPeers == nullptr)
    {
        STATS_LOG_WARNING("CID:%d, Multi-Camera Info is not provided!", cameraId);
        return FALSE;
    }
    if (pPeers->needSync != TRUE)
    {
        STATS_LOG_TRACE("CID:%d, AEC Sync is not enabled", cameraId);
        return FALSE;
    }
    if (rCameraInfo.algoRole == StatsAlgoRoleMaster)
    {
        const UINT32 slave = SelectSlave(*pPeers, rCameraInfo, rTuningData);
        if (slave == StatsPeerCountMax)
        {
            STATS_LOG_WARNING("CID:%d, Slave Info is not found", cameraId);
            return FALSE;
        }
        rpPeerInfo = pPeers->peerInfo[slave];
        STATS_LOG_TRACE("CID:%d, Role:MASTER, Selecting the Slave of CID:%d", cameraId, pPeers->cameraId[slave]);
        return TRUE;
    }
    if (rCameraInfo.algoRole == StatsAlgoRoleSlave)
    {
        const UINT32 master = SelectMaster(*pPeers);
        if (master == StatsPeerCountMax)
        {
            STATS_LOG_WARNING("CID:%d, Master Info is not found", cameraId);
            return FALSE;
        }
        rpPeerInfo = pPeers->peerInfo[master];
        STATS_LOG_TRACE("CID:%d, Role:SLAVE, Following Master CamID:%d", cameraId, pPeers->cameraId[master]);
        return TRUE;
    }
    return FALSE;
}

const CHAR* CKIROCtrlCoreCommon::GetTriggerString(UINT32 id)
{
    static constexpr std::array<const CHAR*, TriggerCtrlMax> names = BuildTriggerNames();
    return (id < names.size()) ? names[id] : "InavlidTrigger";
}

FLOAT CKIROCtrlCoreCommon::UtilGetEVMultiplier(const StatsTuningData* pTuningData, INT32 ev, KIROEVType type)
{
    const kiroev::EVCoreDataType& rTuning = tuningaccess::Require_kiroev(*pTuningData).EVCoreData;
    const INT64                   lowest  = static_cast<INT64>(rTuning.stepsPerEV) * rTuning.minEVValue;
    const INT64                   highest = static_cast<INT64>(rTuning.stepsPerEV) * rTuning.maxEVValue;

    INT64 clamped = ev;
    if (clamped < lowest || clamped > highest)
    {
        STATS_LOG_ERROR("EV (%d) exceed max range (%d, %d)! Limit it to range. Steps:%d", ev,
                        static_cast<INT32>(lowest), static_cast<INT32>(highest), rTuning.stepsPerEV);
        clamped = std::min(std::max(clamped, lowest), highest);
    }
    if (type == KIROEVBracketing)
    {
        return BracketingMultiplier(rTuning, static_cast<INT32>(clamped));
    }
    constexpr INT64 lastIndex = std::extent_v<decltype(kiroev::EVCompTableType::EVCompTableElements)> - 1;
    const INT64     index     = std::min(std::max<INT64>(clamped - lowest, 0), lastIndex);
    return rTuning.EVCompTable.EVCompTableElements[index];
}

KiroResult CKIROCtrlCoreCommon::ParseExtensionParam(const StatsTuningData& rTuningData, INT32 parameterType,
                                                    UINT32 dataCount, Parameter& rParameter)
{
    return extensionparameters::Parse(tuningaccess::Get_kiroparamextension(rTuningData), parameterType, dataCount,
                                      rParameter);
}

KiroResult extensionparameters::Parse(const kiroparamextension::KIROParamExtensionType* pTuning, INT32 parameterType,
                                      UINT32 dataCount, Parameter& rParameter)
{
    const CHAR*      pName  = g_pAECExtParamStringArray[parameterType];
    const Parameter* pFound = FindParameter(pTuning,
                                            [pName, dataCount](const Parameter& rEntry) {
                                                return std::strcmp(rEntry.Name, pName) == 0 &&
                                                       (dataCount == AnyDataCount || rEntry.dataCount == dataCount);
                                            });
    if (pFound == nullptr)
    {
        return ResultNotFound;
    }
    if (pFound->ID != parameterType)
    {
        STATS_LOG_WARNING("%s ID mismatch, expect ID %d, tuning param ID %d", pName, parameterType, pFound->ID);
    }
    rParameter = *pFound;
    return 0;
}

KiroResult CKIROCtrlCoreCommon::GetUnstableFaceProcessExtParam(const StatsTuningData& rTuningData,
                                                               Parameter&             rParameter)
{
    return ParseExtensionParam(rTuningData, AECExtParamUnstableFaceProcess, AnyDataCount, rParameter);
}

KiroResult CKIROCtrlCoreCommon::GetTrackerProcessExtParam(const StatsTuningData& rTuningData, Parameter& rParameter)
{
    return ParseExtensionParam(rTuningData, AECExtParamTrackerProcess, AnyDataCount, rParameter);
}

KiroResult CKIROCtrlCoreCommon::GetMFHDRFPSControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter)
{
    return ParseExtensionParam(rTuningData, AECExtParamMFHDRFPSControl, AnyDataCount, rParameter);
}

KiroResult CKIROCtrlCoreCommon::GetMFHDRADRCExtParam(const StatsTuningData& rTuningData, Parameter& rParameter)
{
    return extensionparameters::GetMFHDRADRC(rTuningData, rParameter);
}

KiroResult CKIROCtrlCoreCommon::GetFlickerControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter)
{
    return extensionparameters::GetFlickerControl(rTuningData, rParameter);
}

KiroResult CKIROCtrlCoreCommon::GetSnapshotExposureExtParam(const StatsTuningData& rTuningData, Parameter& rParameter)
{
    return ParseExtensionParam(rTuningData, AECExtParamSnapshotExposureControl, AnyDataCount, rParameter);
}
