#include "core/metering/analyzerstages.h"

#include <algorithm>

#include "core/base/exposurearithmetic.h"

using exposurearithmetic::SaturateToUINT64;

namespace
{

/// An amended ratio of target to luma below this counts as none.
constexpr FLOAT AmendedRatioMin = 0.01f;

}  // namespace

namespace analyzerstages
{

DOUBLE ReferenceExposure(const DOUBLE* pExposures, KIROExposureSelection refType)
{
    return pExposures[exposurearithmetic::ExposureTypeOfSelection(refType, AECAlgoExposureShort)];
}

FLOAT RatioToTarget(FLOAT adjustment, FLOAT luma, FLOAT target)
{
    return (adjustment > 0.0f) ? adjustment : target / std::max(luma, exposurearithmetic::Epsilon);
}

UINT64 ExposureByRatio(DOUBLE reference, FLOAT ratio)
{
    return SaturateToUINT64(static_cast<DOUBLE>(ratio) * reference);
}

UINT64 AmendedExposure(DOUBLE reference, FLOAT luma, FLOAT target)
{
    const FLOAT ratio = target / luma;
    const FLOAT used  = (ratio >= AmendedRatioMin) ? ratio : 1.0f;
    return SaturateToUINT64(static_cast<DOUBLE>(used * static_cast<FLOAT>(reference)));
}

}  // namespace analyzerstages
