"""Corpora, tunings and tables made by hand."""

from pathlib import Path
from typing import Any, Callable

import pandas as pd
import pytest

from kirolab.corpus import Corpus, read_corpus
from kirolab.tunings import Tuning

SCENE = "frames: 100\nvariants:\n  step+1: {}\n  step+2: {frames: 200}\n  slow: {}\n"


@pytest.fixture
def corpus_of(tmp_path: Path) -> Callable[[str], Corpus]:
    """Reads a text as a corpus, beside scenes lamp.yaml and room.yaml."""
    for name in ("lamp", "room"):
        (tmp_path / f"{name}.yaml").write_text(SCENE)

    def read(text: str) -> Corpus:
        (tmp_path / "corpus.yaml").write_text(text)
        return read_corpus(tmp_path / "corpus.yaml")

    return read


@pytest.fixture
def tuning() -> Tuning:
    return Tuning("fast", Path("fast.bin"), "f00")


@pytest.fixture
def table() -> Callable[..., pd.DataFrame]:
    """A table of one figure, a value for each seed."""

    def make(tuning: str, values: list[float | None], figure: str = "kick", unit: str = "EV", **places: Any) -> Any:
        columns = {"tuning": tuning, "scene": "lamp", "variant": "plain", "figure": figure, "of": "still", "at": 1.0}
        rows = [columns | {"seed": seed, "value": value, "unit": unit} | places for seed, value in enumerate(values)]
        return pd.DataFrame(rows).astype({"value": float})

    return make
