#include "tools/tuningcheck/rules/filters.h"

#include <numeric>

#include <fmt/format.h>

#include "schema/kiro1dvectorprocessor.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiro1dvectorprocessor;

/// Below this, weights are not divided by their sum but by this.
constexpr FLOAT LeastSum = 0.01F;

VOID CheckWeightsOfSamples(const FilterType& rFilter, const RecordJudge& rJudge)
{
    if (rFilter.method != FilteringMethodType::FIR || rFilter.FIRCoefficientsCount == 0)
    {
        return;
    }
    const auto  weights = ListOf(rFilter.FIRCoefficients, rFilter.FIRCoefficientsCount);
    const FLOAT sum     = std::accumulate(weights.begin(), weights.end(), 0.0F);
    if (sum < LeastSum)
    {
        rJudge.Error("FIRCoefficients", fmt::format("sum up to {}", sum), fmt::format("a sum of {} or more", LeastSum),
                     "samples are divided by the sum of their weights");
    }
    else if (weights.size() > rFilter.filterLength)
    {
        rJudge.Advise("FIRCoefficients", fmt::format("has {} weights", weights.size()),
                      fmt::format("{} or fewer, the filterLength", rFilter.filterLength), "the rest is not read");
    }
}

}  // namespace

VOID CheckFilters(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<FilterType>(rModule, rFindings, CheckWeightsOfSamples);
}

}  // namespace tuningcheck
