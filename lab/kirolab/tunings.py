"""Tunings as a person names them, compiled once for all their runs."""

import shlex
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

from kirolab.errors import LabError
from kirolab.programs import Programs, checksum_of

PATCH_MARK = "+"


@dataclass(frozen=True)
class Tuning:
    """A parameter file, and numbers that are set in it for a run."""

    name: str  # as a person gave it
    file: Path
    checksum: str
    edits: tuple[str, ...] = ()  # MODE/MODULE/MEMBER=VALUE

    def with_edits(self, name: str, edits: tuple[str, ...]) -> "Tuning":
        return Tuning(name, self.file, self.checksum, edits)


def files_of(name: str) -> list[Path]:
    """A text or parameter file, then patches of it: tuning.yaml+patch.yaml."""
    return [Path(name)] if Path(name).is_file() else [Path(part) for part in name.split(PATCH_MARK)]


def compile_command(name: str, output: str) -> str | None:
    """What makes a parameter file of a tuning with patches; none is needed for a file that kirosim takes itself."""
    tuning, *patches = files_of(name)
    if not patches:
        return None
    options = " ".join(f"--patch {shlex.quote(str(patch))}" for patch in patches)
    return f"kirotune compile {shlex.quote(str(tuning))} {options} -o {output}"


class TuningShelf:
    """Compiled tunings, for as long as the shelf stands."""

    def __init__(self, programs: Programs) -> None:
        self._programs = programs
        self._folder = tempfile.TemporaryDirectory(prefix="kirolab-")
        self._count = 0

    def __enter__(self) -> "TuningShelf":
        return self

    def __exit__(self, *_: object) -> None:
        self._folder.cleanup()

    def read(self, name: str) -> Tuning:
        tuning, *patches = files_of(name)
        for file in [tuning, *patches]:
            if not file.is_file():
                raise LabError(f"{file}: no such file, expected a tuning, or TUNING{PATCH_MARK}PATCH")
        if not patches and tuning.suffix not in (".yaml", ".yml"):
            self._tell_faults([self._programs.kirotune, "info", str(tuning)])
            return Tuning(name, tuning.resolve(), checksum_of(tuning.read_bytes()))
        self._count += 1
        output = Path(self._folder.name) / f"{self._count}.bin"
        options = [part for patch in patches for part in ("--patch", str(patch))]
        self._tell_faults([self._programs.kirotune, "compile", str(tuning), *options, "-o", str(output)])
        return Tuning(name, output, checksum_of(output.read_bytes()))

    def _tell_faults(self, command: list[str]) -> None:
        result = subprocess.run(command, capture_output=True, text=True, check=False)
        if result.returncode != 0:
            lines = result.stderr.strip().splitlines() or [f"{command[0]} ended with status {result.returncode}"]
            raise LabError(lines[-1].removeprefix("kirotune: "))
