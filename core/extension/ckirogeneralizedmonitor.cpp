#include "core/extension/ckirogeneralizedmonitor.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"

using exposurearithmetic::Epsilon;
using namespace kiroextension;

namespace
{

/// Zeros. An empty array takes memory as well, so that null always says that there is none left.
template <typename T> TavoArray<T> NewZeros(UINT32 count)
{
    return TavoNewArray<T>(std::max(count, 1u));
}

const CHAR* TextOrEmpty(const CHAR* pText)
{
    return (pText != nullptr) ? pText : "";
}

}  // namespace

CKIROGeneralizedMonitor::CKIROGeneralizedMonitor(IKIROContextManager& rContext)
    : m_pTuning(nullptr), m_rContext(rContext), m_criteriaTrigger(KIROMLBaseDataType), m_rebasedFrameID(0)
{
}

VOID CKIROGeneralizedMonitor::SetTuning(const ExtensionGeneralizedMonitor* pTuning)
{
    m_pTuning = pTuning;
    AllocateDataMemory();
}

VOID CKIROGeneralizedMonitor::AllocateDataMemory()
{
    const UINT32 sceneCount = (m_pTuning != nullptr) ? m_pTuning->scenesCount : 0;
    m_data.reset(sceneCount);
    m_pDecisions     = NewZeros<BOOL>(sceneCount);
    bool isAllocated = m_data.size() == sceneCount && m_pDecisions != nullptr;
    for (UINT32 scene = 0; scene < m_data.size(); ++scene)
    {
        m_data[scene] = NewZeros<FLOAT>(m_pTuning->scenes[scene].criteriaArrayCount);
        isAllocated   = isAllocated && m_data[scene] != nullptr;
    }
    if (!isAllocated)
    {
        STATS_LOG_ERROR("Failed to allocate memory. m_ppData: %p m_pDecisions: %p",
                        static_cast<const VOID*>(m_data.begin()), static_cast<const VOID*>(m_pDecisions.get()));
        m_data.clear();
        m_pDecisions.reset();
    }
}

VOID CKIROGeneralizedMonitor::FreeDataMemory()
{
    if (m_pTuning != nullptr && m_pDecisions == nullptr)
    {
        STATS_LOG_ERROR("Memory Error.");
    }
    m_data.clear();
    m_pDecisions.reset();
    m_rebasedFrameID = 0;
}

/// Data come and go as a whole, with the decisions.
bool CKIROGeneralizedMonitor::IsDataReady() const
{
    return m_pTuning != nullptr && m_pDecisions != nullptr;
}

BOOL CKIROGeneralizedMonitor::RebaseData()
{
    if (!IsDataReady())
    {
        // Each start-up asks for it, but a monitor that nothing has asked a decision of has no tuning yet.
        STATS_LOG_TRACE("Tuning is not set yet. Rebase failed");
        return FALSE;
    }
    BOOL result = TRUE;
    for (UINT32 scene = 0; scene < m_data.size(); ++scene)
    {
        const MonitorSceneConfiguration& rScene = m_pTuning->scenes[scene];
        for (UINT32 criterion = 0; criterion < rScene.criteriaArrayCount; ++criterion)
        {
            const DataBankType& rSource = rScene.criteriaArray[criterion].dataBankSource;
            if (m_rContext.m_pBankManager->UtilGetFloatFromBank(&rSource, m_data[scene][criterion], TRUE, nullptr) != 0)
            {
                result = FALSE;
            }
        }
    }
    m_rebasedFrameID = m_rContext.m_pHistory->GetCurrentFrameID();
    STATS_LOG_TRACE("Rebased data for monitor %s at frame %llu", TextOrEmpty(m_pTuning->monitorDescription),
                    m_rebasedFrameID);
    return result;
}

BOOL CKIROGeneralizedMonitor::RunCriteriaCheck()
{
    if (!IsDataReady())
    {
        STATS_LOG_ERROR("Tuning is NULL. Need to set tuning first");
        return FALSE;
    }
    BOOL result = FALSE;
    for (UINT32 scene = 0; scene < m_data.size(); ++scene)
    {
        m_pDecisions[scene] = CheckSceneCriteria(&m_pTuning->scenes[scene], m_data[scene].get());
        result |= m_pDecisions[scene];
    }
    STATS_LOG_TRACE("Run criteria check for monitor: %s, result: %d", TextOrEmpty(m_pTuning->monitorDescription),
                    result);
    return result;
}

BOOL CKIROGeneralizedMonitor::CheckSceneCriteria(const MonitorSceneConfiguration* pScene, const FLOAT* pSceneData)
{
    FLOAT sum = 0.0f;
    for (UINT32 criterion = 0; criterion < pScene->criteriaArrayCount; ++criterion)
    {
        sum += ScoreCriterion(pScene->criteriaArray[criterion], pSceneData[criterion]);
    }
    const BOOL isPassed = !(pScene->passThreshold > sum + Epsilon) ? TRUE : FALSE;
    STATS_LOG_TRACE("scene %s, sum:%f, thres:%f, res:%d", TextOrEmpty(pScene->sceneDescription), sum,
                    pScene->passThreshold, isPassed);
    return isPassed;
}

FLOAT CKIROGeneralizedMonitor::ScoreCriterion(const SceneCriterion& rCriterion, FLOAT rebased)
{
    FLOAT current = rebased;
    if (m_rContext.m_pHistory->GetCurrentFrameID() != m_rebasedFrameID)
    {
        // A value that cannot be read counts as 0.
        (VOID) m_rContext.m_pBankManager->UtilGetFloatFromBank(&rCriterion.dataBankSource, current, FALSE, nullptr);
    }

    FLOAT calculated = 0.0f;
    switch (rCriterion.postCalculation)
    {
    case OriginalData:
        calculated = current;
        break;
    case AbsoluteDifference:
        calculated = std::abs(rebased - current);
        break;
    case AbsoluteDifferencePercentage:
        calculated = std::abs(rebased - current) / (rebased + Epsilon);
        break;
    case Division:
        calculated = current / (rebased + Epsilon);
        break;
    default:
        STATS_LOG_ERROR("unknown calculation %d, criterion skipped", rCriterion.postCalculation);
        return 0.0f;
    }

    constexpr INT32   levels = 1;
    AECTriggerXMLData tree{rCriterion.triggers, {levels, sizeof(FLOAT)}, static_cast<INT32>(rCriterion.triggersCount)};
    m_criteriaTrigger.SetData(&tree, KIROMLBaseDataType);
    const auto* pScore = static_cast<const FLOAT*>(m_criteriaTrigger.GetData(calculated, 0.0f, 0.0f));
    return (pScore != nullptr) ? *pScore : 0.0f;
}

BOOL CKIROGeneralizedMonitor::GetOneSceneDecision(UINT32 sceneNum) const
{
    if (!IsDataReady())
    {
        STATS_LOG_ERROR("Tuning is not set yet.");
        return FALSE;
    }
    if (sceneNum >= m_data.size())
    {
        STATS_LOG_ERROR("Input scene %d is greater than the scene count %d.", sceneNum, m_data.size());
        return FALSE;
    }
    return m_pDecisions[sceneNum];
}

BOOL CKIROGeneralizedMonitor::GetOneRebasedData(UINT32 sceneNum, UINT32 criteriaNum, FLOAT& rData) const
{
    if (!IsDataReady())
    {
        STATS_LOG_ERROR("Tuning is not set yet.");
        return FALSE;
    }
    const UINT32 criteriaCount = (sceneNum < m_data.size()) ? m_pTuning->scenes[sceneNum].criteriaArrayCount : 0;
    if (criteriaNum >= criteriaCount)
    {
        STATS_LOG_ERROR("Input scene %d criteria:%d is greater than the scene %d criteria %d count.", sceneNum,
                        criteriaNum, m_data.size(), criteriaCount);
        return FALSE;
    }
    rData = m_data[sceneNum][criteriaNum];
    return TRUE;
}
