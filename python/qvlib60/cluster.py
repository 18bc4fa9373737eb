"""Screens and sweeps on many processes or machines: on Dask's distributed scheduler, which runs on one laptop and on a
cluster alike.

    from distributed import Client
    from qvlib60 import cluster

    client = Client("scheduler:8786")          # or Client(), for the cores of this machine
    cluster.sweep(client, "prices", long="sma($fast) crosses above sma($slow)", ...,
                  parameters={"fast": range(2, 100), "slow": range(100, 300, 2)}, rows="run.jsonl")

The files have to lie at the same place everywhere: workers read them themselves, and only rows of figures travel. The
rows do not depend on how the work was split; the blocks of a worker that is lost are computed again. With rows=FILE
every block's rows are written as they come, and the same call goes on from there after an interruption.
"""
from __future__ import annotations

import json
import os
import sys
import time
from dataclasses import dataclass
from typing import Any, Callable, Iterable, Mapping, Optional, Sequence, Union

import numpy as np

from . import _core, dates as _dates, screens as _screens, sweeps as _sweeps
from ._settings import rule_texts, sets_of, settings_of
from ._work import Block, Job, Raw, measured, run, split
from .formulas import open_formula
from .screens import Screen
from .sources import Path, sources_of
from .sweeps import Sweep, Walk

__all__ = ["Loader", "screen", "sweep"]

#: Seconds of computing that a run has at least to be worth sending.
WORTH_SENDING = 60.0

Progress = Union[bool, Callable[[float], Any]]


@dataclass(frozen=True)
class Loader:
    """Securities by name, and the function that gives the bars of one. Workers call it."""

    names: Sequence[str]
    load: Callable[[str], Any]


# ---- Rows that were written -----------------------------------------------------------------------------


class _Record:
    """The blocks of a run and the rows that are known, in a file with a line for each; nothing without a file."""

    def __init__(self, path: Optional[Path], job: Job, plan: Callable[[], list[Block]]) -> None:
        self.path = os.fspath(path) if path is not None else None
        self.results: dict[int, Raw] = {}
        lines = self._lines()
        if lines and lines[0].get("run") != job.fingerprint():
            raise ValueError(f"{self.path}: holds the rows of another run")
        if lines:
            self.blocks = [Block(first, end, tuple((a, b) for a, b in ranges)) for first, end, ranges in lines[0]["blocks"]]
            self.results = {line["block"]: line["result"] for line in lines[1:]}
        else:
            self.blocks = plan()
        self._rewrite(job)

    def _lines(self) -> list[Any]:
        """What can be read: a line that an interruption cut short is the last one."""
        lines: list[Any] = []
        if self.path and os.path.exists(self.path):
            with open(self.path) as file:
                for text in file:
                    try:
                        lines.append(json.loads(text))
                    except ValueError:
                        break
        return lines

    def _rewrite(self, job: Job) -> None:
        if not self.path:
            return
        blocks = [(block.first, block.end, block.ranges) for block in self.blocks]
        with open(self.path + ".new", "w") as file:
            file.write(json.dumps({"run": job.fingerprint(), "blocks": blocks}) + "\n")
            for number, result in self.results.items():
                file.write(json.dumps({"block": number, "result": result}) + "\n")
        os.replace(self.path + ".new", self.path)

    def take(self, number: int, result: Raw) -> None:
        self.results[number] = result
        if self.path:
            with open(self.path, "a") as file:
                file.write(json.dumps({"block": number, "result": result}) + "\n")

    def missing(self) -> list[int]:
        return [number for number in range(len(self.blocks)) if number not in self.results]


# ---- Sending --------------------------------------------------------------------------------------------


class _Shown:
    """The progress: on standard error at most once a second, or handed to a function."""

    def __init__(self, progress: Progress, what: str) -> None:
        self.progress, self.what, self.last = progress, what, 0.0

    def __call__(self, done: int, of: int, workers: int) -> None:
        if callable(self.progress):
            self.progress(done / max(of, 1))
        elif self.progress and (time.monotonic() - self.last > 1.0 or done == of):
            self.last = time.monotonic()
            end = "\n" if done == of else "\r" if sys.stderr.isatty() else "\n"
            print(f"{self.what}: {done} of {of} blocks, {workers} workers", end=end, file=sys.stderr, flush=True)


def _send(client: Any, job: Job, record: _Record, progress: Progress) -> None:
    """Has the missing blocks computed. A block whose workers were lost is sent again; what a block raises is raised."""
    from distributed import as_completed
    from distributed.scheduler import KilledWorker

    shown = _Shown(progress, job.kind)
    all_blocks = len(record.blocks)

    def submit(number: int) -> Any:
        block = record.blocks[number]
        return client.submit(run, job.of(block.first, block.end), block, pure=False, retries=2)

    number_of = {submit(number): number for number in record.missing()}
    try:
        futures: Any = as_completed(list(number_of))  # type: ignore[no-untyped-call]
        for future in futures:
            number = number_of.pop(future)
            try:
                result = future.result()
            except KilledWorker:
                again = submit(number)
                number_of[again] = number
                futures.add(again)
                continue
            record.take(number, result)
            future.release()
            shown(len(record.results), all_blocks, len(client.scheduler_info()["workers"]))
    finally:
        client.cancel(list(number_of))


def _results(client: Any, job: Job, rows: Optional[Path], force: bool, progress: Progress) -> Optional[list[Raw]]:
    """The results of all blocks in their order; None where the work is too small to be sent."""
    known: list[float] = []

    def seconds() -> float:
        if not known:
            known.append(measured(job))
        return known[0]

    whole = Block(0, len(job.sources), tuple((0, len(values)) for _, values in job.sets))
    has_rows = rows is not None and os.path.exists(rows)
    if not force and not has_rows:
        work = seconds() * len(job.sources) * whole.combinations()
        if work < WORTH_SENDING:
            print(f"{job.kind}: about {work:.1f} s of work for one core, done here (force=True sends it all the same)",
                  file=sys.stderr)
            return None
    record = _Record(rows, job, lambda: split(job, seconds()))
    _send(client, job, record, progress)
    return [record.results[number] for number in range(len(record.blocks))]


# ---- Putting it together --------------------------------------------------------------------------------


def _job_of(kind: str, data: Any, **details: Any) -> Job:
    if isinstance(data, Loader):
        return Job(kind, tuple((str(name), None) for name in data.names), data.load, **details)
    sources = sources_of(data, symbols=kind == "screen")
    for name, place in sources:
        if not isinstance(place, str):
            raise TypeError(f"{name}: paths or a Loader are wanted: bars do not travel")
    return Job(kind, tuple((name, os.path.abspath(place)) for name, place in sources), **details)


def _local(data: Any) -> Any:
    return {name: data.load(name) for name in data.names} if isinstance(data, Loader) else data


def _columns(results: Iterable[Raw]) -> dict[str, Any]:
    columns: dict[str, list[Any]] = {}
    for result in results:
        for name, values in result["rows"].items():
            columns.setdefault(name, []).extend(values)
    return {name: np.asarray(values) if name != "symbol" else values for name, values in columns.items()}


def _failures(results: Iterable[Raw]) -> list[str]:
    return list(dict.fromkeys(message for result in results for message in result["failed"]))


def _ranked(rows: Raw, rank: str, by: Sequence[str]) -> Any:
    """The order of rows: the best value of a figure first; of equals, and without a figure, by these columns."""
    keys = [np.asarray(rows[name]) for name in reversed(by)]
    if rank:
        smaller = next(small for name, _, _, small in _core.figure_list() if name == rank.lower())
        values = np.asarray(rows[rank.lower()])
        keys += [values if smaller else -values, np.isnan(values)]
    return np.lexsort(keys)


def _medians(rows: Raw) -> Raw:
    """Over the sources, by combination. Not-a-numbers come last."""
    numbers = np.unique(rows["combination"])
    medians: Raw = {"combination": numbers}
    order = np.lexsort((rows["source"], rows["combination"]))
    groups = np.split(order, np.searchsorted(rows["combination"][order], numbers[1:]))
    for name, _, _, _ in _core.figure_list():
        values = []
        for group in groups:
            ordered = np.sort(rows[name][group])
            above, below = ordered[len(group) // 2], ordered[(len(group) - 1) // 2]
            values.append(below if below == above or len(group) % 2 else below + (above - below) / 2)
        medians[name] = np.asarray(values)
    return medians


def _best(rows: Raw, rank: str) -> Any:
    """Of each stretch of each source the row that was best when it was tuned, of equals the first combination."""
    keyed = {**rows, rank.lower(): rows[f"tuned_{rank.lower()}"]}
    order = _ranked(keyed, rank, ["combination"])
    stretches = np.stack([rows["source"], rows["tested_from"]])[:, order]
    _, first = np.unique(stretches, axis=1, return_index=True)
    return order[first]


def screen(client: Any, data: Union[Path, Iterable[Path], Loader], where: str, *, asof: Any = None,
           adjusted: bool = False, rows: Optional[Path] = None, force: bool = False,
           progress: Progress = True) -> Screen:
    """As qvlib60.screen, by the workers of a distributed.Client: over paths that every worker can read, or a Loader.

    Work of less than about a minute on one core is done here unless force is True. rows: a file to write each block's
    rows to, from which the same call goes on.
    """
    open_formula(where, {})
    day = 0.0 if asof is None else float(np.floor(_dates.number(asof)))
    job = _job_of("screen", data, rules=(where,), adjusted=adjusted, asof=day)
    results = _results(client, job, rows, force, progress)
    if results is None:
        return _screens.screen(_local(data), where, asof=asof, adjusted=adjusted)
    empty = _core.screen([], where, day, adjusted, 1)
    total = {name: sum(result[name] for result in results) for name in ("read", "too_short", "unknown")}
    unreadable = [message for result in results for message in result["unreadable"]]
    columns = _columns([empty, *results])
    return _screens.screen_of({**total, "rows": columns, "needed": empty["needed"], "unreadable": unreadable})


def sweep(client: Any, data: Union[Path, Iterable[Path], Loader], long: Optional[str] = None,
          exit: Optional[str] = None, short: Optional[str] = None, cover: Optional[str] = None,
          stop: Optional[str] = None, *, parameters: Mapping[str, Any], rank: str = "", walk: str = "",
          adjusted: bool = False, rows: Optional[Path] = None, force: bool = False, progress: Progress = True,
          **settings: Any) -> Union[Sweep, Walk]:
    """As qvlib60.sweep, by the workers of a distributed.Client: over paths that every worker can read, or a Loader.

    Work of less than about a minute on one core is done here unless force is True. rows: a file to write each block's
    rows to, from which the same call goes on.
    """
    texts = rule_texts({"long": long, "exit": exit, "short": short, "cover": cover, "stop": stop})
    sets, checked = sets_of(parameters), settings_of(**settings)
    rank = rank or ("sharpe" if walk else "")
    _core.check_sweep(texts, sets, checked, rank)
    job = _job_of("walk" if walk else "sweep", data, rules=tuple(texts), sets=sets, settings=checked, rank=rank,
                  stretches=walk, adjusted=adjusted)
    results = _results(client, job, rows, force, progress)
    if results is None:
        here: Union[Sweep, Walk] = _sweeps.sweep(_local(data), long, exit, short, cover, stop, parameters=parameters,
                                                 rank=rank, walk=walk, adjusted=adjusted, **settings)
        return here
    columns, names = _columns(results), [name for name, _ in job.sources]
    if walk:
        best = _best(columns, rank)
        chosen = {name: values[best] for name, values in columns.items()}
        order = _ranked(chosen, "", ["source", "tested_from"])
        return Walk(_sweeps.table_of({name: v[order] for name, v in chosen.items()}, names, sets), _failures(results))
    medians = _medians(columns) if len(names) > 1 else {name: v[:0] for name, v in columns.items() if name != "source"}
    order, of_medians = _ranked(columns, rank, ["source", "combination"]), _ranked(medians, rank, ["combination"])
    return Sweep(_sweeps.table_of({name: v[order] for name, v in columns.items()}, names, sets),
                 _sweeps.table_of({name: v[of_medians] for name, v in medians.items()}, names, sets),
                 _failures(results))
