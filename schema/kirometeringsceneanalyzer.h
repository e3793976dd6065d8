/// @file
/// Scene analyzers: small programs that turn bank values into a luma, its target, a confidence and an exposure.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringsceneanalyzer
{

/// How a component makes one value of its calculators' values and weights.
enum AggregationMethodType : INT32
{
    Average                          = 0,  ///< mean, weights not used
    NormalizedWeightedSum            = 1,
    WeightedSum                      = 2,
    MinValue                         = 3,
    MaxValue                         = 4,
    MinWeight                        = 5,  ///< the value of least weight; the first on a tie
    MaxWeight                        = 6,  ///< the value of most weight; the first on a tie
    MultiplyValue                    = 7,
    RatioValue                       = 8,   ///< the first value divided by each of the others
    FirstValidConfidence             = 9,   ///< the first value with a weight above 0
    Dominant                         = 10,  ///< as NormalizedWeightedSum
    MinWeightedAbsoluteSumDifference = 11,  ///< targets only: the luma nearest to all weighted ranges
    RangeIntersection                = 12   ///< targets only: what all ranges share, or the gap between them
};
TUNING_ENUM(AggregationMethodType)
    ENUMERATOR(Average)
    ENUMERATOR(NormalizedWeightedSum)
    ENUMERATOR(WeightedSum)
    ENUMERATOR(MinValue)
    ENUMERATOR(MaxValue)
    ENUMERATOR(MinWeight)
    ENUMERATOR(MaxWeight)
    ENUMERATOR(MultiplyValue)
    ENUMERATOR(RatioValue)
    ENUMERATOR(FirstValidConfidence)
    ENUMERATOR(Dominant)
    ENUMERATOR(MinWeightedAbsoluteSumDifference)
    ENUMERATOR(RangeIntersection)
TUNING_ENUM_END

/// Where a component's calculator takes a value from.
enum class CalculationMethodType : INT32
{
    DataBankMethod      = 0,
    TriggerSystemMethod = 1
};
TUNING_ENUM(CalculationMethodType)
    ENUMERATOR(DataBankMethod)
    ENUMERATOR(TriggerSystemMethod)
TUNING_ENUM_END

/// Where an operand takes its value from.
enum class ArithmeticInputMethodType : INT32
{
    TuningMethod        = 0,  ///< tuningValue
    DataBankMethod      = 1,
    TriggerSystemMethod = 2
};
TUNING_ENUM(ArithmeticInputMethodType)
    ENUMERATOR(TuningMethod)
    ENUMERATOR(DataBankMethod)
    ENUMERATOR(TriggerSystemMethod)
TUNING_ENUM_END

/// When an operator runs within its analyzer.
enum ArithmeticOperationPriorityType : INT32
{
    BeginningOfAnalysis = 0,  ///< before the components
    EndOfAnalysis       = 1,  ///< after the components
    AdjustmentRatio     = 2   ///< last; its result replaces the ratio of target to luma
};
TUNING_ENUM(ArithmeticOperationPriorityType)
    ENUMERATOR(BeginningOfAnalysis)
    ENUMERATOR(EndOfAnalysis)
    ENUMERATOR(AdjustmentRatio)
TUNING_ENUM_END

/// What an operator computes of its operands A, B, C, D.
enum ArithmeticOperationMethodType : INT32
{
    Addition            = 0,   ///< A B + C D
    Subtraction         = 1,   ///< A B - C D
    Multiplication      = 2,   ///< A B C D
    Division            = 3,   ///< A B / C D
    Max                 = 4,   ///< the larger of A B and C D
    Min                 = 5,   ///< the smaller of A B and C D
    Smallest            = 6,   ///< of the four
    SecondSmallest      = 7,   ///< of the four
    Largest             = 8,   ///< of the four
    SecondLargest       = 9,   ///< of the four
    FlashHighLuma       = 10,  ///< A + C (B D - A) where B D exceeds A, else B D
    LinearInterpolation = 11,  ///< the pair C A + (1 - C) B and D A + (1 - D) B
    CondLarger          = 12,  ///< C if A > B, else D
    CondSmaller         = 13,  ///< C if A < B, else D
    CondEqual           = 14   ///< C if A = B, else D
};
TUNING_ENUM(ArithmeticOperationMethodType)
    ENUMERATOR(Addition)
    ENUMERATOR(Subtraction)
    ENUMERATOR(Multiplication)
    ENUMERATOR(Division)
    ENUMERATOR(Max)
    ENUMERATOR(Min)
    ENUMERATOR(Smallest)
    ENUMERATOR(SecondSmallest)
    ENUMERATOR(Largest)
    ENUMERATOR(SecondLargest)
    ENUMERATOR(FlashHighLuma)
    ENUMERATOR(LinearInterpolation)
    ENUMERATOR(CondLarger)
    ENUMERATOR(CondSmaller)
    ENUMERATOR(CondEqual)
TUNING_ENUM_END

/// A bank entry that receives a result.
struct OutputDataBankType
{
    DataBankType dataBank;  ///< BankIDSceneAnalyzer or BankIDTriggers; BankIDInvalid turns a component off
    BankDataType dataType;  ///< which half an operator replaces; components write both
    CHAR*        description;
};
TUNING_RECORD(OutputDataBankType)
    MEMBER(dataBank)
    MEMBER(dataType)
    MEMBER(description)
TUNING_RECORD_END

/// A two-level tree of numbers and the bank entries that drive it; an entry of data ID 0 reads as 0.
struct CalculationUnitTriggerSystemType
{
    DataBankType                     trigger1DataBank;
    DataBankType                     trigger2DataBank;
    UINT32                           trigger1DataCount;
    UINT32                           trigger1DataID;
    TwoLevelTriggerSystemLevel1Type* trigger1Data;
};
TUNING_RECORD(CalculationUnitTriggerSystemType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// A number: read from a bank, or from a tree.
struct CalculationUnitType
{
    CalculationMethodType            selection;
    DataBankType                     dataBank;
    CalculationUnitTriggerSystemType triggerSystem;
};
TUNING_RECORD(CalculationUnitType)
    MEMBER(selection)
    MEMBER(dataBank)
    MEMBER(triggerSystem)
TUNING_RECORD_END

/// A range of target luma.
struct TargetValueRangeStartEndType
{
    float rangeStart;
    float rangeEnd;
};
TUNING_RECORD(TargetValueRangeStartEndType)
    MEMBER(rangeStart)
    MEMBER(rangeEnd)
TUNING_RECORD_END

/// Last level of a tree of target ranges.
LEAF_ZONE(RangeStartEndLevel2Type, TargetValueRangeStartEndType, triggerData)

/// First level of a tree of target ranges.
INNER_ZONE(RangeStartEndLevel1Type, RangeStartEndLevel2Type, trigger2Data)

/// A two-level tree of ranges and the bank entries that drive it; an entry of data ID 0 reads as 0.
struct TargetCalculationUnitTriggerSystemType
{
    DataBankType             trigger1DataBank;
    DataBankType             trigger2DataBank;
    UINT32                   trigger1DataCount;
    UINT32                   trigger1DataID;
    RangeStartEndLevel1Type* trigger1Data;
};
TUNING_RECORD(TargetCalculationUnitTriggerSystemType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// A range: read from a bank, or from a tree.
struct TargetCalculationUnitType
{
    CalculationMethodType                  selection;
    DataBankType                           dataBank;
    TargetCalculationUnitTriggerSystemType triggerSystem;
};
TUNING_RECORD(TargetCalculationUnitType)
    MEMBER(selection)
    MEMBER(dataBank)
    MEMBER(triggerSystem)
TUNING_RECORD_END

/// How a component's calculators become one result, and where it goes.
struct ComponentAggregatorType
{
    AggregationMethodType method;
    OutputDataBankType    output;
};
TUNING_RECORD(ComponentAggregatorType)
    MEMBER(method)
    MEMBER(output)
TUNING_RECORD_END

/// One value with its weight.
struct GeneralComponentCalculatorType
{
    CalculationUnitType value;
    CalculationUnitType weight;
};
TUNING_RECORD(GeneralComponentCalculatorType)
    MEMBER(value)
    MEMBER(weight)
TUNING_RECORD_END

/// The luma or the confidence of an analyzer.
struct GeneralAnalyzerComponentType
{
    UINT32                          calculatorsCount;
    UINT32                          calculatorsID;
    GeneralComponentCalculatorType* calculators;
    ComponentAggregatorType         aggregator;
};
TUNING_RECORD(GeneralAnalyzerComponentType)
    VARIABLE(calculators)
    MEMBER(aggregator)
TUNING_RECORD_END

/// One range with its weight.
struct TargetComponentCalculatorType
{
    TargetCalculationUnitType value;
    CalculationUnitType       weight;
};
TUNING_RECORD(TargetComponentCalculatorType)
    MEMBER(value)
    MEMBER(weight)
TUNING_RECORD_END

/// The target of an analyzer.
struct TargetAnalyzerComponentType
{
    UINT32                         calculatorsCount;
    UINT32                         calculatorsID;
    TargetComponentCalculatorType* calculators;
    ComponentAggregatorType        aggregator;
};
TUNING_RECORD(TargetAnalyzerComponentType)
    VARIABLE(calculators)
    MEMBER(aggregator)
TUNING_RECORD_END

/// One operand.
struct ArithmeticOperationOperandInputType
{
    ArithmeticInputMethodType              method;
    float                                  tuningValue;
    DataBankType                           dataBank;
    TargetCalculationUnitTriggerSystemType triggerSystem;
    BankDataType                           dataType;  ///< which half of a bank's or a tree's pair; startEnd is start
};
TUNING_RECORD(ArithmeticOperationOperandInputType)
    MEMBER(method)
    MEMBER(tuningValue)
    MEMBER(dataBank)
    MEMBER(triggerSystem)
    MEMBER(dataType)
TUNING_RECORD_END

/// One step of an analyzer's own arithmetic.
struct ArithmeticOperatorType
{
    BOOL                                enableFlag;
    ArithmeticOperationPriorityType     operatorPriority;
    ArithmeticOperationMethodType       operationMethod;
    ArithmeticOperationOperandInputType operandA;
    ArithmeticOperationOperandInputType operandB;
    ArithmeticOperationOperandInputType operandC;
    ArithmeticOperationOperandInputType operandD;
    OutputDataBankType                  output;
};
TUNING_RECORD(ArithmeticOperatorType)
    BOOLEAN(enableFlag)
    MEMBER(operatorPriority)
    MEMBER(operationMethod)
    MEMBER(operandA)
    MEMBER(operandB)
    MEMBER(operandC)
    MEMBER(operandD)
    MEMBER(output)
TUNING_RECORD_END

/// One analyzer.
struct SceneAnalyzerType
{
    UINT32                       analyzerID;  ///< 0 to 999; keep it equal to the position in the array
    CHAR*                        description;
    CHAR*                        analyzerName;
    KIROExposureSelection        exposureType;     ///< the exposure it decides; ExposureNone for its bank entries alone
    KIROExposureSelection        refExposureType;  ///< the exposure that its luma was measured with
    GeneralAnalyzerComponentType luma;             ///< on the scale of the statistics
    TargetAnalyzerComponentType  target;           ///< on the scale of the luma
    GeneralAnalyzerComponentType confidence;
    UINT32                       arithmeticOperatorsCount;
    UINT32                       arithmeticOperatorsID;
    ArithmeticOperatorType*      arithmeticOperators;  ///< run in this order within each priority
    UINT32                       reservedParameterCount;
    UINT32                       reservedParameterID;
    UINT32*                      reservedParameter;  ///< at least one; [0] algorithm: 0 none, above 100 runs alone
};
TUNING_RECORD(SceneAnalyzerType)
    MEMBER(analyzerID)
    MEMBER(description)
    MEMBER(analyzerName)
    MEMBER(exposureType)
    MEMBER(refExposureType)
    MEMBER(luma)
    MEMBER(target)
    MEMBER(confidence)
    VARIABLE(arithmeticOperators)
    VARIABLE(reservedParameter)
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringSceneAnalyzerType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    SceneAnalyzerType       luxAnalyzer;  ///< runs in every metered frame, before the calculators
    UINT32                  analyzersCount;
    UINT32                  analyzersID;
    SceneAnalyzerType*      analyzers;  ///< run as the bank of active analyzers lists them
};
TUNING_RECORD(KIROMeteringSceneAnalyzerType)
    MODULE_HEADER
    MEMBER(luxAnalyzer)
    VARIABLE(analyzers)
TUNING_RECORD_END

} // namespace kirometeringsceneanalyzer
