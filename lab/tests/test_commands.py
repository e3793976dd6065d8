"""The commands with the real programs, on a corpus of a second."""

import json
import signal
import subprocess
import sys
import time
from pathlib import Path

import pandas as pd
import pytest

from kirolab.commandline import main
from kirolab.errors import LabError
from kirolab.programs import find_programs

SOURCES = Path(__file__).resolve().parents[2]
PHONE = SOURCES / "examples/tunings/phone.yaml"
CORPUS = f"""
seeds: 1..2
scenes:
  - {{file: {SOURCES}/examples/scenes/natural.yaml, variants: [plain, step+2]}}
  - {{file: {SOURCES}/examples/scenes/uniform.yaml, variants: ripple}}
weights: {{settle: 0.1}}
bars: [{{figure: settle, of: step, limit: 6}}]
"""
SLOW = "modes: {Default: {modules: {kirodbconvbase: {data: {2: {value: {trigger1Data: {1: {trigger2Data: {0: {"
SLOW += "trigger3Data: {0: {triggerData: {baseSpeed: 0.2}}}}}}}}}}}}}}\n"


@pytest.fixture
def corpus(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> str:
    try:
        find_programs()
    except LabError as fault:
        pytest.fail(str(fault))
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("XDG_CACHE_HOME", str(tmp_path / "cache"))
    (tmp_path / "corpus.yaml").write_text(CORPUS)
    return str(tmp_path / "corpus.yaml")


def test_the_table_is_the_same_on_one_core_and_two(corpus: str, tmp_path: Path) -> None:
    for jobs in ("1", "2"):
        store = str(tmp_path / f"store{jobs}")
        output = str(tmp_path / f"{jobs}.csv")
        assert main(["run", corpus, "--tuning", str(PHONE), "-o", output, "--jobs", jobs, "--store", store]) == 0
    assert (tmp_path / "1.csv").read_bytes() == (tmp_path / "2.csv").read_bytes()
    table = pd.read_csv(tmp_path / "1.csv")
    runs = table[["scene", "variant", "seed"]].drop_duplicates()
    assert len(runs) == 6 and list(runs["variant"][:4]) == ["plain", "plain", "step+2", "step+2"]
    settles = table[(table["figure"] == "settle") & (table["of"] == "step")]
    assert len(settles) == 2 and settles["value"].between(1, 6).all()


def test_a_copy_is_equal_and_a_slow_tuning_worse(
    corpus: str, tmp_path: Path, capsys: pytest.CaptureFixture[str]
) -> None:
    (tmp_path / "copy.yaml").write_bytes(PHONE.read_bytes())
    (tmp_path / "slow.yaml").write_text(SLOW)
    assert main(["compare", str(PHONE), str(tmp_path / "copy.yaml"), "--corpus", corpus]) == 0
    assert "verdict: equal" in capsys.readouterr().out
    slow = f"{PHONE}+{tmp_path}/slow.yaml"
    arguments = ["compare", str(PHONE), slow, "--corpus", corpus, "--json", "--html", str(tmp_path / "page.html")]
    assert main(arguments) == 3
    facts = json.loads(capsys.readouterr().out)
    assert (facts["verdict"], facts["bars"][0]["newlyBroken"]) == ("worse", 2)
    assert (tmp_path / "page.html").is_file()
    # What it advises works as it stands.
    path = f"{find_programs().folder}:/usr/bin:/bin"
    commands = "\n".join(["set -e", *facts["regressions"][0]["commands"]])
    subprocess.run(["sh", "-c", commands], cwd=tmp_path, env={"PATH": path}, check=True, stdout=subprocess.DEVNULL)
    assert (tmp_path / "worst.html").is_file()


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["--tuning", "missing.yaml", "-o", "out.csv"], "missing.yaml: no such file"),
        (["--tuning", str(PHONE), "--tuning", str(PHONE), "-o", "out.csv"], "named twice"),
        (["--tuning", str(PHONE), "-o", "out.txt"], "expected a name that ends with"),
        (["--tuning", str(PHONE), "-o", "nowhere/out.csv"], "no folder nowhere"),
        (["--tuning", str(PHONE), "-o", "out.csv", "--seeds", "x"], "'x' found for seeds"),
        (["--tuning", str(PHONE), "-o", "out.csv", "--held-out"], "holds no scenes out"),
        (["--tuning", __file__, "-o", "out.csv"], "test_commands.py"),
    ],
)
def test_bad_input_is_one_line(
    corpus: str, arguments: list[str], message: str, capsys: pytest.CaptureFixture[str]
) -> None:
    assert main(["run", corpus, *arguments]) == 1
    lines = capsys.readouterr().err.splitlines()
    assert len(lines) == 1 and message in lines[0]
    assert not Path("out.csv").exists()


def test_a_picture_is_named_before_the_work(corpus: str, capsys: pytest.CaptureFixture[str]) -> None:
    Path("space.yaml").write_text(f"members: [{{name: speed, member: '{SPEED}'}}]\n")
    common = ["space.yaml", "--tuning", str(PHONE), "--corpus", corpus, "--picture", "front.jpeg"]
    for command in (["tune", *common, "-o", "best.yaml"], ["sensitivity", *common, "-o", "effects.csv"]):
        assert main(command) == 1
        assert capsys.readouterr().err == "kirolab: front.jpeg: expected a name that ends with .png or .svg\n"


def test_the_script_finds_its_package(tmp_path: Path) -> None:
    script = SOURCES / "lab/bin/kirolab"
    for words, status in ((["--help"], 0), (["walk"], 2)):
        assert subprocess.run([sys.executable, script, *words], cwd=tmp_path, capture_output=True).returncode == status


@pytest.mark.parametrize("word", [signal.SIGINT, signal.SIGTERM])
def test_a_run_that_is_interrupted_keeps_what_is_done(corpus: str, tmp_path: Path, word: signal.Signals) -> None:
    command = [
        sys.executable,
        str(SOURCES / "lab/bin/kirolab"),
        "run",
        corpus,
        "--tuning",
        str(PHONE),
        "--seeds",
        "1..400",
    ]
    # As from a terminal, whatever started the tests ignores.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    process = subprocess.Popen([*command, "-o", "out.csv", "--store", "store"], stderr=subprocess.PIPE, text=True)
    while process.poll() is None and not any(tmp_path.rglob("store/*/*.json")):
        time.sleep(0.01)
    process.send_signal(word)
    assert process.communicate()[1].splitlines()[-1].startswith("kirolab: interrupted")
    done = len(list(tmp_path.rglob("store/*/*.json")))
    assert process.returncode == 130 and 0 < done < 1200 and not (tmp_path / "out.csv").exists()


SPEED = "Default/kirodbconvbase/data[2].value.trigger1Data[1].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed"


def test_a_slow_tuning_is_swept_and_tuned(corpus: str, tmp_path: Path, capsys: pytest.CaptureFixture[str]) -> None:
    (tmp_path / "slow.yaml").write_text(SLOW)
    (tmp_path / "space.yaml").write_text(f"members: [{{name: speed, member: '{SPEED}'}}]")
    slow = f"{PHONE}+slow.yaml"
    common = ["space.yaml", "--tuning", slow, "--corpus", corpus, "--quiet"]
    assert main(["sensitivity", *common, "-o", "effects.csv", "--points", "3", "--picture", "effects.png"]) == 0
    assert capsys.readouterr().out.startswith("speed: 0.2 -> ")
    effects = pd.read_csv("effects.csv").set_index("figure")
    assert effects.loc["settle", "start"] > effects.loc["settle", "lowest"] and effects.loc["settle", "steps"] < 0
    tune = ["tune", *common, "-o", "best.yaml", "--trials", "8", "--front", "front.csv", "--picture", "front.png"]
    assert main([*tune, "--sampler-seed", "1", "--jobs", "1"]) == 0
    assert "verdict: better" in capsys.readouterr().out
    assert (tmp_path / "best.yaml").read_text().startswith("# corpus: ") and len(pd.read_csv("front.csv")) == 1
    assert main(["compare", slow, f"{slow}+best.yaml", "--corpus", corpus]) == 0
    assert main([*tune, "--held-out"]) == 1 and "never tuned on" in capsys.readouterr().err
