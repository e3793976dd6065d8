"""Bars of a corpus: what a tuning has to hold, figure by figure."""

from dataclasses import dataclass
from typing import Any

import numpy as np
import pandas as pd

from kirolab.figurerows import ANY, Patterns, rows_of


@dataclass(frozen=True)
class Bar:
    """Limit and margin are in the figure's unit; a bar has one of them or both. A figure that was never reached breaks
    a limit."""

    figure: str
    of: Patterns = ANY
    scene: Patterns = ANY
    variant: Patterns = ANY
    limit: float | None = None  # the highest value that holds
    margin: float | None = None  # by which a tuning may be worse than the one that it is compared with

    @property
    def text(self) -> str:
        """As a person would say it."""
        where = [
            f"of {'/'.join(self.of)}" if self.of != ANY else "",
            f"in {'/'.join(self.scene)}" if self.scene != ANY else "",
            f"({'/'.join(self.variant)})" if self.variant != ANY else "",
            f"at most {self.limit:g}" if self.limit is not None else "",
            "and" if self.limit is not None and self.margin is not None else "",
            f"worse by at most {self.margin:g}" if self.margin is not None else "",
        ]
        return " ".join([self.figure, *(part for part in where if part)])

    def rows(self, table: pd.DataFrame) -> pd.Series:
        """Which rows of a table of figures the bar is about."""
        return rows_of(table, self.figure, self.of, self.scene, self.variant)

    def excess(self, values: pd.Series, reference: pd.Series | None = None, slack: float = 0.0) -> pd.Series:
        """How far each value is beyond the bar; 0 or less holds it, infinite is what was never reached.

        A value that the reference has not reached either is no worse than it."""
        excess = pd.Series(-np.inf, index=values.index)
        if self.limit is not None:
            excess = (values - self.limit * (1 + slack)).fillna(np.inf)
        if self.margin is not None and reference is not None:
            worse = (values - reference).where(values.notna(), np.inf).where(reference.notna(), -np.inf)
            excess = np.maximum(excess, worse - self.margin * (1 + slack))
        return excess


def bar_fields() -> dict[str, Any]:
    """What a corpus may say of a bar, with the types."""
    return {"figure": str, "of": list, "scene": list, "variant": list, "limit": float, "margin": float}
