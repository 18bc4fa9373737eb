"""Securities by name: of files, directories, bars and tables."""
from __future__ import annotations

import os
from typing import Any, Iterable, Mapping, Union

from . import _core
from ._arrays import pandas_types
from .bars import Bars

Path = Union[str, "os.PathLike[str]"]


def files_of(path: Path) -> list[tuple[str, str]]:
    """Symbols and files: one, or those of a directory."""
    text = os.fspath(path)
    if os.path.isdir(text):
        return [(source[2], source[0]) for source in _core.sources(text, "")]
    if not os.path.exists(text) and not os.path.isdir(os.path.dirname(text) or "."):
        raise FileNotFoundError(f"{text}: no such file or directory")
    return [(os.path.splitext(os.path.basename(text))[0], text)]


def sources_of(data: Any, *, symbols: bool = False) -> list[tuple[str, Any]]:
    """Names and what is behind them: a file, or a bar set. Files are named by their paths, or by their symbols."""
    if isinstance(data, Mapping):
        return [(str(name), _bars_of(value)._set) for name, value in data.items()]
    single = isinstance(data, (str, os.PathLike, Bars, *pandas_types("DataFrame")))
    if not single and not isinstance(data, Iterable):
        raise TypeError(f"data: files, directories or bars are wanted, {type(data).__name__} is given")
    sources: list[tuple[str, Any]] = []
    for k, item in enumerate([data] if single else data):
        if isinstance(item, (str, os.PathLike)):
            sources += [(symbol if symbols else file, file) for symbol, file in files_of(item)]
        else:
            bars = _bars_of(item)
            sources.append((bars.symbol or f"bars {k + 1}", bars._set))
    return sources


def _bars_of(value: Any) -> Bars:
    return value if isinstance(value, Bars) else Bars(value)
