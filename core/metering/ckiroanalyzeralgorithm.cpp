#include "core/metering/ckiroanalyzeralgorithm.h"

#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"
#include "core/metering/analyzerbank.h"
#include "core/metering/ckiroanalyzeralgorithm001.h"
#include "core/metering/ckiroanalyzeralgorithm002.h"
#include "core/metering/ckiroanalyzeralgorithm003.h"

using analyzerbank::CountOf;
using kirometeringsaalgorithm::SAAlgorithmType;
using kirometeringsceneanalyzer::SceneAnalyzerType;

TavoPtr<IAnalyzerAlgorithm> IAnalyzerAlgorithm::Create(INT algorithmID)
{
    switch (algorithmID)
    {
    case LuxIndexCalculation:
        return TavoNew<CAnalyzerAlgorithm001>();
    case FlashLuxIndexCalculation:
        return TavoNew<CAnalyzerAlgorithm002>();
    case Algorithm003:
        return TavoNew<CAnalyzerAlgorithm003>();
    case Algorithm004:
        return TavoNew<CAnalyzerAlgorithm004>();
    case Algorithm101:
        return TavoNew<CAnalyzerAlgorithm101>();
    default:
        return nullptr;
    }
}

CAnalyzerAlgorithm::CAnalyzerAlgorithm()
    : m_pContextManager(nullptr), m_pAnalyzerTuning(nullptr), m_pAlgorithmTuning(nullptr), m_analyzerID(0)
{
}

/// Of several analyzers with the ID the last one counts.
VOID CAnalyzerAlgorithm::SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager)
{
    const auto& rAnalyzers = tuningaccess::Require_kirometeringsceneanalyzer(*rContextManager.GetTuningData());

    const SceneAnalyzerType* pFound = nullptr;
    for (UINT32 index = 0; index < CountOf(rAnalyzers.analyzers, rAnalyzers.analyzersCount); ++index)
    {
        if (rAnalyzers.analyzers[index].analyzerID == analyzerID)
        {
            pFound = &rAnalyzers.analyzers[index];
        }
    }
    SetAnalyzer(analyzerID, pFound, rContextManager);
}

/// Of several entries with the algorithm's ID the last one counts.
VOID CAnalyzerAlgorithm::SetAnalyzer(UINT32 analyzerID, const SceneAnalyzerType* pAnalyzer,
                                     IKIROContextManager& rContextManager)
{
    m_analyzerID       = analyzerID;
    m_pContextManager  = &rContextManager;
    m_pAnalyzerTuning  = pAnalyzer;
    m_pAlgorithmTuning = nullptr;
    if (pAnalyzer == nullptr || CountOf(pAnalyzer->reservedParameter, pAnalyzer->reservedParameterCount) == 0)
    {
        return;
    }
    const UINT32 algorithmID = pAnalyzer->reservedParameter[0];
    const auto&  rAlgorithms = tuningaccess::Require_kirometeringsaalgorithm(*rContextManager.GetTuningData());
    for (UINT32 index = 0; index < CountOf(rAlgorithms.SAAlgorithm, rAlgorithms.SAAlgorithmCount); ++index)
    {
        if (rAlgorithms.SAAlgorithm[index].ID == algorithmID)
        {
            m_pAlgorithmTuning = &rAlgorithms.SAAlgorithm[index];
        }
    }
}

FLOAT CAnalyzerAlgorithm::ReadTrigger(KIROTriggerType trigger) const
{
    return Banks().GetDataTriggers(trigger)->value;
}

VOID CAnalyzerAlgorithm::Publish(KIROTriggerType trigger, FLOAT value, const CHAR* pDescription) const
{
    const FLOAT sound = soundvalue::OrLast(value, ReadTrigger(trigger), 0.0f, "published trigger");
    // The bank refuses no trigger that has a name.
    (VOID) Banks().PublishTrigger(trigger, sound, pDescription, SourceModuleMetering);
}

AnalyzerAlgorithmOutput CAnalyzerAlgorithm004::RunAlgorithm(const AnalyzerAlgorithmInput& rInput)
{
    STATS_LOG_TRACE("Running algorithm 004 %d, luma %.2f", m_analyzerID, rInput.analyzerIn.luma);
    return {rInput.analyzerIn};
}

AnalyzerAlgorithmOutput CAnalyzerAlgorithm101::RunAlgorithm(const AnalyzerAlgorithmInput& rInput)
{
    STATS_LOG_TRACE("Running algorithm 101 %d, luma %.2f", m_analyzerID, rInput.analyzerIn.luma);
    return {rInput.analyzerIn};
}
