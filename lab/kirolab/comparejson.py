"""A comparison for scripts."""

import json
import math
from typing import Any

from kirolab.comparewords import report_commands
from kirolab.comparison import Comparison

STRETCH_MEMBERS = ["scene", "variant", "figure", "of", "at", "unit", "before", "after", "neverBefore", "neverAfter"]
STRETCH_MEMBERS += ["difference", "low", "high", "verdict", "cost", "seed"]


def comparison_json(comparison: Comparison, worst: int) -> str:
    """All stretches; the commands only of the worst regressions."""
    facts = {
        "corpus": comparison.corpus.name,
        "before": comparison.before,
        "after": comparison.after,
        "runs": comparison.runs,
        "seeds": comparison.seeds,
        "verdict": comparison.verdict,
        "reason": comparison.reason,
        "cost": {
            "before": comparison.cost_before,
            "after": comparison.cost_after,
            "low": comparison.cost_low,
            "high": comparison.cost_high,
        },
        "missing": comparison.missing,
        "bars": [
            {
                "bar": result.bar.text,
                "figures": result.count,
                "brokenBefore": result.broken_before,
                "brokenAfter": result.broken_after,
                "newlyBroken": result.newly_broken,
                "worstBefore": result.worst_before,
                "worstAfter": result.worst_after,
            }
            for result in comparison.bars
        ],
        "regressions": [
            row[STRETCH_MEMBERS].to_dict() | {"commands": report_commands(comparison, row)}
            for _, row in comparison.regressions.head(worst).iterrows()
        ],
        "stretches": comparison.stretches[STRETCH_MEMBERS].to_dict("records"),
    }
    return json.dumps(plain(facts), indent=1, allow_nan=False) + "\n"


def plain(value: Any) -> Any:
    """What JSON has: numbers of Python, and null for what was never reached."""
    if isinstance(value, dict):
        return {name: plain(item) for name, item in value.items()}
    if isinstance(value, list):
        return [plain(item) for item in value]
    if hasattr(value, "item"):
        value = value.item()
    return None if isinstance(value, float) and not math.isfinite(value) else value
