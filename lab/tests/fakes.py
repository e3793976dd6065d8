"""Cameras that are a formula."""

from typing import Callable

from kirolab.runs import Figure, Outcome, Run, Unit


def figure(name: str, value: float | None, unit: str = "EV", of: str = "still") -> Figure:
    return {"figure": name, "of": of, "at": 1.0, "value": value, "unit": unit}


class FakeEngine:
    """Gives each run the figures of a function, or the faults that it is told to, one a try."""

    def __init__(
        self,
        figures: Callable[[Run], list[Figure]] = lambda run: [figure("kick", run.seed / 7)],
        faults: dict[str, list[str]] | None = None,
    ) -> None:
        self._figures = figures
        self._faults = faults or {}
        self.done: list[str] = []

    def run(self, unit: Unit) -> list[Outcome]:
        return [self._outcome(run) for run in unit.runs]

    def stop(self) -> None:
        pass

    def _outcome(self, run: Run) -> Outcome:
        self.done.append(run.name)
        faults = self._faults.get(run.name)
        return Outcome(None, faults.pop(0)) if faults else Outcome(self._figures(run))
