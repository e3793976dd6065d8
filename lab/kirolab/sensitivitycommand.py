"""kirolab sensitivity: how each member of a space moves each figure."""

import argparse
import dataclasses
from pathlib import Path
from typing import Any

from kirolab.errors import LabError
from kirolab.session import SEEDS_OF_SEARCH, Session
from kirolab.table import check_picture_name, check_table_name, write_table

POINTS = 5
STRONGEST = 4  # figures that are printed for each member


def add_parser(commands: Any, common: argparse.ArgumentParser) -> None:
    parser = commands.add_parser(
        "sensitivity",
        help="how each member of a space moves each figure",
        description="How each member of a space moves each figure, all others held: what to touch first.",
        parents=[common],
        allow_abbrev=False,
    )
    parser.add_argument("space", help="members with their ranges (.yaml)")
    parser.add_argument("--tuning", required=True, help="tuning, or TUNING+PATCH")
    parser.add_argument("--corpus", required=True, help="corpus (.yaml)")
    parser.add_argument("--points", type=int, default=POINTS, help=f"values of each member, from 2 ({POINTS})")
    parser.add_argument("-o", "--output", type=Path, required=True, help="table to write, .csv or .parquet")
    parser.add_argument("--picture", type=Path, help="draw a heat map, too (.png, .svg)", metavar="FILE")
    parser.set_defaults(do=run)


def run(options: argparse.Namespace) -> int:
    from kirolab.sensitivity import sensitivity_of, sweep

    check_table_name(options.output)
    if options.points < 2:
        raise LabError(f"--points {options.points}: expected at least 2")
    if options.picture is not None:
        check_picture_name(options.picture)
    with Session(options, options.corpus) as session:
        if not options.seeds:
            seeds = session.corpus.seeds[:SEEDS_OF_SEARCH]
            session.corpus = dataclasses.replace(session.corpus, seeds=seeds)
        (tuning,) = session.read_tunings([options.tuning])
        points = sweep(session.read_space(options.space, tuning), tuning, options.points)
        table, faults = session.run([tuning, *(point.tuning for point in points)])
        if faults:
            raise LabError(f"{len(faults)} runs failed twice; effects are judged by all runs")
        sensitivity = sensitivity_of(table, points, tuning, session.corpus)
    write_table(sensitivity.effects, options.output)
    if options.picture is not None:
        from kirolab.heatmap import draw_heatmap

        draw_heatmap(sensitivity, options.picture)
    for _, row in sensitivity.gains.iterrows():
        effects = sensitivity.effects[sensitivity.effects["member"] == row["member"]]
        strongest = effects.sort_values("steps", key=abs, ascending=False).head(STRONGEST)
        moved = ", ".join(f"{name} {steps:+.0f}" for name, steps in zip(strongest["figure"], strongest["steps"]))
        print(f"{row['member']}: {row['start']:g} -> {row['best']:g} gains {row['gain']:.3f}; moves {moved}")
    return 0
