/// @file
/// Scene analyzers as plain tuning records for tests.
#pragma once

#include <vector>

#include "core/metering/analyzerbank.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace analyzerrecords
{

using namespace kirometeringsceneanalyzer;

// What tests feed a measured luma and its target with.
constexpr INT32 LumaID   = 10;  // calculator results
constexpr INT32 TargetID = 20;  // analyzer results

constexpr DataBankType NoBank{BankIDInvalid, 0};

inline DataBankType CalculatorBank(INT32 dataID)
{
    return {BankIDStatsCalculator, dataID};
}

inline DataBankType AnalyzerBank(INT32 dataID)
{
    return {BankIDSceneAnalyzer, dataID};
}

inline DataBankType TriggerBank(INT32 dataID)
{
    return {BankIDTriggers, dataID};
}

template <typename Unit = CalculationUnitType> Unit Read(DataBankType bank)
{
    Unit unit{};
    unit.selection = CalculationMethodType::DataBankMethod;
    unit.dataBank  = bank;
    return unit;
}

/// A tree of two zones over one trigger, [0, 100] and [100, 200], each yielding one value.
template <typename Level1, typename Level2> struct TwoZones
{
    template <typename Core>
    TwoZones(Core low, Core high)
        : leaves{{{0.0f, 1.0f}, low}, {{0.0f, 1.0f}, high}}, zones{{{0.0f, 100.0f}, 1, 0, &leaves[0]},
                                                                   {{100.0f, 200.0f}, 1, 0, &leaves[1]}}
    {
    }

    TwoZones(const TwoZones&) = delete;

    Level2 leaves[2];
    Level1 zones[2];
};

typedef TwoZones<TwoLevelTriggerSystemLevel1Type, TriggerSystemEndLevelType> NumberZones;
typedef TwoZones<RangeStartEndLevel1Type, RangeStartEndLevel2Type>           RangeZones;

/// A unit that looks a tree up by one trigger.
template <typename Unit, typename Zones> Unit LookUp(Zones& rZones, DataBankType trigger)
{
    Unit unit{};
    unit.selection     = CalculationMethodType::TriggerSystemMethod;
    unit.triggerSystem = {trigger, NoBank, 2, 0, rZones.zones};
    return unit;
}

inline ArithmeticOperationOperandInputType Constant(FLOAT value)
{
    ArithmeticOperationOperandInputType operand = {.method      = ArithmeticInputMethodType::TuningMethod,
                                                   .tuningValue = value};
    return operand;
}

inline ArithmeticOperationOperandInputType Entry(DataBankType bank, BankDataType half = BankDataType::startEnd)
{
    ArithmeticOperationOperandInputType operand = {
        .method = ArithmeticInputMethodType::DataBankMethod, .dataBank = bank, .dataType = half};
    return operand;
}

/// An enabled operator of four constants.
inline ArithmeticOperatorType Operator(ArithmeticOperationPriorityType priority, ArithmeticOperationMethodType method,
                                       FLOAT a, FLOAT b, FLOAT c, FLOAT d, DataBankType output,
                                       BankDataType half = BankDataType::startEnd)
{
    return {TRUE, priority, method, Constant(a), Constant(b), Constant(c), Constant(d), {output, half, nullptr}};
}

/// One that stores an operand as it is: A x 1 + 0.
inline ArithmeticOperatorType Copy(ArithmeticOperationPriorityType            priority,
                                   const ArithmeticOperationOperandInputType& rSource, DataBankType output)
{
    ArithmeticOperatorType copy = Operator(priority, Addition, 0.0f, 1.0f, 0.0f, 0.0f, output);
    copy.operandA               = rSource;
    return copy;
}

/// Owns what an analyzer's record points to. All components are off at first.
class AnalyzerRecord
{
public:
    explicit AnalyzerRecord(UINT32 id = 0)
    {
        m_record.analyzerID                        = id;
        m_record.exposureType                      = ExposureSafe;
        m_record.refExposureType                   = ExposureSafe;
        m_record.luma.aggregator.output.dataBank   = NoBank;
        m_record.target.aggregator.output.dataBank = NoBank;
        m_record.confidence.aggregator             = m_record.luma.aggregator;
    }

    AnalyzerRecord(const AnalyzerRecord&)            = delete;
    AnalyzerRecord& operator=(const AnalyzerRecord&) = delete;

    AnalyzerRecord& Luma(std::vector<GeneralComponentCalculatorType> calculators, DataBankType output,
                         AggregationMethodType method = NormalizedWeightedSum)
    {
        m_luma        = std::move(calculators);
        m_record.luma = {static_cast<UINT32>(m_luma.size()), 0, m_luma.data(), {method, {output, {}, nullptr}}};
        return *this;
    }

    AnalyzerRecord& Target(std::vector<TargetComponentCalculatorType> calculators, DataBankType output,
                           AggregationMethodType method = NormalizedWeightedSum)
    {
        m_target        = std::move(calculators);
        m_record.target = {static_cast<UINT32>(m_target.size()), 0, m_target.data(), {method, {output, {}, nullptr}}};
        return *this;
    }

    /// Luma, target and confidence are bank entries as they are, and go to the analyzer bank at firstOutput,
    /// firstOutput + 1 and firstOutput + 2.
    AnalyzerRecord& PassThrough(DataBankType luma, DataBankType target, DataBankType confidence, INT32 firstOutput)
    {
        const auto weight = Read(confidence);
        Luma({{Read(luma), weight}}, AnalyzerBank(firstOutput), MaxValue);
        Target({{Read<TargetCalculationUnitType>(target), weight}}, AnalyzerBank(firstOutput + 1), MaxValue);
        m_confidence        = {{Read(confidence), weight}};
        m_record.confidence = {1, 0, m_confidence.data(), {MaxValue, {AnalyzerBank(firstOutput + 2), {}, nullptr}}};
        return *this;
    }

    AnalyzerRecord& Add(const ArithmeticOperatorType& rOperator)
    {
        m_operators.push_back(rOperator);
        m_record.arithmeticOperators      = m_operators.data();
        m_record.arithmeticOperatorsCount = static_cast<UINT32>(m_operators.size());
        return *this;
    }

    AnalyzerRecord& Algorithm(UINT32 algorithmID)
    {
        m_parameters                    = {algorithmID};
        m_record.reservedParameter      = m_parameters.data();
        m_record.reservedParameterCount = 1;
        return *this;
    }

    SceneAnalyzerType m_record{};

private:
    std::vector<GeneralComponentCalculatorType> m_luma;
    std::vector<TargetComponentCalculatorType>  m_target;
    std::vector<GeneralComponentCalculatorType> m_confidence;
    std::vector<ArithmeticOperatorType>         m_operators;
    std::vector<UINT32>                         m_parameters;
};

}  // namespace analyzerrecords
