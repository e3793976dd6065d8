"""What the figures of a tuning cost, all together: one number for a search, and for what no bar decides."""

import numpy as np
import numpy.typing as npt
import pandas as pd

from kirolab.corpus import Corpus

WHOLE_RUN = "run"
BAR_COST = 10.0  # of a bar that is missed by as much again as it allows: more than all figures together
MOST_TIMES = 5.0  # that one bar counts: one that is out of reach does not drown the others


def is_whole_run(of: pd.Series) -> pd.Series:
    """Which rows are of a whole run rather than of a stretch: of a second camera's or a detector's, too."""
    return (of == WHOLE_RUN) | of.astype(str).str.startswith(f"{WHOLE_RUN}, ")


def cost_weights(rows: pd.DataFrame, corpus: Corpus) -> pd.Series:
    """What one unit of each row's figure costs. The whole run counts nothing by itself: its stretches do."""
    weights = rows["figure"].map(corpus.weights).fillna(0.0) * rows["scene"].map(corpus.scene_weights).fillna(1.0)
    return weights.mask(is_whole_run(rows["of"]), 0.0)


def cost_by_seed(table: pd.DataFrame, corpus: Corpus, column: str = "value") -> npt.NDArray[np.float64]:
    """The sum over figures of weight times mean over all their stretches, for each seed in order. What was never
    reached counts as the corpus says."""
    weights = cost_weights(table, corpus)
    rows = table.assign(cost=weights * table[column].fillna(corpus.never))[weights > 0]
    means = rows.groupby(["seed", "figure"], observed=True)["cost"].mean()
    return means.groupby("seed").sum().to_numpy()


def violation(pairs: pd.DataFrame, corpus: Corpus) -> float:
    """What the bars cost that these runs can judge and that a tuning breaks: 0 if it holds them all. Each counts by its
    largest excess against what it allows."""
    total = 0.0
    for bar in corpus.bars:
        rows = pairs[bar.rows(pairs)]
        if rows.empty:
            continue
        excess = bar.excess(rows["value_after"], rows["value_before"]).max()
        resolution = corpus.resolution.get(str(rows["unit"].iloc[0])) or 1.0
        allowed = max(bar.limit or 0.0, bar.margin or 0.0, resolution)
        total += min(max(excess / allowed, 0.0), MOST_TIMES)
    return BAR_COST * total
