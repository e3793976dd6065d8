"""What a comparison says, whether on a terminal, in JSON or on a page."""

import math
import shlex
from typing import Any

import pandas as pd

from kirolab.comparison import BETTER, EQUAL, WORSE, BarResult, Comparison
from kirolab.cost import WHOLE_RUN
from kirolab.scenes import PLAIN
from kirolab.tunings import compile_command

NEVER = "never"


def number(value: float) -> str:
    """Four places, more only for what is large."""
    if not math.isfinite(value):
        return NEVER
    text = f"{value:.4f}" if abs(value) < 1 else f"{value:.2f}"
    text = text.rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def scene_name(row: Any) -> str:
    return row["scene"] if row["variant"] == PLAIN else f"{row['scene']} {row['variant']}"


def stretch_name(row: Any) -> str:
    """Such as "settle of step at 4 s in natural step+2"."""
    stretch, comma, what = row["of"].partition(",")
    of = f"the run{comma}{what}" if stretch == WHOLE_RUN else f"{row['of']} at {row['at']:g} s"
    return f"{row['figure']} of {of} in {scene_name(row)}"


def change(row: Any) -> str:
    """Such as "3 -> 5 frames (+2, between +1.8 and +2.2)"."""
    text = f"{number(row['before'])} -> {number(row['after'])} {row['unit']}"
    if row["neverAfter"] != row["neverBefore"]:
        return f"{text} (never reached with {row['neverAfter']} seeds, before {row['neverBefore']})"
    signed = [("+" if row[name] > 0 else "") + number(row[name]) for name in ("difference", "low", "high")]
    return f"{text} ({signed[0]}, between {signed[1]} and {signed[2]})"


def report_commands(comparison: Comparison, row: Any) -> list[str]:
    """Lines that show one run of both tunings in a report."""
    files = {choice.scene.name: choice.scene.file for choice in comparison.corpus.scenes + comparison.corpus.held_out}
    scene = f"--scene {shlex.quote(str(files[row['scene']]))} --variant {shlex.quote(row['variant'])}"
    run = "kirosim run --no-live --quiet"
    lines, names = [], []
    for name, output in ((comparison.before, "before.bin"), (comparison.after, "after.bin")):
        line = compile_command(name, output)
        lines += [line] if line else []
        names.append(output if line else shlex.quote(name))
    lines.append(f"{run} --tuning {names[0]} {scene} --seed {row['seed']} --csv before.csv")
    lines.append(
        f"{run} --tuning {names[1]} {scene} --seed {row['seed']} --report worst.html --against before.csv",
    )
    return lines


def bar_state(result: BarResult, is_before: bool) -> str:
    if result.bar.limit is None and is_before:
        return "-"
    broken = result.broken_before if is_before else result.broken_after
    worst = result.worst_before if is_before else result.worst_after
    sign = "+" if result.bar.limit is None and 0 <= worst < math.inf else ""
    return f"{'BROKEN' if broken else 'held'} {sign}{number(worst)}" + (
        f" ({broken} of {result.count})" if broken else ""
    )


def counts_by_figure(comparison: Comparison) -> pd.DataFrame:
    """How many stretches of each figure are better, worse and equal, and the mean difference over all of them."""
    stretches = comparison.stretches
    counts = pd.crosstab(stretches["figure"], stretches["verdict"])
    counts = counts.reindex(columns=[BETTER, WORSE, EQUAL], fill_value=0)
    counts["difference"] = stretches.groupby("figure")["difference"].mean()
    counts["unit"] = stretches.groupby("figure")["unit"].first()
    return counts.loc[stretches["figure"].unique()] if len(stretches) else counts


def counts_by_scene(comparison: Comparison) -> pd.DataFrame:
    """The same by scene and variant."""
    stretches = comparison.stretches.assign(run=comparison.stretches.apply(scene_name, axis=1))
    counts = pd.crosstab(stretches["run"], stretches["verdict"])
    return counts.reindex(columns=[BETTER, WORSE, EQUAL], fill_value=0).loc[stretches["run"].unique()]
