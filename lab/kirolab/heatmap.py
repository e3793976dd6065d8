"""Members by figures as a map of colours: how far each moves each."""

from pathlib import Path

import numpy as np
from matplotlib.colors import SymLogNorm

from kirolab.drawing import drawing
from kirolab.errors import LabError
from kirolab.sensitivity import Sensitivity


def draw_heatmap(sensitivity: Sensitivity, path: Path) -> None:
    """What to touch first stands at the top; figures that nothing moves are left out."""
    map_of_steps = sensitivity.effects.pivot(index="member", columns="figure", values="steps")
    map_of_steps = map_of_steps.loc[sensitivity.gains["member"], sensitivity.effects["figure"].unique()].fillna(0.0)
    map_of_steps = map_of_steps.loc[:, (map_of_steps.abs() >= 1).any()]
    if map_of_steps.empty:
        raise LabError(f"{path}: no member moves any figure, there is nothing to draw")
    strongest = max(float(np.abs(map_of_steps.to_numpy()).max()), 1.0)
    rows, columns = map_of_steps.shape
    colours = SymLogNorm(1, vmin=-strongest, vmax=strongest)
    with drawing(path, 2.5 + 0.6 * columns, 1.5 + 0.4 * rows) as (figure, axes):
        image = axes.imshow(map_of_steps, cmap="RdBu_r", norm=colours, aspect="auto")
        axes.set_xticks(range(columns), map_of_steps.columns, rotation=45, ha="right")
        axes.set_yticks(range(rows), map_of_steps.index)
        for (row, column), steps in np.ndenumerate(map_of_steps.to_numpy()):
            if abs(steps) >= 1:
                colour = "white" if abs(steps) > strongest / 4 else "black"
                axes.text(column, row, f"{steps:+.0f}", ha="center", va="center", fontsize=7, color=colour)
        figure.colorbar(image, label="steps of the resolution, from end to end of the range")
