#include "core/metering/ckiroanalyzeralgorithm002.h"

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/metering/luxindex.h"

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

    const auto* pLuma = Banks().GetDataSceneAnalyzer(m_pFlashSnapshotLuxTuning->lumaHighDataID);
    const FLOAT luma  = (pLuma != nullptr) ? pLuma->value.start : 0.0f;
    const FLOAT luxIndex =
        luxindex::SnapshotIndex(pOffFrame->exposureSets[type].indx, luma, m_pFlashSnapshotLuxTuning->defaultTarget);
    Publish(TriggerCtrlLux, luxIndex);
    Publish(TriggerCtrlFullflashLuxIndex, luxIndex);
    return {rInput.analyzerIn};
}
