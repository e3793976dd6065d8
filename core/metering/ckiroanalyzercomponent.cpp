#include "core/metering/ckiroanalyzercomponent.h"

#include "core/base/kirolog.h"
#include "core/metering/analyzerbank.h"
#include "core/metering/ckiroaggregation.h"
#include "core/metering/ckirocalculationunit.h"

using analyzerbank::CountOf;
using analyzerbank::TextOf;
using kirometeringsceneanalyzer::CalculationMethodType;
using kirometeringsceneanalyzer::ComponentAggregatorType;
using kirometeringsceneanalyzer::GeneralAnalyzerComponentType;
using kirometeringsceneanalyzer::GeneralComponentCalculatorType;
using kirometeringsceneanalyzer::TargetAnalyzerComponentType;
using kirometeringsceneanalyzer::TargetComponentCalculatorType;

namespace
{

template <typename Unit, typename Tree> VOID LoadUnit(const Unit& rUnit, Tree& rTree)
{
    if (rUnit.selection == CalculationMethodType::TriggerSystemMethod)
    {
        calculationunit::LoadTree(rUnit.triggerSystem, rTree);
    }
}

/// Makes and loads the trees of a component's calculators.
/// @return false, with a log, when no memory is left
template <typename Calculator, typename ValueTree>
bool LoadTrees(const Calculator* pCalculators, UINT32 count, TavoObjects<ValueTree>& rValues,
               TavoObjects<CKIROOneFloatXML>& rWeights)
{
    rValues.reset(count);
    rWeights.reset(count);
    if (rValues.size() != count || rWeights.size() != count)
    {
        STATS_LOG_ERROR("Failed allocate memory for m_pTrigValues=%p, m_pTrigWeights=%p",
                        static_cast<VOID*>(rValues.begin()), static_cast<VOID*>(rWeights.begin()));
        return false;
    }
    for (UINT32 index = 0; index < count; ++index)
    {
        LoadUnit(pCalculators[index].value, rValues[index]);
        LoadUnit(pCalculators[index].weight, rWeights[index]);
    }
    return true;
}

VOID LogUnknownMethod(const ComponentAggregatorType& rAggregator)
{
    STATS_LOG_ERROR("No matched aggregation method type. %d", rAggregator.method);
}

/// Components write both halves, whatever half their output names.
VOID StoreResult(CKIROBankManager& rBanks, const ComponentAggregatorType& rAggregator, StartEnd value)
{
    analyzerbank::SetToBank(rBanks, rAggregator.output.dataBank, value, rAggregator.output.description,
                            BankDataType::startEnd);
}

}  // namespace

CGeneralAnalyzerComponent::CGeneralAnalyzerComponent() : m_pTuning(nullptr), m_pContextManager(nullptr), m_numWeights(0)
{
}

VOID CGeneralAnalyzerComponent::SetTuning(const GeneralAnalyzerComponentType& rTuning,
                                          IKIROContextManager&                rContextManager)
{
    m_pTuning          = &rTuning;
    m_pContextManager  = &rContextManager;
    const UINT32 count = CountOf(rTuning.calculators, rTuning.calculatorsCount);
    m_pValues          = TavoNewArray<FLOAT>(count);
    m_pWeights         = TavoNewArray<FLOAT>(count);
    const bool bLoaded = LoadTrees(rTuning.calculators, count, m_trigValues, m_trigWeights);
    m_numWeights       = (bLoaded && m_pValues != nullptr && m_pWeights != nullptr) ? count : 0;
}

FLOAT CGeneralAnalyzerComponent::RunGeneralAnalyzerComponent()
{
    const ComponentAggregatorType& rAggregator = m_pTuning->aggregator;
    const DataBankType&            rOutput     = rAggregator.output.dataBank;
    if (!analyzerbank::IsOn(rOutput))
    {
        return 0.0f;
    }
    CKIROBankManager& rBanks = *m_pContextManager->m_pBankManager;
    RunCalculators(rBanks);
    const FLOAT result = AggregateValuesAndWeights();
    StoreResult(rBanks, rAggregator, {result, result});
    STATS_LOG_TRACE("Value aggregation: method %d, bankID %d, dataID %d, final value %.2f %s", rAggregator.method,
                    rOutput.bankID, rOutput.dataID, result, TextOf(rAggregator.output.description));
    return result;
}

VOID CGeneralAnalyzerComponent::RunCalculators(CKIROBankManager& rBanks)
{
    for (UINT32 index = 0; index < m_numWeights; ++index)
    {
        const GeneralComponentCalculatorType& rCalculator = m_pTuning->calculators[index];

        m_pValues[index]  = calculationunit::RunCalculationUnit(rCalculator.value, m_trigValues[index], rBanks);
        m_pWeights[index] = calculationunit::RunCalculationUnit(rCalculator.weight, m_trigWeights[index], rBanks);
        STATS_LOG_TRACE("ComponentCalculator[%d] outputs value: %.2f, weight: %.2f", index, m_pValues[index],
                        m_pWeights[index]);
    }
}

FLOAT CGeneralAnalyzerComponent::AggregateValuesAndWeights() const
{
    FLOAT result = 0.0f;
    if (!aggregation::Aggregate(m_pTuning->aggregator.method, {m_pValues.get(), m_numWeights},
                                {m_pWeights.get(), m_numWeights}, result))
    {
        LogUnknownMethod(m_pTuning->aggregator);
    }
    return result;
}

CTargetAnalyzerComponent::CTargetAnalyzerComponent() : m_pTuning(nullptr), m_pContextManager(nullptr), m_numWeights(0)
{
}

VOID CTargetAnalyzerComponent::SetTuning(const TargetAnalyzerComponentType& rTuning,
                                         IKIROContextManager&               rContextManager)
{
    m_pTuning          = &rTuning;
    m_pContextManager  = &rContextManager;
    const UINT32 count = CountOf(rTuning.calculators, rTuning.calculatorsCount);
    m_pStartEndValues  = TavoNewArray<StartEnd>(count);
    m_pWeights         = TavoNewArray<FLOAT>(count);
    m_pPositions       = TavoNewArray<FLOAT>(aggregation::PositionCount(count));
    const bool bArrays = m_pStartEndValues != nullptr && m_pWeights != nullptr && m_pPositions != nullptr;
    const bool bLoaded = LoadTrees(rTuning.calculators, count, m_trigValues, m_trigWeights);
    m_numWeights       = (bLoaded && bArrays) ? count : 0;
}

StartEnd CTargetAnalyzerComponent::RunTargetAnalyzerComponent()
{
    const ComponentAggregatorType& rAggregator = m_pTuning->aggregator;
    const DataBankType&            rOutput     = rAggregator.output.dataBank;
    if (!analyzerbank::IsOn(rOutput) || m_pPositions == nullptr)
    {
        return {0.0f, 0.0f};
    }
    CKIROBankManager& rBanks = *m_pContextManager->m_pBankManager;
    RunCalculators(rBanks);
    const StartEnd result = AggregateValuesAndWeights();
    StoreResult(rBanks, rAggregator, result);
    STATS_LOG_TRACE("Value aggregation: method %d, bankID %d, dataID %d, final value [ %.2f, %.2f ] %s",
                    rAggregator.method, rOutput.bankID, rOutput.dataID, result.start, result.end,
                    TextOf(rAggregator.output.description));
    return result;
}

VOID CTargetAnalyzerComponent::RunCalculators(CKIROBankManager& rBanks)
{
    for (UINT32 index = 0; index < m_numWeights; ++index)
    {
        const TargetComponentCalculatorType& rCalculator = m_pTuning->calculators[index];

        StartEnd& rValue  = m_pStartEndValues[index];
        rValue            = calculationunit::RunTargetCalculationUnit(rCalculator.value, m_trigValues[index], rBanks);
        m_pWeights[index] = calculationunit::RunTargetWeightUnit(rCalculator.weight, m_trigWeights[index], rBanks);
        STATS_LOG_TRACE("ComponentCalculator[%d] outputs value: [%.2f, %.2f], weight: %.5f", index, rValue.start,
                        rValue.end, m_pWeights[index]);
    }
}

StartEnd CTargetAnalyzerComponent::AggregateValuesAndWeights() const
{
    StartEnd result{0.0f, 0.0f};
    if (!aggregation::Aggregate(m_pTuning->aggregator.method, {m_pStartEndValues.get(), m_numWeights},
                                {m_pWeights.get(), m_numWeights},
                                {m_pPositions.get(), aggregation::PositionCount(m_numWeights)}, result))
    {
        LogUnknownMethod(m_pTuning->aggregator);
    }
    return result;
}
