#include "tools/kirosim/figures/figurepage.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include <fmt/format.h>

#include "tools/kirosim/figures/overrun.h"

namespace kirosim
{

namespace
{

/// What stands in a row, or heads a column; in the order of its first appearance.
template <typename Key> size_t PlaceOf(std::vector<Key>& rKeys, const Key& rKey)
{
    const auto place = static_cast<size_t>(std::find(rKeys.begin(), rKeys.end(), rKey) - rKeys.begin());
    if (place == rKeys.size())
    {
        rKeys.push_back(rKey);
    }
    return place;
}

using FigureColumnKey = std::tuple<std::string, DOUBLE>;  ///< stretch, and when
using FigureRowKey    = std::tuple<FigureId, std::string>;

std::string HeadOf(const FigureColumnKey& rKey)
{
    const auto& [of, at] = rKey;
    return (of == WholeRun) ? "run" : fmt::format("{}, {:.4g} s", of, at);
}

std::string HeadOf(const FigureRowKey& rKey)
{
    const auto& [id, subject] = rKey;
    const FigureRow& rRow     = RowOf(id);
    return fmt::format("{}{}, {}", rRow.pName, subject.empty() ? "" : " of " + subject, rRow.pUnit);
}

std::string CellOf(const std::optional<DOUBLE>& rValue)
{
    constexpr DOUBLE shown = 1e4;
    return !rValue.has_value() ? "never" : fmt::format("{:.3g}", std::round(*rValue * shown) / shown);
}

}  // namespace

report::Table FigureTable(const std::vector<Figure>& rFigures)
{
    // The run stands first, and the rows in the order in which they are explained.
    std::vector<FigureColumnKey> columns = {{WholeRun, 0.0}};
    std::vector<FigureRowKey>    rows;
    for (const Figure& rFigure : rFigures)
    {
        PlaceOf(columns, {rFigure.of, rFigure.at});
        PlaceOf(rows, {rFigure.id, rFigure.subject});
    }
    std::sort(rows.begin(), rows.end());
    report::Table table{"Figures of merit: lower is better, kirosim figures explains them", {""}, {}};
    for (const FigureColumnKey& rColumn : columns)
    {
        table.columns.push_back(HeadOf(rColumn));
    }
    for (const FigureRowKey& rRow : rows)
    {
        table.rows.emplace_back(columns.size() + 1).front() = HeadOf(rRow);
    }
    for (const Figure& rFigure : rFigures)
    {
        const size_t row    = PlaceOf(rows, {rFigure.id, rFigure.subject});
        const size_t column = PlaceOf(columns, {rFigure.of, rFigure.at});

        table.rows[row][column + 1] = CellOf(rFigure.value);
    }
    return table;
}

}  // namespace kirosim
