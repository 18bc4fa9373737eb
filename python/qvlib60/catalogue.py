"""What the library can calculate, as data."""
from __future__ import annotations

from dataclasses import dataclass
from functools import lru_cache
from typing import Any, Optional, Union

from . import _core

__all__ = ["Calculation", "Output", "Parameter", "calculations", "info"]

_KINDS = ("period", "integer", "real", "method", "date", "choice")
_SERIES = ("date", "open", "high", "low", "close", "volume", "open_interest")
_PLACES = ("price", "panel")
_STYLES = ("line", "histogram", "dots", "band", "signal", "state")


@dataclass(frozen=True)
class Parameter:
    """A number that a calculation takes. `choices` are the names of the values 0, 1 .. where it has such."""

    name: str
    kind: str
    default: Union[int, float, str]
    least: float
    greatest: float
    choices: tuple[str, ...]
    is_integer: bool
    search: Optional[tuple[float, float, float]]


@dataclass(frozen=True)
class Output:
    """A series that a calculation gives. One that repaints looks at later bars."""

    name: str
    low: Optional[float]
    high: Optional[float]
    zones: tuple[float, ...]
    place: str
    style: str
    repaints: bool


@dataclass(frozen=True)
class Calculation:
    """An entry of the catalogue. `bars` is the number of bar sets that it takes, `series` what it reads of them;
    `inputs` are series by name. `first` and `settled` are bars, with the usual numbers: to the first value, and until
    it no longer depends on where the data began. None where the data decide."""

    name: str
    function: str
    title: str
    group: str
    summary: str
    source: str
    note: str
    bars: int
    series: tuple[str, ...]
    inputs: tuple[str, ...]
    parameters: tuple[Parameter, ...]
    outputs: tuple[Output, ...]
    main: str
    repaints: bool
    first: Optional[int]
    settled: Optional[int]


def _parameter(raw: dict[str, Any]) -> Parameter:
    default: Union[int, float, str] = raw["default"]
    if raw["choices"]:
        default = raw["choices"][int(raw["default"])]
    elif raw["is_integer"]:
        default = int(raw["default"])
    search = raw["search"] if raw["search"][2] else None
    return Parameter(raw["name"], _KINDS[raw["kind"]], default, raw["least"], raw["greatest"], raw["choices"],
                     raw["is_integer"], search)


def _output(raw: dict[str, Any]) -> Output:
    has_range = raw["low"] != raw["high"]
    low, high = (raw["low"], raw["high"]) if has_range else (None, None)
    return Output(raw["name"], low, high, raw["zones"], _PLACES[raw["place"]], _STYLES[raw["style"]], raw["repaints"])


@lru_cache(maxsize=None)
def _info(name: str) -> Calculation:
    raw = _core.entry(name)
    outputs = tuple(map(_output, raw["outputs"]))
    first = raw["first_valid"] + 1 if raw["first_valid"] >= 0 else None
    settled = first + raw["settle"] if first is not None and raw["settle"] >= 0 else None
    series = tuple(name for k, name in enumerate(_SERIES) if raw["series"] >> k & 1) if raw["bars"] else ()
    return Calculation(raw["name"], raw["function"], raw["title"], raw["group"], raw["summary"], raw["source"],
                       raw["note"], raw["bars"], series, tuple(name for name, _ in raw["inputs"]),
                       tuple(map(_parameter, raw["params"])), outputs, outputs[raw["main"]].name,
                       any(output.repaints for output in outputs), first, settled)


def info(name: Any) -> Calculation:
    """The catalogue's entry of a calculation: by its short or full name, in any case, or the function itself.

    >>> import qvlib60 as qv
    >>> qv.info("rsi").title
    'Relative Strength Index'
    >>> [p.name for p in qv.info("macd").parameters]
    ['p1', 'p2', 'signal']
    """
    name = getattr(name, "__name__", name)
    if not isinstance(name, str):
        raise TypeError(f"name: the name of a calculation is wanted, {type(name).__name__} is given")
    return _info(name)


def calculations(group: str = "") -> list[Calculation]:
    """All entries of the catalogue, or those of a group, in the order of their groups."""
    every = map(_info, _core.names())
    return [entry for entry in every if not group or entry.group.lower() == group.lower()]


# ---- Signatures and texts -------------------------------------------------------------------------------


def data_names(entry: Calculation) -> tuple[str, ...]:
    """The names of the arguments that are bars or series."""
    return ("bars", "other")[: entry.bars] + entry.inputs


def signature(entry: Calculation) -> str:
    """The signature without types: (series, p=14, *, start=0, out=None)."""
    parameters = [f"{p.name}={p.default!r}" for p in entry.parameters]
    return f"({', '.join([*data_names(entry), *parameters, '*', 'start=0', 'out=None'])})"


def _described(p: Parameter) -> str:
    if p.choices:
        shown = ", ".join(p.choices[:8]) + (" ..." if len(p.choices) > 8 else "")
        return f"{p.kind}: {shown}"
    return f"{p.kind}, {p.least:g} to {p.greatest:g}"


def docstring(entry: Calculation) -> str:
    """The documentation of the entry's function."""
    lines = [f"{entry.title}: {entry.summary[:1].lower() + entry.summary[1:]}", ""]
    if entry.bars:
        lines.append(f"Reads {', '.join(entry.series)} of the bars." if entry.series else "Takes bars.")
    lines += [f"{p.name}: {_described(p)}" for p in entry.parameters]
    if len(entry.outputs) > 1:
        lines.append(f"Gives {', '.join(output.name for output in entry.outputs)}.")
    repainting = [output.name for output in entry.outputs if output.repaints]
    if repainting:
        which = "" if len(entry.outputs) == 1 else f" ({', '.join(repainting)})"
        lines.append(f"Looks at later bars{which}: not for a backtest.")
    if entry.first is not None:
        settled = f", settled from bar {entry.settled} on" if entry.settled is not None else ""
        lines.append(f"First value at bar {entry.first} with the usual numbers{settled}.")
    if entry.note:
        lines.append(f"Note: {entry.note}")
    if entry.source:
        lines.append(f"Source: {entry.source}")
    arguments = ", ".join([*data_names(entry), *(str(p.default) if not p.choices else repr(p.default)
                                                 for p in entry.parameters)])
    lines += ["", f"    qv.{entry.name}({arguments})"]
    return "\n".join(lines)
