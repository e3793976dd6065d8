"""The programs that the lab starts, and which build they are."""

import hashlib
import os
import shutil
import subprocess
from dataclasses import dataclass
from functools import cached_property
from pathlib import Path

from kirolab.errors import LabError

FOLDER_VARIABLE = "KIROLAB_PROGRAMS"
SOURCES_PROGRAMS = "build/release/bin"
OWN_LIBRARIES = ("kirocore", "tavocommonutils")


def checksum_of(*parts: bytes) -> str:
    """SHA-256, of the parts one by one: no two lists of parts are alike."""
    return hashlib.sha256(b"".join(hashlib.sha256(part).digest() for part in parts)).hexdigest()


@dataclass(frozen=True)
class Programs:
    """kirosim and kirotune in one folder."""

    folder: Path

    @property
    def kirosim(self) -> str:
        return str(self.folder / "kirosim")

    @property
    def kirotune(self) -> str:
        return str(self.folder / "kirotune")

    @cached_property
    def build(self) -> str:
        """What tells results of one build from those of another: version, and checksum of simulation and library."""
        version = run_quietly([self.kirosim, "--version"]).strip()
        files = [Path(self.kirosim)] + [library for library in libraries_of(self.kirosim)]
        return f"{version}, build {checksum_of(*(file.read_bytes() for file in files))[:16]}"


def libraries_of(program: str) -> list[Path]:
    """Libraries of ours that a program loads."""
    paths = [line.split()[2] for line in run_quietly(["ldd", program]).splitlines() if " => /" in line]
    return sorted(Path(path) for path in paths if any(name in path for name in OWN_LIBRARIES))


def run_quietly(command: list[str]) -> str:
    """What a short command prints."""
    try:
        result = subprocess.run(command, capture_output=True, text=True, timeout=60, check=False)
    except (OSError, subprocess.TimeoutExpired) as fault:
        raise LabError(f"{command[0]}: {fault}") from None
    if result.returncode != 0:
        raise LabError(result.stderr.strip() or f"{command[0]} ended with status {result.returncode}")
    return result.stdout


def find_programs(folder: str | None = None) -> Programs:
    """In the folder given, or the one that KIROLAB_PROGRAMS names; else installed beside the lab, built beside its
    sources, or wherever PATH leads."""
    named = folder or os.environ.get(FOLDER_VARIABLE)
    lab = Path(__file__).resolve().parent.parent
    places = [lab.parents[2] / "bin", lab.parent / SOURCES_PROGRAMS]
    found = shutil.which("kirosim")
    if found:
        places.append(Path(found).resolve().parent)
    for place in [Path(named)] if named else places:
        if (place / "kirosim").is_file() and (place / "kirotune").is_file():
            return Programs(place.resolve())
    raise LabError(
        f"{named or places[0]}: no kirosim and kirotune here; --programs or {FOLDER_VARIABLE} names their folder"
    )
