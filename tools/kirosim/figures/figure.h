/// @file
/// A figure of merit with its value.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kirosim/figures/figuretable.h"
#include "tools/kirosim/jsonfacts.h"

namespace kirosim
{

struct Figure
{
    FigureId              id;
    std::string           of;            ///< a stretch, such as "step"; "run" for all of them
    DOUBLE                at;            ///< in the scene, s
    std::optional<DOUBLE> value;         ///< none for what was never reached
    std::string           subject = {};  ///< what watches the scene, such as "detector 1"; empty for the picture
};

inline TextNode FigureFacts(const std::vector<Figure>& rFigures)
{
    return JsonList(rFigures,
                    [](const Figure& rFigure)
                    {
                        const FigureRow& rRow = RowOf(rFigure.id);
                        return JsonObject(
                            {{"figure", Json(rRow.pName)},
                             {"of", Json(rFigure.subject.empty() ? rFigure.of : rFigure.of + ", " + rFigure.subject)},
                             {"at", Json(rFigure.at)},
                             {"value", Json(rFigure.value)},
                             {"unit", Json(rRow.pUnit)}});
                    });
}

}  // namespace kirosim
