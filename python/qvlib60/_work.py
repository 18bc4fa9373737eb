"""The work of screens and sweeps in blocks: what a worker is sent, what it computes, how a run is split."""
from __future__ import annotations

import hashlib
import json
import time
from dataclasses import dataclass, field, replace
from typing import Any, Callable, Optional, Sequence

import numpy as np

from . import _core
from ._settings import Sets
from .bars import Bars

#: Seconds of computing that a block has at least.
UNIT = 0.5

Raw = dict[str, Any]


@dataclass(frozen=True)
class Block:
    """Sources from one number to before another, and of each set of parameters the values likewise."""

    first: int
    end: int
    ranges: tuple[tuple[int, int], ...] = ()

    def combinations(self) -> int:
        return int(np.prod([b - a for a, b in self.ranges], dtype=np.int64))


@dataclass(frozen=True)
class Job:
    """All that a worker needs to know of a run but the block."""

    kind: str  # screen, sweep, walk
    sources: tuple[tuple[str, Any], ...]
    load: Optional[Callable[[str], Any]] = None
    rules: tuple[str, ...] = ()
    sets: Sets = field(default_factory=list)
    settings: dict[str, Any] = field(default_factory=dict)
    rank: str = ""
    stretches: str = ""
    adjusted: bool = False
    asof: float = 0.0

    def fingerprint(self) -> str:
        """Tells a run from another one: all but the loader, which has no text."""
        told = [self.kind, [name for name, _ in self.sources], self.rules, self.sets, self.settings, self.rank,
                self.stretches, self.adjusted, self.asof, _core.version]
        return hashlib.sha256(json.dumps(told, default=str).encode()).hexdigest()

    def of(self, first: int, end: int) -> Job:
        """The same for some of the sources alone, which is all that travels to a worker."""
        return replace(self, sources=self.sources[first:end])


def run(job: Job, block: Block) -> Raw:
    """Computes a block: rows with the numbers of sources and combinations of the whole run. Called on workers."""
    sources = [(name, job.load(name) if job.load else place) for name, place in job.sources]
    sources = [(name, place if isinstance(place, str) else _set_of(place)) for name, place in sources]
    if job.kind == "screen":
        raw = _core.screen(sources, job.rules[0], job.asof, job.adjusted, 1)
        return {**raw, "rows": {name: _plain(column) for name, column in raw["rows"].items()}}
    sets = [(name, values[a:b]) for (name, values), (a, b) in zip(job.sets, block.ranges)]
    arguments = sources, list(job.rules), sets, job.settings, job.rank if job.kind == "walk" else "", job.adjusted
    raw = _core.walk(*arguments, job.stretches, 1, None) if job.kind == "walk" else _core.sweep(*arguments, 1, None)
    rows = raw["rows"]
    rows["combination"] = _renumbered(rows["combination"], job.sets, block.ranges)
    rows["source"] = rows["source"] + block.first
    return {"rows": {name: _plain(column) for name, column in rows.items()}, "failed": raw["failed"]}


def _set_of(bars: Any) -> _core.BarSet:
    return bars._set if isinstance(bars, Bars) else Bars(bars)._set


def _plain(column: Any) -> list[Any]:
    return list(column.tolist()) if isinstance(column, np.ndarray) else list(column)


def _renumbered(local: Any, sets: Sets, ranges: Sequence[tuple[int, int]]) -> Any:
    """Numbers of combinations among all values, of numbers among those of the ranges."""
    whole, stride, rest = np.zeros(len(local), np.int64), 1, np.asarray(local, np.int64)
    for (_, values), (a, b) in zip(reversed(sets), reversed(ranges)):
        whole += (rest % (b - a) + a) * stride
        rest = rest // (b - a)
        stride *= len(values)
    return whole


def measured(job: Job) -> float:
    """Seconds that one source takes with one combination; a small part of the work is done to tell."""
    sample = [(0, min(len(values), 2)) for _, values in job.sets]
    spent, count = 0.0, 0
    for k in range(min(len(job.sources), 8)):
        block = Block(k, k + 1, tuple(sample))
        begin = time.perf_counter()
        try:
            run(job.of(k, k + 1), block)
        except (OSError, ValueError):
            pass  # it fails again where its turn comes
        spent += time.perf_counter() - begin
        count += block.combinations()
        if spent > 0.3:
            break
    return spent / max(count, 1)


def split(job: Job, seconds: float) -> list[Block]:
    """Blocks of at least UNIT seconds, but for what is left over."""
    whole = tuple((0, len(values)) for _, values in job.sets)
    of_file = Block(0, 1, whole).combinations() * seconds
    if of_file < 2 * UNIT:
        files = max(1, int(np.ceil(UNIT / max(of_file, 1e-9))))
        ends = range(0, len(job.sources), files)
        return [Block(first, min(first + files, len(job.sources)), whole) for first in ends]
    parts = _halved(whole, 2 * UNIT / seconds)
    return [Block(k, k + 1, part) for k in range(len(job.sources)) for part in parts]


def _halved(ranges: tuple[tuple[int, int], ...], most: float) -> list[tuple[tuple[int, int], ...]]:
    if Block(0, 1, ranges).combinations() < most:
        return [ranges]
    k = max(range(len(ranges)), key=lambda i: ranges[i][1] - ranges[i][0])
    a, b = ranges[k]
    if b - a < 2:
        return [ranges]
    middle = (a + b) // 2
    return [part for half in ((a, middle), (middle, b))
            for part in _halved(ranges[:k] + (half,) + ranges[k + 1:], most)]
