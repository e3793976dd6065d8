"""Rows of a table of figures that patterns choose."""

from fnmatch import fnmatchcase

import pandas as pd

Patterns = tuple[str, ...]
ANY: Patterns = ("*",)


def matches_any(text: str, patterns: Patterns) -> bool:
    """Patterns as for names of files: * for any text, ? for any letter."""
    return any(fnmatchcase(text, pattern) for pattern in patterns)


def rows_of(table: pd.DataFrame, figure: str, of: Patterns, scene: Patterns, variant: Patterns) -> pd.Series:
    """A mask of the rows."""
    mask = table["figure"] == figure
    for column, patterns in (("of", of), ("scene", scene), ("variant", variant)):
        if patterns != ANY:
            fitting = {text for text in table[column].unique() if matches_any(text, patterns)}
            mask &= table[column].isin(fitting)
    return mask
