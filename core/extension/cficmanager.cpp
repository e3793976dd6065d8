#include "core/extension/cficmanager.h"

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/extension/flashtable.h"
#include "schema/kiroflash.h"

using kiroflash::LEDInlineCalibType;
using kiroflash::LEDMatchTableType;
using kiroflash::LEDMixType;

namespace
{

VOID AddPoint(KIROFICCalTuningPoints& rPoints, const LEDMixType& rMix)
{
    if (rPoints.numPoints >= static_cast<INT8>(KIROFICKneeCountMax))
    {
        STATS_LOG_ERROR("AECCoreInline: more than %d LED points", KIROFICKneeCountMax);
        return;
    }
    rPoints.point[rPoints.numPoints] = {rMix.LED1Setting, rMix.LED2Setting};
    ++rPoints.numPoints;
}

}  // namespace

CFICManager::CFICManager(IKIROContextManager& rContext)
    : m_rContext(rContext), m_ficInfo{}, m_isFICCond(FALSE),
      m_skipProcess(FALSE), m_wbFlashOff{}, m_flashLowEst{}, m_flashHighEst{}, m_rgbg{}, m_refRegInfo{},
      m_preflashInfo{}, m_fullflashInfo{}, m_backup{}, m_kneeInfoLow{}, m_kneeInfoHigh{}, m_triggerTh(0.0f),
      m_refRange(0.0f), m_refRegionPercent(0.0f), m_validRefCnt(0), m_distMin(0.0f), m_distMax(0.0f), m_shiftMax(0.0f),
      m_minKneeCnt(0), m_maxZoneCnt(0), m_numOfFactoringRegions(0),
      m_confidenceThPCT(0.0f), m_tarZoneTrigger{}, m_LEDTuneCalInfoLow{}, m_LEDTuneCalInfoHigh{}
{
    GetTuningInfo();
}

VOID CFICManager::GetTuningInfo()
{
    const auto&               rFlash  = tuningaccess::Require_kiroflash(*m_rContext.GetTuningData());
    const LEDInlineCalibType& rTuning = rFlash.LEDInlineCalibration;
    SetTuningPoints(rFlash.LEDMatching);
    SetCalibrationPoints(rFlash.LEDMatching);
    m_triggerTh             = rTuning.triggerIndex;
    m_refRange              = rTuning.refRange;
    m_refRegionPercent      = rTuning.refRegionPCT;
    m_validRefCnt           = rTuning.validRefCount;
    m_distMin               = rTuning.distanceRatioMin;
    m_distMax               = rTuning.distanceRatioMax;
    m_shiftMax              = rTuning.angleShiftMax;
    m_minKneeCnt            = rTuning.minKneeCnt;
    m_maxZoneCnt            = rTuning.maxZoneCnt;
    m_confidenceThPCT       = rTuning.confidencePctThr;
    m_numOfFactoringRegions = rTuning.numOfFactoringRegions;
    if (m_numOfFactoringRegions > KIROFICFactoringRegionsMax)
    {
        STATS_LOG_ERROR("AECCoreInline: %d factoring regions exceed %d, no knee is learned", m_numOfFactoringRegions,
                        KIROFICFactoringRegionsMax);
        m_numOfFactoringRegions = 0;
    }
    SetTargetZones(rTuning);
}

VOID CFICManager::SetTuningPoints(const LEDMatchTableType& rTable)
{
    for (const LEDMixType& rMix : flashtable::RowOf(rTable, 0, KIROFICKneeCountMax))
    {
        AddPoint(m_LEDTuneCalInfoLow.tuningInfo, rMix);
    }
    for (const LEDMixType& rMix : flashtable::RowOf(rTable, INT64{rTable.countPower} - 1, KIROFICKneeCountMax))
    {
        AddPoint(m_LEDTuneCalInfoHigh.tuningInfo, rMix);
    }
}

VOID CFICManager::SetCalibrationPoints(const LEDMatchTableType& rTable)
{
    for (UINT32 i = 0; i < rTable.tableCalibrationCount; ++i)
    {
        const INT64 index = flashtable::LinearIndex(rTable.tableCalibration[i], rTable.countMix);
        if (index < 0 || index >= rTable.tableCount)
        {
            STATS_LOG_ERROR("LED table index [%d] for calibration is not found, LED calibration tuning is not proper",
                            flashtable::Saturated(index));
            continue;
        }
        auto& rPoints = (index < rTable.countMix) ? m_LEDTuneCalInfoLow : m_LEDTuneCalInfoHigh;
        AddPoint(rPoints.calInfo, rTable.table[index]);
    }
}

VOID CFICManager::SetTargetZones(const LEDInlineCalibType& rTuning)
{
    UINT32 count = rTuning.LEDInlineCalibTargetCount;
    if (count > KIROFICZoneCountMax)
    {
        STATS_LOG_ERROR("AECCoreInline: %d target zones exceed %d, the rest is ignored", count, KIROFICZoneCountMax);
        count = KIROFICZoneCountMax;
    }
    m_tarZoneTrigger.numZones = count;
    for (UINT32 i = 0; i < count; ++i)
    {
        const auto& rZone              = rTuning.LEDInlineCalibTarget[i];
        m_tarZoneTrigger.targetZone[i] = {{rZone.zoneTrigger.start, rZone.zoneTrigger.end},
                                          {rZone.zoneData.distancePCT, rZone.zoneData.angleShiftPCT}};
    }
}

KiroResult CFICManager::SetFICMode()
{
    const INT32 mixes = tuningaccess::Require_kiroflash(*m_rContext.GetTuningData()).LEDMatching.countMix;
    if (mixes < 1 || mixes > static_cast<INT32>(KIROFICKneeCountMax))
    {
        STATS_LOG_ERROR("AECCoreInline: no inline calibration for %d mixes", mixes);
        m_ficInfo.numOfKnees = 0;
        m_ficInfo.numOfZones = 0;
        return 1;
    }
    m_ficInfo.numOfKnees = static_cast<UINT8>(mixes);
    m_ficInfo.numOfZones = static_cast<UINT8>(mixes - 1);
    return 0;
}

VOID CFICManager::RunFICManager(const KIROExtensionInput& rExtIn, KIROExtensionOutput& rExtOut)
{
    const SetInputData& rInput = *m_rContext.GetInput();
    if (rInput.bIsFICMode == FALSE)
    {
        STATS_LOG_TRACE("AECCoreInline: Non flash inline calibration mode");
        return;
    }
    const bool isPreflash = rInput.opMode == AECAlgoOperationModePreflash;
    if (!isPreflash && rExtIn.flashInfo.prepareBeforePreflash == TRUE)
    {
        const FLOAT luxIndex = m_rContext.m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
        m_isFICCond          = FALSE;
        if (rExtOut.monitoredFlags.bFlashNeeded != FALSE && !(m_triggerTh > luxIndex))
        {
            m_isFICCond = TRUE;
            STATS_LOG_TRACE("AECCoreInline: dynamic inline cal - flash off state");
            ProcessCalibration(FICStateFlashOff);
        }
    }
    else if (isPreflash && rExtIn.flashInfo.flashLowStatsSaved == TRUE)
    {
        if (IsSampleWanted())
        {
            STATS_LOG_TRACE("[AECCoreInline: dynamic inline cal - pre flash state");
            m_flashLowEst = rExtIn.flashInfo.flashLowEst;
            ProcessCalibration(FICStatePreFlash);
        }
    }
    else if (rInput.bIsFullFlash == TRUE && IsSampleWanted())
    {
        STATS_LOG_TRACE("AECCoreInline: dynamic inline cal - Full flash state");
        m_flashHighEst = rExtIn.flashInfo.flashHighEst;
        ProcessCalibration(FICStateFullFlash);
    }
}

/// @return whether the frame before flash was a usable reference
bool CFICManager::IsSampleWanted() const
{
    return m_isFICCond == TRUE && m_skipProcess == FALSE;
}

VOID CFICManager::ProcessCalibration(KIROFICState calState)
{
    if (calState == FICStateFlashOff)
    {
        m_wbFlashOff = m_rContext.GetInput()->AWBState;
        GetReferenceRegionsInfo();
        return;
    }
    GetFlashInfluencedInfo(calState);
    if (calState == FICStateFullFlash)
    {
        StoreFICRawData();
        FactorFICData();
    }
}
