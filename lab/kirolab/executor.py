"""Units of work on the cores of this machine."""

import os
import queue
from concurrent.futures import ThreadPoolExecutor
from typing import Protocol

from kirolab.engine import Engine, Patience, SimulationEngine
from kirolab.programs import Programs
from kirolab.runs import Outcome, Unit

Result = tuple[Unit, list[Outcome]]


class Executor(Protocol):
    """Takes units and gives back results, as they come."""

    @property
    def width(self) -> int:
        """How many units it does at the same time."""

    def submit(self, unit: Unit) -> None:
        ...

    def next(self) -> Result:
        """Waits for any unit that was submitted."""

    def close(self) -> list[Result]:
        """Ends what runs; returns what is done by then and was not asked for yet."""


def local_executor(programs: Programs, jobs: int | None = None, patience: Patience = Patience()) -> "LocalExecutor":
    """Uses all cores if nothing else is said."""
    return LocalExecutor(SimulationEngine(programs, patience), jobs or os.cpu_count() or 1)


class LocalExecutor:
    """Threads that each wait for a process. Use it with `with`, or close it."""

    def __init__(self, engine: Engine, jobs: int) -> None:
        self._engine = engine
        self._jobs = jobs
        self._pool = ThreadPoolExecutor(jobs)
        self._done: "queue.SimpleQueue[Result | Exception]" = queue.SimpleQueue()

    def __enter__(self) -> "LocalExecutor":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    @property
    def width(self) -> int:
        return self._jobs

    def submit(self, unit: Unit) -> None:
        self._pool.submit(self._work, unit)

    def next(self) -> Result:
        result = self._done.get()
        if isinstance(result, Exception):
            raise result
        return result

    def close(self) -> list[Result]:
        self._engine.stop()
        self._pool.shutdown(cancel_futures=True)
        results = []
        while not self._done.empty():
            result = self._done.get()
            if not isinstance(result, Exception):
                results.append(result)
        return results

    def _work(self, unit: Unit) -> None:
        try:
            self._done.put((unit, self._engine.run(unit)))
        except Exception as fault:  # such as a program that has gone: whoever waits for results has to know
            self._done.put(fault)
