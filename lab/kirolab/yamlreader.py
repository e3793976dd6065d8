"""Files of YAML that a person writes: each slip is one line with the file's name and the member."""

from pathlib import Path
from typing import Any, NoReturn

import yaml

from kirolab.errors import LabError


def load_yaml(file: Path, loader: Any = yaml.SafeLoader) -> Any:
    try:
        return yaml.load(file.read_text(encoding="utf-8"), Loader=loader)
    except (OSError, UnicodeDecodeError) as fault:
        raise LabError(f"{file}: {getattr(fault, 'strerror', None) or 'is no text'}") from None
    except yaml.YAMLError as fault:
        raise LabError(f"{file}: {' '.join(str(fault).split())}") from None


class YamlReader:
    """Checks what is read from a file. A place is the path of a member."""

    def __init__(self, file: Path) -> None:
        self.file = file

    def fail(self, reason: str) -> NoReturn:
        raise LabError(f"{self.file}: {reason}")

    def members(self, place: str, node: Any, known: tuple[str, ...]) -> dict[str, Any]:
        if not isinstance(node, dict):
            self.fail(f"expected a map for {place}")
        for name in node:
            if name not in known:
                self.fail(f"unknown member '{name}' of {place}, expected one of {', '.join(known)}")
        return node

    def list(self, place: str, node: Any) -> list[Any]:
        if node is not None and not isinstance(node, list):
            self.fail(f"expected a list for {place}")
        return node or []

    def number(self, place: str, node: Any) -> float:
        if not isinstance(node, (int, float)) or isinstance(node, bool):
            self.fail(f"'{node}' found for {place}, expected a number")
        return float(node)

    def numbers(self, place: str, node: Any) -> dict[str, float]:
        if node is not None and not isinstance(node, dict):
            self.fail(f"expected a map of numbers for {place}")
        return {str(name): self.number(f"{place}.{name}", value) for name, value in (node or {}).items()}

    def texts(self, place: str, node: Any) -> tuple[str, ...]:
        texts = node if isinstance(node, list) else [node]
        if not texts or not all(isinstance(text, str) for text in texts):
            self.fail(f"expected a text or a list of texts for {place}")
        return tuple(texts)
