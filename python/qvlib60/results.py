"""The named tuples that calculations with several outputs give: results.Bollinger has upper, middle and lower."""
from __future__ import annotations

from collections import namedtuple
from typing import Any

from . import catalogue


def class_name(name: str) -> str:
    """Bollinger of bollinger."""
    return name[:1].upper() + name[1:]


def result_type(name: str) -> Any:
    """The class of a calculation's results."""
    return getattr(__import__(__name__, fromlist=["results"]), class_name(name))


def __getattr__(name: str) -> Any:
    try:
        entry = catalogue.info(name.lower())
    except ValueError:
        entry = None
    if entry is None or len(entry.outputs) < 2 or class_name(entry.name) != name:
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
    made = namedtuple(name, [output.name for output in entry.outputs])  # type: ignore[misc]
    made.__module__ = __name__
    made.__doc__ = f"{entry.title}: {', '.join(output.name for output in entry.outputs)}."
    globals()[name] = made
    return made
