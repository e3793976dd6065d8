"""Scenes as kirosim reads them: which variants one has, and which files belong to it."""

from dataclasses import dataclass
from functools import cached_property
from pathlib import Path
from typing import Any, Iterator

import yaml

from kirolab.errors import LabError
from kirolab.programs import checksum_of
from kirolab.yamlreader import load_yaml

PLAIN = "plain"  # the scene without a variant
SCENES_FRAMES = 300  # of a scene that does not say how long it is


@dataclass(frozen=True)
class Scene:
    """A scene's file. The name is the file's, without folder and ending."""

    file: Path

    @property
    def name(self) -> str:
        return self.file.stem

    @cached_property
    def _tree(self) -> dict[str, Any]:
        # Texts are enough; names such as "on" stay what they are.
        tree = load_yaml(self.file, yaml.BaseLoader)
        if not isinstance(tree, dict):
            raise LabError(f"{self.file}: expected a scene, a map")
        return tree

    @property
    def variants(self) -> list[str]:
        """Names, plain first."""
        variants = self._tree.get("variants")
        return [PLAIN, *variants] if isinstance(variants, dict) else [PLAIN]

    @cached_property
    def panorama_names(self) -> list[str]:
        """Files that the scene looks into, in any variant, as it names them: from where it lies itself."""
        return sorted(set(panorama_files(self._tree)))

    @cached_property
    def panoramas(self) -> list[Path]:
        return [self.file.parent / name for name in self.panorama_names]

    @cached_property
    def checksum(self) -> str:
        try:
            return checksum_of(*(file.read_bytes() for file in [self.file, *self.panoramas]))
        except OSError as fault:
            raise LabError(f"{fault.filename}: {fault.strerror}, expected by {self.file}") from None

    def frames_of(self, variant: str) -> int:
        """Length of a run, for estimates."""
        variants = self._tree.get("variants")
        own = variants.get(variant) if isinstance(variants, dict) else None
        text = (own.get("frames") if isinstance(own, dict) else None) or self._tree.get("frames")
        return int(text) if isinstance(text, str) and text.isdigit() else SCENES_FRAMES


def panorama_files(node: Any, is_panorama: bool = False) -> Iterator[str]:
    """The files that a panorama or its cuts name."""
    if isinstance(node, dict):
        for name, value in node.items():
            if is_panorama and name == "file" and isinstance(value, str):
                yield value
            else:
                yield from panorama_files(value, is_panorama or name == "panorama")
    elif isinstance(node, list):
        for value in node:
            yield from panorama_files(value, is_panorama)
