"""Tables of figures: one row a figure of a run."""

import importlib.util
import os
from pathlib import Path
from typing import Iterable

import pandas as pd

from kirolab.errors import LabError
from kirolab.runs import Figure, Run

COLUMNS = ["tuning", "scene", "variant", "seed", "figure", "of", "at", "value", "unit"]
PARQUET_ENGINES = ("pyarrow", "fastparquet")
PICTURES = (".png", ".svg")


def table_of(results: Iterable[tuple[Run, list[Figure]]]) -> pd.DataFrame:
    """In the order of the runs and of their figures. A figure that was never reached has no value."""
    columns: dict[str, list[object]] = {name: [] for name in COLUMNS}
    for run, figures in results:
        for name, value in (
            ("tuning", run.tuning.name),
            ("scene", run.scene.name),
            ("variant", run.variant),
            ("seed", run.seed),
        ):
            columns[name].extend([value] * len(figures))
        for name in COLUMNS[4:]:
            columns[name].extend(figure[name] for figure in figures)
    table = pd.DataFrame(columns)
    return table.astype({"at": float, "value": float, "seed": "uint64"})


def check_table_name(path: Path) -> None:
    """Before hours of work, not behind them."""
    if path.suffix not in (".csv", ".parquet"):
        raise LabError(f"{path}: expected a name that ends with .csv or .parquet")
    if path.suffix == ".parquet" and not any(importlib.util.find_spec(name) for name in PARQUET_ENGINES):
        raise LabError(f"{path}: pandas has no engine for Parquet here ({' or '.join(PARQUET_ENGINES)}), expected .csv")
    check_folder(path)


def check_picture_name(path: Path) -> None:
    """As that of a table."""
    if path.suffix not in PICTURES:
        raise LabError(f"{path}: expected a name that ends with {' or '.join(PICTURES)}")
    check_folder(path)


def check_folder(path: Path) -> None:
    if not path.parent.is_dir():
        raise LabError(f"{path}: no folder {path.parent}")


def write_table(table: pd.DataFrame, path: Path) -> None:
    with replaced_file(path) as part:
        if path.suffix == ".parquet":
            table.to_parquet(part.path, index=False)
        else:
            table.to_csv(part.path, index=False)


def write_text(text: str, path: Path) -> None:
    with replaced_file(path) as part:
        part.path.write_text(text, encoding="utf-8")


class replaced_file:
    """A file that is written beside the one whose place it takes once it is whole."""

    def __init__(self, path: Path) -> None:
        self._target = path
        self.path = path.with_name(f".{path.name}.{os.getpid()}")

    def __enter__(self) -> "replaced_file":
        return self

    def __exit__(self, kind: object, fault: object, _: object) -> None:
        if kind is None:
            os.replace(self.path, self._target)
        elif self.path.exists():
            self.path.unlink()
        if isinstance(fault, OSError):
            raise LabError(f"{self._target}: {fault.strerror}") from None
