"""A space of tunings: members, each with a range or with choices, and what a search goes down on."""

from dataclasses import dataclass
from pathlib import Path
from typing import Any

import pandas as pd

from kirolab.corpus import Corpus
from kirolab.errors import LabError
from kirolab.figurerows import ANY, Patterns, rows_of
from kirolab.members import HeldValues, MemberPath, MemberWords, member_path, patch_of
from kirolab.yamlreader import YamlReader, load_yaml

COST = "cost"
DIGITS = 6  # that a value has in edits and patches: more than float keeps apart from noise


@dataclass(frozen=True)
class Dimension:
    """One number of a search, and the members that it sets; its ends are in the members' unit."""

    name: str
    members: tuple[MemberPath, ...]
    kind: str  # number, integer or boolean
    low: float
    high: float
    is_log: bool
    start: float  # what the tuning has

    def held(self, value: float) -> float | int | bool:
        """As a patch writes it."""
        if self.kind == "boolean":
            return value >= 0.5
        return round(value) if self.kind == "integer" else float(f"{value:.{DIGITS}g}")


@dataclass(frozen=True)
class Objective:
    """What is to become small: the cost, or the mean or the highest value of a figure."""

    figure: str
    of: Patterns = ANY
    scene: Patterns = ANY
    variant: Patterns = ANY
    take: str = "mean"

    @property
    def text(self) -> str:
        return self.figure if self.figure == COST else f"{self.take} {self.figure}"

    def value(self, table: pd.DataFrame, cost: float, corpus: Corpus) -> float:
        """What was never reached counts as the corpus says."""
        if self.figure == COST:
            return cost
        values = table.loc[rows_of(table, self.figure, self.of, self.scene, self.variant), "value"]
        if values.empty:
            raise LabError(f"objective {self.text}: the corpus' runs have no such figure")
        values = values.fillna(corpus.never)
        return float(values.max() if self.take == "max" else values.mean())


@dataclass(frozen=True)
class Space:
    name: str
    dimensions: tuple[Dimension, ...]
    objectives: tuple[Objective, ...]

    @property
    def start(self) -> dict[str, float]:
        return {dimension.name: dimension.start for dimension in self.dimensions}

    def edits(self, values: dict[str, float]) -> tuple[str, ...]:
        """As kirosim run --set takes them."""
        return tuple(
            f"{member.text}={number_text(dimension.held(values[dimension.name]))}"
            for dimension in self.dimensions
            for member in dimension.members
        )

    def patch(self, values: dict[str, float]) -> str:
        return patch_of(
            {
                member: dimension.held(values[dimension.name])
                for dimension in self.dimensions
                for member in dimension.members
            }
        )


def number_text(value: float | int | bool) -> str:
    return str(int(value) if isinstance(value, bool) else value)


def read_space(file: str | Path, words: MemberWords, held: HeldValues) -> Space:
    """Raises LabError with the file's name and what is wrong."""
    return SpaceReader(Path(file), words, held).read()


class SpaceReader(YamlReader):
    def __init__(self, file: Path, words: MemberWords, held: HeldValues) -> None:
        super().__init__(file)
        self._words = words
        self._held = held

    def read(self) -> Space:
        tree = self.members("the space", load_yaml(self.file), ("name", "members", "objectives"))
        nodes = self.list("members", tree.get("members")) or self.fail("expected at least one of members")
        dimensions = tuple(self._dimension(f"members[{index}]", node) for index, node in enumerate(nodes))
        names = [dimension.name for dimension in dimensions]
        for name in names:
            if names.count(name) > 1:
                self.fail(f"two members are called {name}, expected names that differ")
        objectives = self.list("objectives", tree.get("objectives", [COST])) or self.fail("expected an objective")
        return Space(
            name=str(tree.get("name", self.file.stem)),
            dimensions=dimensions,
            objectives=tuple(self._objective(f"objectives[{index}]", node) for index, node in enumerate(objectives)),
        )

    def _dimension(self, place: str, node: Any) -> Dimension:
        self.members(place, node, ("name", "member", "low", "high", "log"))
        try:
            paths = tuple(member_path(text) for text in self.texts(f"{place}.member", node.get("member")))
            kind = self._words.kind(paths[0])
            start = self._held.get(paths[0])
            for path in paths[1:]:
                self._held.get(path)  # is there
            ends = (0.0, 1.0) if kind == "boolean" else self._words.range(paths[0])
        except LabError as fault:
            self.fail(f"{place}: {fault}")
        if ends is None and not ("low" in node and "high" in node):
            self.fail(f"{place}: {paths[0].text} has no range of its own, expected low and high")
        low = self.number(f"{place}.low", node.get("low", ends[0] if ends else 0))
        high = self.number(f"{place}.high", node.get("high", ends[1] if ends else 0))
        is_log = node.get("log", False) is True
        if low >= high or (is_log and low <= 0):
            self.fail(f"{place}: from {low:g} to {high:g}, expected low below high{', above 0' if is_log else ''}")
        name = str(node.get("name", paths[0].text))
        return Dimension(name, paths, kind, low, high, is_log, start)

    def _objective(self, place: str, node: Any) -> Objective:
        if node == COST:
            return Objective(COST)
        self.members(place, node, ("figure", "of", "scene", "variant", "take"))
        if not isinstance(node.get("figure"), str) or node.get("take", "mean") not in ("mean", "max"):
            self.fail(f"expected figure, and mean or max to take, for {place}; or '{COST}'")
        patterns = {name: self.texts(f"{place}.{name}", node.get(name, "*")) for name in ("of", "scene", "variant")}
        return Objective(node["figure"], **patterns, take=node.get("take", "mean"))
