"""Pictures: drawn without a window, and written whole or not at all."""

from contextlib import contextmanager
from pathlib import Path
from typing import Any, Iterator

import matplotlib

from kirolab.errors import LabError
from kirolab.table import replaced_file

matplotlib.use("Agg")
from matplotlib import pyplot  # noqa: E402  (no window is there to draw in)


@contextmanager
def drawing(path: Path, width: float, height: float) -> Iterator[tuple[Any, Any]]:
    """Figure and axes, of a size in inches; what is drawn there is written at the end."""
    figure, axes = pyplot.subplots(figsize=(width, height), layout="constrained")
    try:
        yield figure, axes
        with replaced_file(path) as part:
            figure.savefig(part.path, format=path.suffix[1:])
    except ValueError as fault:
        raise LabError(f"{path}: {fault}") from None
    finally:
        pyplot.close(figure)
