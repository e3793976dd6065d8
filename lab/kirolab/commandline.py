"""The command kirolab."""

import argparse
import os
import signal
import sys
from pathlib import Path

from kirolab import comparecommand, runcommand, sensitivitycommand, tunecommand
from kirolab.engine import PATIENCE
from kirolab.errors import LabError

STATUS_BAD_INPUT = 1
STATUS_INTERRUPTED = 130


def main(arguments: list[str] | None = None) -> int:
    """Exit status: 0; 1 for bad input or a run that failed; 2 for bad usage; 3 if a tuning is called worse."""
    parser = argparse.ArgumentParser(prog="kirolab", description=__doc__, allow_abbrev=False)
    commands = parser.add_subparsers(required=True, metavar="COMMAND")
    common = argparse.ArgumentParser(add_help=False, allow_abbrev=False)
    add_common_options(common)
    for command in (runcommand, comparecommand, tunecommand, sensitivitycommand):
        command.add_parser(commands, common)
    options = parser.parse_args(arguments)
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # by which a batch system ends what has had its time
    try:
        return int(options.do(options))
    except LabError as fault:
        print(f"kirolab: {fault}", file=sys.stderr)
        return STATUS_BAD_INPUT
    except KeyboardInterrupt:
        print("kirolab: interrupted; what is done is kept, the same command goes on", file=sys.stderr)
        return STATUS_INTERRUPTED
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # nobody reads on; that is no fault
        return 0


def add_common_options(parser: argparse.ArgumentParser) -> None:
    """Of all commands that run scenes."""
    group = parser.add_argument_group("runs")
    group.add_argument("--jobs", type=count, default=os.cpu_count(), help="runs at the same time (all cores)")
    group.add_argument("--cluster", help="scheduler of a Dask cluster, such as tcp://scheduler:8786", metavar="ADDRESS")
    group.add_argument(
        "--patience", type=count, default=round(PATIENCE), help=f"seconds for a run to hang ({PATIENCE:g})", metavar="S"
    )
    group.add_argument("--seeds", help="numbers or ranges such as 1..8, instead of the corpus'", metavar="SEEDS")
    group.add_argument("--store", type=Path, help="folder that keeps results (~/.cache/kirolab)", metavar="FOLDER")
    group.add_argument("--programs", help="folder of kirosim and kirotune", metavar="FOLDER")
    group.add_argument("--held-out", action="store_true", help="the held-out scenes of the corpus, and no others")
    group.add_argument("--quiet", action="store_true", help="no progress, and no word on runs that fail at first")


def count(text: str) -> int:
    if not text.isdigit() or int(text) < 1:
        raise argparse.ArgumentTypeError(f"'{text}' found, expected a number from 1")
    return int(text)
