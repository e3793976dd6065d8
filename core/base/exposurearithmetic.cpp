#include "core/base/exposurearithmetic.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>

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

/// What a function gave for its last arguments. A frame takes logarithms of a few exposures, each of them many times,
/// and a steady camera those of the frame before. All threads share the results, since argument and result are read
/// and written as one. The rounding mode is taken to be that of all of them, and to stay as it is.
template <FLOAT (*Function)(FLOAT)> class LastResults
{
public:
    static FLOAT Of(FLOAT value)
    {
        const UINT64 bits  = std::bit_cast<UINT32>(value);
        const UINT64 entry = s_entries[Place(bits)].bits.load(std::memory_order_relaxed);
        return (entry >> ResultBits == bits) ? std::bit_cast<FLOAT>(static_cast<UINT32>(entry)) : WorkOut(value);
    }

private:
    /// Apart from Of, which calls nothing then.
    [[gnu::noinline]] static FLOAT WorkOut(FLOAT value)
    {
        const UINT64 bits   = std::bit_cast<UINT32>(value);
        const FLOAT  result = Function(value);
        s_entries[Place(bits)].bits.store(bits << ResultBits | std::bit_cast<UINT32>(result),
                                          std::memory_order_relaxed);
        return result;
    }

    static constexpr UINT32 PlaceBits  = 6;
    static constexpr UINT32 ResultBits = 32;

    /// The logarithm of 1, to whatever base, is all zeros.
    struct Entry
    {
        std::atomic<UINT64> bits{UINT64{std::bit_cast<UINT32>(1.0f)} << ResultBits};
    };

    static size_t Place(UINT64 bits)
    {
        constexpr UINT64 goldenRatio = 0x9E3779B97F4A7C15;
        return (bits * goldenRatio) >> (64 - PlaceBits);
    }

    static inline constinit Entry s_entries[1 << PlaceBits];
};

FLOAT IndexOfNonzeroRatio(FLOAT ratio)
{
    return static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(ratio)) * IndexPerDecade);
}

FLOAT WorkOutSensiLog103(FLOAT value)
{
    return std::log10(value) * static_cast<FLOAT>(IndexPerDecade);
}

}  // namespace

FLOAT IndexOfRatio(FLOAT ratio)
{
    return (ratio == 0.0f) ? 0.0f : LastResults<IndexOfNonzeroRatio>::Of(ratio);
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
    return IndexPerDecade * std::log10(static_cast<DOUBLE>(exposure));
}

FLOAT SensiLog103(FLOAT value)
{
    return LastResults<WorkOutSensiLog103>::Of(value);
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
