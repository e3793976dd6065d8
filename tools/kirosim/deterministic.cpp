#include "tools/kirosim/deterministic.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kirosim
{

RandomStream::RandomStream(UINT64 seed) : m_state(seed * 0x9E3779B97F4A7C15ULL + 0x2545F4914F6CDD1DULL)
{
    if (m_state == 0)
    {
        m_state = 1;
    }
}

UINT64 RandomStream::Next()
{
    m_state ^= m_state >> 12;
    m_state ^= m_state << 25;
    m_state ^= m_state >> 27;
    return m_state * 0x2545F4914F6CDD1DULL;
}

DOUBLE RandomStream::NextUniform()
{
    constexpr DOUBLE scale = 1.0 / 9007199254740992.0;  // 2^53
    return static_cast<DOUBLE>(Next() >> 11) * scale;
}

DOUBLE RandomStream::NextGaussian()
{
    DOUBLE sum = -6.0;
    for (UINT32 index = 0; index < 12; ++index)
    {
        sum += NextUniform();
    }
    return sum;
}

FLOAT PowerOfTwo(FLOAT exponent)
{
    constexpr FLOAT ln2     = 0.69314718f;
    constexpr FLOAT shift   = 127.5f;  // makes all exponents positive, so that cutting them to whole numbers rounds
    const FLOAT     clamped = std::clamp(exponent, -126.0f, 127.0f);
    const INT32     whole   = static_cast<INT32>(clamped + shift);  // as the bits of a float keep it
    const FLOAT     x       = (clamped - static_cast<FLOAT>(whole - 127)) * ln2;
    constexpr FLOAT terms[] = {1.0f / 5040.0f, 1.0f / 720.0f, 1.0f / 120.0f, 1.0f / 24.0f,
                               1.0f / 6.0f,    0.5f,          1.0f,          1.0f};
    FLOAT           series  = 0.0f;
    for (const FLOAT term : terms)
    {
        series = std::fma(x, series, term);
    }
    return series * std::bit_cast<FLOAT>(static_cast<UINT32>(whole) << 23);
}

DOUBLE CosineOfTurns(DOUBLE turns)
{
    constexpr DOUBLE twoPi = 6.283185307179586;
    const DOUBLE     turn  = turns - std::floor(turns);         // 0 to 1
    const DOUBLE     half  = (turn > 0.5) ? 1.0 - turn : turn;  // 0 to 0.5
    const bool       isLow = half > 0.25;
    const DOUBLE     angle = twoPi * (isLow ? 0.5 - half : half);  // 0 to a quarter turn
    const DOUBLE     x     = angle * angle;
    // Taylor series to the 14th power: below 1e-11 on a quarter turn.
    const DOUBLE cosine =
        1.0 -
        x / 2.0 *
            (1.0 -
             x / 12.0 * (1.0 - x / 30.0 * (1.0 - x / 56.0 * (1.0 - x / 90.0 * (1.0 - x / 132.0 * (1.0 - x / 182.0))))));
    return isLow ? -cosine : cosine;
}

DOUBLE TurnsOfDirection(DOUBLE ahead, DOUBLE across)
{
    constexpr DOUBLE twoPi   = 6.283185307179586;
    const DOUBLE     along   = std::abs(ahead);
    const DOUBLE     aside   = std::abs(across);
    const bool       isSteep = aside > along;
    const DOUBLE     larger  = isSteep ? aside : along;
    if (larger == 0.0)
    {
        return 0.0;
    }
    // Arc tangent on an eighth of a turn to 1e-5 rad, of the form of Abramowitz and Stegun 4.4.49.
    const DOUBLE tangent = (isSteep ? along : aside) / larger;
    const DOUBLE x       = tangent * tangent;
    const DOUBLE angle =
        tangent * (0.9998660 + x * (-0.3302995 + x * (0.1801410 + x * (-0.0851330 + x * 0.0208351)))) / twoPi;
    const DOUBLE quarter = isSteep ? 0.25 - angle : angle;  // 0 to a quarter turn
    const DOUBLE half    = (ahead < 0.0) ? 0.5 - quarter : quarter;
    return (across < 0.0) ? -half : half;
}

}  // namespace kirosim
