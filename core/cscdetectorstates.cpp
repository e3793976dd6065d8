/// The two state machines of a scene change detector.
#include <algorithm>
#include <cmath>

#include "core/base/kirolog.h"
#include "core/cscdetector.h"

using namespace kiroscenechangedetector;

namespace
{

/// A window of fewer values cannot vary.
constexpr UINT32 PostStableWindowMin = 2;

}  // namespace

/// @return in units of the value or, if so tuned, in percent of the baseline
FLOAT CSCDetector::DiffFromBaseline() const
{
    const FLOAT diff        = std::abs(m_filteredData - m_baseline);
    const bool isPercentage = m_pTuning->SCDetectionConfig.thresConfig.bUsePercentageError == TRUE && m_baseline > 0.0f;
    return isPercentage ? diff / m_baseline * 100.0f : diff;
}

bool CSCDetector::DetectSceneChange()
{
    const FLOAT diff     = DiffFromBaseline();
    m_sceneChangeCounter = (m_coreData.valueThres <= diff) ? m_sceneChangeCounter + 1 : 0;

    const bool isChanged = m_coreData.countThres <= m_sceneChangeCounter;
    STATS_LOG_TRACE("KIROSCD ID:%s SceneChange:%d, input:%f, base:%f, res:%f, valTh:%f, cnt:%d, cntTh:%d", Name(),
                    isChanged, m_filteredData, m_baseline, diff, m_coreData.valueThres, m_sceneChangeCounter,
                    m_coreData.countThres);
    return isChanged;
}

bool CSCDetector::DetectPostStable() const
{
    const SCPostStableConfigType& rConfig = m_pTuning->SCDetectionConfig.SCPostStableConfig;
    if (rConfig.windowSize < PostStableWindowMin)
    {
        STATS_LOG_WARNING("KIROSCND ID:%s tuning history size is small!!", Name());
        return true;
    }
    const UINT32 window = std::min(rConfig.windowSize, HistorySize);
    if (m_histCount < window)
    {
        STATS_LOG_TRACE("KIROSCND ID:%s %d of %d values to judge stability", Name(), m_histCount, window);
        return false;
    }
    const FLOAT smallest  = *std::min_element(m_history, m_history + window);
    const FLOAT largest   = *std::max_element(m_history, m_history + window);
    const FLOAT range     = largest - smallest;
    const FLOAT doubleAvg = std::abs(largest + smallest);
    if (range == 0.0f)
    {
        return rConfig.variationThres > 0.0f;
    }
    // Values about zero vary by more than any percentage.
    return doubleAvg != 0.0f && std::abs(range) * 200.0f / doubleAvg < rConfig.variationThres;
}

VOID CSCDetector::RunSCDStateMachine()
{
    switch (m_scDetectionState)
    {
    case SCMonitoring:
        if (DetectSceneChange())
        {
            m_scDetectionState = SCDetected;
            STATS_LOG_TRACE("KIROSCD ID:%s SCD state machine transit form SCMonitoring to SCDetected", Name());
        }
        break;
    case SCDetected:
        if (DetectPostStable())
        {
            m_scDetectionState = SCPostStable;
            STATS_LOG_TRACE("KIROSCD ID:%s SCD state machine transit form SCDetected to SCPostStable", Name());
        }
        break;
    case SCPostStable:
        if (DetectSceneChange())
        {
            m_scDetectionState = SCDetected;
            STATS_LOG_TRACE("KIROSCD ID:%s SCD state machine transit form SCPostStable to SCDetected", Name());
        }
        break;
    default:
        STATS_LOG_ERROR("KIROSCD ID:%s SCD state machine is at wrong state:%d.", Name(), m_scDetectionState);
        break;
    }
    STATS_LOG_TRACE("KIROSCD ID:%s SCD state: %d.", Name(), m_scDetectionState);
}

/// A hold may have to wait until the value has stayed near the baseline for a while.
VOID CSCDetector::CheckHoldTimeEnterConfig()
{
    const HoldTimeEnterConfigType& rConfig = m_pTuning->holdTimeConfig.holdTimeEnterConfig;
    if (rConfig.enable == FALSE)
    {
        m_holdTimeEnterAllowed = TRUE;
        m_settleElapsed        = 0.0f;
    }
    else if (m_holdTimeEnterAllowed == FALSE)
    {
        m_settleElapsed = (rConfig.settleThres > DiffFromBaseline()) ? m_settleElapsed + m_curFrameDuration : 0.0f;
        if (m_settleElapsed >= rConfig.settleTimeThres)
        {
            m_holdTimeEnterAllowed = TRUE;
        }
    }
    STATS_LOG_TRACE("Hold time enter config: enable:%d, allowed:%d, settleTime:%f, thresTime:%f", rConfig.enable,
                    m_holdTimeEnterAllowed, m_settleElapsed, rConfig.settleTimeThres);
}

bool CSCDetector::CheckIfExitHoldTime()
{
    const HoldTimeConfigType& rConfig = m_pTuning->holdTimeConfig;
    switch (rConfig.holdTimeFilterType)
    {
    case MinHoldTime:
        m_holdTimeThres = std::min(m_holdTimeThres, m_coreData.holdTime);
        break;
    case MaxHoldTime:
        m_holdTimeThres = std::max(m_holdTimeThres, m_coreData.holdTime);
        break;
    default:
        m_holdTimeThres = m_coreData.holdTime;
        break;
    }
    const bool isOver = m_holdTimeElapsed > m_holdTimeThres;
    if (isOver)
    {
        STATS_LOG_TRACE("Hold time exit: %f s have passed, threshold %f.", m_holdTimeElapsed, m_holdTimeThres);
    }
    if (rConfig.strictHoldTimeEn == FALSE && m_scDetectionState == SCPostStable)
    {
        STATS_LOG_TRACE("Hold time exit: scene is post stable.");
        return true;
    }
    return isOver;
}

VOID CSCDetector::RunHoldTimeStateMachine()
{
    if (m_pTuning->holdTimeConfig.enable == FALSE)
    {
        m_holdTimeState = HoldTimeOff;
        STATS_LOG_TRACE("Hold time is disbaled. Exit.");
        return;
    }
    switch (m_holdTimeState)
    {
    case HoldTimeOff:
        if (m_scDetectionState == SCDetected && m_holdTimeEnterAllowed == TRUE)
        {
            m_holdTimeState      = HoldTimeOn;
            m_sceneChangeCounter = 0;
            m_holdTimeElapsed    = 0.0f;
            STATS_LOG_TRACE("KIROSCD ID:%s HoldTime state machine transit form HoldTimeOff to HoldTimeOn", Name());
        }
        break;
    case HoldTimeOn:
        if (CheckIfExitHoldTime())
        {
            m_holdTimeState = HoldTimeEnd;
            STATS_LOG_TRACE("KIROSCD ID:%s HoldTime state machine transit form HoldTimeOn to HoldTimeEnd", Name());
        }
        m_holdTimeElapsed += m_curFrameDuration;
        break;
    case HoldTimeEnd:
        STATS_LOG_TRACE("KIROSCD ID:%s HoldTime state machine is at HoldTimeEnd. Waiting to rebase.", Name());
        break;
    default:
        STATS_LOG_ERROR("KIROSCD ID:%s HoldTime state machine is at wrong state:%d.", Name(), m_holdTimeState);
        break;
    }
    STATS_LOG_TRACE("KIROSCD ID:%s HoldTime state: %d, enterAllowed:%d, timeElapsed:%f, timeThres:%f", Name(),
                    m_holdTimeState, m_holdTimeEnterAllowed, m_holdTimeElapsed, m_holdTimeThres);
}
