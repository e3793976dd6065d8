#include "tools/tuningcheck/rules/settling.h"

#include <fmt/format.h>

#include "schema/kiroconvergence.h"
#include "schema/kirodbconvsettle.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

/// An exposure that is not settled goes on moving by the smallest move, to and fro across its target.
VOID CheckSettling(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule      = rView.Find("kirodbconvsettle");
    const auto*        pConvergence = rView.Get<kiroconvergence::KIROConvergenceType>("kiroconvergence");
    if (pModule == nullptr || pConvergence == nullptr)
    {
        return;
    }
    const FLOAT least = 2.0F * pConvergence->unitStepSize;
    const auto  check = [least](const kirodbconvsettle::BaseSettleType& rRule, const RecordJudge& rJudge)
    {
        if (rRule.settleExpTh > 0.0F && rRule.settleExpTh < least)
        {
            rJudge.Advise("settleExpTh", fmt::format("is {}", rRule.settleExpTh),
                          fmt::format("{} (log steps of 3 percent) or more, twice the smallest move", least),
                          "nearer than that the exposure may never settle; unitStepSize of kiroconvergence is the "
                          "smallest move");
        }
    };
    JudgeEach<kirodbconvsettle::BaseSettleType>(*pModule, rFindings, check);
}

}  // namespace tuningcheck
