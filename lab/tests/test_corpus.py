from pathlib import Path
from typing import Callable

import pytest

from kirolab.corpus import Corpus
from kirolab.errors import LabError
from kirolab.scenes import Scene

GOOD = "scenes: [{file: lamp.yaml}]\n"


def test_a_corpus_chooses_variants_and_seeds(corpus_of: Callable[[str], Corpus]) -> None:
    corpus = corpus_of(
        "seeds: [7, 1..3]\n"
        "scenes: [{file: lamp.yaml, variants: [plain, step*], weight: 2}]\n"
        "heldOut: {slack: 0.2, scenes: [room.yaml]}\n"
        "resolution: {frames: 2}\n"
        "bars: [{figure: settle, of: step, variant: [step+1, step-1], limit: 4, margin: 1}]\n"
    )
    assert corpus.seeds == (7, 1, 2, 3)
    assert corpus.scenes[0].variants == ("plain", "step+1", "step+2")
    assert corpus.choices(is_held_out=True)[0].variants == ("plain",)
    assert corpus.scene_weights == {"lamp": 2, "room": 1}
    assert corpus.resolution["frames"] == 2 and corpus.resolution["EV"] > 0
    assert corpus.bars[0].variant == ("step+1", "step-1")


@pytest.mark.parametrize(
    "text, message",
    [
        ("scenes: [", "while parsing"),
        ("- a", "expected a map for the corpus"),
        ("scenes: []", "at least one scene in scenes"),
        ("scenes: [{file: lamp.yaml, varants: x}]", "unknown member 'varants' of scenes"),
        ("scenes: [{file: lamp.yaml, variants: step-9}]", "has no variant 'step-9'"),
        ("scenes: [{file: missing.yaml}]", "missing.yaml: No such file"),
        ("scenes: [lamp.yaml, lamp.yaml]", "two scenes are called lamp"),
        (GOOD + "seeds: 8..1", "'8..1' found for seeds"),
        (GOOD + "seeds: 0..99999999999", "found for seeds"),
        (GOOD + "never: soon", "'soon' found for never"),
        (GOOD + "bars: [{figure: kick}]", "expected limit, margin or both for bars"),
        (GOOD + "bars: [{figure: kick, limit: low}]", "'low' found for bars"),
        (GOOD + "bars: [{figure: [kick], limit: 1}]", "name of a figure"),
    ],
)
def test_a_slip_is_named_in_one_line(corpus_of: Callable[[str], Corpus], text: str, message: str) -> None:
    with pytest.raises(LabError) as fault:
        corpus_of(text)
    assert message in str(fault.value) and "\n" not in str(fault.value)


def test_another_panorama_is_another_scene(tmp_path: Path) -> None:
    scene = tmp_path / "room.yaml"
    panoramas = "panorama: {cuts: [{file: b.hdr}]}\nvariants: {v: {second: {panorama: {file: ./a.hdr}}}}\n"
    scene.write_text(panoramas + "map: {file: c}\n")
    for name in ("a.hdr", "b.hdr"):
        (tmp_path / name).write_text(name)
    before = Scene(scene).checksum
    assert [file.name for file in Scene(scene).panoramas] == ["a.hdr", "b.hdr"]
    (tmp_path / "a.hdr").write_text("brighter")
    assert Scene(scene).checksum != before
