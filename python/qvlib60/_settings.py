"""Rules, costs and parameters of trading systems, checked."""
from __future__ import annotations

import math
import os
from typing import Any, Mapping, Optional

import numpy as np

from . import _core

RULES = ("long", "exit", "short", "cover", "stop")
Sets = list[tuple[str, list[float]]]


def rule_texts(rules: Mapping[str, Optional[str]]) -> list[str]:
    """The texts of the rules in their order, "" where there is none."""
    for name, text in rules.items():
        if name not in RULES:
            raise TypeError(f"there is no rule {name}: there are {', '.join(RULES)}")
        if text is not None and not isinstance(text, str):
            raise TypeError(f"{name}: a formula is wanted, {type(text).__name__} is given")
    return [rules.get(name) or "" for name in RULES]


def number_of(name: str, value: Any, least: float, above: bool = False) -> float:
    """A finite number from `least` on, or above it."""
    try:
        number = float(value)
    except (TypeError, ValueError, OverflowError):
        raise TypeError(f"{name}: a number is wanted, {value!r} is given") from None
    if not math.isfinite(number) or number < least or (above and number == least):
        raise ValueError(f"{name}: {'above' if above else 'at least'} {least:g} is wanted, {value!r} is given")
    return number


def settings_of(cost: Any = 0.0, slip: Any = 0.0, fixed: Any = 0.0, capital: Any = 10000.0, size: Any = 1,
                rate: Any = 0.0, tick: Any = 0.0) -> dict[str, Any]:
    """The settings of a run, each in its range."""
    contracts = number_of("size", size, 1)
    if contracts != int(contracts) or contracts > 1e9:
        raise ValueError(f"size: a whole number up to 1,000,000,000 is wanted, {size!r} is given")
    yearly = number_of("rate", rate, -1, above=True)
    return {"cost": number_of("cost", cost, 0), "slip": number_of("slip", slip, 0), "fixed": number_of("fixed", fixed, 0),
            "capital": number_of("capital", capital, 0, above=True), "size": int(contracts), "rate": yearly,
            "tick": number_of("tick", tick, 0)}


def sets_of(parameters: Mapping[str, Any]) -> Sets:
    """The values of each parameter: of a number, a range, a list, an array, or a text as 5:50:5."""
    if not isinstance(parameters, Mapping):
        raise TypeError(f"parameters: a dictionary of values by name is wanted, {type(parameters).__name__} is given")
    sets = []
    for name, values in parameters.items():
        if isinstance(values, str):
            numbers = _core.parse_set(f"{name}={values}")
        else:
            given = np.atleast_1d(np.asarray(list(values) if isinstance(values, range) else values))
            if given.dtype.kind not in "biuf" or given.ndim != 1 or not len(given):
                raise TypeError(f"{name}: numbers are wanted, {values!r} is given")
            numbers = given.astype(np.float64).tolist()
        if not all(map(math.isfinite, numbers)):
            raise ValueError(f"{name}: finite numbers are wanted, {values!r} is given")
        sets.append((name.lower().lstrip("$"), numbers))
    return sets


def threads_of(threads: Optional[int]) -> int:
    """The number of threads; all cores unless given."""
    if threads is None:
        return max(1, os.cpu_count() or 1)
    if isinstance(threads, bool) or not isinstance(threads, (int, np.integer)) or not 1 <= threads <= 1024:
        raise ValueError(f"threads: 1 to 1024 are wanted, {threads!r} is given")
    return int(threads)
