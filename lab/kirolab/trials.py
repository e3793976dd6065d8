"""One tuning of a search on its way through the scenes of a corpus."""

from dataclasses import dataclass, field

import pandas as pd

from kirolab.comparison import pairs_of
from kirolab.corpus import Corpus
from kirolab.cost import cost_by_seed, violation
from kirolab.engine import INTERRUPTED
from kirolab.runs import Figure, Outcome, Run, Unit, runs_of, units_of
from kirolab.table import table_of
from kirolab.tunings import Tuning


@dataclass(frozen=True)
class Score:
    """What is known of a tuning after some scenes."""

    cost: float
    violation: float  # of the bars; 0 if it holds them

    @property
    def total(self) -> float:
        """Bars weigh more than all figures together."""
        return self.cost + self.violation


@dataclass
class TrialRuns:
    """The runs of a tuning, scene by scene. Who holds one submits the units and hands back what comes of them."""

    tuning: Tuning
    corpus: Corpus
    seeds: tuple[int, ...]
    scenes_begun: int = 0
    fault: str = ""
    figures: dict[Run, list[Figure]] = field(default_factory=dict)
    _pending: int = 0
    _second_tries: set[Run] = field(default_factory=set)

    @property
    def is_scene_done(self) -> bool:
        return self._pending == 0

    @property
    def is_done(self) -> bool:
        return self._pending == 0 and (bool(self.fault) or self.scenes_begun == len(self.corpus.scenes))

    def begin_scene(self) -> list[Unit]:
        choice = self.corpus.scenes[self.scenes_begun]
        self.scenes_begun += 1
        units = list(units_of(runs_of(self.tuning, [choice], self.seeds)))
        self._pending = len(units)
        return units

    def take(self, unit: Unit, outcomes: list[Outcome]) -> list[Unit]:
        """Units to do once more, for runs that failed."""
        again = []
        for run, outcome in zip(unit.runs, outcomes):
            if outcome.fault == INTERRUPTED:
                raise KeyboardInterrupt
            if outcome.figures is not None:
                self.figures[run] = outcome.figures
            elif run in self._second_tries:
                self.fault = f"{run.name}: {outcome.fault}"
            else:
                self._second_tries.add(run)
                again.append(Unit(run.tuning, run.scene, (run.variant,), (run.seed,)))
        self._pending += len(again) - 1
        return again

    @property
    def table(self) -> pd.DataFrame:
        scenes = [choice for choice in self.corpus.scenes[: self.scenes_begun]]
        return table_of((run, self.figures[run]) for run in runs_of(self.tuning, scenes, self.seeds))

    def score(self, baseline: pd.DataFrame) -> Score:
        """By the scenes that are done, against the same ones of the tuning that the search began with."""
        table = self.table
        cost = cost_by_seed(table, self.corpus)
        return Score(float(cost.mean()) if cost.size else 0.0, violation(pairs_of(baseline, table), self.corpus))
