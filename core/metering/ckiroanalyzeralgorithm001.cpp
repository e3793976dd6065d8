#include "core/metering/ckiroanalyzeralgorithm001.h"

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/metering/luxindex.h"
#include "schema/kirometering.h"

using kirometeringstatscalculator::StatsCalculatorType;

CAnalyzerAlgorithm001::CAnalyzerAlgorithm001()
    : m_luxAlgorithmTuning{}, m_pDarkRatioCalculatorTuning(nullptr), m_pBrightRatioCalculatorTuning(nullptr)
{
}

VOID CAnalyzerAlgorithm001::SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager)
{
    InstanceTuning& rTuningData = *rContextManager.GetTuningData();
    SetAnalyzer(analyzerID, &tuningaccess::Require_kirometeringsceneanalyzer(rTuningData).luxAnalyzer, rContextManager);

    const auto& rOperation = tuningaccess::Require_kirometering(rTuningData).luxIndexOperation;
    m_luxAlgorithmTuning   = {rOperation.enableCompensation, std::max<UINT64>(rOperation.refExposureForLuxIndexZero, 1),
                              rOperation.filteringFactor};

    const auto& rCalculators       = tuningaccess::Require_kirometeringstatscalculator(rTuningData);
    m_pDarkRatioCalculatorTuning   = &rCalculators.darkRatioStatsCalculator;
    m_pBrightRatioCalculatorTuning = &rCalculators.brightRatioStatsCalculator;
}

AnalyzerAlgorithmOutput CAnalyzerAlgorithm001::RunAlgorithm(const AnalyzerAlgorithmInput& rInput)
{
    const KIROAnalyzerOutput& rAnalyzer = rInput.analyzerIn;
    STATS_LOG_TRACE("Running algorithm 001 %d, luma %.2f", m_analyzerID, rAnalyzer.luma);
    const FLOAT steps    = luxindex::StepsToTarget(rAnalyzer.luma, rAnalyzer.target.start);
    const FLOAT luxIndex = std::max(0.0f, steps + BaseIndex());
    const FLOAT previous = ReadTrigger(TriggerCtrlLux);  // the trigger keeps it from frame to frame
    Publish(TriggerCtrlLux, luxindex::Filter(luxIndex, previous, m_luxAlgorithmTuning.filterinFactor),
            m_pAnalyzerTuning->analyzerName);
    Publish(TriggerCtrlLuma, rAnalyzer.luma, m_pAnalyzerTuning->analyzerName);
    PublishRatio(TriggerCtrlDarkRatio, *m_pDarkRatioCalculatorTuning, "DarkRatio");
    PublishRatio(TriggerCtrlSatRatio, *m_pBrightRatioCalculatorTuning, "BrightRatio");
    ProvideFlashInfluence(rAnalyzer);
    PopulateDebugData(rAnalyzer);
    return {rAnalyzer};
}

VOID CAnalyzerAlgorithm001::PopulateDebugData(const KIROAnalyzerOutput& rAnalyzer) const
{
    AECDebugData* pDebug = debugdata::Enabled(*m_pContextManager);
    if (pDebug != nullptr)
    {
        pDebug->meteringInfo.luma        = rAnalyzer.luma;
        pDebug->meteringInfo.luxIndex    = ReadTrigger(TriggerCtrlLux);
        pDebug->meteringInfo.darkRatio   = ReadTrigger(TriggerCtrlDarkRatio);
        pDebug->meteringInfo.brightRatio = ReadTrigger(TriggerCtrlSatRatio);
    }
}

AECAlgoExposureType CAnalyzerAlgorithm001::ReferenceType() const
{
    return exposurearithmetic::ExposureTypeOfSelection(m_pAnalyzerTuning->refExposureType, AECAlgoExposureLong);
}

/// The index of the exposure that the statistics were taken with; 0 without history.
FLOAT CAnalyzerAlgorithm001::BaseIndex() const
{
    const AECFrameHistory* pFrame =
        m_pContextManager->m_pHistory->GetFrameHistory(m_pContextManager->GetInput()->systemLatency);
    if (pFrame == nullptr)
    {
        return 0.0f;
    }
    const KIROExposureSetType& rSet = pFrame->exposureSets[ReferenceType()];
    return (m_luxAlgorithmTuning.enableLuxCompensation == TRUE)
               ? exposurearithmetic::IndexByFloatRatio(rSet.exposure, m_luxAlgorithmTuning.refExposureForLuxIndexZero)
               : rSet.indx;
}

/// A ratio is the second result of its calculator; the first one is a luma.
VOID CAnalyzerAlgorithm001::PublishRatio(KIROTriggerType trigger, const StatsCalculatorType& rCalculator,
                                         const CHAR* pDescription) const
{
    const DataBankType bank{BankIDStatsCalculator, rCalculator.outputStorage.end};
    FLOAT              ratio = 0.0f;
    (VOID) Banks().UtilGetFloatFromBank(&bank, ratio, TRUE, nullptr);
    Publish(trigger, ratio, pDescription);
}

VOID CAnalyzerAlgorithm001::ProvideFlashInfluence(const KIROAnalyzerOutput& rAnalyzer) const
{
    FLOAT influence = luxindex::NoInfluence;
    if (m_pContextManager->GetInput()->opMode == AECAlgoOperationModePreflash)
    {
        Publish(TriggerCtrlPreflashLuxIndex, ReadTrigger(TriggerCtrlLux), "Preflash lux index");
        influence = PreflashInfluence(rAnalyzer);
    }
    Publish(TriggerFlashInfluence, influence, "flash influence");
}

FLOAT CAnalyzerAlgorithm001::PreflashInfluence(const KIROAnalyzerOutput& rAnalyzer) const
{
    const AECFrameHistory* pOffFrame = m_pContextManager->m_pHistory->GetFlashFrame(KIROExtFlashCurrentType::Off);
    if (pOffFrame == nullptr)
    {
        return luxindex::NoInfluence;
    }
    return luxindex::FlashInfluence(rAnalyzer.luma, static_cast<FLOAT>(rAnalyzer.sensitivity), pOffFrame->averageLuma,
                                    static_cast<FLOAT>(pOffFrame->exposureSets[ReferenceType()].exposure));
}
