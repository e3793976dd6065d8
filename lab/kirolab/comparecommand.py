"""kirolab compare: is tuning B better than tuning A."""

import argparse
from pathlib import Path
from typing import Any

from kirolab.comparehtml import comparison_html
from kirolab.comparejson import comparison_json
from kirolab.comparetext import comparison_text
from kirolab.comparison import WORSE, compare_tables
from kirolab.errors import LabError
from kirolab.session import Session
from kirolab.table import write_text

STATUS_WORSE = 3


def add_parser(commands: Any, common: argparse.ArgumentParser) -> None:
    parser = commands.add_parser(
        "compare",
        help="is tuning B better than tuning A",
        description="Is tuning B better than tuning A: figure by figure, and by the bars of a corpus.",
        epilog="Exit status: 0 if B is better or equal, 3 if it is worse, 1 for bad input or a run that failed.",
        parents=[common],
        allow_abbrev=False,
    )
    parser.add_argument("before", metavar="A", help="tuning, or TUNING+PATCH")
    parser.add_argument("after", metavar="B", help="tuning, or TUNING+PATCH")
    parser.add_argument("--corpus", required=True, help="corpus (.yaml)")
    parser.add_argument("--json", action="store_true", help="print JSON")
    parser.add_argument("--html", type=Path, help="write a page for a browser, too", metavar="FILE")
    parser.add_argument("--worst", type=int, default=10, help="regressions that are shown (10)", metavar="COUNT")
    parser.add_argument("--strict", action="store_true", help="status 3 also if B breaks a bar that A breaks as well")
    parser.set_defaults(do=run)


def run(options: argparse.Namespace) -> int:
    if options.html is not None and not options.html.parent.is_dir():
        raise LabError(f"{options.html}: no folder {options.html.parent}")
    with Session(options, options.corpus) as session:
        before, after = session.read_tunings([options.before, options.after])
        table, faults = session.run([before, after])
    if faults:
        raise LabError(f"{len(faults)} runs failed twice; tunings are compared by all runs")
    comparison = compare_tables(
        table[table["tuning"] == before.name], table[table["tuning"] == after.name], session.corpus, options.held_out
    )
    if options.html is not None:
        write_text(comparison_html(comparison, options.worst), options.html)
    print((comparison_json if options.json else comparison_text)(comparison, options.worst), end="")
    is_refused = comparison.verdict == WORSE or (options.strict and comparison.broken > 0)
    return STATUS_WORSE if is_refused else 0
