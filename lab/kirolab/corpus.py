"""A corpus: scenes in variants with seeds, what their figures weigh, and the bars that a tuning has to hold."""

import os
import re
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from kirolab.bars import Bar, bar_fields
from kirolab.errors import LabError
from kirolab.figurerows import matches_any
from kirolab.scenes import PLAIN, Scene
from kirolab.yamlreader import YamlReader, load_yaml

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


class CorpusReader(YamlReader):
    """Scenes are looked for from where the corpus' file is."""

    MEMBERS = ("name", "seeds", "scenes", "heldOut", "weights", "never", "resolution", "bars")

    def read(self) -> Corpus:
        tree = load_yaml(self.file)
        self.members("the corpus", tree, self.MEMBERS)
        held_out = tree.get("heldOut") or {}
        self.members("heldOut", held_out, ("slack", "scenes"))
        corpus = Corpus(
            name=str(tree.get("name", self.file.stem)),
            file=self.file,
            scenes=self._choices("scenes", tree.get("scenes")),
            seeds=self._seeds(tree.get("seeds", 1)),
            held_out=self._choices("heldOut.scenes", held_out["scenes"]) if held_out else (),
            held_out_slack=self.number("heldOut.slack", held_out.get("slack", 0)),
            weights=self.numbers("weights", tree.get("weights")),
            never=self.number("never", tree.get("never", 100)),
            resolution=RESOLUTION | self.numbers("resolution", tree.get("resolution")),
            bars=tuple(self._bar(index, bar) for index, bar in enumerate(self.list("bars", tree.get("bars")))),
        )
        names = [choice.scene.name for choice in corpus.scenes + corpus.held_out]
        for name in names:
            if names.count(name) > 1:
                self.fail(f"two scenes are called {name}, expected names of files that differ")
        return corpus

    def _seeds(self, node: Any) -> tuple[int, ...]:
        try:
            seeds = [seed for text in (node if isinstance(node, list) else [node]) for seed in seeds_in(str(text))]
        except LabError as fault:
            self.fail(str(fault))
        return tuple(dict.fromkeys(seeds))

    def _choices(self, place: str, node: Any) -> tuple[SceneChoice, ...]:
        choices = tuple(self._choice(f"{place}[{index}]", item) for index, item in enumerate(self.list(place, node)))
        return choices or self.fail(f"expected at least one scene in {place}")

    def _choice(self, place: str, node: Any) -> SceneChoice:
        if isinstance(node, str):
            node = {"file": node}
        self.members(place, node, ("file", "variants", "weight"))
        if not isinstance(node.get("file"), str):
            self.fail(f"expected the file of a scene for {place}.file")
        scene = Scene(Path(os.path.normpath(self.file.parent / node["file"])))
        patterns = self.texts(f"{place}.variants", node.get("variants", PLAIN))
        for pattern in patterns:
            if not any(matches_any(variant, (pattern,)) for variant in scene.variants):
                self.fail(f"{scene.file} has no variant '{pattern}', expected one of {', '.join(scene.variants)}")
        variants = tuple(variant for variant in scene.variants if matches_any(variant, patterns))
        return SceneChoice(scene, variants, self.number(f"{place}.weight", node.get("weight", 1)))

    def _bar(self, index: int, node: Any) -> Bar:
        place = f"bars[{index}]"
        self.members(place, node, tuple(bar_fields()))
        values: dict[str, Any] = {}
        for name, value in node.items():
            kind = bar_fields()[name]
            values[name] = self.texts(f"{place}.{name}", value) if kind is list else value
            if kind is float:
                values[name] = self.number(f"{place}.{name}", value)
        if not isinstance(values.get("figure"), str):
            self.fail(f"expected the name of a figure for {place}.figure")
        if "limit" not in values and "margin" not in values:
            self.fail(f"expected limit, margin or both for {place}")
        return Bar(**values)
