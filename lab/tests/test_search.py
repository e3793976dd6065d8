"""Searches on cameras that are a formula of the number that is tuned."""

from pathlib import Path
from typing import Callable

import optuna
import pandas as pd
import pytest

from kirolab.corpus import Corpus
from kirolab.engine import INTERRUPTED
from kirolab.errors import LabError
from kirolab.executor import LocalExecutor
from kirolab.figurerows import rows_of
from kirolab.members import member_path
from kirolab.runs import Figure, Run, runs_of
from kirolab.search import Search
from kirolab.space import Dimension, Objective, Space
from kirolab.study import front_of, open_study
from kirolab.table import table_of
from kirolab.tunings import Tuning
from tests.fakes import FakeEngine, figure

CORPUS = "seeds: 1..2\nscenes: [lamp.yaml, room.yaml]\nweights: {settle: 1}\n"
SPEED = Dimension("speed", (member_path("Default/m/speed"),), "number", 0.0, 1.0, False, 0.2)


def speed_of(run: Run) -> float:
    return float(run.tuning.edits[0].split("=")[1]) if run.tuning.edits else SPEED.start


def camera(run: Run) -> list[Figure]:
    """The faster, the sooner settled, and the harder the kick."""
    speed = speed_of(run)
    return [figure("settle", 10 - 8 * speed, "frames", "step"), figure("kick", speed / 10)]


class Lab:
    """A search in a study that is kept in a file."""

    def __init__(self, corpus: Corpus, tuning: Tuning, folder: Path, objectives: list[Objective]) -> None:
        self.space = Space("speed", (SPEED,), tuple(objectives))
        self._corpus = corpus
        self._tuning = tuning
        self._storage = str(folder / "study.db")

    def study(self, identity: str = "this") -> optuna.Study:
        return open_study(self._storage, self.space, identity, "tpe", 1)

    def search(self, engine: FakeEngine, trials: int) -> optuna.Study:
        runs = runs_of(self._tuning, self._corpus.scenes, self._corpus.seeds)
        baseline: pd.DataFrame = table_of((run, camera(run)) for run in runs)
        study = self.study()
        with LocalExecutor(engine, 2) as executor:
            seeds = self._corpus.seeds
            Search(study, self.space, self._tuning, self._corpus, seeds, baseline, executor, None).run(trials)
        return study


@pytest.fixture
def lab(corpus_of: Callable[[str], Corpus], tuning: Tuning, tmp_path: Path) -> Callable[..., Lab]:
    def make(bars: str = "", objectives: list[Objective] = [Objective("cost")]) -> Lab:
        return Lab(corpus_of(CORPUS + bars), tuning, tmp_path, objectives)

    return make


def test_the_fastest_that_holds_the_bars_is_found(lab: Callable[..., Lab]) -> None:
    engine = FakeEngine(camera)
    study = lab("bars: [{figure: kick, limit: 0.06}]").search(engine, 25)
    best = front_of(study).best
    assert study.trials[0].params == {"speed": 0.2}  # what the tuning has, first
    assert 0.5 < best.params["speed"] <= 0.6 and best.user_attrs["violation"] == 0
    states = [trial.state for trial in study.trials]
    stopped = states.count(optuna.trial.TrialState.PRUNED)
    assert stopped > 0 and len(states) == 25
    assert len(engine.done) == 4 * (25 - stopped) + 2 * stopped  # a hopeless trial has one scene of two


def test_a_margin_is_seen_from_where_the_search_begins(lab: Callable[..., Lab]) -> None:
    best = front_of(lab("bars: [{figure: kick, margin: 0.01}]").search(FakeEngine(camera), 25)).best
    assert 0.25 < best.params["speed"] <= 0.3


def test_several_objectives_have_a_front(lab: Callable[..., Lab]) -> None:
    objectives = [Objective("settle"), Objective("kick", take="max")]
    here = lab("bars: [{figure: kick, limit: 0.06}]", objectives)
    table = front_of(here.search(FakeEngine(camera), 20)).table(here.space)
    assert len(table) > 3 and table["speed"].is_monotonic_decreasing and table["max kick"].max() <= 0.06
    assert table["mean settle"].to_list() == pytest.approx((10 - 8 * table["speed"]).to_list(), abs=1e-4)


def test_a_study_goes_on_where_it_was(lab: Callable[..., Lab]) -> None:
    here = lab()
    here.search(FakeEngine(camera), 3)
    engine = FakeEngine(camera)
    assert len(here.search(engine, 5).trials) == 5 and len(engine.done) == 8
    with pytest.raises(LabError, match="another --study"):
        here.study(identity="other")


def test_an_interrupted_trial_does_not_count(lab: Callable[..., Lab]) -> None:
    here = lab()
    with pytest.raises(KeyboardInterrupt):
        here.search(FakeEngine(camera, {"room plain, seed 2": [INTERRUPTED]}), 3)
    done = [trial for trial in here.search(FakeEngine(camera), 3).trials if trial.values]
    assert len(done) == 3


def test_a_trial_that_fails_is_left_out_and_the_first_fault_told(lab: Callable[..., Lab]) -> None:
    study = lab().search(FakeEngine(camera, {"lamp plain, seed 1": ["gone", "gone"] * 9}), 3)
    assert {trial.state for trial in study.trials} == {optuna.trial.TrialState.FAIL}
    with pytest.raises(LabError, match="no trial is complete: lamp plain, seed 1: gone"):
        front_of(study)


def test_an_objective_takes_what_its_patterns_choose() -> None:
    rows = [figure("kick", 0.1, of="ramp"), figure("kick", 0.5), figure("kick", None, of="ramp")]
    table = pd.DataFrame(rows).assign(scene="lamp", variant="plain")
    corpus = Corpus("c", Path("c"), (), (1,), never=9)
    assert Objective("kick", of=("ramp",)).value(table, 7, corpus) == pytest.approx(4.55)
    assert Objective("kick", take="max").value(table, 7, corpus) == 9
    assert Objective("cost").value(table, 7, corpus) == 7
    assert rows_of(table, "kick", ("r*", "turn"), ("*",), ("*",)).sum() == 2
