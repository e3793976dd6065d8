"""The one place that runs kirosim: a unit of runs in one process."""

import json
import signal
import subprocess
import threading
from dataclasses import dataclass
from typing import Protocol

from kirolab.programs import Programs
from kirolab.runs import Outcome, Run, Unit
from kirolab.scenes import PLAIN

PATIENCE = 60.0  # seconds that any unit may take, beside
PATIENCE_RATIO = 60.0  # times its estimate: an emulator or a build with sanitizers is slow, not hung
NO_CONTROL = 3  # status of a camera that never controlled its exposure: a result all the same
INTERRUPTED = "interrupted"


class Engine(Protocol):
    """What does units of work."""

    def run(self, unit: Unit) -> list[Outcome]:
        ...

    def stop(self) -> None:
        ...


@dataclass(frozen=True)
class Patience:
    """How long an answer may take before whoever gives it counts as hung."""

    floor: float = PATIENCE
    ratio: float = PATIENCE_RATIO

    def seconds_of(self, unit: Unit) -> float:
        return self.floor + self.ratio * unit.seconds


class SimulationEngine:
    """Starts a process for each unit. Several threads may run units at the same time."""

    def __init__(self, programs: Programs, patience: Patience = Patience()) -> None:
        self._programs = programs
        self._patience = patience
        self._running: set[subprocess.Popen[str]] = set()
        self._lock = threading.Lock()
        self._is_stopped = False

    def run(self, unit: Unit) -> list[Outcome]:
        """An outcome for each of the unit's runs, whatever happens to the process."""
        process = self._start(unit)
        if process is None:
            return [Outcome(None, INTERRUPTED)] * len(unit.runs)
        late = ""
        try:
            output, errors = process.communicate(timeout=self._patience.seconds_of(unit))
        except subprocess.TimeoutExpired:
            process.kill()
            output, errors = process.communicate()
            late = f"no result within {self._patience.seconds_of(unit):.0f} s"
        with self._lock:
            self._running.discard(process)
        fault = INTERRUPTED if self._is_stopped else late or ended_with(process.returncode)
        return outcomes_in(unit, output, errors, fault)

    def stop(self) -> None:
        """Ends what runs; the runs that are done by then still have their figures."""
        with self._lock:
            self._is_stopped = True
            for process in self._running:
                process.send_signal(signal.SIGINT)

    def _start(self, unit: Unit) -> "subprocess.Popen[str] | None":
        with self._lock:
            if self._is_stopped:
                return None
            # A session of its own: a Ctrl-C is for the lab, which ends its processes itself.
            process = subprocess.Popen(
                command_of(unit, self._programs),
                stdout=subprocess.PIPE,
                stderr=subprocess.PIPE,
                text=True,
                start_new_session=True,
            )
            self._running.add(process)
            return process


def command_of(unit: Unit, programs: Programs) -> list[str]:
    command = [programs.kirosim, "run", "--no-live", "--quiet", "--json", "--tuning", str(unit.tuning.file)]
    command += ["--scene", str(unit.scene.file)]
    for edit in unit.tuning.edits:
        command += ["--set", edit]
    for variant in unit.variants:
        command += ["--variant", variant]
    for seed in unit.seeds:
        command += ["--seed", str(seed)]
    return command


def ended_with(status: int) -> str:
    return f"kirosim ended by signal {-status}" if status < 0 else f"kirosim ended with status {status}"


def outcomes_in(unit: Unit, output: str, errors: str, fault: str) -> list[Outcome]:
    """Each run that has printed its line has its figures; the others have what stderr says of them."""
    runs = unit.runs
    figures = {}
    # One run alone prints its facts over many lines, without what tells it from others.
    texts = output.splitlines() if len(runs) > 1 else [output]
    for text in texts:
        try:
            facts = json.loads(text)
        except json.JSONDecodeError:
            continue  # the line at which the process ended
        figures[(facts.get("variant", ""), facts.get("seed"))] = facts["figures"]
    outcomes = []
    for run in runs:
        key = ("", None) if len(runs) == 1 else ("" if run.variant == PLAIN else run.variant, run.seed)
        found = figures.get(key)
        outcomes.append(Outcome(found) if found is not None else Outcome(None, fault_of(run, errors) or fault))
    return outcomes


def fault_of(run: Run, errors: str) -> str:
    """The line about a run of a list; of a run alone, or of a process that began none, the last line."""
    lines = [line.removeprefix("kirosim: ") for line in errors.splitlines() if line.startswith("kirosim: ")]
    variant = "" if run.variant == PLAIN else f" {run.variant}"
    name = f"{run.scene.name}{variant}, seed {run.seed}: "
    for line in lines:
        if line.startswith(name):
            return line.removeprefix(name)
    lines = [line for line in lines if not line.startswith("warning: ")]
    return lines[-1] if lines and ", seed " not in lines[-1] else ""
