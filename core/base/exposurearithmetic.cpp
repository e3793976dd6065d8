#include "core/base/exposurearithmetic.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>

#include "core/base/kirolog.h"

namespace exposurearithmetic
{

namespace
{

DOUBLE IndexZero(UINT64 indexZeroExposure)
{
    return (indexZeroExposure == 0) ? 1.0 : static_cast<DOUBLE>(indexZeroExposure);
}

FLOAT FloatRatio(UINT64 exposure, UINT64 indexZeroExposure)
{
    return static_cast<FLOAT>(exposure) / std::max(static_cast<FLOAT>(indexZeroExposure), Epsilon);
}

/// Logarithms to the base 10 of the last arguments. A frame takes those of a few exposures, each of them many times,
/// and a steady camera those of the frame before. The rounding mode of a thread is taken to stay as it is.
template <typename Float> class LastLogs
{
public:
    Float Of(Float value)
    {
        const Bits bits   = std::bit_cast<Bits>(value);
        Entry&     rEntry = m_entries[Place(bits)];
        if (rEntry.bits != bits)
        {
            rEntry = {bits, std::log10(value)};
        }
        return rEntry.log;
    }

private:
    using Bits = std::conditional_t<sizeof(Float) == sizeof(UINT32), UINT32, UINT64>;

    static constexpr UINT32 PlaceBits = 6;

    struct Entry
    {
        Bits  bits = std::bit_cast<Bits>(Float{1});  ///< of the argument
        Float log  = 0;
    };

    static size_t Place(UINT64 bits)
    {
        constexpr UINT64 goldenRatio = 0x9E3779B97F4A7C15;
        return (bits * goldenRatio) >> (64 - PlaceBits);
    }

    Entry m_entries[1 << PlaceBits];
};

/// Instances run in threads of their own.
thread_local LastLogs<FLOAT>  g_lastLogs;
thread_local LastLogs<DOUBLE> g_lastLogsInDouble;

}  // namespace

FLOAT IndexOfRatio(FLOAT ratio)
{
    return (ratio == 0.0f) ? 0.0f
                           : static_cast<FLOAT>(g_lastLogsInDouble.Of(static_cast<DOUBLE>(ratio)) * IndexPerDecade);
}

DOUBLE ForcedProduct(FLOAT gain, UINT64 time, FLOAT corr)
{
    STATS_LOG_ERROR("exposure calculated as zero; check gain %.1f time %llu corr %.1f", gain, time, corr);
    const DOUBLE product = static_cast<DOUBLE>(std::max(gain, 1.0f)) * static_cast<DOUBLE>(std::max<UINT64>(time, 1)) *
                           static_cast<DOUBLE>(std::max(corr, 1.0f));
    STATS_LOG_ERROR("forcing exposure to %.0f", product);
    return product;
}

FLOAT IndexOfExposure(UINT64 exposure, UINT64 indexZeroExposure)
{
    return IndexOfRatio(static_cast<FLOAT>(static_cast<DOUBLE>(exposure) / IndexZero(indexZeroExposure)));
}

FLOAT IndexByFloatRatio(UINT64 exposure, UINT64 indexZeroExposure)
{
    return IndexOfRatio(FloatRatio(exposure, indexZeroExposure));
}

VOID SetIndexByFloatRatio(KIROExposureSetType* pSet, UINT64 indexZeroExposure)
{
    const FLOAT ratio = FloatRatio(pSet->exposure, indexZeroExposure);
    pSet->indx        = IndexOfRatio(ratio);
    pSet->exposure    = (ratio == 0.0f) ? 0 : pSet->exposure;
}

UINT64 ExposureOfIndex(FLOAT index, UINT64 indexZeroExposure)
{
    return SaturateToUINT64(std::round(IndexZero(indexZeroExposure) * static_cast<DOUBLE>(std::pow(IndexBase, index))));
}

UINT64 TimeOfExposure(UINT64 exposure, FLOAT gain, FLOAT corr)
{
    return SaturateToUINT64(
        std::round(static_cast<DOUBLE>(exposure) / static_cast<DOUBLE>(gain) / static_cast<DOUBLE>(corr)));
}

FLOAT GainOfExposure(UINT64 exposure, UINT64 time, FLOAT corr)
{
    return static_cast<FLOAT>(static_cast<DOUBLE>(exposure) / static_cast<DOUBLE>(time) / static_cast<DOUBLE>(corr));
}

bool IsSameExposure(UINT64 numerator, UINT64 denominator)
{
    const DOUBLE ratio = static_cast<DOUBLE>(numerator) / static_cast<DOUBLE>(denominator);
    return ratio > SameRatioLow && ratio < SameRatioHigh;
}

DOUBLE WideIndexOfExposure(UINT64 exposure)
{
    return IndexPerDecade * g_lastLogsInDouble.Of(static_cast<DOUBLE>(exposure));
}

FLOAT SensiLog103(FLOAT value)
{
    return g_lastLogs.Of(value) * static_cast<FLOAT>(IndexPerDecade);
}

DOUBLE ExposureOfSensiLog103(DOUBLE value)
{
    return std::pow(static_cast<DOUBLE>(IndexBase), value);
}

AECAlgoExposureType ExposureTypeOfSelection(KIROExposureSelection selection, AECAlgoExposureType fallback)
{
    switch (selection)
    {
    case ExposureShort:
        return AECAlgoExposureShort;
    case ExposureSafe:
        return AECAlgoExposureSafe;
    case ExposureLong:
        return AECAlgoExposureLong;
    default:
        return fallback;
    }
}

}  // namespace exposurearithmetic
