#include "tools/tuningcheck/rules/evscale.h"

#include <cmath>

#include <fmt/format.h>

#include "schema/kiroev.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kiroev::EVCompTableType;
using kiroev::EVCoreDataType;

constexpr INT64 LastElement = static_cast<INT64>(std::size(EVCompTableType{}.EVCompTableElements)) - 1;

/// The table is written with four digits or so.
constexpr FLOAT EqualFactors = 1e-3F;

INT64 StepsOf(const EVCoreDataType& rEV, INT32 stops)
{
    return static_cast<INT64>(rEV.stepsPerEV) * stops;
}

INT64 SpanOf(const EVCoreDataType& rEV)
{
    return StepsOf(rEV, rEV.maxEVValue) - StepsOf(rEV, rEV.minEVValue);
}

/// @return whether the table can be read by the scale
bool HasUsableSpan(const EVCoreDataType& rEV)
{
    return rEV.minEVValue <= 0 && rEV.maxEVValue >= 0 && rEV.stepsPerEV > 0 && SpanOf(rEV) <= LastElement;
}

VOID CheckSpan(const EVCoreDataType& rEV, const RecordJudge& rJudge)
{
    const bool isOff = rEV.minEVValue == 0 && rEV.maxEVValue == 0;
    if (rEV.minEVValue >= rEV.maxEVValue && !isOff)
    {
        rJudge.Error("maxEVValue", fmt::format("is {}", rEV.maxEVValue),
                     fmt::format("above {}, the minEVValue", rEV.minEVValue));
    }
    else if (SpanOf(rEV) > LastElement)
    {
        rJudge.Error(
            "stepsPerEV",
            fmt::format("is {}, which makes {} steps from minEVValue to maxEVValue", rEV.stepsPerEV, SpanOf(rEV)),
            fmt::format("{} steps or fewer", LastElement), "EVCompTableElements has no more factors");
    }
}

/// @param elements those that are read; the one of EV 0 is at zero
VOID CheckFactors(std::span<const FLOAT> elements, size_t zero, const RecordJudge& rJudge)
{
    if (std::abs(elements[zero] - 1.0F) > EqualFactors)
    {
        rJudge.ErrorIn("EVCompTableElements", static_cast<UINT32>(zero), fmt::format("is {} at EV 0", elements[zero]),
                       "1 (factor)", "without compensation the exposure stays as metered");
        return;
    }
    for (UINT32 index = 1; index < elements.size(); ++index)
    {
        if (elements[index] < elements[index - 1])
        {
            rJudge.ErrorIn("EVCompTableElements", index, fmt::format("is {}", elements[index]),
                           fmt::format("{} or more (factor), as before it", elements[index - 1]),
                           "a higher EV is a brighter picture");
            return;
        }
    }
}

}  // namespace

VOID CheckEVScale(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<EVCoreDataType>(rModule, rFindings,
                              [](const EVCoreDataType& rEV, const RecordJudge& rJudge) { CheckSpan(rEV, rJudge); });
    const auto check = [](const EVCompTableType& rTable, const RecordJudge& rJudge)
    {
        const EVCoreDataType& rEV = *rJudge.Around<EVCoreDataType>();
        if (HasUsableSpan(rEV))
        {
            const size_t zero  = static_cast<size_t>(-StepsOf(rEV, rEV.minEVValue));
            const size_t count = zero + static_cast<size_t>(StepsOf(rEV, rEV.maxEVValue)) + 1;
            CheckFactors({rTable.EVCompTableElements, count}, zero, rJudge);
        }
    };
    JudgeEach<EVCompTableType>(rModule, rFindings, check);
}

}  // namespace tuningcheck
