/// @file
/// Tuning module kirometeringsceneanalyzer.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringsceneanalyzer
{

/// How a component makes one value of its calculators' values and weights.
enum AggregationMethodType : INT32
{
    Average                          = 0,
    NormalizedWeightedSum            = 1,
    WeightedSum                      = 2,
    MinValue                         = 3,
    MaxValue                         = 4,
    MinWeight                        = 5,
    MaxWeight                        = 6,
    MultiplyValue                    = 7,
    RatioValue                       = 8,
    FirstValidConfidence             = 9,
    Dominant                         = 10,
    MinWeightedAbsoluteSumDifference = 11,
    RangeIntersection                = 12
};
TUNING_ENUM(AggregationMethodType)
    ENUMERATOR(Average, "Mean of the values; weights do not count.")
    ENUMERATOR(NormalizedWeightedSum,
        "Weighted mean: the sum of weight times value over the sum of weights, so that doubling all weights changes "
        "nothing.")
    ENUMERATOR(WeightedSum, "Sum of weight times value; doubling all weights doubles the result.")
    ENUMERATOR(MinValue, "Smallest value; weights do not count.")
    ENUMERATOR(MaxValue, "Largest value; weights do not count.")
    ENUMERATOR(MinWeight, "The value of least weight; the first on a tie.")
    ENUMERATOR(MaxWeight, "The value of most weight; the first on a tie.")
    ENUMERATOR(MultiplyValue, "Product of the values; weights do not count.")
    ENUMERATOR(RatioValue, "The first value divided by each of the others; weights do not count.")
    ENUMERATOR(FirstValidConfidence, "The first value whose weight is above 0; 0 if there is none.")
    ENUMERATOR(Dominant, "As NormalizedWeightedSum.")
    ENUMERATOR(MinWeightedAbsoluteSumDifference,
        "For targets only: the one luma, 0 to 256, at which the weighted distances from all ranges balance best; -1 "
        "without a weight above 0. A luma or confidence gets 0.")
    ENUMERATOR(RangeIntersection,
        "For targets only: what all ranges share, or the gap between them, within 0 to 255; weights do not count. A "
        "luma or confidence gets 0.")
TUNING_ENUM_END

/// Where a component's calculator takes a value from.
enum class CalculationMethodType : INT32
{
    DataBankMethod      = 0,
    TriggerSystemMethod = 1
};
TUNING_ENUM(CalculationMethodType)
    ENUMERATOR(DataBankMethod,
        "The value is read from the entry dataBank; of a pair a luma, a confidence and a weight take the start, a "
        "target takes both.")
    ENUMERATOR(TriggerSystemMethod,
        "The value is what the tree triggerSystem yields at the values of its two triggers.")
TUNING_ENUM_END

/// Where an operand takes its value from.
enum class ArithmeticInputMethodType : INT32
{
    TuningMethod        = 0,
    DataBankMethod      = 1,
    TriggerSystemMethod = 2
};
TUNING_ENUM(ArithmeticInputMethodType)
    ENUMERATOR(TuningMethod, "The operand is the number tuningValue.")
    ENUMERATOR(DataBankMethod, "The operand is read from the entry dataBank, the half that dataType names.")
    ENUMERATOR(TriggerSystemMethod, "The operand is what the tree triggerSystem yields, the half that dataType names.")
TUNING_ENUM_END

/// When an operator runs within its analyzer.
enum ArithmeticOperationPriorityType : INT32
{
    BeginningOfAnalysis = 0,
    EndOfAnalysis       = 1,
    AdjustmentRatio     = 2
};
TUNING_ENUM(ArithmeticOperationPriorityType)
    ENUMERATOR(BeginningOfAnalysis, "Runs before luma, target and confidence, which may read the result.")
    ENUMERATOR(EndOfAnalysis, "Runs after luma, target and confidence.")
    ENUMERATOR(AdjustmentRatio,
        "Runs last; the start of its output entry, where it is above 0, replaces the ratio of target to luma by which "
        "the exposure is decided. Of several such operators the entry of the last in the list counts.")
TUNING_ENUM_END

/// What an operator computes of its operands A, B, C, D.
enum ArithmeticOperationMethodType : INT32
{
    Addition            = 0,
    Subtraction         = 1,
    Multiplication      = 2,
    Division            = 3,
    Max                 = 4,
    Min                 = 5,
    Smallest            = 6,
    SecondSmallest      = 7,
    Largest             = 8,
    SecondLargest       = 9,
    FlashHighLuma       = 10,
    LinearInterpolation = 11,
    CondLarger          = 12,
    CondSmaller         = 13,
    CondEqual           = 14
};
TUNING_ENUM(ArithmeticOperationMethodType)
    ENUMERATOR(Addition, "A times B plus C times D.")
    ENUMERATOR(Subtraction, "A times B less C times D.")
    ENUMERATOR(Multiplication, "The product of A, B, C and D.")
    ENUMERATOR(Division, "A times B over C times D; a denominator below 1e-7, also a negative one, counts as 1e-7.")
    ENUMERATOR(Max, "The larger of A times B and C times D.")
    ENUMERATOR(Min, "The smaller of A times B and C times D.")
    ENUMERATOR(Smallest, "The smallest of the four operands.")
    ENUMERATOR(SecondSmallest, "The second smallest of the four operands.")
    ENUMERATOR(Largest, "The largest of the four operands.")
    ENUMERATOR(SecondLargest, "The second largest of the four operands.")
    ENUMERATOR(FlashHighLuma,
        "Luma under full flash: A (luma without LED) plus C (flux) times what B times D (luma under low LED, taken to "
        "the exposure without LED) has above A; B times D where it is not above A.")
    ENUMERATOR(LinearInterpolation,
        "A pair: its start is A and B mixed with the share C of A, its end with the share D of A.")
    ENUMERATOR(CondLarger, "C where A is above B, else D.")
    ENUMERATOR(CondSmaller, "C where A is below B, else D.")
    ENUMERATOR(CondEqual, "C where A equals B exactly, else D.")
TUNING_ENUM_END

/// A bank entry that receives a result.
struct OutputDataBankType
{
    DataBankType dataBank;
    BankDataType dataType;
    CHAR*        description;
};
TUNING_RECORD(OutputDataBankType)
    MEMBER(dataBank,
        .meaning = "Entry that receives the result: of the bank of analyzer results (a pair) or of triggers (the "
                   "start alone); any other bank logs an error and stores nothing. BankIDInvalid or a negative data "
                   "ID switches a component off, which then yields 0.",
        .acts = Acts::Rebuilt, .refers = {WritesBank(BankIDSceneAnalyzer, BankIDTriggers).Unless(-1)})
    MEMBER(dataType,
        .meaning = "Which half of the entry an operator replaces; end leaves a trigger, and the ratio of an "
                   "AdjustmentRatio operator, as they were. Components write both halves, whatever stands here.",
        .start = "startEnd", .acts = Acts::Rebuilt)
    MEMBER(description,
        .meaning = "Text that the bank entry, logs and debug data show.",
        .acts = Acts::Never)
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
    MEMBER(trigger1DataBank,
        .meaning = "Bank entry whose value picks the zone of the first level; data ID 0, in any bank, and "
                   "BankIDInvalid read as 0, for a tree that does not depend on it.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Bank entry whose value picks the zone of the second level; data ID 0, in any bank, and "
                   "BankIDInvalid read as 0, for a tree that does not depend on it.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable).Unless(0)})
    VARIABLE(trigger1Data,
        .meaning = "The tree: zones of trigger 1 in ascending order, each with zones of trigger 2 that hold a number. "
                   "Without a zone it yields 0, with an error in each run.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// A number: read from a bank, or from a tree.
struct CalculationUnitType
{
    CalculationMethodType            selection;
    DataBankType                     dataBank;
    CalculationUnitTriggerSystemType triggerSystem;
};
TUNING_RECORD(CalculationUnitType)
    MEMBER(selection,
        .meaning = "Whether the number comes from a bank entry or from a tree.",
        .acts = Acts::Rebuilt)
    MEMBER(dataBank,
        .meaning = "Bank entry that is read with DataBankMethod; of a region its weight, of a pair the start. A "
                   "missing region, a bank of another kind and an ID above 999 read as 0, the last two with an error.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable)},
        .when = "selection=DataBankMethod")
    MEMBER(triggerSystem,
        .meaning = "Tree that is evaluated with TriggerSystemMethod; with DataBankMethod it is not read.",
        .acts = Acts::Rebuilt, .when = "selection=TriggerSystemMethod")
TUNING_RECORD_END

/// A range of target luma.
struct TargetValueRangeStartEndType
{
    float rangeStart;
    float rangeEnd;
};
TUNING_RECORD(TargetValueRangeStartEndType)
    MEMBER(rangeStart,
        .meaning = "Target luma, on the scale of the luma that it is compared with: doubled, the exposure doubles. In "
                   "the tree of an operand, the number that dataType start or startEnd takes.",
        .unit = Unit::Varies, .range = Any, .start = "46.0", .acts = Acts::Rebuilt)
    MEMBER(rangeEnd,
        .meaning = "Upper end of the target range: the exposure aims at the start, the end counts in "
                   "MinWeightedAbsoluteSumDifference, RangeIntersection and for readers of the bank entry. In the "
                   "tree of an operand, the number that dataType end takes.",
        .unit = Unit::Varies, .range = Any, .start = "46.0", .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// Last level of a tree of target ranges.
LEAF_ZONE(RangeStartEndLevel2Type, TargetValueRangeStartEndType, triggerData,
    .meaning = "Range of luma that the zone yields; in the tree of an operand a pair of any two numbers.",
    .unit = Unit::Varies, .range = Any, .acts = Acts::Rebuilt)

/// First level of a tree of target ranges.
INNER_ZONE(RangeStartEndLevel1Type, RangeStartEndLevel2Type, trigger2Data,
    .meaning = "Zones of trigger 2 within this zone of trigger 1, in ascending order.",
    .entries = AtLeast(1), .acts = Acts::Rebuilt)

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
    MEMBER(trigger1DataBank,
        .meaning = "Bank entry whose value picks the zone of the first level; data ID 0, in any bank, and "
                   "BankIDInvalid read as 0, for a tree that does not depend on it.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Bank entry whose value picks the zone of the second level; data ID 0, in any bank, and "
                   "BankIDInvalid read as 0, for a tree that does not depend on it.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable).Unless(0)})
    VARIABLE(trigger1Data,
        .meaning = "The tree: zones of trigger 1 in ascending order, each with zones of trigger 2 that hold a range. "
                   "Without a zone it yields 0, with an error in each run.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// A range: read from a bank, or from a tree.
struct TargetCalculationUnitType
{
    CalculationMethodType                  selection;
    DataBankType                           dataBank;
    TargetCalculationUnitTriggerSystemType triggerSystem;
};
TUNING_RECORD(TargetCalculationUnitType)
    MEMBER(selection,
        .meaning = "Whether the range comes from a bank entry or from a tree.",
        .start = "TriggerSystemMethod", .acts = Acts::Rebuilt)
    MEMBER(dataBank,
        .meaning = "Bank entry that is read with DataBankMethod; one that holds a single number counts as a range of "
                   "no width. A missing region, a bank of another kind and an ID above 999 read as 0, the last two "
                   "with an error.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable)},
        .when = "selection=DataBankMethod")
    MEMBER(triggerSystem,
        .meaning = "Tree that is evaluated with TriggerSystemMethod; with DataBankMethod it is not read.",
        .acts = Acts::Rebuilt, .when = "selection=TriggerSystemMethod")
TUNING_RECORD_END

/// How a component's calculators become one result, and where it goes.
struct ComponentAggregatorType
{
    AggregationMethodType method;
    OutputDataBankType    output;
};
TUNING_RECORD(ComponentAggregatorType)
    MEMBER(method,
        .meaning = "How the values and weights of the component's calculators become one; a target applies it to "
                   "starts and to ends.",
        .start = "Average", .acts = Acts::Rebuilt)
    MEMBER(output,
        .meaning = "Bank entry that receives the component's result, for other analyzers and the host. With "
                   "BankIDInvalid or a negative data ID the component is off and yields 0.",
        .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// One value with its weight.
struct GeneralComponentCalculatorType
{
    CalculationUnitType value;
    CalculationUnitType weight;
};
TUNING_RECORD(GeneralComponentCalculatorType)
    MEMBER(value,
        .meaning = "The number.",
        .acts = Acts::Rebuilt)
    MEMBER(weight,
        .meaning = "How much the number counts among the others, in methods that weigh.",
        .acts = Acts::Rebuilt)
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
    VARIABLE(calculators,
        .meaning = "Values with their weights, of which the aggregator makes one number; without any it is 0.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
    MEMBER(aggregator,
        .meaning = "How the values become one number, and where it goes.",
        .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// One range with its weight.
struct TargetComponentCalculatorType
{
    TargetCalculationUnitType value;
    CalculationUnitType       weight;
};
TUNING_RECORD(TargetComponentCalculatorType)
    MEMBER(value,
        .meaning = "The range.",
        .acts = Acts::Rebuilt)
    MEMBER(weight,
        .meaning = "How much the range counts among the others, in methods that weigh.",
        .acts = Acts::Rebuilt)
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
    VARIABLE(calculators,
        .meaning = "Ranges with their weights, of which the aggregator makes one; without any it is 0, and the "
                   "exposure with it, unless an AdjustmentRatio operator decides that.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
    MEMBER(aggregator,
        .meaning = "How the ranges become one, and where it goes.",
        .acts = Acts::Rebuilt)
TUNING_RECORD_END

/// One operand.
struct ArithmeticOperationOperandInputType
{
    ArithmeticInputMethodType              method;
    float                                  tuningValue;
    DataBankType                           dataBank;
    TargetCalculationUnitTriggerSystemType triggerSystem;
    BankDataType                           dataType;
};
TUNING_RECORD(ArithmeticOperationOperandInputType)
    MEMBER(method,
        .meaning = "Whether the operand is a number, a bank entry or a tree.",
        .start = "TuningMethod", .acts = Acts::Rebuilt)
    MEMBER(tuningValue,
        .meaning = "The operand with TuningMethod, in the unit of what the operator computes; 1.0 for a factor that "
                   "is not needed, 0.0 for a term that is not.",
        .unit = Unit::Varies, .range = Any, .start = "1.0", .acts = Acts::Rebuilt, .when = "method=TuningMethod")
    MEMBER(dataBank,
        .meaning = "Bank entry that is read with DataBankMethod, the half that dataType names. A missing region, a "
                   "bank of another kind and an ID above 999 read as 0, the last two with an error.",
        .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable)},
        .when = "method=DataBankMethod")
    MEMBER(triggerSystem,
        .meaning = "Tree that is evaluated with TriggerSystemMethod, its ranges standing for pairs of any numbers; it "
                   "is loaded anew in each run and remembers no zone.",
        .acts = Acts::Rebuilt, .when = "method=TriggerSystemMethod")
    MEMBER(dataType,
        .meaning = "Which half of a bank's or a tree's pair the operand is: end the end, start and startEnd the "
                   "start.",
        .start = "startEnd", .acts = Acts::Rebuilt, .when = "method=DataBankMethod|TriggerSystemMethod")
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
    BOOLEAN(enableFlag,
        .meaning = "On, the operator runs; off, its entry keeps the value that it has, and an AdjustmentRatio "
                   "operator no longer decides the ratio.",
        .start = "true", .acts = Acts::Rebuilt)
    MEMBER(operatorPriority,
        .meaning = "When in its analyzer the operator runs; operators of one priority run in the order of the array.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(operationMethod,
        .meaning = "What is computed of the four operands.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(operandA,
        .meaning = "First operand, A in the methods.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(operandB,
        .meaning = "Second operand, B in the methods.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(operandC,
        .meaning = "Third operand, C in the methods.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(operandD,
        .meaning = "Fourth operand, D in the methods.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
    MEMBER(output,
        .meaning = "Bank entry that receives the result, for later operators, analyzers and the host.",
        .acts = Acts::Rebuilt, .when = "enableFlag")
TUNING_RECORD_END

/// One analyzer.
struct SceneAnalyzerType
{
    UINT32                       analyzerID;
    CHAR*                        description;
    CHAR*                        analyzerName;
    KIROExposureSelection        exposureType;
    KIROExposureSelection        refExposureType;
    GeneralAnalyzerComponentType luma;
    TargetAnalyzerComponentType  target;
    GeneralAnalyzerComponentType confidence;
    UINT32                       arithmeticOperatorsCount;
    UINT32                       arithmeticOperatorsID;
    ArithmeticOperatorType*      arithmeticOperators;
    UINT32                       reservedParameterCount;
    UINT32                       reservedParameterID;
    UINT32*                      reservedParameter;
};
TUNING_RECORD(SceneAnalyzerType)
    MEMBER(analyzerID,
        .meaning = "Number by which run lists name the analyzer, of two with one number the first; keep it equal to "
                   "the position in the array, by which results that the host amends find their bank entries. From "
                   "1000 on it decides no exposure; that of the lux analyzer names nothing.",
        .unit = Unit::ID, .range = {0, 999}, .odd = AtLeast(0), .acts = Acts::Rebuilt,
        .refers = {Defines(Thing::Analyzer)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    MEMBER(analyzerName,
        .meaning = "Name in logs, debug data (64 characters) and the results that the host gets; the lux analyzer's "
                   "describes the triggers of lux index and luma.",
        .acts = Acts::Never)
    MEMBER(exposureType,
        .meaning = "Exposure that the analyzer decides; ExposureNone decides none and runs for its bank entries. Of "
                   "two active analyzers of one exposure the later in the run list wins; the lux analyzer decides "
                   "none.",
        .start = "ExposureSafe", .acts = Acts::Rebuilt)
    MEMBER(refExposureType,
        .meaning = "Exposure that the ratio of target to luma is applied to, the one that its luma was measured with; "
                   "ExposureNone stands for short. That of the lux analyzer also counts for the lux index "
                   "(ExposureNone: long), the flash exposure increase (ExposureNone: safe) and the precision flash.",
        .start = "ExposureSafe", .acts = Acts::Rebuilt)
    MEMBER(luma,
        .meaning = "What is measured, on the scale of the statistics: doubled, the exposure halves.",
        .acts = Acts::Rebuilt)
    MEMBER(target,
        .meaning = "What the luma should be, on its scale: doubled, the exposure doubles.",
        .acts = Acts::Rebuilt)
    MEMBER(confidence,
        .meaning = "How sure the analyzer is, for other analyzers and the host; it decides no exposure, and its entry "
                   "is 0 until the analyzer has run in the frame.",
        .acts = Acts::Rebuilt)
    VARIABLE(arithmeticOperators,
        .meaning = "The analyzer's own arithmetic, in this order within each priority; verbose debug data show the "
                   "first 20 that run.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
    VARIABLE(reservedParameter,
        .meaning = "[0] is the coded algorithm: 0 none, 1 lux index (for the lux analyzer), 2 lux index of a flash "
                   "snapshot, 3 precision flash, 4 nothing; 101 replaces the analyzer's run and leaves all results 0, "
                   "any other number counts as none, and so does an empty list. Further entries are not read.",
        .unit = Unit::ID, .range = {0, 101}, .odd = AtLeast(0), .entries = AtLeast(0), .start = "[0]",
        .acts = Acts::Rebuilt, .refers = {Reads(Thing::Algorithm).Unless(0)})
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringSceneAnalyzerType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    SceneAnalyzerType       luxAnalyzer;
    UINT32                  analyzersCount;
    UINT32                  analyzersID;
    SceneAnalyzerType*      analyzers;
};
TUNING_RECORD(KIROMeteringSceneAnalyzerType)
    MODULE_HEADER("Scene analyzers: small programs that turn bank values into a luma, its target, a confidence and "
                  "an exposure.")
    MEMBER(luxAnalyzer,
        .meaning = "Runs in every metered frame before the listed calculators and decides no exposure; with "
                   "reservedParameter [1] it publishes the lux index, its luma, the dark and bright ratios and the "
                   "flash influence as triggers.",
        .acts = Acts::Rebuilt)
    VARIABLE(analyzers,
        .meaning = "Analyzers that run as the run list of active analyzers names them, in its order; only the first "
                   "1000 are used, and of two with one ID the first.",
        .entries = {1, 1000}, .acts = Acts::Rebuilt)
TUNING_RECORD_END

} // namespace kirometeringsceneanalyzer
