/// @file
/// The figures of merit as a table of a page: a row for each of them, a column for each stretch of the run.
#pragma once

#include "tools/kirosim/figures/figure.h"
#include "tools/report/page.h"

namespace kirosim
{

report::Table FigureTable(const std::vector<Figure>& rFigures);

}  // namespace kirosim
