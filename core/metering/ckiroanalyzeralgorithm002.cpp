#include "core/metering/ckiroanalyzeralgorithm002.h"

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"

CAnalyzerAlgorithm002::CAnalyzerAlgorithm002() : m_pFlashSnapshotLuxTuning(nullptr)
{
}

VOID CAnalyzerAlgorithm002::SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager)
{
    CAnalyzerAlgorithm::SetTuning(analyzerID, rContextManager);
    m_pFlashSnapshotLuxTuning =
        &tuningaccess::Require_kiroflashsnapshot(*rContextManager.GetTuningData()).flashSnapshotLux;
}

AnalyzerAlgorithmOutput CAnalyzerAlgorithm002::RunAlgorithm(const AnalyzerAlgorithmInput& rInput)
{
    STATS_LOG_TRACE("Running algorithm 002 %d, luma %.2f", m_analyzerID, rInput.analyzerIn.luma);
    const AECFrameHistory* pOffFrame = m_pContextManager->m_pHistory->GetFlashFrame(KIROExtFlashCurrentType::Off);
    if (pOffFrame == nullptr)
    {
        STATS_LOG_ERROR("no flash off frame for the lux index of a flash snapshot");
        return {rInput.analyzerIn};
    }
    const AECAlgoExposureType type =
        exposurearithmetic::ExposureTypeOfSelection(m_pFlashSnapshotLuxTuning->exposureType, AECAlgoExposureLong);

    FLOAT       luxIndex = pOffFrame->exposureSets[type].indx;
    const auto* pLuma    = Banks().GetDataSceneAnalyzer(m_pFlashSnapshotLuxTuning->lumaHighDataID);
    if (pLuma != nullptr && pLuma->value.start > 0.0f)
    {
        const FLOAT ratio = static_cast<FLOAT>(m_pFlashSnapshotLuxTuning->defaultTarget) / pLuma->value.start;
        luxIndex          = std::max(0.0f, luxIndex + exposurearithmetic::IndexOfRatio(ratio));
    }
    Publish(TriggerCtrlLux, luxIndex);
    Publish(TriggerCtrlFullflashLuxIndex, luxIndex);
    return {rInput.analyzerIn};
}
