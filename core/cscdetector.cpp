/// What a detector reads: its input, its tuned values, its baseline.
#include "core/cscdetector.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "core/base/floatorder.h"
#include "core/base/kirolog.h"
#include "core/base/tuningvalues.h"

using namespace kiroscenechangedetector;

namespace
{

constexpr INT32 TreeLevels = 3;

/// Seconds that every tuned hold time undercuts, where the shortest one so far counts.
constexpr FLOAT HoldTimeUnlimited = 999999.0f;

constexpr KIROSCDStateType OutputOfSCState[] = {KIROSCDStateMonitor, KIROSCDStateSceneChange, KIROSCDStateSCPostStable,
                                                KIROSCDStateMax};
constexpr KIROHoldTimeType OutputOfHoldState[] = {KIROHoldTimeOff, KIROHoldTimeOn, KIROHoldTimeEnd, KIROHoldTimeMax};

}  // namespace

CSCDetector::CSCDetector()
    : m_scDetectionState(SCMonitoring), m_holdTimeState(HoldTimeOff), m_scDOutput{}, m_bFirstSettle(FALSE),
      m_holdTimeEnterAllowed(FALSE), m_pTuning(nullptr), m_pContextManager(nullptr),
      m_curFrameDuration(0.0f), m_coreData{}, m_sceneChangeCounter(0), m_settleElapsed(0.0f), m_holdTimeElapsed(0.0f),
      m_holdTimeThres(0.0f), m_history{}, m_histCount(0), m_filteredData(0.0f), m_baseline(0.0f)
{
}

VOID CSCDetector::SetDetectorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager)
{
    m_pTuning         = pTuning;
    m_pContextManager = &rContextManager;

    const auto&       rThres = pTuning->SCDetectionConfig.thresConfig.thresData;
    AECTriggerXMLData thresholds{
        rThres.trigger1, {TreeLevels, sizeof(SCThresCoreDataType)}, static_cast<INT32>(rThres.trigger1Count)};
    m_thresTrigger.SetData(&thresholds, KIROMLSCDDataType);

    const auto&       rHold = pTuning->holdTimeConfig.holdTimeData;
    AECTriggerXMLData holdTimes{
        rHold.trigger3Data, {TreeLevels, sizeof(FLOAT)}, static_cast<INT32>(rHold.trigger3DataCount)};
    m_holdtimeTrigger.SetData(&holdTimes, KIROMLOneFloatDataType);
}

UINT32 CSCDetector::GetID() const
{
    return (m_pTuning != nullptr) ? m_pTuning->SCDId : 0;
}

CSCDetector::RunPriority CSCDetector::GetPriority() const
{
    return (m_pTuning != nullptr) ? m_pTuning->priority : Invalid;
}

const CHAR* CSCDetector::Name() const
{
    return tuningvalues::TextOf(m_pTuning->SCDName);
}

VOID CSCDetector::Run(BOOL bStatsValid)
{
    if (!CheckTuningAndState(bStatsValid))
    {
        return;
    }
    if (RunPreProcessing() && GetCoreData())
    {
        RunSCDStateMachine();
        CheckHoldTimeEnterConfig();
        RunHoldTimeStateMachine();
    }
    UpdateOutputState();
}

bool CSCDetector::CheckTuningAndState(BOOL bStatsValid)
{
    if (m_pTuning == nullptr || m_pTuning->enable == FALSE || bStatsValid == FALSE)
    {
        m_bFirstSettle = FALSE;
        return false;
    }
    if (m_bFirstSettle == FALSE && m_pContextManager->GetContextEvent(AECSettled) == TRUE)
    {
        Rebase();
        m_bFirstSettle = TRUE;
    }
    return m_bFirstSettle == TRUE;
}

bool CSCDetector::GetTriggerValue(const DataBankType& rBank, FLOAT& rValue) const
{
    rValue = 0.0f;
    if (rBank.bankID != BankIDTriggers)
    {
        STATS_LOG_ERROR("KIROSCND ID:%s Invalid bankID %d \n", Name(), rBank.bankID);
        return false;
    }
    if (static_cast<UINT32>(rBank.dataID) >= BankSlotCount)
    {
        STATS_LOG_ERROR("KIROSCND ID:%s Error Trigger bank dataID %d is not valid \n", Name(), rBank.dataID);
        return false;
    }
    rValue = m_pContextManager->m_pBankManager->GetDataTriggers(rBank.dataID)->value;
    return true;
}

bool CSCDetector::GetInput(FLOAT& rValue)
{
    const DataBankType& rSource = m_pTuning->SCDetectionConfig.inputDataConfig.inputDataSource;
    if (!GetTriggerValue(rSource, rValue))
    {
        STATS_LOG_ERROR("KIROSCND ID:%s SCD Input value trigged failed Bank:%d Data:%d", Name(), rSource.bankID,
                        rSource.dataID);
        return false;
    }
    const FLOAT FPS    = m_pContextManager->m_pBankManager->GetDataTriggers(TriggerCtrlFPS)->value;
    m_curFrameDuration = (FPS != 0.0f) ? 1.0f / FPS : 0.0f;
    return true;
}

bool CSCDetector::RunPreProcessing()
{
    FLOAT value;
    if (!GetInput(value))
    {
        return false;
    }
    std::copy_backward(std::begin(m_history), std::end(m_history) - 1, std::end(m_history));
    m_history[0] = value;
    m_histCount  = std::min(m_histCount + 1, HistorySize);
    switch (m_pTuning->SCDetectionConfig.inputDataConfig.filterType)
    {
    case Average:
        m_filteredData = GetAverageValue();
        break;
    case Median:
        m_filteredData = GetMedianValue();
        break;
    default:
        m_filteredData = value;
        break;
    }
    return true;
}

/// @return how many of the newest values are filtered, at most HistorySize
UINT32 CSCDetector::FilterLength() const
{
    return std::min(m_histCount, m_pTuning->SCDetectionConfig.inputDataConfig.windowSize);
}

FLOAT CSCDetector::GetAverageValue() const
{
    const UINT32 count = FilterLength();
    if (count == 0)
    {
        return 0.0f;
    }
    return std::accumulate(m_history, m_history + count, 0.0f) / static_cast<FLOAT>(count);
}

/// Of an even number of values the lower of the two in the middle.
FLOAT CSCDetector::GetMedianValue() const
{
    const UINT32 count = FilterLength();
    if (count == 0)
    {
        return 0.0f;
    }
    FLOAT  values[HistorySize];
    FLOAT* pMiddle = values + (count - 1) / 2;
    std::copy(m_history, m_history + count, values);
    std::nth_element(values, pMiddle, values + count, floatorder::IsBelow);
    return *pMiddle;
}

bool CSCDetector::GetCoreData()
{
    const auto* pThres = static_cast<const SCThresCoreDataType*>(
        Evaluate(m_pTuning->SCDetectionConfig.thresConfig.thresData, m_thresTrigger));
    if (pThres == nullptr)
    {
        STATS_LOG_ERROR("KIROSCND ID:%s Failed to get Threshold triggers", Name());
        return false;
    }
    m_coreData.valueThres = pThres->valueThres;
    m_coreData.countThres = pThres->countThres;

    const auto* pHoldTime =
        static_cast<const FLOAT*>(Evaluate(m_pTuning->holdTimeConfig.holdTimeData, m_holdtimeTrigger));
    if (pHoldTime == nullptr)
    {
        STATS_LOG_ERROR("KIROSCND ID:%s Failed to get HoldTime triggers", Name());
        return false;
    }
    m_coreData.holdTime = *pHoldTime;
    return true;
}

/// The second entry drives the third level too, and the third entry is not read: trees are tuned on that.
/// @return a core record, null if a driving trigger could not be read
template <typename TriggerData> const VOID* CSCDetector::Evaluate(const TriggerData& rTuning, CKIRODataXML& rTree) const
{
    FLOAT trigger1;
    FLOAT trigger2;
    if (!GetTriggerValue(rTuning.trigger1DataBank, trigger1) || !GetTriggerValue(rTuning.trigger2DataBank, trigger2))
    {
        return nullptr;
    }
    return rTree.GetData(trigger1, trigger2, trigger2);
}

VOID CSCDetector::UpdateOutputState()
{
    m_scDOutput = {m_pTuning->SCDName, OutputOfSCState[m_scDetectionState], OutputOfHoldState[m_holdTimeState]};
}

VOID CSCDetector::Rebase()
{
    if (m_pTuning == nullptr || m_pTuning->enable == FALSE)
    {
        return;
    }
    const SCDetectionConfigType& rConfig  = m_pTuning->SCDetectionConfig;
    const DataBankType&          rSource  = rConfig.inputDataConfig.inputDataSource;
    FLOAT                        baseline = rConfig.thresConfig.fixedBaselineValue;
    if (rConfig.thresConfig.baselineType != UseFixedBaseline && !GetTriggerValue(rSource, baseline))
    {
        STATS_LOG_ERROR("KIROSCND ID:%s Error SCD Baseline value failed Bank:%d Data:%d", Name(), rSource.bankID,
                        rSource.dataID);
        return;
    }
    m_baseline = baseline;
    std::fill(std::begin(m_history), std::end(m_history), m_baseline);
    m_scDetectionState = SCMonitoring;
    m_holdTimeState    = HoldTimeOff;
    UpdateOutputState();
    m_holdTimeEnterAllowed = FALSE;
    m_sceneChangeCounter   = 0;
    m_settleElapsed        = 0.0f;
    m_holdTimeElapsed      = 0.0f;
    m_holdTimeThres        = (m_pTuning->holdTimeConfig.holdTimeFilterType == MinHoldTime) ? HoldTimeUnlimited : 0.0f;
    STATS_LOG_TRACE("KIROSCND ID:%s REBASE BASELINE, Type:%d, rebase to:%0.2f", Name(),
                    rConfig.thresConfig.baselineType, m_baseline);
}
