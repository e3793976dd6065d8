"""kirolab tune: search for a better tuning."""

import argparse
import sys
from pathlib import Path
from typing import Any

from kirolab.comparetext import comparison_text
from kirolab.comparison import Comparison, compare_tables
from kirolab.errors import LabError
from kirolab.programs import checksum_of
from kirolab.session import SEEDS_OF_SEARCH, Session
from kirolab.space import Space
from kirolab.table import check_folder, check_picture_name, check_table_name, write_table, write_text
from kirolab.tunings import PATCH_MARK, Tuning


def add_parser(commands: Any, common: argparse.ArgumentParser) -> None:
    parser = commands.add_parser(
        "tune",
        help="search for a better tuning",
        description="Search for a better tuning: the best one found becomes a patch, compared with what it was.",
        parents=[common],
        allow_abbrev=False,
    )
    parser.add_argument("space", help="members with their ranges, and objectives (.yaml)")
    parser.add_argument("--tuning", required=True, help="where the search begins: tuning, or TUNING+PATCH")
    parser.add_argument("--corpus", required=True, help="corpus (.yaml)")
    parser.add_argument("--trials", type=int, default=100, help="that the study has in the end (100); 0 only reports")
    parser.add_argument("-o", "--output", type=Path, required=True, help="patch to write (.yaml)")
    parser.add_argument("--study", default="study.db", help="file, or address of a database (study.db)")
    parser.add_argument("--sampler", choices=("tpe", "cmaes", "nsga2"), default="tpe", help="(tpe)")
    parser.add_argument("--sampler-seed", type=int, help="for trials that can be had again, with --jobs 1")
    parser.add_argument("--pick", type=int, help="make the patch of this trial, not of the best", metavar="TRIAL")
    parser.add_argument("--front", type=Path, help="write the trials of the front, .csv or .parquet", metavar="FILE")
    parser.add_argument("--picture", type=Path, help="draw trials and front (.png, .svg)", metavar="FILE")
    parser.set_defaults(do=run)


def run(options: argparse.Namespace) -> int:
    # Optuna alone takes most of a second to import, which the other commands need not wait for.
    from kirolab.frontpicture import draw_front
    from kirolab.study import front_of

    if options.held_out:
        raise LabError("--held-out: held-out scenes are never tuned on, expected them in kirolab compare")
    check_folder(options.output)
    if options.front is not None:
        check_table_name(options.front)
    if options.picture is not None:
        check_picture_name(options.picture)
    with Session(options, options.corpus) as session:
        (tuning,) = session.read_tunings([options.tuning])
        space = session.read_space(options.space, tuning)
        study = search(session, options, space, tuning)
        front = front_of(study)
        print(front.table(space).to_string(index=False))
        if options.front is not None:
            write_table(front.table(space), options.front)
        if options.picture is not None:
            draw_front(front, space, options.picture)
        trial = front.trial(options.pick) if options.pick is not None else front.best
        comparison = write_patch(session, options, space, tuning, trial.params)
    print(f"\ntrial {trial.number}: {options.output}\n")
    print(comparison_text(comparison, worst=10), end="")
    return 0


def search(session: Session, options: argparse.Namespace, space: Space, tuning: Tuning) -> Any:
    """A study with as many trials as are wanted."""
    from kirolab.search import Search
    from kirolab.study import open_study

    seeds = session.corpus.seeds if options.seeds else session.corpus.seeds[:SEEDS_OF_SEARCH]
    texts = [Path(options.space).read_bytes(), Path(options.corpus).read_bytes(), str(seeds).encode()]
    identity = checksum_of(tuning.checksum.encode(), session.programs.build.encode(), *texts)
    study = open_study(options.study, space, identity, options.sampler, options.sampler_seed)
    baseline, faults = session.run([tuning])
    if faults:
        raise LabError(f"{tuning.name}: {len(faults)} runs failed twice, a search has nothing to compare with")
    Search(study, space, tuning, session.corpus, seeds, baseline, session.executor, session.progress).run(
        options.trials
    )
    return study


def write_patch(
    session: Session, options: argparse.Namespace, space: Space, tuning: Tuning, values: dict[str, float]
) -> Comparison:
    """The patch, then the patch with figures before and after, of all seeds; they are those of the patched tuning."""
    patch = space.patch(values)
    write_text(patch, options.output)
    (patched,) = session.read_tunings([f"{tuning.name}{PATCH_MARK}{options.output}"])
    before, faults_before = session.run([tuning])
    after, faults = session.run([patched])
    if faults_before or faults:
        raise LabError(f"{patched.name}: {len(faults_before) + len(faults)} runs failed twice")
    comparison = compare_tables(before, after, session.corpus)
    lines = comparison_text(comparison, worst=0).splitlines()
    write_text("".join(f"# {line}".rstrip() + "\n" for line in lines) + patch, options.output)
    if not options.quiet:
        print(f"kirolab: {options.output} is written", file=sys.stderr)
    return comparison
