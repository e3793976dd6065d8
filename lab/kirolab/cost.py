"""What the figures of a tuning cost, all together: one number for a search, and for what no bar decides."""

import numpy as np
import numpy.typing as npt
import pandas as pd

from kirolab.corpus import Corpus

WHOLE_RUN = "run"


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
