"""What the figures of a tuning cost, all together: one number for a search, and for what no bar decides."""

import numpy as np
import numpy.typing as npt
import pandas as pd

from kirolab.corpus import Corpus

WHOLE_RUN = "run"
MOST_STEPS = 200.0  # by which one bar counts: one that is out of reach does not drown the others


def cost_weights(rows: pd.DataFrame, corpus: Corpus) -> pd.Series:
    """What one unit of each row's figure costs. The whole run counts nothing by itself: its stretches do."""
    weights = rows["figure"].map(corpus.weights).fillna(0.0) * rows["scene"].map(corpus.scene_weights).fillna(1.0)
    return weights.where(rows["of"] != WHOLE_RUN, 0.0)


def cost_by_seed(table: pd.DataFrame, corpus: Corpus, column: str = "value") -> npt.NDArray[np.float64]:
    """The sum over figures of weight times mean over all their stretches, for each seed in order. What was never
    reached counts as the corpus says."""
    weights = cost_weights(table, corpus)
    rows = table.assign(cost=weights * table[column].fillna(corpus.never))[weights > 0]
    means = rows.groupby(["seed", "figure"], observed=True)["cost"].mean()
    return means.groupby("seed").sum().to_numpy()


def violation(pairs: pd.DataFrame, corpus: Corpus) -> float:
    """How far a tuning is beyond the bars that these runs can judge: 0 if it holds them all, else the sum over bars of
    the largest excess, in steps of the resolution."""
    total = 0.0
    for bar in corpus.bars:
        rows = pairs[bar.rows(pairs)]
        if rows.empty:
            continue
        excess = bar.excess(rows["value_after"], rows["value_before"]).max()
        steps = excess / corpus.resolution.get(str(rows["unit"].iloc[0]), 1.0)
        total += min(max(steps, 0.0), MOST_STEPS)
    return total
