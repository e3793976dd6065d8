"""All runs of a corpus: those that are not done yet, each failed one once more, and a table of all."""

import sys
from dataclasses import dataclass, field
from typing import Iterable, TextIO

import pandas as pd
from tqdm import tqdm

from kirolab.corpus import Corpus
from kirolab.engine import INTERRUPTED
from kirolab.executor import Executor
from kirolab.runs import Figure, Outcome, Run, Unit, runs_of, unit_seconds, units_of
from kirolab.store import ResultStore
from kirolab.table import table_of
from kirolab.tunings import Tuning


@dataclass
class Results:
    """Figures by run, and what is wrong with the runs that have none."""

    figures: dict[Run, list[Figure]] = field(default_factory=dict)
    faults: dict[Run, str] = field(default_factory=dict)


def run_corpus(
    corpus: Corpus,
    tunings: Iterable[Tuning],
    executor: Executor,
    store: ResultStore,
    is_held_out: bool = False,
    progress: TextIO | None = sys.stderr,
) -> tuple[pd.DataFrame, dict[Run, str]]:
    """A table of all figures, and what is wrong with the runs that failed twice."""
    runs = [run for tuning in tunings for run in runs_of(tuning, corpus.choices(is_held_out), corpus.seeds)]
    results = Campaign(executor, store, progress).run(runs)
    done = [(run, results.figures[run]) for run in runs if run in results.figures]
    return table_of(done), results.faults


class Campaign:
    """Whatever ends it, what is done by then is in the store."""

    def __init__(self, executor: Executor, store: ResultStore, progress: TextIO | None = None) -> None:
        self._executor = executor
        self._store = store
        self._progress = progress
        self._results = Results()
        self._second_tries: set[Run] = set()

    def run(self, runs: Iterable[Run]) -> Results:
        missing = []
        for run in runs:
            figures = self._store.get(run)
            if figures is None:
                missing.append(run)
            else:
                self._results.figures[run] = figures
        with self._bar(len(missing)) as bar:
            pending = self._submit(units_of(missing, unit_seconds(missing, self._executor.width)))
            try:
                while pending > 0:
                    pending += self._take(*self._executor.next(), bar) - 1
            except BaseException:
                for unit, outcomes in self._executor.close():
                    self._keep(unit, outcomes)
                raise
        return self._results

    def _bar(self, count: int) -> "tqdm[None]":
        is_shown = self._progress is not None and self._progress.isatty() and count > 0
        return tqdm(total=count, unit="run", file=self._progress, disable=not is_shown, leave=False)

    def _submit(self, units: Iterable[Unit]) -> int:
        count = 0
        for unit in units:
            self._executor.submit(unit)
            count += 1
        return count

    def _keep(self, unit: Unit, outcomes: list[Outcome]) -> list[tuple[Run, str]]:
        """The runs that failed."""
        failed = []
        for run, outcome in zip(unit.runs, outcomes):
            if outcome.figures is None:
                failed.append((run, outcome.fault))
            else:
                self._store.put(run, outcome.figures)
                self._results.figures[run] = outcome.figures
        return failed

    def _take(self, unit: Unit, outcomes: list[Outcome], bar: "tqdm[None]") -> int:
        """How many units are submitted in its stead."""
        again = []
        for run, fault in self._keep(unit, outcomes):
            if fault == INTERRUPTED:
                raise KeyboardInterrupt
            if run in self._second_tries:
                self._results.faults[run] = fault
                self._tell(f"{run.tuning.name}: {run.name}: {fault}", bar)
            else:
                self._second_tries.add(run)
                self._tell(f"{run.tuning.name}: {run.name}: {fault}; once more", bar)
                again.append(Unit(run.tuning, run.scene, (run.variant,), (run.seed,)))
        bar.update(len(outcomes) - len(again))
        return self._submit(again)

    def _tell(self, text: str, bar: "tqdm[None]") -> None:
        if self._progress is not None:
            bar.write(f"kirolab: {text}", file=self._progress)
