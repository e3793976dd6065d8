#include "tools/tuningcheck/rules/pairs.h"

#include <fmt/format.h>

#include "schema/kirometeringstatscalculator.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirometeringstatscalculator;

bool IsZoneRange(const Spot& rSpot)
{
    return rSpot.pIn->pAround != nullptr && rSpot.pIn->pAround->pMember->form == tuning::Form::Variable &&
           rSpot.pMember == rSpot.pIn->pType->pMembers;
}

/// A weight over a range of luma may fall.
bool MayFall(const Spot& rSpot, Findings& rFindings)
{
    const auto* pCalculator = RecordJudge(*rSpot.pIn, rFindings).Around<StatsCalculatorType>();
    return pCalculator != nullptr && (pCalculator->APISelection == API07RgbgDomainStatsCounter ||
                                      pCalculator->APISelection == API08ExtremeColorRgBgStatsRatio);
}

VOID CheckPair(const Spot& rSpot, Findings& rFindings)
{
    const StartEndType pair = tuning::Load<StartEndType>(rSpot.pValue);
    if (pair.start > pair.end && !MayFall(rSpot, rFindings))
    {
        rFindings.Add(Severity::Error, rSpot, fmt::format("starts at {} and ends at {}", pair.start, pair.end),
                      "an end that is not below the start", "swap them if that is meant");
    }
}

}  // namespace

VOID CheckPairs(const ModulePlace& rModule, Findings& rFindings)
{
    Visitor visitor;
    visitor.member = [&rFindings](const Spot& rSpot)
    {
        if (rSpot.pMember->pRecord == &tuning::DescriptionOf<StartEndType>() &&
            rSpot.pMember->form == tuning::Form::Single && rSpot.pWords->words.acts != tuning::Acts::Never &&
            !IsZoneRange(rSpot))
        {
            CheckPair(rSpot, rFindings);
        }
        return rSpot.pMember->type == tuning::ValueType::Record;
    };
    WalkModule(rModule, visitor);
}

}  // namespace tuningcheck
