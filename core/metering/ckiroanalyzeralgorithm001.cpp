#include "core/metering/ckiroanalyzeralgorithm001.h"

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "schema/kirometering.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::IndexOfRatio;
using kirometeringstatscalculator::StatsCalculatorType;

namespace
{

/// A stored index below this counts as no history: banks start at 0.
constexpr FLOAT StoredIndexMin = 0.5f;

/// The LED takes no light away.
constexpr FLOAT NoInfluence = 1.0f;

}  // namespace

CAnalyzerAlgorithm001::CAnalyzerAlgorithm001()
    : m_luxAlgorithmTuning{}, m_pDarkRatioCalculatorTuning(nullptr), m_pBrightRatioCalculatorTuning(nullptr)
{
}

VOID CAnalyzerAlgorithm001::SetTuning(UINT32 analyzerID, IKIROContextManager& rContextManager)
{
    const StatsTuningData& rTuningData = *rContextManager.GetTuningData();
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
    Publish(TriggerCtrlLux, Filter(LuxIndex(rAnalyzer)), m_pAnalyzerTuning->analyzerName);
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

AECAlgoExposureType CAnalyzerAlgorithm001::ReferenceExposure() const
{
    return exposurearithmetic::ExposureTypeOfSelection(m_pAnalyzerTuning->refExposureType, AECAlgoExposureLong);
}

/// The index of the exposure that would bring the luma to its target.
FLOAT CAnalyzerAlgorithm001::LuxIndex(const KIROAnalyzerOutput& rAnalyzer) const
{
    FLOAT ratio = std::max(rAnalyzer.target.start, Epsilon) / std::max(rAnalyzer.luma, Epsilon);
    if (!(ratio > 0.0f))
    {
        STATS_LOG_ERROR("Invalid Adj: Luma %f target %f", rAnalyzer.luma, rAnalyzer.target.start);
        ratio = 1.0f;
    }
    return std::max(0.0f, IndexOfRatio(ratio) + BaseIndex());
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
    const KIROExposureSetType& rSet = pFrame->exposureSets[ReferenceExposure()];
    return (m_luxAlgorithmTuning.enableLuxCompensation == TRUE)
               ? exposurearithmetic::IndexByFloatRatio(rSet.exposure, m_luxAlgorithmTuning.refExposureForLuxIndexZero)
               : rSet.indx;
}

/// Smooths over time; the previous index comes out of the bank.
FLOAT CAnalyzerAlgorithm001::Filter(FLOAT luxIndex) const
{
    const FLOAT previous = ReadTrigger(TriggerCtrlLux);
    const FLOAT share    = m_luxAlgorithmTuning.filterinFactor;
    return (std::abs(previous) >= StoredIndexMin) ? std::fma(share, previous, (1.0f - share) * luxIndex) : luxIndex;
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
    FLOAT influence = NoInfluence;
    if (m_pContextManager->GetInput()->opMode == AECAlgoOperationModePreflash)
    {
        Publish(TriggerCtrlPreflashLuxIndex, ReadTrigger(TriggerCtrlLux), "Preflash lux index");
        influence = PreflashInfluence(rAnalyzer);
    }
    Publish(TriggerFlashInfluence, influence, "flash influence");
}

/// How much brighter the LED makes the scene, both lumas being taken to the exposure without LED.
FLOAT CAnalyzerAlgorithm001::PreflashInfluence(const KIROAnalyzerOutput& rAnalyzer) const
{
    const AECFrameHistory* pOffFrame = m_pContextManager->m_pHistory->GetFlashFrame(KIROExtFlashCurrentType::Off);
    if (pOffFrame == nullptr)
    {
        return NoInfluence;
    }
    const FLOAT exposure    = static_cast<FLOAT>(pOffFrame->exposureSets[ReferenceExposure()].exposure);
    const FLOAT sensitivity = std::max(static_cast<FLOAT>(rAnalyzer.sensitivity), Epsilon);
    const FLOAT influence = ((exposure * rAnalyzer.luma) / sensitivity + Epsilon) / (pOffFrame->averageLuma + Epsilon);
    return std::max(NoInfluence, influence);
}
