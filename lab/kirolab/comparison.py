"""Is tuning B better than tuning A: figure by figure, paired over seeds, and by the bars of a corpus."""

from dataclasses import dataclass

import numpy as np
import pandas as pd

from kirolab.bars import Bar
from kirolab.bootstrap import CONFIDENCE, mean_intervals
from kirolab.corpus import Corpus
from kirolab.cost import cost_by_seed, cost_weights

BETTER, WORSE, EQUAL = "better", "worse", "equal"
STRETCH = ["scene", "variant", "figure", "of", "at", "unit"]  # what tells one figure of a run from another
PAIR = STRETCH + ["seed"]


@dataclass(frozen=True)
class BarResult:
    """How two tunings stand with one bar."""

    bar: Bar
    count: int  # figures that it is about; none, perhaps, in these scenes
    broken_before: int
    broken_after: int
    newly_broken: int  # by B, not by A
    worst_before: float  # the highest value; of a bar without limit, the highest difference; nan for never reached
    worst_after: float


@dataclass(frozen=True)
class Comparison:
    """`stretches` has a row for each figure of each stretch: before, after, difference (mean over seeds), low and high
    (its interval), neverBefore and neverAfter (seeds), verdict, cost (what the difference costs), seed (the one that
    shows it best). `missing` counts figures that only one of the two has."""

    before: str
    after: str
    corpus: Corpus
    seeds: int
    runs: int
    stretches: pd.DataFrame
    bars: list[BarResult]
    cost_before: float
    cost_after: float
    cost_low: float
    cost_high: float
    missing: int
    verdict: str
    reason: str

    @property
    def regressions(self) -> pd.DataFrame:
        """Worst first."""
        worse = self.stretches[self.stretches["verdict"] == WORSE]
        return worse.sort_values(["cost", "steps"], ascending=False, kind="stable")

    @property
    def broken(self) -> int:
        """Bars that B breaks."""
        return sum(result.broken_after > 0 for result in self.bars)


def compare_tables(
    before: pd.DataFrame,
    after: pd.DataFrame,
    corpus: Corpus,
    is_held_out: bool = False,
    confidence: float = CONFIDENCE,
) -> Comparison:
    """Each table has the runs of one tuning. Of held-out scenes, bars are as much wider as the corpus says."""
    pairs = pairs_of(before, after)
    missing = len(before) + len(after) - 2 * len(pairs)
    stretches = judged_stretches(pairs, corpus, confidence)
    slack = corpus.held_out_slack if is_held_out else 0.0
    bars = [bar_result(bar, pairs, slack) for bar in corpus.bars]
    costs = np.array([cost_by_seed(pairs, corpus, side) for side in ("value_before", "value_after")])
    mean, low, high = mean_intervals((costs[1] - costs[0])[np.newaxis], confidence) if costs.size else np.zeros((3, 1))
    verdict, reason = overall(before, stretches, bars, float(mean[0]), float(low[0]), float(high[0]))
    return Comparison(
        before=name_of(before),
        after=name_of(after),
        corpus=corpus,
        seeds=int(pairs["seed"].nunique()),
        runs=len(pairs[["scene", "variant", "seed"]].drop_duplicates()),
        stretches=stretches,
        bars=bars,
        cost_before=float(costs[0].mean()) if costs.size else 0.0,
        cost_after=float(costs[1].mean()) if costs.size else 0.0,
        cost_low=float(low[0]),
        cost_high=float(high[0]),
        missing=missing,
        verdict=verdict,
        reason=reason,
    )


def pairs_of(before: pd.DataFrame, after: pd.DataFrame) -> pd.DataFrame:
    """The figures that both have, run by run: value_before and value_after."""
    return before.drop(columns="tuning").merge(
        after.drop(columns="tuning"), on=PAIR, suffixes=("_before", "_after"), sort=False
    )


def name_of(table: pd.DataFrame) -> str:
    return str(table["tuning"].iloc[0]) if len(table) else "nothing"


def judged_stretches(pairs: pd.DataFrame, corpus: Corpus, confidence: float) -> pd.DataFrame:
    """One row for each figure of each stretch; a seed that never reached it on a side counts apart."""
    pairs = pairs.assign(
        difference=pairs["value_after"] - pairs["value_before"],
        never_before=pairs["value_before"].isna(),
        never_after=pairs["value_after"].isna(),
    )
    groups = pairs.groupby(STRETCH, sort=False, observed=True)
    rows = groups.agg(
        before=("value_before", "mean"),
        after=("value_after", "mean"),
        neverBefore=("never_before", "sum"),
        neverAfter=("never_after", "sum"),
    )
    rows["seed"] = seed_that_shows(pairs)
    add_intervals(rows, pairs, confidence)
    rows = rows.reset_index()
    resolution = rows["unit"].map(corpus.resolution).fillna(0.0)
    never = rows["neverAfter"] - rows["neverBefore"]
    counts = rows["difference"].abs() > resolution
    is_worse = (never > 0) | ((never == 0) & counts & (rows["low"] > 0))
    is_better = (never < 0) | ((never == 0) & counts & (rows["high"] < 0))
    rows["verdict"] = np.select([is_worse, is_better], [WORSE, BETTER], EQUAL)
    rows["steps"] = (rows["difference"].fillna(0.0) / resolution.where(resolution > 0, 1.0)).where(never == 0, np.inf)
    share_never = never / pairs["seed"].nunique()
    rows["cost"] = cost_weights(rows, corpus) * (rows["difference"].fillna(0.0) + share_never * corpus.never)
    return rows


def seed_that_shows(pairs: pd.DataFrame) -> pd.Series:
    """For each stretch, the seed at which B is worst."""
    worst = pairs["difference"].fillna(-np.inf).where(~pairs["never_after"], np.inf)
    order = pairs.assign(worst=worst).sort_values("worst", ascending=False, kind="stable")
    return order.drop_duplicates(STRETCH).set_index(STRETCH)["seed"]


def add_intervals(rows: pd.DataFrame, pairs: pd.DataFrame, confidence: float) -> None:
    """Stretches with as many seeds go together."""
    rows["difference"] = rows["low"] = rows["high"] = np.nan
    reached = pairs[pairs["difference"].notna()]
    lists = reached.groupby(STRETCH, sort=False, observed=True)["difference"].agg(list)
    for count in sorted(set(lists.map(len))):
        fitting = lists[lists.map(len) == count]
        mean, low, high = mean_intervals(np.array(fitting.to_list()), confidence)
        rows.loc[fitting.index, ["difference", "low", "high"]] = np.column_stack([mean, low, high])


def bar_result(bar: Bar, pairs: pd.DataFrame, slack: float) -> BarResult:
    fitting = pairs[bar.rows(pairs)]
    before, after = fitting["value_before"], fitting["value_after"]
    excess_before = bar.excess(before, before, slack)
    excess_after = bar.excess(after, before, slack)
    is_broken_before, is_broken_after = excess_before > 0, excess_after > 0
    if bar.limit is None:
        margin = (bar.margin or 0.0) * (1 + slack)
        before, after = excess_before + margin, excess_after + margin
    return BarResult(
        bar=bar,
        count=len(fitting),
        broken_before=int(is_broken_before.sum()),
        broken_after=int(is_broken_after.sum()),
        newly_broken=int((is_broken_after & ~is_broken_before).sum()),
        worst_before=before.max(skipna=False) if len(fitting) else 0.0,
        worst_after=after.max(skipna=False) if len(fitting) else 0.0,
    )


def overall(
    before: pd.DataFrame, stretches: pd.DataFrame, bars: list[BarResult], cost: float, low: float, high: float
) -> tuple[str, str]:
    """Bars first; with the same bars held, the cost of all figures decides."""
    newly = [result for result in bars if result.newly_broken]
    if newly:
        return WORSE, f"breaks {len(newly)} of {len(bars)} bars where {name_of(before)} holds them"
    if (stretches["verdict"] == EQUAL).all():
        return EQUAL, "no figure differs by more than seeds explain"
    mended = [result for result in bars if result.broken_after < result.broken_before]
    if mended:
        return BETTER, f"mends {len(mended)} of {len(bars)} bars, and breaks none that {name_of(before)} holds"
    if low > 0:
        return WORSE, f"the same bars are held, and all figures together cost {cost:+.3f}"
    if high < 0:
        return BETTER, f"the same bars are held, and all figures together cost {cost:+.3f}"
    return EQUAL, "the same bars are held, and better and worse figures weigh the same"
