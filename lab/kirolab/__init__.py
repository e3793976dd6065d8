"""Runs of a simulated camera over a corpus of scenes: tables of figures of merit, comparisons, searches.

The commands of `kirolab` are functions here, for notebooks; tables are pandas' DataFrames."""

from kirolab.campaign import run_corpus
from kirolab.comparison import Comparison, compare_tables
from kirolab.corpus import Corpus, read_corpus
from kirolab.errors import LabError
from kirolab.executor import local_executor
from kirolab.programs import Programs, find_programs
from kirolab.store import default_store
from kirolab.tunings import Tuning, TuningShelf

__all__ = [
    "Comparison",
    "Corpus",
    "LabError",
    "Programs",
    "Tuning",
    "TuningShelf",
    "compare_tables",
    "default_store",
    "find_programs",
    "local_executor",
    "read_corpus",
    "run_corpus",
]
