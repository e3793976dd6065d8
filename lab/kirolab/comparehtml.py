"""A comparison as a page for a browser, in one file."""

from html import escape
from typing import Any, Iterable

from kirolab.comparewords import (
    bar_state,
    change,
    counts_by_figure,
    counts_by_scene,
    number,
    report_commands,
    stretch_name,
)
from kirolab.comparison import Comparison

STYLE = """
body { font: 15px/1.5 sans-serif; max-width: 70em; margin: 2em auto; padding: 0 1em; color: #222; background: #fff }
table { border-collapse: collapse; margin: 1em 0 } td, th { padding: .2em .8em; border-bottom: 1px solid #ddd }
th { text-align: left } td.number { text-align: right; font-variant-numeric: tabular-nums }
.worse, .broken { color: #b00020; font-weight: bold } .better { color: #00695c; font-weight: bold }
pre { background: #f5f5f5; padding: .5em; overflow-x: auto } summary { cursor: pointer }
@media (prefers-color-scheme: dark) {
    body { color: #ddd; background: #181818 } td, th { border-color: #444 } pre { background: #242424 }
    .worse, .broken { color: #ff8a80 } .better { color: #80cbc4 }
}
"""


def comparison_html(comparison: Comparison, worst: int) -> str:
    title = f"{comparison.before} → {comparison.after}: {comparison.verdict}"
    parts = [
        "<!DOCTYPE html>",
        f'<html lang="en"><head><meta charset="utf-8"><title>{escape(title)}</title>',
        f"<style>{STYLE}</style></head><body>",
        f"<h1>{escape(comparison.before)} → {escape(comparison.after)}</h1>",
        f'<p><span class="{comparison.verdict}">{comparison.verdict}</span>: {escape(comparison.reason)}.</p>',
        f"<p>Corpus {escape(comparison.corpus.name)}: {comparison.runs} runs of each, {comparison.seeds} seeds. "
        f"Cost {comparison.cost_before:.3f} → {comparison.cost_after:.3f}, the difference between "
        f"{comparison.cost_low:+.3f} and {comparison.cost_high:+.3f}.</p>",
        bars_html(comparison),
        regressions_html(comparison, worst),
        "<h2>By figure</h2>",
        counts_html("Figure", counts_by_figure(comparison)),
        "<h2>By scene</h2>",
        counts_html("Scene", counts_by_scene(comparison)),
        "</body></html>",
    ]
    return "\n".join(parts) + "\n"


def table_html(head: Iterable[str], rows: Iterable[str]) -> str:
    cells = "".join(f"<th>{escape(text)}</th>" for text in head)
    return f"<table><thead><tr>{cells}</tr></thead><tbody>{''.join(rows)}</tbody></table>"


def bars_html(comparison: Comparison) -> str:
    rows = []
    for result in (result for result in comparison.bars if result.count > 0):
        states = [(bar_state(result, True), result.broken_before), (bar_state(result, False), result.broken_after)]
        cells = "".join(
            f'<td class="{"broken" if broken else "held"}">{escape(state)}</td>' for state, broken in states
        )
        rows.append(f"<tr><td>{escape(result.bar.text)}</td>{cells}</tr>")
    return "<h2>Bars</h2>" + table_html(["Bar", comparison.before, comparison.after], rows) if rows else ""


def regressions_html(comparison: Comparison, worst: int) -> str:
    regressions = comparison.regressions
    items = []
    for _, row in regressions.head(worst).iterrows():
        commands = escape("\n".join(report_commands(comparison, row)))
        text = escape(f"{stretch_name(row)}: {change(row)}")
        items.append(f"<details><summary>{text}</summary><pre>{commands}</pre></details>")
    return f"<h2>Worst of {len(regressions)} regressions</h2>" + "".join(items) if items else ""


def counts_html(head: str, counts: Any) -> str:
    has_difference = "difference" in counts
    rows = []
    for name, row in counts.iterrows():
        cells = "".join(
            f'<td class="number {verdict if row[verdict] else ""}">{row[verdict]}</td>'
            for verdict in ("better", "worse", "equal")
        )
        if has_difference:
            cells += f'<td class="number">{number(row["difference"])} {escape(row["unit"])}</td>'
        rows.append(f"<tr><td>{escape(str(name))}</td>{cells}</tr>")
    return table_html([head, "better", "worse", "equal"] + ["mean difference"] * has_difference, rows)
