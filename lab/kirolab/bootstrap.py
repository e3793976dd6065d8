"""How sure a mean of paired differences is: intervals by bootstrap over the seeds."""

import numpy as np
import numpy.typing as npt

Numbers = npt.NDArray[np.float64]

RESAMPLES = 2000
CONFIDENCE = 0.98
ROWS_AT_ONCE = 2000  # that fit a memory of 32 MB


def mean_intervals(differences: Numbers, confidence: float = CONFIDENCE) -> tuple[Numbers, Numbers, Numbers]:
    """Mean of each row, and the percentile interval of that mean when the row's numbers are drawn anew.

    The draws are the same on every call: a comparison gives the same answer twice. Of one number, the interval is that
    number."""
    count = differences.shape[1]
    draws = np.random.default_rng(0).multinomial(count, np.full(count, 1 / count), size=RESAMPLES) / count
    low, high = np.empty(len(differences)), np.empty(len(differences))
    tails = [(1 - confidence) / 2, (1 + confidence) / 2]
    for first in range(0, len(differences), ROWS_AT_ONCE):
        part = slice(first, first + ROWS_AT_ONCE)
        low[part], high[part] = np.quantile(differences[part] @ draws.T, tails, axis=1)
    return differences.mean(axis=1), low, high
