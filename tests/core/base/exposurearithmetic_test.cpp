#include "core/base/exposurearithmetic.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <thread>
#include <vector>

#include "tests/support/statslogcapture.h"

using namespace exposurearithmetic;

namespace
{

constexpr UINT64 UINT64Max = std::numeric_limits<UINT64>::max();
constexpr DOUBLE NaN       = std::numeric_limits<DOUBLE>::quiet_NaN();
constexpr DOUBLE Infinity  = std::numeric_limits<DOUBLE>::infinity();

TEST(ExposureArithmetic, ProductIsRoundedSaturatesAndIsNeverZero)
{
    StatsLogCapture log;
    EXPECT_EQ(UtilQuantities2Exposure(2.0f, 10000000, 1.5f), 30000000u);
    EXPECT_EQ(UtilQuantities2Exposure(1.5f, 1, 1.0f), 2u);
    EXPECT_EQ(UtilQuantities2Exposure(1.25f, 1, 1.0f), 1u);
    EXPECT_EQ(UtilQuantities2Exposure(1.0f, 40000000001, 1.0f), 40000000001u) << "more digits than a float holds";
    EXPECT_EQ(UtilQuantities2Exposure(4.0f, UINT64Max, 1.0f), UINT64Max);
    EXPECT_EQ(UtilQuantities2Exposure(-2.0f, 1000, 1.0f), 0u);
    EXPECT_EQ(UtilQuantities2Exposure(static_cast<FLOAT>(NaN), 1000, 1.0f), 0u);
    EXPECT_EQ(UtilQuantities2Exposure(1e-7f, 1, 1.0f), 0u) << "exactly the threshold is not below it";
    EXPECT_TRUE(log.Lines().empty());

    // A product of zero is forced to a usable one.
    EXPECT_EQ(UtilQuantities2Exposure(0.0f, 1000, 2.0f), 2000u);
    EXPECT_TRUE(log.Has(2, "exposure calculated as zero; check gain 0.0 time 1000 corr 2.0"));
    EXPECT_TRUE(log.Has(2, "forcing exposure to 2000"));
    EXPECT_EQ(UtilQuantities2Exposure(8.0f, 0, 0.5f), 8u);
    EXPECT_EQ(UtilQuantities2Exposure(-9e-8f, 1, 1.0f), 1u);
    EXPECT_EQ(log.CountLevel(2), 6u);
}

TEST(ExposureArithmetic, IndexIsALogarithmToTheBaseOf103)
{
    EXPECT_EQ(IndexOfExposure(5000, 5000), 0.0f);
    EXPECT_EQ(IndexOfExposure(50000, 5000), 77.89853f);
    EXPECT_EQ(IndexOfExposure(50, 5000), -155.79706f);
    EXPECT_EQ(IndexOfExposure(10, 0), 77.89853f) << "an index zero of 0 counts as 1";
    EXPECT_EQ(IndexOfExposure(0, 5000), 0.0f);
    EXPECT_EQ(IndexByFloatRatio(50000, 5000), 77.89853f);
    EXPECT_FLOAT_EQ(IndexByFloatRatio(10, 0), 623.18823f) << "here an index zero of 0 counts as 1e-7";

    EXPECT_EQ(ExposureOfIndex(0.0f, 5000), 5000u);
    EXPECT_EQ(ExposureOfIndex(1.0f, 1000), 1030u);
    EXPECT_EQ(ExposureOfIndex(-1.0f, 1000), 971u);  // 970.87
    EXPECT_EQ(ExposureOfIndex(0.0f, 0), 1u);
    EXPECT_EQ(ExposureOfIndex(5000.0f, 1000), UINT64Max);
    EXPECT_EQ(ExposureOfIndex(-5000.0f, 1000), 0u);

    EXPECT_EQ(SensiLog103(10.0f), 77.89853f);
    EXPECT_EQ(ExposureOfSensiLog103(1.0), 1.0299999713897705);
    EXPECT_EQ(ExposureOfSensiLog103(0.0), 1.0);
}

TEST(ExposureArithmetic, LogsAreTheSameBitsHoweverOftenAndInWhateverOrderTheyAreTaken)
{
    const auto expectLogs = [](FLOAT value)
    {
        const FLOAT  single = std::log10(value) * 77.89852905273438f;
        const DOUBLE wide   = std::log10(static_cast<DOUBLE>(value)) * 77.89852905273438;
        const FLOAT  ratio  = (value == 0.0f) ? 0.0f : static_cast<FLOAT>(wide);
        EXPECT_EQ(std::bit_cast<UINT32>(SensiLog103(value)), std::bit_cast<UINT32>(single)) << value;
        EXPECT_EQ(std::bit_cast<UINT32>(IndexOfRatio(value)), std::bit_cast<UINT32>(ratio)) << value;
    };
    std::mt19937       random(20);
    std::vector<FLOAT> values = {
        0.0f, -0.0f, 1.0f, -1.0f, 1e-45f, 3e38f, static_cast<FLOAT>(NaN), static_cast<FLOAT>(Infinity)};
    for (UINT32 index = 0; index < 2000; ++index)
    {
        values.push_back(std::exp(static_cast<FLOAT>(random() % 100000) * 0.001f - 50.0f));
        expectLogs(values.back());
        expectLogs(values[random() % values.size()]);
        expectLogs(values[values.size() / 2]);
    }
    SteadyIndex steady;
    for (const UINT64 exposure : {UINT64{0}, UINT64{100}, UINT64{100}, UINT64{0}, UINT64Max})
    {
        EXPECT_EQ(steady.Of(exposure), WideIndexOfExposure(exposure));
    }
    EXPECT_EQ(WideIndexOfExposure(0), -Infinity);
    EXPECT_EQ(WideIndexOfExposure(100), 2 * 77.89852905273438);
}

TEST(ExposureArithmetic, ThreadsShareLogsWithoutMixingThem)
{
    const auto countWrong = [](UINT32 seed, UINT32& rWrong)
    {
        std::mt19937 random(seed);
        for (UINT32 index = 0; index < 20000; ++index)
        {
            const FLOAT value = static_cast<FLOAT>(1 + random() % 300);
            rWrong += (SensiLog103(value) == std::log10(value) * 77.89852905273438f) ? 0 : 1;
        }
    };
    UINT32      wrong[2] = {};
    std::thread other(countWrong, 1, std::ref(wrong[1]));
    countWrong(2, wrong[0]);
    other.join();
    EXPECT_EQ(wrong[0] + wrong[1], 0u);
}

TEST(ExposureArithmetic, SplitsIntoTimeOrGain)
{
    EXPECT_EQ(TimeOfExposure(1000, 3.0f, 1.0f), 333u);
    EXPECT_EQ(TimeOfExposure(5, 2.0f, 1.0f), 3u) << "halves go away from zero";
    EXPECT_EQ(TimeOfExposure(30000000, 2.0f, 1.5f), 10000000u);
    EXPECT_EQ(TimeOfExposure(1000, 0.0f, 1.0f), UINT64Max);
    EXPECT_EQ(GainOfExposure(30000000, 10000000, 1.5f), 2.0f);
}

TEST(ExposureArithmetic, SameMeansWithinTheFloatValuesOfTheMargin)
{
    // The float of 0.9999 lies below the decimal, the float of 1.0001 above it: both decimals are inside.
    EXPECT_TRUE(IsSameExposure(9999, 10000));
    EXPECT_TRUE(IsSameExposure(10001, 10000));
    EXPECT_FALSE(IsSameExposure(99989, 100000));
    EXPECT_FALSE(IsSameExposure(100011, 100000));
    EXPECT_FALSE(IsSameExposure(0, 0));
    EXPECT_FALSE(IsSameExposure(1, 0));
}

TEST(ExposureArithmetic, ConversionsTruncateAndSaturate)
{
    EXPECT_EQ(SaturateToINT32(2.9), 2);
    EXPECT_EQ(SaturateToINT32(-2.9), -2);
    EXPECT_EQ(SaturateToINT32(3e9), std::numeric_limits<INT32>::max());
    EXPECT_EQ(SaturateToINT32(-3e9), std::numeric_limits<INT32>::min());
    EXPECT_EQ(SaturateToINT32(NaN), 0);
    EXPECT_EQ(SaturateToUINT32(4294967294.9), 4294967294u);
    EXPECT_EQ(SaturateToUINT32(4294967296.0), 4294967295u);
    EXPECT_EQ(SaturateToUINT32(-0.9), 0u);
    EXPECT_EQ(SaturateToUINT64(18446744073709551616.0), UINT64Max);
    EXPECT_EQ(SaturateToUINT64(18446744073709549568.0), 18446744073709549568u);
    EXPECT_EQ(SaturateToUINT64(9223372036854774784.0), 9223372036854774784u);
    EXPECT_EQ(SaturateToUINT64(9223372036854775808.0), 9223372036854775808u);
    EXPECT_EQ(SaturateToUINT64(-Infinity), 0u);
    EXPECT_EQ(SaturateToUINT64(NaN), 0u);
}

}  // namespace
