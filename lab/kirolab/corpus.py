"""A corpus: scenes in variants with seeds, what their figures weigh, and the bars that a tuning has to hold."""

import os
import re
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import yaml

from kirolab.bars import Bar, bar_fields, matches_any
from kirolab.errors import LabError
from kirolab.scenes import PLAIN, Scene

SEEDS_OF_ONE = 10000  # that one range may have
# The smallest differences that count, by unit.
RESOLUTION = {"EV": 0.002, "frames": 0.5, "percent": 0.1, "times": 0.5, "stretches": 0.5}


@dataclass(frozen=True)
class SceneChoice:
    """A scene in some of its variants."""

    scene: Scene
    variants: tuple[str, ...]
    weight: float = 1.0


@dataclass(frozen=True)
class Corpus:
    """docs/lab.md tells what each member means."""

    name: str
    file: Path
    scenes: tuple[SceneChoice, ...]
    seeds: tuple[int, ...]
    held_out: tuple[SceneChoice, ...] = ()
    held_out_slack: float = 0.0  # share by which limits are wider there
    weights: dict[str, float] = field(default_factory=dict)  # cost of one unit of a figure
    never: float = 100.0  # what a figure that was never reached counts as
    resolution: dict[str, float] = field(default_factory=lambda: dict(RESOLUTION))
    bars: tuple[Bar, ...] = ()

    def choices(self, is_held_out: bool = False) -> tuple[SceneChoice, ...]:
        return self.held_out if is_held_out else self.scenes

    @property
    def scene_weights(self) -> dict[str, float]:
        return {choice.scene.name: choice.weight for choice in self.scenes + self.held_out}


def read_corpus(file: str | Path) -> Corpus:
    """Raises LabError with the file's name and the member that is wrong."""
    return CorpusReader(Path(file)).read()


def seeds_in(text: str) -> list[int]:
    """A number, or a range such as 1..8."""
    match = re.fullmatch(r"(\d+)(?:\.\.(\d+))?", text)
    first, last = (int(match[1]), int(match[2] or match[1])) if match else (1, 0)
    if not 0 <= last - first < SEEDS_OF_ONE or last >= 2**64:
        raise LabError(f"'{text}' found for seeds, expected numbers or ranges such as 1..8")
    return list(range(first, last + 1))


class CorpusReader:
    """Scenes are looked for from where the corpus' file is."""

    MEMBERS = ("name", "seeds", "scenes", "heldOut", "weights", "never", "resolution", "bars")

    def __init__(self, file: Path) -> None:
        self._file = file

    def read(self) -> Corpus:
        try:
            tree = yaml.safe_load(self._file.read_text(encoding="utf-8"))
        except (OSError, UnicodeDecodeError) as fault:
            raise LabError(f"{self._file}: {getattr(fault, 'strerror', None) or 'is no text'}") from None
        except yaml.YAMLError as fault:
            raise LabError(f"{self._file}: {' '.join(str(fault).split())}") from None
        self._require_members("the corpus", tree, self.MEMBERS)
        held_out = tree.get("heldOut") or {}
        self._require_members("heldOut", held_out, ("slack", "scenes"))
        corpus = Corpus(
            name=str(tree.get("name", self._file.stem)),
            file=self._file,
            scenes=self._choices("scenes", tree.get("scenes")),
            seeds=self._seeds(tree.get("seeds", 1)),
            held_out=self._choices("heldOut.scenes", held_out["scenes"]) if held_out else (),
            held_out_slack=self._number("heldOut.slack", held_out.get("slack", 0)),
            weights=self._numbers("weights", tree.get("weights")),
            never=self._number("never", tree.get("never", 100)),
            resolution=RESOLUTION | self._numbers("resolution", tree.get("resolution")),
            bars=tuple(self._bar(index, bar) for index, bar in enumerate(self._list("bars", tree.get("bars")))),
        )
        names = [choice.scene.name for choice in corpus.scenes + corpus.held_out]
        for name in names:
            if names.count(name) > 1:
                self._fail(f"two scenes are called {name}, expected names of files that differ")
        return corpus

    def _fail(self, reason: str) -> Any:
        raise LabError(f"{self._file}: {reason}")

    def _require_members(self, place: str, node: Any, members: tuple[str, ...]) -> None:
        if not isinstance(node, dict):
            self._fail(f"expected a map for {place}")
        for name in node:
            if name not in members:
                self._fail(f"unknown member '{name}' of {place}, expected one of {', '.join(members)}")

    def _list(self, place: str, node: Any) -> list[Any]:
        return node if isinstance(node, list) else [] if node is None else self._fail(f"expected a list for {place}")

    def _number(self, place: str, node: Any) -> float:
        is_number = isinstance(node, (int, float)) and not isinstance(node, bool)
        return float(node) if is_number else self._fail(f"'{node}' found for {place}, expected a number")

    def _numbers(self, place: str, node: Any) -> dict[str, float]:
        if node is not None and not isinstance(node, dict):
            self._fail(f"expected a map of numbers for {place}")
        return {str(name): self._number(f"{place}.{name}", value) for name, value in (node or {}).items()}

    def _texts(self, place: str, node: Any) -> tuple[str, ...]:
        texts = node if isinstance(node, list) else [node]
        if not texts or not all(isinstance(text, str) for text in texts):
            self._fail(f"expected a text or a list of texts for {place}")
        return tuple(texts)

    def _seeds(self, node: Any) -> tuple[int, ...]:
        try:
            seeds = [seed for text in (node if isinstance(node, list) else [node]) for seed in seeds_in(str(text))]
        except LabError as fault:
            self._fail(str(fault))
        return tuple(dict.fromkeys(seeds))

    def _choices(self, place: str, node: Any) -> tuple[SceneChoice, ...]:
        choices = tuple(self._choice(f"{place}[{index}]", item) for index, item in enumerate(self._list(place, node)))
        return choices or self._fail(f"expected at least one scene in {place}")

    def _choice(self, place: str, node: Any) -> SceneChoice:
        if isinstance(node, str):
            node = {"file": node}
        self._require_members(place, node, ("file", "variants", "weight"))
        if not isinstance(node.get("file"), str):
            self._fail(f"expected the file of a scene for {place}.file")
        scene = Scene(Path(os.path.normpath(self._file.parent / node["file"])))
        patterns = self._texts(f"{place}.variants", node.get("variants", PLAIN))
        for pattern in patterns:
            if not any(matches_any(variant, (pattern,)) for variant in scene.variants):
                self._fail(f"{scene.file} has no variant '{pattern}', expected one of {', '.join(scene.variants)}")
        variants = tuple(variant for variant in scene.variants if matches_any(variant, patterns))
        return SceneChoice(scene, variants, self._number(f"{place}.weight", node.get("weight", 1)))

    def _bar(self, index: int, node: Any) -> Bar:
        place = f"bars[{index}]"
        self._require_members(place, node, tuple(bar_fields()))
        values: dict[str, Any] = {}
        for name, value in node.items():
            kind = bar_fields()[name]
            values[name] = self._texts(f"{place}.{name}", value) if kind is list else value
            if kind is float:
                values[name] = self._number(f"{place}.{name}", value)
        if not isinstance(values.get("figure"), str):
            self._fail(f"expected the name of a figure for {place}.figure")
        if "limit" not in values and "margin" not in values:
            self._fail(f"expected limit, margin or both for {place}")
        return Bar(**values)
