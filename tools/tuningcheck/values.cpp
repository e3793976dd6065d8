#include "tools/tuningcheck/values.h"

#include <fmt/format.h>

#include "tools/meaning/numbersense.h"

namespace tuningcheck
{

namespace
{

Severity SeverityOf(const meaning::NumberFault& rFault)
{
    return rFault.isOdd ? Severity::Advice : Severity::Error;
}

VOID CheckCount(const Spot& rSpot, Findings& rFindings)
{
    const auto values = tuning::ValuesOf(*rSpot.pMember, rSpot.pIn->pRecord);
    if (rSpot.pMember->form != tuning::Form::Variable)
    {
        return;
    }
    if (const auto fault = meaning::CountFaultOf(rSpot.pWords->words, values.count))
    {
        rFindings.Add(SeverityOf(*fault), rSpot, fmt::format("has {} entries", values.count), fault->expected,
                      fault->advice);
    }
}

VOID CheckEnumerator(const Spot& rSpot, Findings& rFindings)
{
    const INT32 value = tuning::Load<INT32>(rSpot.pValue);
    if (rSpot.pMember->pEnum != nullptr && rSpot.pMember->pEnum->NameOf(value) == nullptr)
    {
        rFindings.Add(Severity::Error, rSpot, fmt::format("is {}", value),
                      fmt::format("a name of {}", rSpot.pMember->pEnum->pName), "");
    }
}

VOID CheckValue(const Spot& rSpot, Findings& rFindings)
{
    if (!tuning::IsNumber(rSpot.pMember->type))
    {
        return;
    }
    CheckEnumerator(rSpot, rFindings);
    if (const auto fault = meaning::FaultOf(*rSpot.pJudged, rSpot.Number()))
    {
        rFindings.Add(SeverityOf(*fault), rSpot, "is " + rSpot.ValueText(), fault->expected, fault->advice);
    }
}

}  // namespace

VOID CheckValues(const ModulePlace& rModule, Findings& rFindings)
{
    Visitor visitor;
    visitor.member = [&rFindings](const Spot& rSpot)
    {
        CheckCount(rSpot, rFindings);
        return true;
    };
    visitor.value = [&rFindings](const Spot& rSpot) { CheckValue(rSpot, rFindings); };
    WalkModule(rModule, visitor);
}

}  // namespace tuningcheck
