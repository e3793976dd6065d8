"""What becomes of runs when the program misbehaves."""

import os
import threading
from pathlib import Path

import pytest

from kirolab.engine import INTERRUPTED, Patience, SimulationEngine
from kirolab.programs import Programs
from kirolab.runs import Unit
from kirolab.scenes import Scene
from kirolab.tunings import Tuning

LINE = """echo '{"scene": "s", "variant": "", "seed": 1, "figures": [{"figure": "kick"}]}'\n"""
ABOUT_2 = "echo 'kirosim: lamp, seed 2: the flash is gone' >&2\n"


@pytest.fixture
def unit(tmp_path: Path, tuning: Tuning) -> Unit:
    (tmp_path / "lamp.yaml").write_text("frames: 10")
    return Unit(tuning, Scene(tmp_path / "lamp.yaml"), ("plain",), (1, 2))


def engine_of(folder: Path, script: str) -> SimulationEngine:
    (folder / "kirosim").write_text(f"#!/bin/sh\n{script}")
    os.chmod(folder / "kirosim", 0o755)
    return SimulationEngine(Programs(folder), Patience(floor=0.5, ratio=0))


@pytest.mark.parametrize(
    "script, fault",
    [
        (LINE + ABOUT_2 + "exit 1", "the flash is gone"),
        (LINE + "kill -SEGV $$", "kirosim ended by signal 11"),
        (LINE + 'echo \'{"scene": "s", "var\'; exit 1', "kirosim ended with status 1"),
        (LINE + "exec sleep 60", "no result within 0 s"),
    ],
)
def test_a_run_that_is_done_stands_whatever_comes_after_it(tmp_path: Path, unit: Unit, script: str, fault: str) -> None:
    outcomes = engine_of(tmp_path, script).run(unit)
    assert outcomes[0].figures == [{"figure": "kick"}]
    assert (outcomes[1].figures, outcomes[1].fault) == (None, fault)


def test_a_process_that_refuses_its_tuning_says_why_for_all_runs(tmp_path: Path, unit: Unit) -> None:
    outcomes = engine_of(tmp_path, "echo 'kirosim: fast.bin: no parameter file' >&2; exit 1").run(unit)
    assert [outcome.fault for outcome in outcomes] == ["fast.bin: no parameter file"] * 2


def test_what_is_stopped_gives_what_is_done(tmp_path: Path, unit: Unit) -> None:
    engine = engine_of(tmp_path, LINE + f"touch {tmp_path}/begun; exec sleep 60")
    outcomes = []
    thread = threading.Thread(target=lambda: outcomes.extend(engine.run(unit)))
    thread.start()
    while not (tmp_path / "begun").exists():
        thread.join(0.01)
    engine.stop()
    thread.join()
    assert outcomes[0].figures and outcomes[1].fault == INTERRUPTED
    assert [outcome.fault for outcome in engine.run(unit)] == [INTERRUPTED] * 2
