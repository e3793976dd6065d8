#include "core/metering/ckiroanalyzer.h"

#include <limits>

#include "core/metering/analyzerstages.h"
#include "platform/tavodesk.h"
#include "tests/core/metering/analyzerrecords.h"
#include "tests/support/testcontext.h"

using namespace analyzerrecords;

namespace
{

// Bank entries that the tests feed and read.
constexpr INT32 WeightID     = 11;
constexpr INT32 FirstOutput  = 30;
constexpr INT32 ScratchID    = 40;
constexpr INT32 FreeTrigger  = 100;
constexpr INT32 OtherTrigger = 101;

class Analyzer : public ContextTest
{
protected:
    /// A measured luma of 40 for a target of [60, 80], with confidence 0.5.
    Analyzer()
    {
        m_context.SetCalculatorResult(LumaID, 40.0f);
        m_context.SetCalculatorResult(WeightID, 0.5f);
        m_context.SetAnalyzerResult(TargetID, {60.0f, 80.0f});
        m_record.PassThrough(CalculatorBank(LumaID), AnalyzerBank(TargetID), CalculatorBank(WeightID), FirstOutput);
    }

    const KIROAnalyzerOutput& Tune()
    {
        m_pAnalyzer = TavoNew<CAnalyzer>();
        m_pAnalyzer->SetAnalyzerTuning(&m_record.m_record, m_context);
        return m_pAnalyzer->GetOutput();
    }

    const KIROAnalyzerOutput& Run()
    {
        const DOUBLE exposures[] = {1000.0, 4000.0, 2000.0};  // by AECAlgoExposureType
        m_pAnalyzer->Run(exposures);
        return m_pAnalyzer->GetOutput();
    }

    const KIROAnalyzerOutput& TuneAndRun()
    {
        Tune();
        return Run();
    }

    VOID ExpectResult(INT32 dataID, FLOAT start, FLOAT end)
    {
        EXPECT_FLOAT_EQ(m_context.AnalyzerResult(dataID).start, start) << dataID;
        EXPECT_FLOAT_EQ(m_context.AnalyzerResult(dataID).end, end) << dataID;
    }

    AnalyzerRecord     m_record{7};
    TavoPtr<CAnalyzer> m_pAnalyzer;
};

TEST_F(Analyzer, BringsTheReferenceExposureToTheLowerTarget)
{
    const std::pair<KIROExposureSelection, UINT64> cases[] = {
        {ExposureShort, 1500}, {ExposureSafe, 3000}, {ExposureLong, 6000}, {ExposureNone, 1500}};
    for (const auto& [refType, sensitivity] : cases)
    {
        m_record.m_record.refExposureType = refType;
        const KIROAnalyzerOutput& rOutput = TuneAndRun();
        EXPECT_EQ(rOutput.luma, 40.0f);
        EXPECT_EQ(rOutput.target.end, 80.0f);
        EXPECT_EQ(rOutput.confidence, 0.5f);
        EXPECT_EQ(rOutput.sensitivity, sensitivity) << refType;
    }
    ExpectResult(FirstOutput, 40.0f, 40.0f);
    ExpectResult(FirstOutput + 1, 60.0f, 80.0f);
    ExpectResult(FirstOutput + 2, 0.5f, 0.5f);
}

TEST(AnalyzerStages, AnExposureIsTruncatedAndSaturates)
{
    const FLOAT ofBlack = analyzerstages::RatioToTarget(-1.0f, 0.0f, 60.0f);
    EXPECT_FLOAT_EQ(ofBlack, 60.0f / 1e-7f);
    EXPECT_EQ(analyzerstages::ExposureByRatio(1001.0, 1.5f), 1501u);
    EXPECT_EQ(analyzerstages::ExposureByRatio(1e18, ofBlack), std::numeric_limits<UINT64>::max());
    EXPECT_EQ(analyzerstages::ExposureByRatio(2000.0, -1.5f), 0u);
}

TEST_F(Analyzer, OutputsOfComponentsAreOffInTriggersOrRefused)
{
    m_record.m_record.luma.aggregator.output.dataBank.bankID   = BankIDInvalid;
    m_record.m_record.target.aggregator.output.dataBank.dataID = -1;
    const KIROAnalyzerOutput& rOutput                          = TuneAndRun();
    EXPECT_EQ(rOutput.luma, 0.0f);
    EXPECT_EQ(rOutput.target.end, 0.0f);
    EXPECT_EQ(rOutput.confidence, 0.5f);
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);

    // Triggers are outputs too, other banks are refused.
    m_record.m_record.luma.aggregator.output.dataBank   = TriggerBank(FreeTrigger);
    m_record.m_record.target.aggregator.output.dataBank = TriggerBank(OtherTrigger);
    TuneAndRun();
    EXPECT_EQ(m_context.Trigger(FreeTrigger), 40.0f);
    EXPECT_EQ(m_context.Trigger(OtherTrigger), 60.0f);

    m_record.m_record.luma.aggregator.output.dataBank = CalculatorBank(ScratchID);
    EXPECT_EQ(TuneAndRun().luma, 40.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid bank ID 4 for Scene Analyzer SetData.\n"));
    EXPECT_EQ(m_context.m_pBankManager->GetDataStatsCalculator(ScratchID)->value, 0.0f);
}

TEST_F(Analyzer, TreesOfComponentsRememberTheirZoneAndThoseOfOperandsDoNot)
{
    // On the border of the zones the unit stays in the zone that it came from; an operand comes from below.
    NumberZones numbers(10.0f, 30.0f);
    RangeZones  ranges(TargetValueRangeStartEndType{1.0f, 2.0f}, TargetValueRangeStartEndType{3.0f, 4.0f});
    m_record.Luma({{LookUp<CalculationUnitType>(numbers, TriggerBank(FreeTrigger)), Read(CalculatorBank(WeightID))}},
                  AnalyzerBank(FirstOutput), MaxValue);
    m_record.Target({{LookUp<TargetCalculationUnitType>(ranges, TriggerBank(FreeTrigger)),
                      LookUp<CalculationUnitType>(numbers, TriggerBank(0))}},
                    AnalyzerBank(FirstOutput + 1), WeightedSum);
    ArithmeticOperationOperandInputType operand = {
        .method        = ArithmeticInputMethodType::TriggerSystemMethod,
        .triggerSystem = LookUp<TargetCalculationUnitType>(ranges, TriggerBank(FreeTrigger)).triggerSystem,
        .dataType      = BankDataType::end};
    m_record.Add(Copy(EndOfAnalysis, operand, AnalyzerBank(ScratchID)));

    m_context.SetTrigger(0, 150.0f);
    m_context.SetTrigger(FreeTrigger, 150.0f);
    EXPECT_EQ(TuneAndRun().luma, 30.0f);
    // Data ID 0 is no trigger, whatever stands there: the weight's tree is read at 0, and yields 10.
    ExpectResult(FirstOutput + 1, 30.0f, 40.0f);
    ExpectResult(ScratchID, 4.0f, 4.0f);

    m_context.SetTrigger(FreeTrigger, 100.0f);
    EXPECT_EQ(Run().luma, 10.0f);
    ExpectResult(FirstOutput + 1, 10.0f, 20.0f);
    ExpectResult(ScratchID, 4.0f, 4.0f);
}

TEST_F(Analyzer, OperatorsComputeEachMethod)
{
    const std::tuple<ArithmeticOperationMethodType, FLOAT, FLOAT> cases[] = {
        {Addition, 26.0f, 26.0f},    {Subtraction, -14.0f, -14.0f}, {Multiplication, 120.0f, 120.0f},
        {Division, 0.3f, 0.3f},      {Max, 20.0f, 20.0f},           {Min, 6.0f, 6.0f},
        {Smallest, 2.0f, 2.0f},      {SecondSmallest, 3.0f, 3.0f},  {Largest, 5.0f, 5.0f},
        {SecondLargest, 4.0f, 4.0f}, {FlashHighLuma, 54.0f, 54.0f}, {LinearInterpolation, -1.0f, -2.0f},
        {CondLarger, 5.0f, 5.0f},    {CondSmaller, 4.0f, 4.0f},     {CondEqual, 5.0f, 5.0f},
    };
    for (const auto& [method, start, end] : cases)
    {
        m_record.Add(Operator(BeginningOfAnalysis, method, 2.0f, 3.0f, 4.0f, 5.0f,
                              AnalyzerBank(200 + static_cast<INT32>(method))));
    }
    m_record.Add(Operator(BeginningOfAnalysis, FlashHighLuma, 20.0f, 3.0f, 4.0f, 5.0f, AnalyzerBank(300)));
    m_record.Add(Operator(BeginningOfAnalysis, Division, 6.0f, 1.0f, 0.0f, 1.0f, AnalyzerBank(301)));
    m_record.Add(Operator(BeginningOfAnalysis, CondEqual, 2.0f, 2.0f, 4.0f, 5.0f, AnalyzerBank(302)));
    m_record.Add(Operator(BeginningOfAnalysis, SecondLargest, 9.0f, 7.0f, 8.0f, 6.0f, AnalyzerBank(303)));
    TuneAndRun();
    for (const auto& [method, start, end] : cases)
    {
        ExpectResult(200 + static_cast<INT32>(method), start, end);
    }
    ExpectResult(300, 15.0f, 15.0f);
    ExpectResult(301, 6e7f, 6e7f);
    ExpectResult(302, 4.0f, 4.0f);
    ExpectResult(303, 8.0f, 8.0f);
}

TEST_F(Analyzer, OperatorsMergeWithWhatTheEntryHolds)
{
    const auto interpolate = [](DataBankType output, BankDataType half)
    { return Operator(EndOfAnalysis, LinearInterpolation, 1.0f, 2.0f, 1.0f, 0.0f, output, half); };
    for (INT32 dataID = ScratchID; dataID < ScratchID + 3; ++dataID)
    {
        m_context.SetAnalyzerResult(dataID, {8.0f, 9.0f});
    }
    m_context.SetTrigger(FreeTrigger, 8.0f);
    m_context.SetTrigger(OtherTrigger, 8.0f);
    m_record.Add(interpolate(AnalyzerBank(ScratchID), BankDataType::startEnd));
    m_record.Add(interpolate(AnalyzerBank(ScratchID + 1), BankDataType::start));
    m_record.Add(interpolate(AnalyzerBank(ScratchID + 2), BankDataType::end));
    m_record.Add(interpolate(TriggerBank(FreeTrigger), BankDataType::start));
    m_record.Add(interpolate(TriggerBank(OtherTrigger), BankDataType::end));
    // The halves of a pair as operands.
    m_record.Add(Copy(EndOfAnalysis, Entry(AnalyzerBank(TargetID)), AnalyzerBank(ScratchID + 3)));
    m_record.Add(Copy(EndOfAnalysis, Entry(AnalyzerBank(TargetID), BankDataType::end), AnalyzerBank(ScratchID + 4)));
    TuneAndRun();
    ExpectResult(ScratchID, 1.0f, 2.0f);
    ExpectResult(ScratchID + 1, 1.0f, 9.0f);
    ExpectResult(ScratchID + 2, 8.0f, 2.0f);
    EXPECT_EQ(m_context.Trigger(FreeTrigger), 1.0f);
    EXPECT_EQ(m_context.Trigger(OtherTrigger), 8.0f);
    ExpectResult(ScratchID + 3, 60.0f, 60.0f);
    ExpectResult(ScratchID + 4, 80.0f, 80.0f);
}

TEST_F(Analyzer, PrioritiesRunBeforeAndAfterTheComponents)
{
    // The first operator feeds the luma, the second reads it back; a disabled one leaves its entry alone.
    m_record.Add(Copy(EndOfAnalysis, Entry(AnalyzerBank(FirstOutput)), AnalyzerBank(ScratchID)));
    m_record.Add(Operator(BeginningOfAnalysis, Addition, 120.0f, 1.0f, 0.0f, 0.0f, AnalyzerBank(TargetID)));
    m_record.Add(Operator(EndOfAnalysis, Addition, 5.0f, 1.0f, 0.0f, 0.0f, AnalyzerBank(ScratchID + 1)));
    ArithmeticOperatorType disabled =
        Operator(BeginningOfAnalysis, Addition, 1.0f, 1.0f, 0.0f, 0.0f, AnalyzerBank(TargetID));
    disabled.enableFlag = FALSE;
    m_record.Add(disabled);
    m_context.SetAnalyzerResult(ScratchID + 1, {1.0f, 1.0f});
    const KIROAnalyzerOutput& rOutput = TuneAndRun();
    EXPECT_EQ(rOutput.target.start, 120.0f);
    EXPECT_EQ(rOutput.sensitivity, 6000u);
    ExpectResult(ScratchID, 40.0f, 40.0f);
    ExpectResult(ScratchID + 1, 5.0f, 5.0f);
}

TEST_F(Analyzer, LastAdjustmentOperatorGivesTheRatio)
{
    m_record.Add(Operator(AdjustmentRatio, Addition, 4.0f, 1.0f, 0.0f, 0.0f, AnalyzerBank(ScratchID)));
    m_record.Add(Copy(AdjustmentRatio, Entry(TriggerBank(FreeTrigger)), AnalyzerBank(ScratchID + 1)));
    m_context.SetTrigger(FreeTrigger, 2.5f);
    EXPECT_EQ(TuneAndRun().sensitivity, 5000u);
    ExpectResult(ScratchID, 4.0f, 4.0f);
    for (FLOAT unusable : {0.0f, -1.0f, std::numeric_limits<FLOAT>::quiet_NaN()})
    {
        m_context.SetTrigger(FreeTrigger, unusable);
        EXPECT_EQ(Run().sensitivity, 3000u) << unusable;
    }
}

TEST_F(Analyzer, AlgorithmsAboveHundredRunInPlaceOfTheComponents)
{
    m_record.Algorithm(Algorithm004);
    EXPECT_EQ(TuneAndRun().sensitivity, 3000u);
    EXPECT_TRUE(m_log.Has(16, "SA Algorithm ID 4 Created with Analyzer ID 7"));
    EXPECT_TRUE(m_log.Has(32, "Running algorithm 004 7, luma 40.00"));

    m_context.SetAnalyzerResult(FirstOutput, {1.0f, 1.0f});
    m_record.Algorithm(Algorithm101);
    const KIROAnalyzerOutput& rOutput = TuneAndRun();
    EXPECT_EQ(rOutput.luma, 0.0f);
    EXPECT_EQ(rOutput.sensitivity, 0u);
    EXPECT_EQ(rOutput.pName, nullptr);
    ExpectResult(FirstOutput, 1.0f, 1.0f);

    // An ID without an algorithm changes nothing, whatever its size.
    for (UINT32 unknown : {5u, 150u, 0xFFFFFFFFu})
    {
        m_record.Algorithm(unknown);
        EXPECT_EQ(TuneAndRun().sensitivity, 3000u) << unknown;
    }
}

TEST_F(Analyzer, BrokenTuningYieldsZerosAndLogs)
{
    const FLOAT            notANumber = std::numeric_limits<FLOAT>::quiet_NaN();
    ArithmeticOperatorType broken =
        Operator(EndOfAnalysis, SecondSmallest, notANumber, 1.0f, notANumber, 2.0f, AnalyzerBank(ScratchID));
    m_record.Add(broken);
    broken.operationMethod = static_cast<ArithmeticOperationMethodType>(99);
    m_record.Add(broken);
    broken.operandA.method = static_cast<ArithmeticInputMethodType>(3);
    broken.operandB        = Entry({BankIDTriggers, 1000});
    broken.operandC.method = ArithmeticInputMethodType::TriggerSystemMethod;
    broken.operandD        = Entry({static_cast<KIROBankIDType>(-5), -5});
    broken.output.dataBank = AnalyzerBank(1000);
    m_record.Add(broken);
    broken.operatorPriority = static_cast<ArithmeticOperationPriorityType>(3);
    m_record.Add(broken);

    CalculationUnitType unknown{};
    unknown.selection = static_cast<CalculationMethodType>(2);
    m_record.Luma({{unknown, Read({BankIDStatsCalculator, -1})}}, AnalyzerBank(1000),
                  static_cast<AggregationMethodType>(11));
    TargetCalculationUnitType noTree = {.selection     = CalculationMethodType::TriggerSystemMethod,
                                        .triggerSystem = {.trigger1DataCount = 0xFFFFFFFF}};
    m_record.Target({{noTree, Read(NoBank)}}, AnalyzerBank(FirstOutput + 1));
    m_record.m_record.confidence.calculators      = nullptr;
    m_record.m_record.confidence.calculatorsCount = 1000000;
    m_record.m_record.reservedParameterCount      = 5;
    m_record.m_record.exposureType                = static_cast<KIROExposureSelection>(17);
    m_record.m_record.refExposureType             = static_cast<KIROExposureSelection>(-1);
    const KIROAnalyzerOutput& rOutput             = TuneAndRun();
    EXPECT_EQ(rOutput.luma, 0.0f);
    EXPECT_EQ(rOutput.target.start, 0.0f);
    EXPECT_EQ(rOutput.confidence, 0.0f);
    EXPECT_EQ(rOutput.sensitivity, 0u);
    ExpectResult(ScratchID, 0.0f, 0.0f);
    AECAlgoExposureType type;
    EXPECT_FALSE(m_pAnalyzer->GetExposureType(&type));
    EXPECT_TRUE(m_log.Has(LevelError, "No matched calculator method selected 2"));
    EXPECT_TRUE(m_log.Has(LevelError, "No matched aggregation method type. 11"));
    EXPECT_TRUE(m_log.Has(LevelError, " Invalid input method selected 3"));

    // Arrays that are announced but not there.
    m_record.m_record                          = {};
    m_record.m_record.arithmeticOperatorsCount = 5;
    m_record.m_record.luma.calculatorsCount    = 5;
    m_record.m_record.target.calculatorsCount  = 5;
    EXPECT_EQ(TuneAndRun().sensitivity, 0u);
}

TEST_F(Analyzer, FramesAllocateNothing)
{
    RangeZones ranges(TargetValueRangeStartEndType{100.0f, 120.0f}, TargetValueRangeStartEndType{3.0f, 4.0f});
    const auto unit = LookUp<TargetCalculationUnitType>(ranges, TriggerBank(FreeTrigger));
    m_record.Target({{unit, Read(CalculatorBank(WeightID))}}, AnalyzerBank(FirstOutput + 1),
                    MinWeightedAbsoluteSumDifference);
    ArithmeticOperationOperandInputType operand = {.method        = ArithmeticInputMethodType::TriggerSystemMethod,
                                                   .triggerSystem = unit.triggerSystem};
    m_record.Add(Copy(BeginningOfAnalysis, operand, AnalyzerBank(ScratchID)));
    Tune();
    const UINT64 before = TavoDesk::GetAllocationCounters().allocations;
    EXPECT_EQ(Run().target.start, 100.0f);
    EXPECT_EQ(TavoDesk::GetAllocationCounters().allocations, before);
}

}  // namespace
