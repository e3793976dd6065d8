#include "tools/kirosim/figures/overrun.h"

#include <algorithm>

namespace kirosim
{

namespace
{

/// What was never reached is the worst of all.
std::optional<DOUBLE> WorseOf(const std::optional<DOUBLE>& rOne, const std::optional<DOUBLE>& rOther)
{
    return (rOne.has_value() && rOther.has_value()) ? std::optional(std::max(*rOne, *rOther)) : std::nullopt;
}

}  // namespace

VOID AddWorst(std::vector<Figure>& rFigures)
{
    std::vector<Figure>   worst;
    std::optional<DOUBLE> unsettled;
    for (const Figure& rFigure : rFigures)
    {
        if (rFigure.id == FigureId::Settle)
        {
            unsettled = unsettled.value_or(0.0) + (rFigure.value.has_value() ? 0.0 : 1.0);
        }
        if (RowOf(rFigure.id).overRun != OverRun::Worst)
        {
            continue;
        }
        const auto found = std::find_if(worst.begin(), worst.end(),
                                        [&rFigure](const Figure& rSeen)
                                        { return rSeen.id == rFigure.id && rSeen.subject == rFigure.subject; });
        if (found != worst.end())
        {
            found->value = WorseOf(found->value, rFigure.value);
            continue;
        }
        worst.push_back(rFigure);
        worst.back().of = WholeRun;
        worst.back().at = 0.0;
    }
    rFigures.insert(rFigures.end(), worst.begin(), worst.end());
    if (unsettled.has_value())
    {
        rFigures.push_back({FigureId::Unsettled, WholeRun, 0.0, unsettled});
    }
}

}  // namespace kirosim
