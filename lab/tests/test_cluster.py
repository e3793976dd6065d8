"""What a cluster may do to its work: in the end the table is the same, row by row, as on one core of this machine."""

import shutil
from pathlib import Path
from typing import Callable, Iterator

import pandas as pd
import pytest

from kirolab import runs
from kirolab.campaign import run_corpus
from kirolab.cluster import ClusterExecutor
from kirolab.commandline import main
from kirolab.corpus import Corpus, read_corpus
from kirolab.engine import Patience
from kirolab.errors import LabError
from kirolab.executor import Executor, Result, local_executor
from kirolab.parcels import parcel_of
from kirolab.programs import Programs, find_programs
from kirolab.runs import Unit
from kirolab.scenes import Scene
from kirolab.store import ResultStore
from kirolab.tunings import Tuning, TuningShelf
from tests.clusterprocesses import ClusterProcesses

SOURCES = Path(__file__).resolve().parents[2]
PHONE = SOURCES / "examples/tunings/phone.yaml"
CORPUS = f"""
seeds: 1..4
scenes:
  - {{file: {SOURCES}/examples/scenes/natural.yaml, variants: [still, step*, ramp]}}
  - {{file: {SOURCES}/examples/scenes/room.yaml, variants: [plain, nod]}}
"""


class Interrupter:
    """An executor to which something happens after a few results."""

    def __init__(self, executor: Executor, harm: Callable[[], None]) -> None:
        self._executor = executor
        self._harm = harm
        self._left = 3

    @property
    def width(self) -> int:
        return self._executor.width

    def submit(self, unit: Unit) -> None:
        self._executor.submit(unit)

    def next(self) -> Result:
        self._left -= 1
        if self._left == 0:
            self._harm()
        return self._executor.next()

    def close(self) -> list[Result]:
        return self._executor.close()


@pytest.fixture(scope="module")
def programs() -> Programs:
    return find_programs()


@pytest.fixture
def corpus(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Corpus:
    monkeypatch.setattr(runs, "LEAST_SECONDS_OF_UNIT", 0.1)  # many units, so that harm comes in their midst
    (tmp_path / "corpus.yaml").write_text(CORPUS)
    return read_corpus(tmp_path / "corpus.yaml")


@pytest.fixture
def cluster(tmp_path: Path, programs: Programs) -> Iterator[ClusterProcesses]:
    with ClusterProcesses(tmp_path, programs.folder) as processes:
        yield processes


@pytest.fixture(scope="module")
def reference() -> dict[str, pd.DataFrame]:
    """The table of one core, once for all tests."""
    return {}


def table_by(executor: Executor, corpus: Corpus, programs: Programs, store: Path) -> pd.DataFrame:
    with TuningShelf(programs) as shelf:
        tunings = [shelf.read(str(PHONE))]
        table, faults = run_corpus(corpus, tunings, executor, ResultStore(store, programs.build), progress=None)
    assert faults == {}
    return table


@pytest.fixture
def expected(corpus: Corpus, programs: Programs, tmp_path: Path, reference: dict[str, pd.DataFrame]) -> pd.DataFrame:
    if not reference:
        with local_executor(programs, 1) as executor:
            reference["one core"] = table_by(executor, corpus, programs, tmp_path / "local")
    return reference["one core"]


def executor_of(cluster: ClusterProcesses, programs: Programs, said: list[str]) -> ClusterExecutor:
    return ClusterExecutor(cluster.address, programs.build, Patience(floor=20), answer_seconds=3, say=said.append)


def restart(cluster: ClusterProcesses) -> None:
    cluster.stop_scheduler()
    cluster.start_scheduler()
    cluster.start_workers(2)


@pytest.mark.parametrize(
    "harm, said_of_it",
    [
        (ClusterProcesses.kill_worker, ""),
        (ClusterProcesses.hang_worker, "its work goes to others"),
        (restart, "waiting for the scheduler"),
    ],
)
def test_the_table_is_that_of_one_core(
    cluster: ClusterProcesses,
    corpus: Corpus,
    programs: Programs,
    expected: pd.DataFrame,
    tmp_path: Path,
    harm: Callable[[ClusterProcesses], None],
    said_of_it: str,
) -> None:
    cluster.start_workers(3)
    said: list[str] = []
    executor = Interrupter(executor_of(cluster, programs, said), lambda: harm(cluster))
    table = table_by(executor, corpus, programs, tmp_path / "store")
    executor.close()
    pd.testing.assert_frame_equal(table, expected)
    assert said_of_it in " ".join(said)


def test_another_build_gets_no_work(
    cluster: ClusterProcesses, corpus: Corpus, programs: Programs, expected: pd.DataFrame, tmp_path: Path
) -> None:
    other = tmp_path / "other"
    shutil.copytree(programs.folder, other, ignore=lambda *_: ["test_kirosim"])
    with open(other / "kirosim", "ab") as file:
        file.write(b"another")
    cluster.start_workers(1)
    said: list[str] = []
    executor = executor_of(cluster, programs, said)
    late = Interrupter(executor, lambda: cluster.start_workers(1, other))
    pd.testing.assert_frame_equal(table_by(late, corpus, programs, tmp_path / "store"), expected)
    executor.close()
    said.clear()
    cluster.kill_worker()
    with pytest.raises(LabError, match="no worker that could do the work"):
        executor_of(cluster, programs, said)
    assert len(said) == 1 and "it gets no work" in said[0] and programs.build in said[0]


def test_the_command_takes_a_cluster(
    cluster: ClusterProcesses, corpus: Corpus, tmp_path: Path, capsys: pytest.CaptureFixture[str]
) -> None:
    cluster.start_workers(2)
    arguments = ["run", str(corpus.file), "--tuning", str(PHONE), "--seeds", "1", "--store", str(tmp_path / "store")]
    arguments += ["-o", str(tmp_path / "out.csv"), "--quiet"]
    assert main([*arguments, "--cluster", cluster.address]) == 0
    assert len(pd.read_csv(tmp_path / "out.csv")["variant"].unique()) == 10
    assert main([*arguments, "--cluster", "tcp://127.0.0.1:9"]) == 1
    assert capsys.readouterr().err.startswith("kirolab: tcp://127.0.0.1:9: no scheduler there")


def test_a_panorama_that_only_this_machine_finds_is_refused(tmp_path: Path) -> None:
    scene = tmp_path / "room.yaml"
    scene.write_text("panorama: {file: /lights/city.hdr}\n")
    unit = Unit(Tuning("phone", PHONE, "", ()), Scene(scene), ("plain",), (1,))
    with pytest.raises(LabError, match="room.yaml: panorama /lights/city.hdr: expected a path from"):
        parcel_of(unit, Patience(), "build")
