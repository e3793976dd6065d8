"""Trials of a search by two objectives, with the front: what one costs the other."""

from pathlib import Path

from kirolab.drawing import drawing
from kirolab.space import Space
from kirolab.study import Front


def draw_front(front: Front, space: Space, path: Path) -> None:
    """The first two objectives; with one, the trials by number."""
    x = space.objectives[0].text if len(space.objectives) > 1 else "trial"
    y = space.objectives[min(1, len(space.objectives) - 1)].text
    trials, on_front = front.table(space, is_front_alone=False), front.table(space)
    holds = trials["violation"] <= 0
    with drawing(path, 8, 5) as (_, axes):
        axes.scatter(trials.loc[~holds, x], trials.loc[~holds, y], c="#bbbbbb", s=16, label="breaks a bar")
        axes.scatter(trials.loc[holds, x], trials.loc[holds, y], c="#3572b0", s=16, label="holds all bars")
        axes.plot(on_front[x], on_front[y], "o-", c="#b00020", markersize=5, label="front")
        for _, row in on_front.iterrows():
            place = (row[x], row[y])
            axes.annotate(f"{row['trial']:.0f}", place, textcoords="offset points", xytext=(5, 5), fontsize=8)
        axes.set(xlabel=x, ylabel=y)
        axes.legend()
