"""What the commands have in common: a corpus, tunings, something that runs them, and where results are kept."""

import argparse
import dataclasses
import sys
from contextlib import ExitStack
from functools import cached_property

import pandas as pd

from kirolab.campaign import run_corpus
from kirolab.corpus import Corpus, read_corpus, seeds_in
from kirolab.engine import Patience
from kirolab.errors import LabError
from kirolab.executor import Executor, local_executor
from kirolab.members import HeldValues, MemberWords
from kirolab.programs import find_programs
from kirolab.runs import Run
from kirolab.space import Space, read_space
from kirolab.store import ResultStore, default_folder
from kirolab.tunings import Tuning, TuningShelf


SEEDS_OF_SEARCH = 2  # of the corpus: verdicts take all of them


class Session:
    """Use it with `with`: tunings are compiled, and executors live, for as long as it lasts."""

    def __init__(self, options: argparse.Namespace, corpus: str) -> None:
        self.programs = find_programs(options.programs)
        self.corpus = chosen_corpus(corpus, options)
        self.is_held_out: bool = options.held_out
        self.progress = None if options.quiet else sys.stderr
        self.store = ResultStore(options.store or default_folder(), self.programs.build)
        self._options = options
        self._stack = ExitStack()
        self._shelf = self._stack.enter_context(TuningShelf(self.programs))

    def __enter__(self) -> "Session":
        return self

    def __exit__(self, *_: object) -> None:
        self._stack.close()

    def read_tunings(self, names: list[str]) -> list[Tuning]:
        """Names must differ: rows of a table are told apart by them."""
        for name in names:
            if names.count(name) > 1:
                raise LabError(f"{name}: a tuning is named twice, expected tunings that differ in name")
        return [self._shelf.read(name) for name in names]

    @cached_property
    def executor(self) -> Executor:
        patience = Patience(floor=self._options.patience)
        executor: Executor
        if self._options.cluster:
            from kirolab.cluster import ClusterExecutor  # which takes a while to import

            executor = ClusterExecutor(self._options.cluster, self.programs.build, patience)
        else:
            executor = local_executor(self.programs, self._options.jobs, patience)
        self._stack.callback(executor.close)
        return executor

    def read_space(self, file: str, tuning: Tuning) -> Space:
        return read_space(file, MemberWords(self.programs), HeldValues(self.programs, tuning))

    def run(self, tunings: list[Tuning]) -> tuple[pd.DataFrame, dict[Run, str]]:
        return run_corpus(self.corpus, tunings, self.executor, self.store, self.is_held_out, self.progress)


def chosen_corpus(file: str, options: argparse.Namespace) -> Corpus:
    corpus = read_corpus(file)
    if options.held_out and not corpus.held_out:
        raise LabError(f"{file}: the corpus holds no scenes out, --held-out has nothing to run")
    if options.seeds is None:
        return corpus
    return dataclasses.replace(corpus, seeds=tuple(seeds_in(options.seeds)))
