#include "core/metering/ckiroanalyzer.h"

#include <algorithm>

#include "core/base/debugdata.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/metering/analyzerbank.h"
#include "core/metering/analyzerstages.h"

using exposurearithmetic::ExposureTypeOfSelection;
using kirometeringsceneanalyzer::BeginningOfAnalysis;
using kirometeringsceneanalyzer::EndOfAnalysis;
using kirometeringsceneanalyzer::SceneAnalyzerType;

namespace
{

/// Algorithms above this ID leave nothing for the components to do.
constexpr UINT32 AttachedAlgorithmMax = 100;

}  // namespace

CAnalyzer::CAnalyzer() : m_pTuning(nullptr), m_pContextManager(nullptr), m_identity{}, m_output{}
{
}

VOID CAnalyzer::SetAnalyzerTuning(const SceneAnalyzerType* pTuning, IKIROContextManager& rContextManager)
{
    m_pTuning          = pTuning;
    m_pContextManager  = &rContextManager;
    m_identity.pName   = pTuning->analyzerName;
    m_identity.type    = pTuning->exposureType;
    m_identity.refType = pTuning->refExposureType;
    m_output           = m_identity;
    m_lumaComponent.SetTuning(pTuning->luma, rContextManager);
    m_targetComponent.SetTuning(pTuning->target, rContextManager);
    m_confidenceComponent.SetTuning(pTuning->confidence, rContextManager);
    m_arithmetic.SetTuning(*pTuning, rContextManager);

    const UINT32 algorithmID = AlgorithmID();
    if (algorithmID != NoDefinedAlgorithm && m_pAlgorithm == nullptr)
    {
        m_pAlgorithm = IAnalyzerAlgorithm::Create(static_cast<INT>(algorithmID));
        if (m_pAlgorithm != nullptr)
        {
            m_pAlgorithm->SetTuning(pTuning->analyzerID, rContextManager);
            STATS_LOG_RARE("SA Algorithm ID %d Created with Analyzer ID %d", algorithmID, pTuning->analyzerID);
        }
    }
}

VOID CAnalyzer::Run(const DOUBLE* pExposures, AECDebugAnalyzerType* pDebug)
{
    if (pDebug != nullptr)
    {
        *pDebug = {};
    }
    if (m_pAlgorithm != nullptr && AlgorithmID() > AttachedAlgorithmMax)
    {
        m_output = RunAlgorithm(pExposures, {});
    }
    else
    {
        Analyze(pExposures, pDebug);
    }
}

VOID CAnalyzer::Analyze(const DOUBLE* pExposures, AECDebugAnalyzerType* pDebug)
{
    m_output = m_identity;
    m_arithmetic.RunArithMeticOperation(BeginningOfAnalysis, pDebug);
    m_output.luma       = m_lumaComponent.RunGeneralAnalyzerComponent();
    m_output.target     = m_targetComponent.RunTargetAnalyzerComponent();
    m_output.confidence = m_confidenceComponent.RunGeneralAnalyzerComponent();
    m_arithmetic.RunArithMeticOperation(EndOfAnalysis, pDebug);
    m_arithmetic.RunArithMeticOperation(kirometeringsceneanalyzer::AdjustmentRatio, pDebug);

    const FLOAT  adjustment = AdjustmentOfOperators();
    const FLOAT  ratio      = analyzerstages::RatioToTarget(adjustment, m_output.luma, m_output.target.start);
    const DOUBLE reference  = analyzerstages::ReferenceExposure(pExposures, m_output.refType);
    m_output.sensitivity    = analyzerstages::ExposureByRatio(reference, ratio);
    if (m_pAlgorithm != nullptr)
    {
        m_output = RunAlgorithm(pExposures, m_output);
    }
    if (pDebug != nullptr)
    {
        PopulateDebugData(adjustment, *pDebug);
    }
}

KIROAnalyzerOutput CAnalyzer::RunAlgorithm(const DOUBLE* pExposures, const KIROAnalyzerOutput& rMeasured) const
{
    AnalyzerAlgorithmInput input{rMeasured, {}};
    std::copy_n(pExposures, static_cast<UINT32>(AECAlgoExposureCount), input.sensitivities);
    return m_pAlgorithm->RunAlgorithm(input).analyzerOut;
}

VOID CAnalyzer::PopulateDebugData(FLOAT adjustment, AECDebugAnalyzerType& rDebug) const
{
    const auto originOf = [](const kirometeringsceneanalyzer::ComponentAggregatorType& rAggregator)
    {
        AECDebugComponentType origin{};
        origin.method = static_cast<UINT8>(rAggregator.method);
        origin.output = debugdata::Bank(rAggregator.output.dataBank);
        debugdata::SetName(origin.description, rAggregator.output.description);
        return origin;
    };
    debugdata::SetName(rDebug.name, m_pTuning->analyzerName);
    rDebug.analyzerID       = static_cast<UINT16>(m_pTuning->analyzerID);
    rDebug.refType          = static_cast<UINT8>(m_output.refType);
    rDebug.type             = static_cast<UINT8>(m_output.type);
    rDebug.luma             = m_output.luma;
    rDebug.target           = {m_output.target.start, m_output.target.end};
    rDebug.confidence       = m_output.confidence;
    rDebug.lumaOrigin       = originOf(m_pTuning->luma.aggregator);
    rDebug.targetOrigin     = originOf(m_pTuning->target.aggregator);
    rDebug.confidenceOrigin = originOf(m_pTuning->confidence.aggregator);
    rDebug.adjustmentRatio  = adjustment;
}

UINT32 CAnalyzer::GetID() const
{
    return m_pTuning->analyzerID;
}

const CHAR* CAnalyzer::GetName() const
{
    return m_pTuning->analyzerName;
}

const KIROAnalyzerOutput& CAnalyzer::GetOutput() const
{
    return m_output;
}

bool CAnalyzer::GetExposureType(AECAlgoExposureType* pType) const
{
    *pType = ExposureTypeOfSelection(m_output.type, AECAlgoExposureCount);
    return *pType != AECAlgoExposureCount;
}

AnalyzerOutputDataBanks CAnalyzer::GetAnalyzerOutputDataBanks() const
{
    return {m_pTuning->luma.aggregator.output, m_pTuning->target.aggregator.output,
            m_pTuning->confidence.aggregator.output};
}

UINT32 CAnalyzer::AlgorithmID() const
{
    const UINT32 count = analyzerbank::CountOf(m_pTuning->reservedParameter, m_pTuning->reservedParameterCount);
    return (count > 0) ? m_pTuning->reservedParameter[0] : static_cast<UINT32>(NoDefinedAlgorithm);
}

/// @return the adjustment that operators left in their bank, -1 without such an operator. Only a value above 0 replaces
///         the ratio of target to luma.
FLOAT CAnalyzer::AdjustmentOfOperators() const
{
    const DataBankType* pBank = m_arithmetic.GetAdjustmentRatioDataBank();
    if (pBank == nullptr)
    {
        return -1.0f;
    }
    StartEnd adjustment{0.0f, 0.0f};
    (VOID) m_pContextManager->m_pBankManager->UtilGetStartEndFromBank(pBank, adjustment, TRUE);
    return adjustment.start;
}
