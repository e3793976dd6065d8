"""Units of work on their way to another machine: which files they need, and how they are laid down there."""

import os
import tempfile
from dataclasses import dataclass
from functools import lru_cache
from pathlib import Path

from kirolab.engine import Engine, Patience, SimulationEngine
from kirolab.errors import LabError
from kirolab.programs import Programs, checksum_of, find_programs
from kirolab.runs import Outcome, Unit
from kirolab.scenes import Scene
from kirolab.tunings import Tuning

CACHE_VARIABLE = "KIROLAB_INPUTS"  # folder in which a worker keeps what it was sent


@dataclass(frozen=True)
class InputFile:
    """Contents, and where they are wanted, seen from a folder that all files of a unit share."""

    path: str
    checksum: str


@dataclass(frozen=True)
class Parcel:
    """A unit without its files. The first file is the tuning, the second the scene, then come panoramas."""

    files: tuple[InputFile, ...]
    edits: tuple[str, ...]
    variants: tuple[str, ...]
    seeds: tuple[int, ...]
    patience: Patience
    build: str  # that must do it


class OtherBuild(Exception):
    """A worker has come that nobody has asked yet, and has another build."""


@lru_cache(maxsize=1024)
def contents_of(path: Path) -> tuple[str, bytes]:
    """Checksum and bytes. Read once: what is sent is what was there when the work began."""
    data = path.read_bytes()
    return checksum_of(data), data


def parcel_of(unit: Unit, patience: Patience, build: str) -> tuple[Parcel, list[bytes]]:
    """A parcel, and the contents of its files. A scene finds its panoramas from where it lies itself."""
    for name in filter(os.path.isabs, unit.scene.panorama_names):
        raise LabError(
            f"{unit.scene.file}: panorama {name}: expected a path from the scene's folder, to go to a cluster"
        )
    scene_files = [Path(os.path.abspath(file)) for file in [unit.scene.file, *unit.scene.panoramas]]
    shared = os.path.commonpath([file.parent for file in scene_files])
    contents = [contents_of(unit.tuning.file), *(contents_of(file) for file in scene_files)]
    paths = ["tuning.bin", *(os.path.relpath(file, shared) for file in scene_files)]
    files = tuple(InputFile(path, checksum) for path, (checksum, _) in zip(paths, contents))
    parcel = Parcel(files, unit.tuning.edits, unit.variants, unit.seeds, patience, build)
    return parcel, [data for _, data in contents]


def cache_folder() -> Path:
    """Of this user on this machine."""
    return Path(os.environ.get(CACHE_VARIABLE) or Path(tempfile.gettempdir()) / f"kirolab-inputs-{os.getuid()}")


def lay_down(parcel: Parcel, contents: tuple[bytes, ...]) -> tuple[Path, Path]:
    """Tuning and scene. Files that lie there by their checksum are not written again; workers may share the folder."""
    scene_files = checksum_of(*(f"{file.path} {file.checksum}".encode() for file in parcel.files[1:]))
    places = [cache_folder() / f"{parcel.files[0].checksum}.bin"]
    places += [cache_folder() / scene_files / file.path for file in parcel.files[1:]]
    for place, data in zip(places, contents):
        if not place.exists():
            place.parent.mkdir(parents=True, exist_ok=True)
            descriptor, name = tempfile.mkstemp(dir=place.parent)
            with os.fdopen(descriptor, "wb") as file:
                file.write(data)
            os.replace(name, place)
    return places[0], places[1]


@lru_cache(maxsize=1)
def programs_here() -> Programs:
    """Of this process: looked for, and their build found out, once."""
    return find_programs()


def build_here() -> str:
    return programs_here().build


def run_parcel(parcel: Parcel, *contents: bytes) -> list[Outcome]:
    """On the worker: an outcome for each run of the unit, in order."""
    if build_here() != parcel.build:
        raise OtherBuild(build_here())
    tuning, scene = lay_down(parcel, contents)
    unit = Unit(
        Tuning("cluster", tuning, parcel.files[0].checksum, parcel.edits), Scene(scene), parcel.variants, parcel.seeds
    )
    engine: Engine = SimulationEngine(programs_here(), parcel.patience)
    return engine.run(unit)


def carried(data: bytes) -> bytes:
    """A file's contents as a task: a cluster sends its result to each worker once, and makes it anew if it is lost."""
    return data
