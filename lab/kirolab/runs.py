"""Runs, one by one and as units of work of about a second."""

import json
from dataclasses import dataclass
from typing import Any, Iterable, Iterator

from kirolab.corpus import SceneChoice
from kirolab.programs import checksum_of
from kirolab.scenes import Scene
from kirolab.tunings import Tuning

SECONDS_OF_UNIT = 1.0
LEAST_SECONDS_OF_UNIT = 0.25  # starting a process and reading a tuning take a twentieth of it
WORKERS_OF_SECOND = 50  # units that one scheduler hands out in a second without any effort
UNITS_OF_WORKER = 4  # so that none waits long for the last one
SECONDS_OF_FRAME = 1e-4  # a little more than a frame takes
Figure = dict[str, Any]  # figure, of, at, value, unit, as kirosim tells them


@dataclass(frozen=True)
class Run:
    """One tuning in one variant of a scene with one seed."""

    tuning: Tuning
    scene: Scene
    variant: str
    seed: int

    @property
    def name(self) -> str:
        return f"{self.scene.name} {self.variant}, seed {self.seed}"

    @property
    def seconds(self) -> float:
        """Estimate of its time on one core."""
        return self.scene.frames_of(self.variant) * SECONDS_OF_FRAME

    def key(self, build: str) -> str:
        """The same for runs that must give the same figures."""
        facts = [build, self.tuning.checksum, self.tuning.edits, self.scene.checksum, self.variant, self.seed]
        return checksum_of(json.dumps(facts).encode())


@dataclass(frozen=True)
class Outcome:
    """What became of a run: figures, or what went wrong."""

    figures: list[Figure] | None
    fault: str = ""


@dataclass(frozen=True)
class Unit:
    """Runs that one process does: each variant with each seed."""

    tuning: Tuning
    scene: Scene
    variants: tuple[str, ...]
    seeds: tuple[int, ...]

    @property
    def runs(self) -> list[Run]:
        """In the order in which kirosim does them."""
        return [Run(self.tuning, self.scene, variant, seed) for variant in self.variants for seed in self.seeds]

    @property
    def seconds(self) -> float:
        return sum(run.seconds for run in self.runs)


def runs_of(tuning: Tuning, choices: Iterable[SceneChoice], seeds: Iterable[int]) -> list[Run]:
    seeds = list(seeds)
    return [
        Run(tuning, choice.scene, variant, seed) for choice in choices for variant in choice.variants for seed in seeds
    ]


def unit_seconds(runs: Iterable[Run], width: int) -> float:
    """How long units should take, for as many at the same time: long for wide clusters, short for little work."""
    share = sum(run.seconds for run in runs) / (width * UNITS_OF_WORKER)
    return min(max(share, LEAST_SECONDS_OF_UNIT), max(SECONDS_OF_UNIT, width / WORKERS_OF_SECOND))


def units_of(runs: Iterable[Run], seconds: float = SECONDS_OF_UNIT) -> Iterator[Unit]:
    """Units of at most about so many seconds; a run that is longer is one by itself."""
    groups: dict[tuple[Tuning, Scene], dict[str, list[int]]] = {}
    for run in runs:
        groups.setdefault((run.tuning, run.scene), {}).setdefault(run.variant, []).append(run.seed)
    for (tuning, scene), seeds_by_variant in groups.items():
        unit: Unit | None = None
        for variant, seeds in seeds_by_variant.items():
            for part in parts_of_seeds(seeds, scene.frames_of(variant), seconds):
                one = Unit(tuning, scene, (variant,), part)
                if unit and unit.seeds == part and unit.seconds + one.seconds <= seconds:
                    unit = Unit(tuning, scene, unit.variants + one.variants, part)
                    continue
                if unit:
                    yield unit
                unit = one
        if unit:
            yield unit


def parts_of_seeds(seeds: list[int], frames: int, seconds: float) -> Iterator[tuple[int, ...]]:
    count = max(int(seconds / (frames * SECONDS_OF_FRAME)), 1)
    for first in range(0, len(seeds), count):
        yield tuple(seeds[first : first + count])
