#include "core/base/exposurearithmetic.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

template <typename Integer> Integer Saturate(DOUBLE value)
{
    if (std::isnan(value))
    {
        return 0;
    }
    if (value <= static_cast<DOUBLE>(std::numeric_limits<Integer>::min()))
    {
        return std::numeric_limits<Integer>::min();
    }
    if (value >= static_cast<DOUBLE>(std::numeric_limits<Integer>::max()))
    {
        return std::numeric_limits<Integer>::max();
    }
    return static_cast<Integer>(value);
}

}  // namespace

FLOAT IndexOfRatio(FLOAT ratio)
{
    return (ratio == 0.0f) ? 0.0f : static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(ratio)) * IndexPerDecade);
}

UINT64 UtilQuantities2Exposure(FLOAT gain, UINT64 time, FLOAT corr)
{
    DOUBLE product = static_cast<DOUBLE>(gain) * static_cast<DOUBLE>(time) * static_cast<DOUBLE>(corr);
    if (std::abs(product) < static_cast<DOUBLE>(Epsilon))
    {
        STATS_LOG_ERROR("exposure calculated as zero; check gain %.1f time %llu corr %.1f", gain, time, corr);
        product = static_cast<DOUBLE>(std::max(gain, 1.0f)) * static_cast<DOUBLE>(std::max<UINT64>(time, 1)) *
                  static_cast<DOUBLE>(std::max(corr, 1.0f));
        STATS_LOG_ERROR("forcing exposure to %.0f", product);
    }
    return SaturateToUINT64(product + 0.5);
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

FLOAT SensiLog103(FLOAT value)
{
    return std::log10(value) * static_cast<FLOAT>(IndexPerDecade);
}

DOUBLE ExposureOfSensiLog103(DOUBLE value)
{
    return std::pow(static_cast<DOUBLE>(IndexBase), value);
}

UINT64 SaturateToUINT64(DOUBLE value)
{
    return Saturate<UINT64>(value);
}

UINT32 SaturateToUINT32(DOUBLE value)
{
    return Saturate<UINT32>(value);
}

INT32 SaturateToINT32(DOUBLE value)
{
    return Saturate<INT32>(value);
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
