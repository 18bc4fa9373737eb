"""One function for each calculation of the catalogue."""
from __future__ import annotations

from . import _core, catalogue

__all__ = _core.names()

for _entry in catalogue.calculations():
    _text = f"{_entry.name}{catalogue.signature(_entry)}\n--\n\n{catalogue.docstring(_entry)}"
    globals()[_entry.name] = _core.function(_entry.name, _text)


def calculation_of(name: str) -> object:
    """What a pickled function is bound to."""
    return _core.calculation(name)
