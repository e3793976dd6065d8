"""How each member of a space moves each figure, all others held: what to touch first."""

from dataclasses import dataclass

import numpy as np
import pandas as pd

from kirolab.comparison import pairs_of
from kirolab.corpus import Corpus
from kirolab.cost import cost_by_seed, is_whole_run, violation
from kirolab.space import Dimension, Space
from kirolab.tunings import Tuning


@dataclass(frozen=True)
class SweepPoint:
    """A tuning with one member at another value."""

    dimension: Dimension
    value: float
    tuning: Tuning


def sweep(space: Space, tuning: Tuning, points: int) -> list[SweepPoint]:
    """Evenly from end to end of each range; those of a member that must be whole are, and come once."""
    result = []
    for dimension in space.dimensions:
        ends = (dimension.low, dimension.high)
        values = np.geomspace(*ends, points) if dimension.is_log else np.linspace(*ends, points)
        for value in dict.fromkeys(float(dimension.held(value)) for value in values):
            edits = space.edits(space.start | {dimension.name: value})
            result.append(SweepPoint(dimension, value, tuning.with_edits(f"{dimension.name} {value:g}", edits)))
    return result


@dataclass(frozen=True)
class Sensitivity:
    """`effects` has a row for each member and figure: its mean at the tuning (start) and the lowest and highest of the
    sweep, each with the value of the member there; steps is the difference in steps of the resolution, negative if the
    figure falls where the member rises. `gains` has a row for each member: the value at which bars and cost are best,
    and what is gained by it, most first."""

    effects: pd.DataFrame
    gains: pd.DataFrame


def sensitivity_of(table: pd.DataFrame, points: list[SweepPoint], tuning: Tuning, corpus: Corpus) -> Sensitivity:
    """The table has the runs of the tuning and of all points."""
    tables = dict(list(table.groupby("tuning", sort=False)))
    baseline = tables[tuning.name]
    start, start_score = figure_means(baseline, corpus), score_of(baseline, baseline, corpus)
    effects, gains = [], []
    for dimension in dict.fromkeys(point.dimension for point in points):
        own = [point for point in points if point.dimension == dimension]
        values = [point.value for point in own]
        means = pd.DataFrame([figure_means(tables[point.tuning.name], corpus) for point in own], index=values)
        for figure, unit in means.columns:
            effects.append(effect(dimension, figure, unit, start[(figure, unit)], means[(figure, unit)], corpus))
        scores = [score_of(baseline, tables[point.tuning.name], corpus) for point in own]
        best = int(np.argmin(scores))
        gains.append(
            {
                "member": dimension.name,
                "start": dimension.start,
                "best": values[best],
                "gain": start_score - scores[best],
            }
        )
    gains_table = pd.DataFrame(gains).sort_values("gain", ascending=False, ignore_index=True)
    return Sensitivity(pd.DataFrame(effects), gains_table)


def figure_means(table: pd.DataFrame, corpus: Corpus) -> pd.Series:
    """Over all stretches, by figure and unit."""
    rows = table[~is_whole_run(table["of"])]
    return rows["value"].fillna(corpus.never).groupby([rows["figure"], rows["unit"]], sort=False).mean()


def score_of(baseline: pd.DataFrame, table: pd.DataFrame, corpus: Corpus) -> float:
    cost = cost_by_seed(table, corpus)
    return (float(cost.mean()) if cost.size else 0.0) + violation(pairs_of(baseline, table), corpus)


def effect(
    dimension: Dimension, figure: str, unit: str, start: float, means: pd.Series, corpus: Corpus
) -> dict[str, object]:
    swing = means.max() - means.min()
    rises = means.idxmax() >= means.idxmin()
    return {
        "member": dimension.name,
        "figure": figure,
        "unit": unit,
        "start": start,
        "lowest": means.min(),
        "lowestAt": means.idxmin(),
        "highest": means.max(),
        "highestAt": means.idxmax(),
        "steps": swing / corpus.resolution.get(unit, 1.0) * (1 if rises else -1),
    }
