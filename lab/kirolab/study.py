"""Studies of searches: where one is kept, how it samples, and the front that it has found."""

import warnings
from dataclasses import dataclass

import optuna
import pandas as pd

from kirolab.errors import LabError
from kirolab.search import COST, FAULT, VIOLATION
from kirolab.space import Space

SAMPLERS = ("tpe", "cmaes", "nsga2")
IDENTITY = "identity"


def open_study(storage: str, space: Space, identity: str, sampler: str, seed: int | None) -> optuna.Study:
    """A new one begins with what the tuning has. Raises LabError for a study of something else."""
    optuna.logging.set_verbosity(optuna.logging.ERROR)
    warnings.filterwarnings("ignore", category=optuna.exceptions.ExperimentalWarning)
    try:
        study = optuna.create_study(
            study_name=space.name,
            storage=storage if "://" in storage else f"sqlite:///{storage}",
            sampler=sampler_of(sampler, space, seed),
            directions=["minimize"] * len(space.objectives),
            load_if_exists=True,
        )
    except Exception as fault:  # whatever the database says
        raise LabError(f"{storage}: {' '.join(str(fault).split()) or type(fault).__name__}") from None
    if study.user_attrs.get(IDENTITY, identity) != identity:
        raise LabError(
            f"{storage}: the study {space.name} there is of another space, corpus, tuning, seeds or build; "
            "expected another --study"
        )
    if IDENTITY not in study.user_attrs:
        study.set_user_attr(IDENTITY, identity)
        if all(dimension.low <= dimension.start <= dimension.high for dimension in space.dimensions):
            study.enqueue_trial(space.start)
    return study


def sampler_of(name: str, space: Space, seed: int | None) -> optuna.samplers.BaseSampler:
    is_one = len(space.objectives) == 1
    if name == "cmaes":
        if not is_one:
            raise LabError(
                f"{space.name}: cmaes takes one objective, expected tpe or nsga2 for {len(space.objectives)}"
            )
        return optuna.samplers.CmaEsSampler(seed=seed)
    constraints = None if is_one else lambda trial: (trial.user_attrs.get(VIOLATION, 0.0),)
    if name == "nsga2":
        return optuna.samplers.NSGAIISampler(constraints_func=constraints, seed=seed)
    return optuna.samplers.TPESampler(
        multivariate=True, constant_liar=True, constraints_func=constraints, seed=seed, n_startup_trials=10
    )


@dataclass(frozen=True)
class Front:
    """Complete trials: those that no other beats in all objectives among the ones that hold most bars."""

    trials: list[optuna.trial.FrozenTrial]
    best: optuna.trial.FrozenTrial
    all: list[optuna.trial.FrozenTrial]

    def trial(self, number: int) -> optuna.trial.FrozenTrial:
        for trial in self.all:
            if trial.number == number:
                return trial
        raise LabError(f"trial {number}: not complete, expected one of {', '.join(str(t.number) for t in self.all)}")

    def table(self, space: Space, is_front_alone: bool = True) -> pd.DataFrame:
        rows = []
        for trial in self.trials if is_front_alone else self.all:
            values = {objective.text: value for objective, value in zip(space.objectives, objective_values(trial))}
            facts = {"trial": trial.number, "violation": trial.user_attrs[VIOLATION], "cost": trial.user_attrs[COST]}
            rows.append(facts | values | {name: trial.params[name] for name in space.start})
        return pd.DataFrame(rows)


def objective_values(trial: optuna.trial.FrozenTrial) -> list[float]:
    """Without what the bars have cost."""
    values = list(trial.values)
    return [values[0] - trial.user_attrs[VIOLATION]] if len(values) == 1 else values


def front_of(study: optuna.Study) -> Front:
    trials = study.get_trials(deepcopy=False, states=(optuna.trial.TrialState.COMPLETE,))
    if not trials:
        faults = [trial.user_attrs[FAULT] for trial in study.get_trials(deepcopy=False) if FAULT in trial.user_attrs]
        raise LabError(f"no trial is complete{': ' + faults[0] if faults else ''}")
    least = min(trial.user_attrs[VIOLATION] for trial in trials)
    holding = [trial for trial in trials if trial.user_attrs[VIOLATION] <= least]
    values = {trial.number: objective_values(trial) for trial in holding}
    front = [trial for trial in holding if not any(beats(other, values[trial.number]) for other in values.values())]
    front.sort(key=lambda trial: values[trial.number])
    best = min(front, key=lambda trial: (trial.user_attrs[COST], trial.number))
    return Front(front, best, trials)


def beats(one: list[float], other: list[float]) -> bool:
    """No worse in any objective, and better in one."""
    return all(a <= b for a, b in zip(one, other)) and one != other
