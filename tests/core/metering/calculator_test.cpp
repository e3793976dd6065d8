// Tuned measurements: what they store where, in which order, and what stands there when nothing could be measured.

#include "core/metering/ccalculatormanager.h"

#include "tests/support/statsfixture.h"

using namespace statsfixture;
using namespace kirometeringstatscalculator;

namespace
{

constexpr INT32 TriggerID = 70;

class Calculators : public StatsTest
{
protected:
    /// The sample histograms: 10, 20, 30 and 40 samples of luma 16, 64, 128 and 192, and the same all at 192.
    Calculators()
    {
        SetROI(3, 0.5f, 0.5f, 0.125f, 0.125f);
        m_luma[5] = 10.0f;
        SetAlone(Grid("luma", 4, 3, m_luma));
        EXPECT_EQ(Set(Grid("colour", 4, 3, m_colour)), 0);
        EXPECT_EQ(Set(Hist("H", m_counts, m_lut)), 0);
        EXPECT_EQ(Set(Hist("H2", m_counts2, m_lut)), 0);
    }

    /// Adds a calculator whose range does not depend on the lux index.
    StatsCalculatorType& Add(UINT32 id, CalculatorAPIType api, const CHAR* pChannel, StartEndType range, INT32 start,
                             INT32 end)
    {
        m_ranges.push_back({{0.0f, 1.0f}, range});
        StatsCalculatorType calculator{};
        calculator.calculatorID                        = id;
        calculator.APISelection                        = api;
        calculator.statsSelection                      = {const_cast<CHAR*>(pChannel), const_cast<CHAR*>("colour"),
                                                          const_cast<CHAR*>("colour"), nullptr};
        calculator.outputStorage                       = {start, end};
        calculator.generalParameters.weightTable2D     = TableID;
        calculator.generalParameters.rangeTriggerCount = 1;
        calculator.generalParameters.rangeTrigger      = &m_ranges.back();
        m_records.push_back(calculator);
        return m_records.back();
    }

    VOID SetParameters(StatsCalculatorType& rCalculator, std::vector<FLOAT> parameters)
    {
        m_parameters                    = std::move(parameters);
        rCalculator.extensionArray      = m_parameters.data();
        rCalculator.extensionArrayCount = static_cast<UINT32>(m_parameters.size());
    }

    /// One frame with these calculators active, in this order, on the records as they are now.
    VOID Run(std::vector<UINT32> ids)
    {
        KIROMeteringStatsCalculatorType tuning = {.statsCalculatorsCount = static_cast<UINT32>(m_records.size()),
                                                  .statsCalculators      = m_records.data()};
        m_pTuning                              = m_context.Stored(tuning);
        RunAgain(std::move(ids));
    }

    /// What one frame with calculator 1 stores.
    FLOAT RunFirst()
    {
        Run({1});
        return Slot(1);
    }

    /// One more frame on the tuning of the last.
    VOID RunAgain(std::vector<UINT32> ids)
    {
        m_manager.UpdateCalculators(m_pTuning);
        m_active = {1, nullptr, static_cast<UINT32>(ids.size()), 0, ids.data()};
        SetBank(BankIDActiveCalculators, &m_active);
        m_manager.RunCalculators();
    }

    std::vector<std::string> StartedCalculators() const
    {
        std::vector<std::string> started;
        for (const auto& rLine : m_log.Lines())
        {
            if (rLine.text.starts_with("---- Running calculator"))
            {
                started.push_back(rLine.text);
            }
        }
        return started;
    }

    FLOAT Slot(INT32 dataID)
    {
        return m_context.m_pBankManager->GetDataStatsCalculator(dataID)->value;
    }

    std::vector<FLOAT>                            m_luma    = std::vector<FLOAT>(12, 1.0f);
    std::vector<FLOAT>                            m_colour  = std::vector<FLOAT>(12, 0.5f);
    std::vector<UINT32>                           m_counts  = {10, 20, 30, 40};
    std::vector<UINT32>                           m_counts2 = {0, 0, 0, 100};
    std::vector<FLOAT>                            m_lut     = {16.0f, 64.0f, 128.0f, 192.0f};
    std::vector<FLOAT>                            m_parameters;
    std::deque<TriggerSystemEndLevelStartEndType> m_ranges;
    std::vector<StatsCalculatorType>              m_records;
    DBActiveCalculatorsPayload                    m_active{};
    KIROMeteringStatsCalculatorType*              m_pTuning = nullptr;
    CCalculatorManager                            m_manager{m_context};
};

TEST_F(Calculators, EachMeasureStoresItsOutputsFromTheStartOfItsSlots)
{
    for (INT32 slot = 0; slot < 20; ++slot)
    {
        m_context.SetCalculatorResult(slot, 99.0f);
    }
    Add(1, API01GridWeightedAverage, "luma", {}, 1, 1);
    Add(4, API04HistWeightedAverage, "H", {0.0f, 1.0f}, 2, 2);
    Add(5, API05HistLumaRangeAverage, "H", {40.0f, 160.0f}, 3, 4);
    Add(6, API06HistPercentileRangeAverage, "H", {0.0f, 0.45f}, 5, 6);
    StatsCalculatorType& rCounter    = Add(7, API07RgbgDomainStatsCounter, "luma", {0.0f, 1.0f}, 7, 7);
    rCounter.generalParameters.ROIID = 3;
    m_ranges.back().trigger          = {0.0f, 10.0f};
    Add(9, API09GridStatsRoughness, "luma", {0.6f, 1.0f}, 8, 9);
    Add(2, API02GridSatRatiosAverage, "luma", {}, 10, 11);
    Run({1, 4, 5, 6, 7, 9, 2, 77});

    const FLOAT expected[] = {
        99.0f, 21.0f / 12.0f, 16.0f, 8320.0f / 60.0f, 0.7f, 3360.0f / 45.0f, 99.0f, 2.1f, (8.0f / 11.0f + 0.5f) / 2.0f,
        0.5f,  99.0f,         99.0f};
    for (INT32 slot = 0; slot < static_cast<INT32>(std::size(expected)); ++slot)
    {
        EXPECT_NEAR(Slot(slot), expected[slot], 1e-4f) << slot;
    }
    EXPECT_EQ(m_log.Count(LevelWarning, "API not ready yet!"), 1u);
}

TEST_F(Calculators, WhatCouldNotBeMeasuredIsMinusOne)
{
    Add(1, API05HistLumaRangeAverage, "absent", {0.0f, 1.0f}, 3, 4);
    Add(2, API09GridStatsRoughness, "H", {0.0f, 1.0f}, 6, 5).description               = const_cast<CHAR*>("b");
    Add(3, API01GridWeightedAverage, "luma", {}, 8, 8).generalParameters.weightTable2D = 66;
    Run({1, 2, 3});
    for (INT32 slot : {3, 4, 6, 7, 8})
    {
        EXPECT_EQ(Slot(slot), -1.0f) << slot;
    }
    EXPECT_EQ(m_log.Count(LevelWarning, "Error with calculation; Setting -1 to bank"), 2u);
    EXPECT_TRUE(m_log.Has(LevelWarning, "calculator b outputstart 6 end 5 not sufficient; using storage index 6"));
}

TEST_F(Calculators, ActiveListIsTheOrderAndNewTuningsReplaceAll)
{
    Add(1, API01GridWeightedAverage, "luma", {}, 1, 1).description   = const_cast<CHAR*>("a");
    Add(2, API01GridWeightedAverage, "colour", {}, 2, 2).description = const_cast<CHAR*>("b");
    Run({2, 1, 2});
    EXPECT_EQ(StartedCalculators(), (std::vector<std::string>{"---- Running calculator ID: 2, b ----",
                                                              "---- Running calculator ID: 1, a ----",
                                                              "---- Running calculator ID: 2, b ----"}));
    RunAgain({1, 2});
    EXPECT_EQ(m_log.Count(LevelTrace, "Updated Calculators, count: 2"), 1u) << "the same tuning";
    m_records.pop_back();
    m_records[0].outputStorage = {5, 5};
    Run({1, 2});
    EXPECT_EQ(m_log.Count(LevelTrace, "Updated Calculators, count: 1"), 1u);
    EXPECT_FLOAT_EQ(Slot(5), 1.75f);
}

TEST_F(Calculators, AllOfOneIDRunInTheOrderOfTheTuning)
{
    for (const auto& [id, pName] : {std::pair(7, "a"), std::pair(2, "b"), std::pair(7, "c"), std::pair(5, "d")})
    {
        Add(id, API01GridWeightedAverage, "luma", {}, 1, 1).description = const_cast<CHAR*>(pName);
    }
    Run({7, 9, 2});
    EXPECT_EQ(StartedCalculators(), (std::vector<std::string>{"---- Running calculator ID: 7, a ----",
                                                              "---- Running calculator ID: 7, c ----",
                                                              "---- Running calculator ID: 2, b ----"}));
}

TEST_F(Calculators, RangesFollowTheLuxIndex)
{
    TriggerSystemEndLevelStartEndType rows[] = {{{0.0f, 100.0f}, {0.0f, 0.3f}}, {{200.0f, 300.0f}, {0.3f, 0.9f}}};
    auto& rParameters                        = Add(1, API06HistPercentileRangeAverage, "H", {}, 1, 1).generalParameters;
    rParameters.rangeTrigger                 = rows;
    rParameters.rangeTriggerCount            = 2;
    // 0 to 0.3, 0.15 to 0.6, 0.3 to 0.9; a border at the end of a bin leaves the bin out at the start.
    const FLOAT expected[][2] = {{50.0f, 1440.0f / 30.0f},
                                 {150.0f, (15.0f * 64.0f + 30.0f * 128.0f) / 45.0f},
                                 {250.0f, (30.0f * 128.0f + 30.0f * 192.0f) / 60.0f}};
    for (const auto& rPair : expected)
    {
        m_context.SetTrigger(TriggerCtrlLux, rPair[0]);
        EXPECT_NEAR(RunFirst(), rPair[1], 0.01f) << rPair[0];
    }
}

TEST_F(Calculators, FirstParameterSwitchesInterpolationOn)
{
    m_luma = {10.0f, 20.0f, 40.0f};
    SetAlone(Grid("luma", 3, 1, m_luma));
    SetROI(3, 0.25f, 0.0f, 0.5f, 1.0f);
    StatsCalculatorType& rCalculator    = Add(1, API01GridWeightedAverage, "luma", {}, 1, 1);
    rCalculator.generalParameters.ROIID = 3;
    for (const auto& [parameters, luma] :
         std::vector<std::pair<std::vector<FLOAT>, FLOAT>>{{{}, 20.0f}, {{0.0f}, 20.0f}, {{1.0f}, 32.5f / 1.5f}})
    {
        SetParameters(rCalculator, parameters);
        EXPECT_FLOAT_EQ(RunFirst(), luma);
    }
}

TEST_F(Calculators, PercentilesOfTwoExposuresAreBlendedByATrigger)
{
    StatsCalculatorType& rCalculator    = Add(1, API10HistPercentileRangeAverageHDR, "H", {0.0f, 0.45f}, 1, 2);
    rCalculator.statsSelection.channel2 = const_cast<CHAR*>("H2");
    m_context.SetCalculatorResult(2, 99.0f);
    // Short counts alone below 100, Safe alone above 200.
    const std::vector<FLOAT> parameters = {0.0f, 2.0f, 100.0f, 200.0f, BankIDTriggers, TriggerID};
    SetParameters(rCalculator, parameters);
    EXPECT_EQ(RunFirst(), -1.0f);
    EXPECT_TRUE(m_log.HasPart(LevelError, "error reflected frame null"));

    m_context.SaveFrame({.frameID = 10, .exposureSets = {{.exposure = 1000}, {}, {.exposure = 2000}}});
    const FLOAT first = 3360.0f / 45.0f;
    for (const auto& [trigger, luma] : std::vector<std::pair<FLOAT, FLOAT>>{
             {50.0f, first * 2.0f}, {100.0f, first * 2.0f}, {150.0f, first + 96.0f}, {250.0f, 192.0f}})
    {
        m_context.SetTrigger(TriggerID, trigger);
        EXPECT_FLOAT_EQ(RunFirst(), luma) << trigger;
    }
    EXPECT_EQ(Slot(2), 99.0f) << "one output";

    // The second channel is not asked for while the first counts alone.
    rCalculator.statsSelection.channel2 = nullptr;
    EXPECT_EQ(RunFirst(), -1.0f);
    m_context.SetTrigger(TriggerID, 50.0f);
    EXPECT_FLOAT_EQ(RunFirst(), first * 2.0f);

    const std::pair<UINT32, FLOAT> faults[] = {{1, 3.0f}, {4, BankIDConvBase}, {5, 1000.0f}};
    for (const auto& [index, value] : faults)
    {
        SetParameters(rCalculator, parameters);
        m_parameters[index] = value;
        EXPECT_EQ(RunFirst(), -1.0f) << index;
    }
    SetParameters(rCalculator, {0.0f, 2.0f, 100.0f, 200.0f, BankIDTriggers});
    EXPECT_EQ(RunFirst(), -1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "exposure types are wrong: 0 3"));
    EXPECT_TRUE(m_log.Has(LevelError, "no trigger found for bankID 9 dataID 1000"));
    EXPECT_TRUE(m_log.Has(LevelError, "error expected 6 extension parameters and got 5"));
}

TEST_F(Calculators, ExtremeColoursStayInTheWalkAfterTheyAreSwitchedOffOrOneOfThemFails)
{
    m_context.m_input.AWBState = {TRUE, 1.0f, 1.0f, 1.0f, 5000, {}};
    for (INT32 id : {1, 2})
    {
        StatsCalculatorType& rCalculator    = Add(id, API08ExtremeColorRgBgStatsRatio, "luma", {0.0f, 1.0f}, id, id);
        rCalculator.generalParameters.ROIID = 3;
        m_ranges.back().trigger             = {0.0f, 10.0f * static_cast<FLOAT>(id)};
    }
    // Weights by luma: 11 regions of 0.1 and one of 1; half of that for the second.
    Run({1, 2});
    const FLOAT first = 2.1f / 12.0f;
    EXPECT_NEAR(Slot(1), first, 1e-5f);
    EXPECT_NEAR(Slot(2), first / 2.0f, 1e-5f);
    // Not active: the ratio and the count of before go on.
    RunAgain({});
    EXPECT_NEAR(Slot(1), (first + 2.1f) / 24.0f, 1e-5f);
    // A run begins anew.
    RunAgain({1});
    EXPECT_NEAR(Slot(1), first, 1e-5f);

    // One that cannot be measured does not take the others with it, wherever it stands in the list.
    for (const auto& [roiID, pChannel] : std::vector<std::pair<UINT32, const CHAR*>>{{8, "colour"}, {3, "absent"}})
    {
        m_records[1].generalParameters.ROIID = roiID;
        m_records[1].statsSelection.channel3 = const_cast<CHAR*>(pChannel);
        for (const std::vector<UINT32>& rOrder : {std::vector<UINT32>{1, 2}, {2, 1}})
        {
            m_context.SetCalculatorResult(1, 99.0f);
            Run(rOrder);
            EXPECT_NEAR(Slot(1), first, 1e-5f) << roiID << ", first " << rOrder[0];
            EXPECT_EQ(Slot(2), -1.0f) << roiID;
        }
    }
    // Where none can be, the pass is dropped: the channels may be others at the positions of the frame before.
    SetAlone(Grid("another", 4, 3, m_luma));
    EXPECT_EQ(Set(Grid("luma", 4, 3, m_luma)), 0);
    m_context.SetCalculatorResult(1, 99.0f);
    RunAgain({2});
    EXPECT_EQ(Slot(1), 99.0f);
}

}  // namespace
