"""A comparison for a terminal."""

from kirolab.comparewords import bar_state, change, counts_by_figure, number, report_commands, stretch_name
from kirolab.comparison import EQUAL, Comparison


def comparison_text(comparison: Comparison, worst: int) -> str:
    lines = [
        f"{comparison.corpus.name}: {comparison.before} -> {comparison.after}, "
        f"{comparison.runs} runs of each, {comparison.seeds} seeds",
        f"verdict: {comparison.verdict}: {comparison.reason}",
        f"cost: {comparison.cost_before:.3f} -> {comparison.cost_after:.3f}, the difference between "
        f"{comparison.cost_low:+.3f} and {comparison.cost_high:+.3f}",
    ]
    if comparison.missing:
        lines.append(f"{comparison.missing} figures that only one of the two has are left out")
    lines += bar_lines(comparison) + figure_lines(comparison) + regression_lines(comparison, worst)
    return "\n".join(lines) + "\n"


def bar_lines(comparison: Comparison) -> list[str]:
    judging = [result for result in comparison.bars if result.count > 0]
    if not judging:
        return []
    rows = [("A", "B", "bars")]
    for result in judging:
        rows.append((bar_state(result, True), bar_state(result, False), result.bar.text))
    widths = [max(len(row[column]) for row in rows) for column in range(2)]
    return [""] + [f"  {row[0]:{widths[0]}}  {row[1]:{widths[1]}}  {row[2]}" for row in rows]


def figure_lines(comparison: Comparison) -> list[str]:
    lines = ["", f"{'figures':16}{'better':>8}{'worse':>8}{'equal':>8}   mean difference"]
    for figure, row in counts_by_figure(comparison).iterrows():
        difference = f"{number(row['difference'])} {row['unit']}"
        lines.append(f"  {figure:14}{row['better']:8}{row['worse']:8}{row[EQUAL]:8}   {difference}")
    return lines


def regression_lines(comparison: Comparison, worst: int) -> list[str]:
    regressions = comparison.regressions
    if regressions.empty or worst == 0:
        return []
    lines = ["", f"worst of {len(regressions)} regressions"]
    for _, row in regressions.head(worst).iterrows():
        lines.append(f"  {stretch_name(row)}: {change(row)}")
        lines += [f"      {line}" for line in report_commands(comparison, row)]
    return lines
