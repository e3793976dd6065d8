#include "core/ckirocontextmanager.h"

#include <algorithm>
#include <utility>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/ckiroscenechangedetector.h"
#include "core/extension/cficmanager.h"
#include "core/extension/ckirocamsync.h"
#include "schema/kirohdrsensor.h"

namespace
{

/// Settings before the host has given any; zero where nothing is said here.
SetInputData DefaultInput()
{
    SetInputData input{};
    input.opMode             = AECAlgoOperationModeInit;
    input.mtrMode            = AECAlgoMeteringModeCenterWeighted;
    input.evContext.evFactor = 1.0f;
    input.flickerComp        = StatisticsAntibanding60Hz;
    input.FPSRange           = {30.0f, 1.0f};
    input.AWBState.redGain   = 1.0f;
    input.AWBState.greenGain = 1.0f;
    input.AWBState.blueGain  = 1.0f;
    input.AWBState.CCT       = 5000;

    AECAlgoSensorInfo& rSensor     = input.sensorInfo;
    rSensor.fNumber                = 2.0f;
    rSensor.statsWindowAspectRatio = 1.0f;
    rSensor.minimumStreamGain      = 1.0f;
    rSensor.maximumStreamGain      = 256.0f;
    rSensor.minimumStillGain       = 1.0f;
    rSensor.maximumStillGain       = 256.0f;
    rSensor.minimumStreamExpTime   = 40000;
    rSensor.maximumStreamExpTime   = 33000000;
    rSensor.minimumStillExpTime    = 40000;
    rSensor.maximumStillExpTime    = 66000000;
    rSensor.sensorResWidth         = 4000;
    rSensor.sensorResHeight        = 3000;

    input.maxLEDCurrent = 1000;
    input.systemLatency = 4;
    input.postRawGain   = 100;
    input.snapshotMode  = KIROCoreSnapshotType::Normal;
    return input;
}

constexpr UINT32 EventMask         = 63;
constexpr UINT32 SelectorNeverSeen = 0xFFFFFFFF;

}  // namespace

IKIROContextManager::IKIROContextManager()
    : m_pHistory(TavoNew<CKIROHistory>()), m_pBankManager(TavoNew<CKIROBankManager>()),
      m_pCamSync(TavoNew<CKIROCamsync>(*this)), m_arbitrationRange{}, m_pStatsProcessor(nullptr),
      m_bResetFrameSkip(FALSE), m_pPFHistory(nullptr), m_bIsHybridHDR(FALSE), m_seamlessRID(0),
      m_bIsLongADRC(FALSE), m_tuningData{}, m_contextStatus(0), m_convergenceCount(0), m_exposureRange{},
      m_tuningSerial(0)
{
    if (m_pHistory == nullptr || m_pBankManager == nullptr || m_pCamSync == nullptr)
    {
        throw std::bad_alloc();
    }
}

IKIROContextManager::~IKIROContextManager()
{
    m_pHistory.reset();
    m_pBankManager.reset();
    m_pCamSync.reset();
}

CKIROContextManager::CKIROContextManager(IKIRODebugData& rDebugData)
    : m_setInputData(DefaultInput()), m_pSCDManager(nullptr), m_pFICManager(nullptr),
      m_rDebugData(rDebugData), m_calRGRatios{}, m_calBGRatios{}, m_readTuning{}, m_readPath{}, m_isLossTold(false)
{
    std::fill(std::begin(m_currentTuningMode), std::end(m_currentTuningMode), AECTuningMode{SelectorNeverSeen});
}

const SetInputData* CKIROContextManager::GetInput()
{
    return &m_setInputData;
}

UINT64 CKIROContextManager::GetContextStatus()
{
    return m_contextStatus;
}

VOID CKIROContextManager::SetContextEvent(KIROTunaraEventType event, BOOL value)
{
    const UINT64 bit = 1ULL << (static_cast<UINT32>(event) & EventMask);
    m_contextStatus  = (value == TRUE) ? (m_contextStatus | bit) : (m_contextStatus & ~bit);
}

BOOL CKIROContextManager::GetContextEvent(KIROTunaraEventType event)
{
    return ((m_contextStatus >> (static_cast<UINT32>(event) & EventMask)) & 1) != 0 ? TRUE : FALSE;
}

VOID CKIROContextManager::SetMaxFlashCurrent(INT32 current)
{
    m_setInputData.maxLEDCurrent = current;
}

VOID CKIROContextManager::UpdateFrameCounters()
{
    if (m_setInputData.postRawCounter != 0)
    {
        --m_setInputData.postRawCounter;
        STATS_LOG_TRACE("PostRawCounter updated value: %d", m_setInputData.postRawCounter);
    }
}

VOID CKIROContextManager::SetSCDManager(CSCDManager* pSCDManager)
{
    m_pSCDManager = pSCDManager;
}

VOID CKIROContextManager::RebaseSCD(UINT32 id)
{
    if (m_pSCDManager != nullptr)
    {
        m_pSCDManager->Rebase(id);
    }
}

/// Before there are detectors every ID is unknown.
BOOL CKIROContextManager::GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput)
{
    return (m_pSCDManager != nullptr) ? m_pSCDManager->GetSCDOutput(id, rOutput) : FALSE;
}

IKIRODebugData& CKIROContextManager::GetDebugDataInfo()
{
    return m_rDebugData;
}

VOID CKIROContextManager::SetMeteringLock(BOOL bLock)
{
    m_setInputData.bLockMetering = bLock;
}

VOID CKIROContextManager::SetFICManager(CFICManager* pFICManager)
{
    m_pFICManager = pFICManager;
}

KIROFICInfo CKIROContextManager::GetFICInfo()
{
    return (m_pFICManager != nullptr) ? m_pFICManager->GetFICInfo() : KIROFICInfo{};
}

KiroResult CKIROContextManager::SetInput(const KIROSetInput* pSetInput)
{
    if (pSetInput == nullptr)
    {
        return 1;
    }
    m_bResetFrameSkip = FALSE;
    KiroResult result = 0;
    switch (pSetInput->source)
    {
    case AECPEKSetParam:
        result = SetPEKInput(pSetInput->u.pPEKInput);
        break;
    case KIROCoreSnapshot:
        m_setInputData.snapshotMode = pSetInput->u.snapshotMode;
        break;
    case KIROCoreInternalParam:
        result = SetInternalParam(pSetInput->u.pKirocoreParam);
        break;
    default:
        break;
    }
    UpdateContext(pSetInput);
    return result;
}

KiroResult CKIROContextManager::SetInternalParam(const KIROCoreSetParam* pParam)
{
    if (pParam == nullptr)
    {
        return 1;
    }
    if (pParam->setParamType == KIROCorePrecisionFlashHistory)
    {
        m_pPFHistory = static_cast<KIROPrecisionFlashHistory*>(pParam->pSetParam);
    }
    else
    {
        STATS_LOG_WARNING("core algo not supporting internal %d", pParam->setParamType);
    }
    return 0;
}

KiroResult CKIROContextManager::SetTunara(StatsTuningData& rTuningData)
{
    m_tuningData = rTuningData;
    KeepReadablePath();
    ++m_tuningSerial;
    m_pBankManager->SetTuning(&m_tuningData);
    m_bIsHybridHDR = tuningaccess::Require_kirohdrsensor(m_tuningData).hybridHDR.enableHybridHDR;
    SetContextEvent(AECHybridHDR, m_bIsHybridHDR);
    return 0;
}

VOID CKIROContextManager::KeepReadablePath()
{
    const auto*  pPath  = static_cast<const TuningMode*>(m_tuningData.pTuningModeSelectors);
    const UINT32 count  = m_tuningData.numSelectors;
    auto*        pStore = static_cast<TuningSetManager*>(m_tuningData.pTuningSetManager);
    if (pPath == nullptr || count > TuningSelectorCount)
    {
        return;
    }
    if (pStore->CanRead(0, pPath, count))
    {
        std::copy_n(pPath, count, m_readPath);
        m_readTuning = {pStore, m_readPath, count};
        m_isLossTold = false;
        return;
    }
    const bool hasOther = m_readTuning.pTuningSetManager == pStore;
    if (hasOther)
    {
        m_tuningData = m_readTuning;
    }
    if (!std::exchange(m_isLossTold, true))
    {
        STATS_LOG_ERROR("a mode cannot be read, since the tuning file has changed or gone: %s",
                        hasOther ? "the one before stays" : "its tuning is missing");
    }
}

VOID CKIROContextManager::RunContextStartOfFrame()
{
    m_pBankManager->RunBankStartOfFrame(m_contextStatus);
}

VOID CKIROContextManager::RefreshBanks()
{
    if (m_pBankManager->GetContext() != m_contextStatus)
    {
        m_pBankManager->RunBankStartOfFrame(m_contextStatus);
    }
}

BOOL CKIROContextManager::IsTuningModeChange(const StatsTuningData* pTuningData)
{
    if (pTuningData == nullptr || pTuningData->numSelectors < TuningSelectorCount)
    {
        return FALSE;
    }
    const auto* pSelectors = static_cast<const TuningMode*>(pTuningData->pTuningModeSelectors);
    BOOL        changed    = FALSE;
    for (UINT32 index = 0; index < TuningSelectorCount; ++index)
    {
        const UINT32 value = (index == 0) ? static_cast<UINT32>(pSelectors[index].mode)
                                          : static_cast<UINT32>(pSelectors[index].subMode.value);
        if (m_currentTuningMode[index].value != value)
        {
            m_currentTuningMode[index].value = value;
            changed                          = TRUE;
        }
    }
    STATS_LOG_TRACE("is tuning changed:%d", changed);
    return changed;
}
