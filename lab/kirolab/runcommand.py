"""kirolab run: all figures of all runs as a table."""

import argparse
import sys
import time
from pathlib import Path
from typing import Any

from kirolab.session import Session
from kirolab.table import check_table_name, write_table


def add_parser(commands: Any, common: argparse.ArgumentParser) -> None:
    parser = commands.add_parser("run", help="all figures of all runs as a table", parents=[common], allow_abbrev=False)
    parser.add_argument("corpus", help="corpus (.yaml)")
    parser.add_argument(
        "--tuning", action="append", required=True, help="parameter file or text, or TUNING+PATCH; again for another"
    )
    parser.add_argument("-o", "--output", type=Path, required=True, help="table to write, .csv or .parquet")
    parser.set_defaults(do=run)


def run(options: argparse.Namespace) -> int:
    check_table_name(options.output)
    with Session(options, options.corpus) as session:
        tunings = session.read_tunings(options.tuning)
        start = time.monotonic()
        table, faults = session.run(tunings)
        seconds = time.monotonic() - start
    write_table(table, options.output)
    runs = len(table[["tuning", "scene", "variant", "seed"]].drop_duplicates())
    if not options.quiet:
        print(f"{runs} runs, {len(table)} figures in {seconds:.1f} s: {options.output}", file=sys.stderr)
    if faults:
        print(f"kirolab: {len(faults)} runs failed twice and are not in the table", file=sys.stderr)
    return 1 if faults else 0
