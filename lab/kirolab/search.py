"""The search for a better tuning: trials of a study, several at the same time, scene by scene."""

import statistics
import sys
from typing import TextIO

import optuna
import pandas as pd
from tqdm import tqdm

from kirolab.executor import Executor
from kirolab.space import Dimension, Space
from kirolab.trials import Score, TrialRuns
from kirolab.corpus import Corpus
from kirolab.tunings import Tuning

TRIALS_TO_LEARN = 10  # complete ones, before any is stopped early
VIOLATION, COST, PARTIAL, FAULT = "violation", "cost", "partial", "fault"  # attributes of trials
FINISHED = (optuna.trial.TrialState.COMPLETE, optuna.trial.TrialState.PRUNED)


def suggested(trial: optuna.trial.Trial, dimension: Dimension) -> float:
    if dimension.kind == "number":
        return trial.suggest_float(dimension.name, dimension.low, dimension.high, log=dimension.is_log)
    return trial.suggest_int(dimension.name, round(dimension.low), round(dimension.high), log=dimension.is_log)


class Search:
    """A trial is hopeless, and ends, if after some scene it is worse than half of the complete trials were there."""

    def __init__(
        self,
        study: optuna.Study,
        space: Space,
        tuning: Tuning,
        corpus: Corpus,
        seeds: tuple[int, ...],
        baseline: pd.DataFrame,
        executor: Executor,
        progress: TextIO | None = sys.stderr,
    ) -> None:
        self._study = study
        self._space = space
        self._tuning = tuning
        self._corpus = corpus
        self._seeds = seeds
        self._baseline = baseline
        self._executor = executor
        self._progress = progress
        self._active: dict[str, tuple[optuna.trial.Trial, TrialRuns, list[float]]] = {}
        complete = study.get_trials(deepcopy=False, states=(optuna.trial.TrialState.COMPLETE,))
        self._partials: list[list[float]] = [trial.user_attrs[PARTIAL] for trial in complete]

    def run(self, trials: int) -> None:
        """Goes on until the study has so many trials that are complete or were stopped."""
        missing = trials - len(self._study.get_trials(deepcopy=False, states=FINISHED))
        is_shown = self._progress is not None and self._progress.isatty()
        with tqdm(total=max(missing, 0), unit="trial", file=self._progress, disable=not is_shown, leave=False) as bar:
            try:
                while missing > 0 or self._active:
                    while missing > 0 and len(self._active) < self._executor.width:
                        self._begin()
                        missing -= 1
                    unit, outcomes = self._executor.next()
                    trial, runs, _ = self._active[unit.tuning.name]
                    for again in runs.take(unit, outcomes):
                        self._executor.submit(again)
                    if runs.is_scene_done and self._go_on(unit.tuning.name):
                        bar.update()
            finally:
                for trial, _, _ in self._active.values():
                    self._study.tell(trial, state=optuna.trial.TrialState.FAIL)
                self._active.clear()

    def _begin(self) -> None:
        trial = self._study.ask()
        values = {dimension.name: suggested(trial, dimension) for dimension in self._space.dimensions}
        tuning = self._tuning.with_edits(f"trial {trial.number}", self._space.edits(values))
        runs = TrialRuns(tuning, self._corpus, self._seeds)
        self._active[tuning.name] = (trial, runs, [])
        for unit in runs.begin_scene():
            self._executor.submit(unit)

    def _go_on(self, name: str) -> bool:
        """To the next scene, or to the end of the trial. Returns whether it is at its end."""
        trial, runs, partial = self._active[name]
        if runs.fault:
            trial.set_user_attr(FAULT, runs.fault)
            self._end(name, optuna.trial.TrialState.FAIL)
            return True
        score = runs.score(self._baseline)
        # Several objectives are a trade: there, only the bars say who is worse.
        partial.append(score.total if len(self._space.objectives) == 1 else score.violation)
        if runs.is_done:
            self._note(trial, score, partial)
            values = [objective.value(runs.table, score.cost, self._corpus) for objective in self._space.objectives]
            # A single objective carries what the bars cost; several have them as constraints.
            self._partials.append(partial)
            self._end(name, None, [values[0] + score.violation] if len(values) == 1 else values)
            return True
        if self._is_hopeless(partial):
            self._note(trial, score, partial)
            self._end(name, optuna.trial.TrialState.PRUNED)
            return True
        for unit in runs.begin_scene():
            self._executor.submit(unit)
        return False

    def _note(self, trial: optuna.trial.Trial, score: Score, partial: list[float]) -> None:
        trial.set_user_attr(VIOLATION, score.violation)
        trial.set_user_attr(COST, score.cost)
        trial.set_user_attr(PARTIAL, partial)

    def _end(self, name: str, state: optuna.trial.TrialState | None, values: list[float] | None = None) -> None:
        trial = self._active.pop(name)[0]
        if state is optuna.trial.TrialState.PRUNED and len(self._space.objectives) == 1:
            trial.report(trial.user_attrs[VIOLATION] + trial.user_attrs[COST], len(trial.user_attrs[PARTIAL]))
        self._study.tell(trial, values, state=state)

    def _is_hopeless(self, partial: list[float]) -> bool:
        if len(self._partials) < TRIALS_TO_LEARN:
            return False
        scene = len(partial) - 1
        return partial[scene] > statistics.median(other[scene] for other in self._partials)
