#include "core/statsprocessor/exactsum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{

constexpr FLOAT Clamp = 1000.0f;

bool IsExact(const std::vector<FLOAT>& rValues, INT32 bitDepth = 8, FLOAT clamp = Clamp)
{
    FLOAT sum = 0.0f;
    return exactsum::Add(rValues.data(), static_cast<UINT32>(rValues.size()), clamp, bitDepth, sum);
}

std::vector<FLOAT> With(UINT32 count, UINT32 place, FLOAT value)
{
    std::vector<FLOAT> values(count, 3.0f);
    values[place] = value;
    return values;
}

}  // namespace

TEST(ExactSum, TellsWhatCannotRound)
{
    // 256 values below 256 stay below 2^16, of which 24 bits reach down to 2^-8.
    EXPECT_TRUE(IsExact(With(256, 100, 255.99609375f)));
    EXPECT_FALSE(IsExact(With(256, 100, 254.998046875f))) << "a multiple of 2^-9";
    EXPECT_FALSE(IsExact(With(257, 100, 255.99609375f))) << "one more takes a bit";
    EXPECT_TRUE(IsExact(With(257, 256, 255.9921875f)));
    EXPECT_FALSE(IsExact(With(257, 256, 255.99609375f))) << "behind the last whole step";
    EXPECT_TRUE(IsExact(With(4096, 7, 3.0f), 12)) << "2^24 of whole numbers";
    EXPECT_FALSE(IsExact(With(4096, 7, 3.0f), 13));

    EXPECT_FALSE(IsExact(With(64, 40, 256.0f))) << "beyond the bit depth";
    EXPECT_TRUE(IsExact(With(64, 40, 700.0f), 8, 200.0f)) << "clamped";
    EXPECT_FALSE(IsExact(With(64, 40, 700.0f), 8, 199.9f)) << "to what is no multiple";
    EXPECT_TRUE(IsExact(With(64, 40, -255.5f)));
    EXPECT_FALSE(IsExact(With(64, 40, -256.0f)));
    EXPECT_FALSE(IsExact(With(64, 0, std::numeric_limits<FLOAT>::quiet_NaN())));
    EXPECT_FALSE(IsExact(With(64, 63, -std::numeric_limits<FLOAT>::infinity())));

    EXPECT_FALSE(IsExact(With(15, 0, 1.0f))) << "too few to gain";
    EXPECT_FALSE(IsExact(With(64, 0, 1.0f), 0));
    EXPECT_FALSE(IsExact(With(64, 0, 1.0f), 17));
    EXPECT_FALSE(IsExact(With(64, 0, 1.0f), 8, -1.0f));
    EXPECT_FALSE(IsExact(With(64, 0, 1.0f), 8, std::numeric_limits<FLOAT>::quiet_NaN()));
}

TEST(ExactSum, HasTheBitsOfAChain)
{
    std::mt19937 random{5};
    const auto   upTo  = [&random](UINT32 last) { return std::uniform_int_distribution<UINT32>(0, last)(random); };
    UINT32       exact = 0;
    for (UINT32 set = 0; set < 3000; ++set)
    {
        const INT32        bitDepth = 1 + static_cast<INT32>(upTo(15));
        const FLOAT        quantum  = std::ldexp(1.0f, static_cast<INT32>(upTo(12)) - 8);
        const FLOAT        clamp    = quantum * static_cast<FLOAT>(upTo(70000));
        const UINT32       last     = upTo(1) * ((1U << bitDepth) - 1);
        std::vector<FLOAT> values(16 + upTo(700));
        for (FLOAT& rValue : values)
        {
            rValue = quantum * static_cast<FLOAT>(upTo(last)) * (upTo(9) == 0 ? -1.0f : 1.0f);
        }
        FLOAT chain = 0.0f;
        for (const FLOAT value : values)
        {
            chain += std::min(value, clamp);
        }
        FLOAT sum = 0.0f;
        if (exactsum::Add(values.data(), static_cast<UINT32>(values.size()), clamp, bitDepth, sum))
        {
            ++exact;
            ASSERT_EQ(std::bit_cast<UINT32>(sum), std::bit_cast<UINT32>(chain)) << set;
        }
    }
    EXPECT_GT(exact, 1000u);
    EXPECT_LT(exact, 2900u);
}
