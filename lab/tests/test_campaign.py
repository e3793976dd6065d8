import io
from pathlib import Path
from typing import Callable

import pytest

from kirolab.campaign import Campaign, run_corpus
from kirolab.corpus import Corpus
from kirolab.engine import INTERRUPTED
from kirolab.executor import LocalExecutor
from kirolab.runs import runs_of, units_of
from kirolab.store import ResultStore
from kirolab.tunings import Tuning
from tests.fakes import FakeEngine

CORPUS = "seeds: 1..3\nscenes: [{file: lamp.yaml, variants: [plain, step*]}, room.yaml]\n"


def executor_of(engine: FakeEngine, jobs: int = 2) -> LocalExecutor:
    return LocalExecutor(engine, jobs)


def test_units_have_every_run_once(corpus_of: Callable[[str], Corpus], tuning: Tuning) -> None:
    corpus = corpus_of(CORPUS.replace("1..3", "1..90"))
    runs = runs_of(tuning, corpus.scenes, corpus.seeds)
    units = list(units_of(runs))
    assert sorted(run.name for unit in units for run in unit.runs) == sorted(run.name for run in runs)
    # 100 frames are a hundredth of a second, 200 in step+2.
    assert all(unit.seconds <= 1.01 for unit in units) and len(units) < 10


def test_what_is_done_is_not_run_again(corpus_of: Callable[[str], Corpus], tuning: Tuning, tmp_path: Path) -> None:
    corpus = corpus_of(CORPUS)
    tables = []
    for build, expected in (("one", 12), ("one", 0), ("other", 12)):
        engine = FakeEngine()
        store = ResultStore(tmp_path / "store", build)
        tables.append(run_corpus(corpus, [tuning], executor_of(engine), store, progress=None)[0])
        assert len(engine.done) == expected, build
    assert tables[0].equals(tables[1]) and len(tables[0]) == 12
    assert list(tables[0]["seed"][:3]) == [1, 2, 3]
    for file in (tmp_path / "store").rglob("*.json"):
        file.write_text("{")  # as a full disk may leave it
    engine = FakeEngine()
    run_corpus(corpus, [tuning], executor_of(engine), ResultStore(tmp_path / "store", "one"), progress=None)
    assert len(engine.done) == 12


def test_edits_and_scenes_make_other_runs(corpus_of: Callable[[str], Corpus], tuning: Tuning) -> None:
    runs = runs_of(tuning, corpus_of(CORPUS).scenes, [1])
    edited = runs_of(tuning.with_edits("slow", ("Default/m/x=1",)), corpus_of(CORPUS).scenes, [1])
    renamed = runs_of(tuning.with_edits("alias", ()), corpus_of(CORPUS).scenes, [1])
    assert runs[0].key("b") != edited[0].key("b") and runs[0].key("b") == renamed[0].key("b")
    assert len({run.key("b") for run in runs}) == len(runs) - 1  # room.yaml is a copy of lamp.yaml


def test_what_fails_is_named_and_tried_once_more(
    corpus_of: Callable[[str], Corpus], tuning: Tuning, tmp_path: Path
) -> None:
    engine = FakeEngine(
        faults={"lamp step+1, seed 2": ["once"], "room plain, seed 1": ["always", "always", "never asked"]}
    )
    said = io.StringIO()
    store = ResultStore(tmp_path / "store", "build")
    table, faults = run_corpus(corpus_of(CORPUS), [tuning], executor_of(engine), store, progress=said)
    assert len(table) == 11 and {run.name: fault for run, fault in faults.items()} == {"room plain, seed 1": "always"}
    assert engine.done.count("lamp step+1, seed 2") == 2 and engine.done.count("room plain, seed 1") == 2
    assert "kirolab: fast: lamp step+1, seed 2: once; once more\n" in said.getvalue()


def test_an_interrupt_keeps_what_is_done(corpus_of: Callable[[str], Corpus], tuning: Tuning, tmp_path: Path) -> None:
    engine = FakeEngine(faults={"lamp step+2, seed 3": [INTERRUPTED]})
    store = ResultStore(tmp_path / "store", "build")
    runs = runs_of(tuning, corpus_of(CORPUS).scenes, [1, 2, 3])
    with pytest.raises(KeyboardInterrupt):
        Campaign(executor_of(engine, jobs=1), store).run(runs)
    kept = [run.name for run in runs if store.get(run) is not None]
    assert "lamp step+2, seed 2" in kept and "lamp step+2, seed 3" not in kept
