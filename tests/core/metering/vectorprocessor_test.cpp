// Filters over time from one bank entry to another, by hand-worked samples.

#include "core/metering/ckiro1dvectormanager.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/testcontext.h"

namespace
{

using namespace kiro1dvectorprocessor;

constexpr INT32 VectorID = 7;
constexpr INT32 ResultID = 80;  // of every value bank
constexpr INT32 SampleID = 5;

constexpr auto Default = VectorProcessorUsageType::Default;
constexpr auto Gyro    = VectorProcessorUsageType::Gyro;

class VectorProcessor : public ContextTest
{
protected:
    VectorProcessor()
    {
        m_processor.enable      = TRUE;
        m_processor.description = const_cast<CHAR*>("name");
        m_processor.input       = {BankIDMetering1D, VectorID};
        m_processor.output      = {BankIDTriggers, ResultID};
        m_vector.dataID         = VectorID;
    }

    VOID Load(FilteringMethodType method, UINT32 length, std::vector<FLOAT> coefficients = {})
    {
        m_processor.filtering = {method, length, static_cast<UINT32>(coefficients.size()), 0, coefficients.data()};
        KIRO1DVectorProcessorType tuning{};
        tuning.vectorProcessorsCount      = 1;
        tuning.vectorProcessors           = &m_processor;
        tuning.gyroVectorProcessor        = m_processor;
        tuning.gyroVectorProcessor.output = {BankIDStatsCalculator, ResultID};
        Tune(tuning);
        SetBank(BankIDMetering1D, &m_vector);
    }

    /// Result after these new samples, the newest first.
    FLOAT Run(std::vector<FLOAT> samples)
    {
        std::copy(samples.begin(), samples.end(), m_vector.weights);
        m_manager.Run1DVectorProcessors(Default, static_cast<UINT32>(samples.size()));
        return m_context.Trigger(ResultID);
    }

    FLOAT LoadAndRun(FLOAT sample)
    {
        Load(MovingAverage, 4);
        return Run({sample});
    }

    FLOAT RunSample(FLOAT sample, UINT32 sampleCount = 1)
    {
        m_context.SetCalculatorResult(SampleID, sample);
        m_manager.Run1DVectorProcessors(Default, sampleCount);
        return m_context.Trigger(ResultID);
    }

    VectorProcessorType    m_processor{};
    DBMeter1DWeightPayload m_vector{};
    CKIRO1DVectorManager   m_manager{m_context};
};

TEST_F(VectorProcessor, FiltersTheNewestSamples)
{
    // Results after the first sample 1, after 5, 2, 1 and after 3, 4, 1, 2, 9, 5, 2, 1.
    const std::tuple<FilteringMethodType, UINT32, std::vector<FLOAT>, FLOAT, FLOAT, FLOAT> filters[] = {
        {MovingAverage, 4, {}, 1.0f, 8.0f / 3.0f, 2.5f},
        {MovingAverage, 0, {}, 1.0f, 5.0f, 3.0f},
        {MovingAverage, 8, {}, 1.0f, 8.0f / 3.0f, 27.0f / 8.0f},
        {MedianFilter, 4, {}, 1.0f, 2.0f, 2.0f},
        {MedianFilter, 5, {}, 1.0f, 2.0f, 3.0f},
        {MedianFilter, 1, {}, 1.0f, 5.0f, 3.0f},
        {FIR, 4, {0.5f, 0.25f}, 1.0f, 4.0f, 2.5f / 0.75f},
        {FIR, 2, {1.0f, 1.0f, 7.0f}, 1.0f, 3.5f, 3.5f},
        {FIR, 4, {0.5f, -0.5f}, 1.0f, 150.0f, -50.0f},
        {FIR, 4, {}, 0.0f, 0.0f, 0.0f},
        {static_cast<FilteringMethodType>(3), 4, {}, 0.0f, 0.0f, 0.0f},
    };
    for (const auto& [method, length, coefficients, afterFirst, afterThird, afterEighth] : filters)
    {
        SCOPED_TRACE(testing::Message() << method << ", " << length);
        Load(method, length, coefficients);
        EXPECT_FLOAT_EQ(Run({1.0f}), afterFirst);
        EXPECT_FLOAT_EQ(Run({5.0f, 2.0f}), afterThird);
        EXPECT_FLOAT_EQ(Run({3.0f, 4.0f, 1.0f, 2.0f, 9.0f}), afterEighth);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "No Matched Filtering Method Defined, 3"));
}

TEST_F(VectorProcessor, NumberYieldsOneSampleWhateverTheCount)
{
    m_processor.input = {BankIDStatsCalculator, SampleID};
    Load(MovingAverage, 4);
    EXPECT_FLOAT_EQ(RunSample(8.0f, 2), 4.0f) << "counted as two, taken as one";
    EXPECT_FLOAT_EQ(RunSample(4.0f), 4.0f);
    EXPECT_FLOAT_EQ(RunSample(4.0f, 0), 4.0f);
    EXPECT_FLOAT_EQ(RunSample(8.0f), 5.0f);
    // A number that is not there repeats the result over the same samples.
    m_processor.input.dataID = 1000;
    Load(MovingAverage, 4);
    EXPECT_EQ(RunSample(9.0f), 0.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "GetDataStatsCalculator Invalid data ID 1000"));
}

TEST_F(VectorProcessor, KeepsTheNewest300Samples)
{
    Load(MovingAverage, 1000);
    Run(std::vector<FLOAT>(200, 1.0f));
    EXPECT_FLOAT_EQ(Run(std::vector<FLOAT>(200, 4.0f)), 3.0f) << "200 of the newer, 100 of the older";
    EXPECT_FLOAT_EQ(Run(std::vector<FLOAT>(300, 2.0f)), 2.0f);
    // Of a longer record the front counts, where the newest are.
    std::vector<FLOAT> record(512, 9.0f);
    std::fill_n(record.begin(), 300, 5.0f);
    EXPECT_FLOAT_EQ(Run(record), 5.0f);
    Load(MovingAverage, 300);
    EXPECT_FLOAT_EQ(Run(record), 5.0f);
    EXPECT_FLOAT_EQ(Run({305.0f}), 6.0f) << "the oldest is gone";
    Load(MedianFilter, 1000);
    EXPECT_TRUE(std::isnan(Run(std::vector<FLOAT>(300, NAN))));
}

TEST_F(VectorProcessor, ResetAndRetuningForgetTheSamples)
{
    m_manager.Reset1DVectorProcessors(Default);
    m_manager.Reset1DVectorProcessors(Gyro);
    EXPECT_TRUE(m_log.Has(LevelError, "Failed to reset Run1DVectorProcessors as m_p1DVectorProcessors is NULL"));
    EXPECT_TRUE(m_log.Has(LevelError, "Failed to reset Run1DVectorProcessors as m_pGyroVectorProcessor is NULL"));

    Load(MovingAverage, 4);
    Run({1.0f, 1.0f});
    m_manager.Reset1DVectorProcessors(Default);
    EXPECT_EQ(Run({5.0f}), 5.0f);
    EXPECT_EQ(LoadAndRun(7.0f), 7.0f);

    // The gyro processor has samples of its own.
    m_vector.weights[0] = 3.0f;
    m_manager.Run1DVectorProcessors(Gyro, 1);
    m_manager.Reset1DVectorProcessors(Default);
    m_vector.weights[0] = 5.0f;
    m_manager.Run1DVectorProcessors(Gyro, 1);
    EXPECT_EQ(m_context.m_pBankManager->GetDataStatsCalculator(ResultID)->value, 4.0f);
    EXPECT_EQ(m_context.Trigger(ResultID), 7.0f);
    m_manager.Reset1DVectorProcessors(Gyro);
    m_manager.Run1DVectorProcessors(Gyro, 1);
    EXPECT_EQ(m_context.m_pBankManager->GetDataStatsCalculator(ResultID)->value, 5.0f);
}

TEST_F(VectorProcessor, RefusesWhatItCannotReadOrWrite)
{
    EXPECT_EQ(LoadAndRun(1.0f), 1.0f);
    EXPECT_TRUE(m_log.Has(LevelTrace, "1D Vector Processor Save 1.000 to databank 9 with dataID 80"));
    m_processor.enable = FALSE;
    EXPECT_EQ(LoadAndRun(5.0f), 1.0f);
    m_processor.enable = TRUE;
    m_processor.input  = {BankIDTriggers, 1};
    EXPECT_EQ(LoadAndRun(5.0f), 1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Not supported databank 9 dataID 1 in 1D Vector Processor "));
    m_processor.input  = {BankIDMetering1D, VectorID + 1};
    m_processor.output = {BankIDSceneAnalyzer, 3};
    LoadAndRun(5.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Not supported databank 3 dataID 3 in 1D Vector Processor "));
    m_processor.output = {BankIDTriggers, 1000};
    Load(MovingAverage, 4);
    m_log.Clear();
    Run({5.0f});
    EXPECT_FALSE(m_log.HasPart(LevelTrace, "1D Vector Processor Save"));

    m_manager.Run1DVectorProcessors(static_cast<VectorProcessorUsageType>(2), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "No Matched Vector Processor Usage Type 2"));
    Tune();
    m_manager.Run1DVectorProcessors(Default, 1);
    m_manager.Run1DVectorProcessors(Gyro, 1);
    EXPECT_TRUE(m_log.Has(LevelError, "Failed to run Run1DVectorProcessors as m_p1DVectorProcessors is NULL"));
    EXPECT_TRUE(m_log.Has(LevelError, "Failed to run Run1DVectorProcessors as m_pGyroVectorProcessor is NULL"));
}

}  // namespace
