"""Results that are kept, so that what is done is not run again."""

import json
import os
import tempfile
from pathlib import Path

from kirolab.errors import LabError
from kirolab.programs import Programs
from kirolab.runs import Figure, Run

FOLDER_VARIABLE = "XDG_CACHE_HOME"


def default_folder() -> Path:
    return Path(os.environ.get(FOLDER_VARIABLE) or Path.home() / ".cache") / "kirolab"


def default_store(programs: Programs) -> "ResultStore":
    return ResultStore(default_folder(), programs.build)


class ResultStore:
    """A folder with one file a run, by key of the run; it may be shared, and deleted at any time."""

    def __init__(self, folder: Path, build: str) -> None:
        self._folder = folder
        self._build = build
        try:
            folder.mkdir(parents=True, exist_ok=True)
        except OSError as fault:
            raise LabError(f"{folder}: {fault.strerror}, expected a folder for results") from None

    def get(self, run: Run) -> list[Figure] | None:
        """A file that somebody has damaged counts as none."""
        try:
            figures = json.loads(self._path(run).read_bytes())["figures"]
        except (OSError, ValueError, KeyError, TypeError):
            return None
        return figures if isinstance(figures, list) else None

    def put(self, run: Run, figures: list[Figure]) -> None:
        """The file is whole or not there. Who comes second puts the same."""
        path = self._path(run)
        path.parent.mkdir(exist_ok=True)
        facts = {"tuning": run.tuning.name, "edits": run.tuning.edits, "run": run.name, "build": self._build}
        descriptor, name = tempfile.mkstemp(dir=path.parent)
        try:
            with os.fdopen(descriptor, "w", encoding="utf-8") as file:
                json.dump(facts | {"figures": figures}, file)
            os.replace(name, path)
        except BaseException:
            Path(name).unlink(missing_ok=True)  # an interruption may come once the file has its name
            raise

    def _path(self, run: Run) -> Path:
        key = run.key(self._build)
        return self._folder / key[:2] / f"{key}.json"
