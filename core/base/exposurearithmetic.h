/// @file
/// The exposure arithmetic on which all modules lean. Each formula stands here once.
///
/// Times are nanoseconds, gains and corrections linear factors, exposures (sensitivities) their rounded product.
/// An index is a logarithm to the base 1.03: a difference of 1 is 3 percent of exposure.
#pragma once

#include <cmath>
#include <limits>

#include "interface/kiroexposure.h"
#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

namespace exposurearithmetic
{

/// Index steps per decade of exposure: the single-precision value of the field's 77.89853, not the exact reciprocal of
/// log10(1.03), which would move every index.
constexpr DOUBLE IndexPerDecade = 77.89852905273438;

/// Base of the index: the single-precision 1.03.
constexpr FLOAT IndexBase = 1.03f;

/// The recurring epsilon. Divisions guard a denominator with max(x, Epsilon).
constexpr FLOAT Epsilon = 1e-7f;

/// Margin of gain when deciding to snap to a limit.
constexpr FLOAT SnapMargin = 0.0001f;

/// Truncates towards zero and saturates at the limits of the type; NaN becomes 0.
template <typename Integer> Integer SaturateTo(DOUBLE value)
{
    constexpr Integer lowest  = std::numeric_limits<Integer>::min();
    constexpr Integer highest = std::numeric_limits<Integer>::max();
    if (value > static_cast<DOUBLE>(lowest) && value < static_cast<DOUBLE>(highest))
    {
        return static_cast<Integer>(value);
    }
    if (std::isnan(value))
    {
        return 0;
    }
    return (value > 0.0) ? highest : lowest;
}

inline UINT64 SaturateToUINT64(DOUBLE value)
{
    // Nearly all values are within the signed type, to which x86-64 converts in one step.
    constexpr DOUBLE signedEnd = 9223372036854775808.0;
    return (value >= 0.0 && value < signedEnd) ? static_cast<UINT64>(static_cast<INT64>(value))
                                               : SaturateTo<UINT64>(value);
}

inline UINT32 SaturateToUINT32(DOUBLE value)
{
    return SaturateTo<UINT32>(value);
}

inline INT32 SaturateToINT32(DOUBLE value)
{
    return SaturateTo<INT32>(value);
}

/// What stands for a product of quantities that is nearly zero: max(gain, 1) * max(time, 1) * max(corr, 1). Logs it.
DOUBLE ForcedProduct(FLOAT gain, UINT64 time, FLOAT corr);

inline DOUBLE Product(FLOAT gain, UINT64 time, FLOAT corr)
{
    return static_cast<DOUBLE>(gain) * static_cast<DOUBLE>(time) * static_cast<DOUBLE>(corr);
}

/// @return whether ForcedProduct stands for it
inline bool IsProductZero(DOUBLE product)
{
    return std::abs(product) < static_cast<DOUBLE>(Epsilon);
}

/// Rounded product gain * time * corr, in double.
/// A product whose magnitude is below Epsilon is replaced by ForcedProduct.
inline UINT64 UtilQuantities2Exposure(FLOAT gain, UINT64 time, FLOAT corr)
{
    const DOUBLE product = Product(gain, time, corr);
    return SaturateToUINT64((IsProductZero(product) ? ForcedProduct(gain, time, corr) : product) + 0.5);
}

/// Index of an exposure; 0 for an exposure of 0. An indexZeroExposure of 0 counts as 1.
FLOAT IndexOfExposure(UINT64 exposure, UINT64 indexZeroExposure);

/// Log of a ratio to the base 1.03, worked out in double; 0 for a ratio of 0.
FLOAT IndexOfRatio(FLOAT ratio);

/// Index with the ratio taken in single precision: exposure over max(indexZeroExposure, Epsilon); 0 for a ratio of 0.
FLOAT IndexByFloatRatio(UINT64 exposure, UINT64 indexZeroExposure);

/// Stores the index of pSet->exposure by IndexByFloatRatio; a ratio of 0 clears the exposure as well.
VOID SetIndexByFloatRatio(KIROExposureSetType* pSet, UINT64 indexZeroExposure);

/// Exposure of an index, rounded half away from zero. An indexZeroExposure of 0 counts as 1.
UINT64 ExposureOfIndex(FLOAT index, UINT64 indexZeroExposure);

/// Time that yields exposure with gain and corr, rounded half away from zero.
UINT64 TimeOfExposure(UINT64 exposure, FLOAT gain, FLOAT corr);

/// Gain that yields exposure with time and corr.
FLOAT GainOfExposure(UINT64 exposure, UINT64 time, FLOAT corr);

/// Two exposures are the same when their ratio lies strictly between these: the float values of 0.9999 and 1.0001.
constexpr DOUBLE SameRatioLow  = 0.9999f;
constexpr DOUBLE SameRatioHigh = 1.0001f;

/// @return whether numerator / denominator lies strictly between the float values of 0.9999 and 1.0001
bool IsSameExposure(UINT64 numerator, UINT64 denominator);

/// Log of an exposure to the base 1.03, worked out in double and not narrowed; negative infinity for 0.
DOUBLE WideIndexOfExposure(UINT64 exposure);

/// log10f(value) in single precision, times IndexPerDecade in single precision: the log domain of convergence.
FLOAT SensiLog103(FLOAT value);

/// Inverse of the log domain: 1.03 to the power of value, in double.
DOUBLE ExposureOfSensiLog103(DOUBLE value);

/// Maps the tuning's selection to the index of exposure arrays.
/// @param selection ExposureNone, or a value out of range, maps to fallback
AECAlgoExposureType ExposureTypeOfSelection(KIROExposureSelection selection, AECAlgoExposureType fallback);

/// One of the functions above for an argument that mostly stays: the last result is not worked out again.
template <typename Argument, DOUBLE (*Function)(Argument)> class Steady
{
public:
    DOUBLE Of(Argument argument)
    {
        if (argument != m_argument)
        {
            m_argument = argument;
            m_result   = Function(argument);
        }
        return m_result;
    }

private:
    Argument m_argument = 0;
    DOUBLE   m_result   = Function(0);
};

using SteadyIndex    = Steady<UINT64, WideIndexOfExposure>;
using SteadyExposure = Steady<DOUBLE, ExposureOfSensiLog103>;

}  // namespace exposurearithmetic
