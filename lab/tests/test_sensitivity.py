"""Effects of members whose figures are a formula."""

from pathlib import Path
from typing import Callable

import pandas as pd

from kirolab.corpus import Corpus
from kirolab.heatmap import draw_heatmap
from kirolab.members import member_path
from kirolab.runs import runs_of
from kirolab.sensitivity import sensitivity_of, sweep
from kirolab.space import Dimension, Objective, Space
from kirolab.table import table_of
from kirolab.tunings import Tuning
from tests.fakes import figure


def dimension(name: str, kind: str, low: float, high: float, start: float, is_log: bool = False) -> Dimension:
    return Dimension(name, (member_path(f"Default/m/{name}"),), kind, low, high, is_log, start)


SPACE = Space(
    "s",
    (
        dimension("speed", "number", 0.1, 0.9, 0.5),
        dimension("rest", "integer", 1, 3, 2),
        dimension("idle", "number", 1, 100, 1, True),
    ),
    (Objective("cost"),),
)


def test_a_sweep_goes_from_end_to_end_and_holds_the_others(tuning: Tuning) -> None:
    points = sweep(SPACE, tuning, 5)
    assert [point.value for point in points] == [0.1, 0.3, 0.5, 0.7, 0.9, 1, 2, 3, 1, 3.16228, 10, 31.6228, 100]
    assert points[0].tuning.edits == ("Default/m/speed=0.1", "Default/m/rest=2", "Default/m/idle=1.0")


def test_what_moves_most_stands_first(corpus_of: Callable[[str], Corpus], tuning: Tuning, tmp_path: Path) -> None:
    corpus = corpus_of("scenes: [lamp.yaml]\nweights: {settle: 1, kick: 1}\nresolution: {EV: 0.01, frames: 1}\n")
    points = sweep(SPACE, tuning, 5)

    def table(one: Tuning) -> pd.DataFrame:
        values = {edit.split("=")[0][-5:]: float(edit.split("=")[1]) for edit in one.edits}
        settle = 10 - 8 * values.get("speed", 0.5)
        rows = [figure("settle", settle, "frames", "step"), figure("kick", values.get("/rest", 2) / 10)]
        return table_of((run, rows) for run in runs_of(one, corpus.scenes, corpus.seeds))

    tables = pd.concat([table(tuning), *(table(point.tuning) for point in points)])
    result = sensitivity_of(tables, points, tuning, corpus)
    assert list(result.gains["member"]) == ["speed", "rest", "idle"]
    assert result.gains["gain"].round(6).to_list() == [3.2, 0.1, 0]  # 0.9 for 0.5 settles 3.2 frames sooner
    assert result.gains["best"].to_list() == [0.9, 1, 1]
    steps = result.effects.pivot(index="member", columns="figure", values="steps").round(6)
    assert steps.loc["speed"].to_dict() == {"settle": -6.4, "kick": 0}  # falls where speed rises
    assert steps.loc["rest"].to_dict() == {"settle": 0, "kick": 20}
    draw_heatmap(result, tmp_path / "map.svg")
    assert (tmp_path / "map.svg").stat().st_size > 1000
