import json
from typing import Any, Callable

import pandas as pd
import pytest

from kirolab.comparehtml import comparison_html
from kirolab.comparejson import comparison_json
from kirolab.comparetext import comparison_text
from kirolab.comparison import BETTER, EQUAL, WORSE, Comparison, compare_tables
from kirolab.corpus import Corpus
from kirolab.cost import cost_by_seed

Table = Callable[..., pd.DataFrame]
CORPUS = "scenes: [lamp.yaml, room.yaml]\nweights: {kick: 10, settle: 0.1}\n"


@pytest.fixture
def corpus(corpus_of: Callable[[str], Corpus]) -> Corpus:
    return corpus_of(CORPUS)


def verdict_of(before: pd.DataFrame, after: pd.DataFrame, corpus: Corpus) -> str:
    return str(compare_tables(before, after, corpus).stretches["verdict"].iloc[0])


@pytest.mark.parametrize(
    "before, after, verdict",
    [
        # Every seed by about the same: more than seeds explain, however far they are from one another.
        ([0.01, 0.05, 0.02, 0.09], [0.02, 0.06, 0.031, 0.1], WORSE),
        ([0.02, 0.06, 0.03, 0.1], [0.01, 0.05, 0.02, 0.09], BETTER),
        # The mean rises by as much, by one seed of four.
        ([0.01, 0.05, 0.02, 0.09], [0.0, 0.06, 0.0, 0.15], EQUAL),
        # Every seed, but by less than anybody sees.
        ([0.01, 0.05, 0.02, 0.09], [0.011, 0.051, 0.021, 0.091], EQUAL),
        # Never reached is worse than any number.
        ([9, 9, 9, 9], [1, 1, 1, None], WORSE),
        ([1, 1, None, None], [9, 9, 9, None], BETTER),
        ([None, None, None, None], [None, None, None, None], EQUAL),
        ([0.5], [0.6], WORSE),
    ],
)
def test_seeds_are_paired(table: Table, corpus: Corpus, before: list[Any], after: list[Any], verdict: str) -> None:
    assert verdict_of(table("a", before), table("b", after), corpus) == verdict


def test_bars_decide_before_all_else(table: Table, corpus_of: Callable[[str], Corpus]) -> None:
    corpus = corpus_of(CORPUS + "bars: [{figure: kick, limit: 0.05}, {figure: settle, margin: 1}]\n")

    def overall(kicks: tuple[float, float], settles: tuple[float, float]) -> Comparison:
        sides = [
            pd.concat([table(name, [kick] * 4), table(name, [settle] * 4, "settle", "frames", of="step")])
            for name, kick, settle in (("a", kicks[0], settles[0]), ("b", kicks[1], settles[1]))
        ]
        return compare_tables(sides[0], sides[1], corpus)

    assert overall((0.04, 0.06), (9, 0)).verdict == WORSE  # one bar broken, however fast it has become
    assert overall((0.06, 0.04), (4, 5)).verdict == BETTER  # a bar mended, and the frame that the margin allows
    assert overall((0.04, 0.01), (4, 6)).verdict == WORSE  # two frames are not allowed
    assert overall((0.06, 0.07), (4, 4)).verdict == WORSE  # no other bar, but it costs more
    assert overall((0.03, 0.02), (4, 4)).verdict == BETTER
    assert overall((0.03, 0.02), (4, 5)).verdict == EQUAL  # 0.1 for a frame, 10 for an EV
    assert overall((0.04, 0.04), (4, 4)).verdict == EQUAL


def test_a_second_camera_costs_as_the_first_one_does(table: Table, corpus: Corpus) -> None:
    # Stretches count, whole runs do not: whoever they are of.
    whole = [table("a", [0.5] * 4, of=of) for of in ("run", "run, camera 2", "run, detector 1")]
    stretches = [table("a", [value] * 4, of=of) for value, of in ((0.01, "still"), (0.03, "still, camera 2"))]
    costs = cost_by_seed(pd.concat(whole + stretches), corpus)
    assert costs.tolist() == pytest.approx([0.2] * 4)  # 10 an EV, of the mean


def test_a_bar_is_about_its_patterns_and_wider_for_held_out_scenes(
    table: Table, corpus_of: Callable[[str], Corpus]
) -> None:
    corpus = corpus_of(
        "scenes: [lamp.yaml]\nheldOut: {slack: 0.2, scenes: [room.yaml]}\n"
        'bars: [{figure: kick, of: [still, ramp], scene: r*, variant: [plain, "step+?"], limit: 0.05}]\n'
    )
    places = [{"scene": "lamp"}, {"scene": "room", "variant": "slow"}, {"scene": "room", "of": "turn"}]
    other = pd.concat([table("b", [0.9], **place) for place in places])
    judged = pd.concat([other, table("b", [0.058], scene="room", variant="step+1", of="ramp")])
    before = judged.assign(value=0.0, tuning="a")
    result = compare_tables(before, judged, corpus).bars[0]
    assert (result.count, result.broken_after) == (1, 1)
    assert compare_tables(before, judged, corpus, is_held_out=True).bars[0].broken_after == 0


def test_a_figure_that_only_one_has_is_counted_and_left_out(table: Table, corpus: Corpus) -> None:
    before = pd.concat([table("a", [1, 1]), table("a", [1, 1], figure="lag")])
    comparison = compare_tables(before, table("b", [1, 1]), corpus)
    assert comparison.missing == 2 and comparison.verdict == EQUAL and len(comparison.stretches) == 1


def test_the_dearest_regression_stands_first_with_the_seed_that_shows_it(table: Table, corpus: Corpus) -> None:
    before = pd.concat([table("a", [0, 0, 0]), table("a", [0, 0, 0], figure="clipped", unit="percent")])
    kicks = table("b", [0.1, 0.3, 0.2], variant="plain")
    comparison = compare_tables(before, pd.concat([table("b", [90, 90, 90], "clipped", "percent"), kicks]), corpus)
    worst = comparison.regressions.iloc[0]
    assert (worst["figure"], worst["seed"]) == ("kick", 1)
    text = comparison_text(comparison, worst=1)
    assert "verdict: worse" in text and "lamp.yaml --variant plain --seed 1 --report" in text
    assert json.loads(comparison_json(comparison, 1))["regressions"][0]["commands"][0].endswith("--csv before.csv")
    page = comparison_html(comparison, 1)
    assert "<details>" in page and "http" not in page


def test_what_was_never_reached_is_null_for_scripts(table: Table, corpus: Corpus) -> None:
    comparison = compare_tables(table("a", [None, 1]), table("b", [None, None]), corpus)
    stretch = json.loads(comparison_json(comparison, 1))["stretches"][0]
    assert stretch["after"] is None and (stretch["neverBefore"], stretch["neverAfter"]) == (1, 2)
    assert "never" in comparison_text(comparison, 1)
