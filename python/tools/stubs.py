"""Writes the stubs of the modules that are made from the catalogue: indicators.pyi and results.pyi.

usage: stubs.py PACKAGE     (the package's folder, in which it can be imported)
"""
import sys
from pathlib import Path

from qvlib60 import catalogue
from qvlib60.results import class_name

INDICATORS = '''"""One function for each calculation of the catalogue."""
from typing import Any, Literal, Optional, Sequence, Union, overload

from numpy.typing import NDArray

from . import results
from ._arrays import Doubles

_Array = Union[NDArray[Any], Sequence[float]]
'''
RESULTS = '''"""The named tuples that calculations with several outputs give."""
from typing import Any, NamedTuple

def class_name(name: str) -> str: ...
def result_type(name: str) -> Any: ...
'''


def type_of(parameter: catalogue.Parameter) -> str:
    if parameter.choices:
        return "Union[str, int]"
    if parameter.kind == "date":
        return "Any"
    return "int" if parameter.is_integer else "float"


def functions(entry: catalogue.Calculation) -> str:
    """One function; where it takes series, first as it is for arrays."""
    numbers = [f"{p.name}: {type_of(p)} = {p.default!r}" for p in entry.parameters]
    one = len(entry.outputs) == 1
    result = "Any" if one else f"results.{class_name(entry.name)}"
    out = "Doubles" if one else "Sequence[Doubles]"

    def function(data: list[str], result: str) -> str:
        arguments = ", ".join([*data, *numbers, "*", "start: int = 0", f"out: Optional[{out}] = None"])
        return f"def {entry.name}({arguments}) -> {result}: ...\n"

    names = catalogue.data_names(entry)
    text = function([f"{name}: Any" for name in names], result)
    if entry.bars or not one:
        if len(entry.inputs) > 1:
            return "@overload\n" + text + "@overload\n" + function(["bars: Any, /"], result)
        return text
    overloads = [function([f"{name}: _Array" for name in names], "Doubles"), text]
    if len(entry.inputs) > 1:
        overloads.append(function(["bars: Any, /"], result))
    return "".join("@overload\n" + overload for overload in overloads)


def result_class(entry: catalogue.Calculation) -> str:
    fields = "".join(f"    {output.name}: Any\n" for output in entry.outputs)
    return f"\nclass {class_name(entry.name)}(NamedTuple):\n{fields}"


def main() -> None:
    package = Path(sys.argv[1])
    entries = catalogue.calculations()
    several = [entry for entry in entries if len(entry.outputs) > 1]
    names = ", ".join(repr(entry.name) for entry in entries)
    indicators = [INDICATORS, f"__all__ = [{names}]\n\n", *map(functions, entries),
                  "\ndef calculation_of(name: str) -> object: ...\n"]
    (package / "indicators.pyi").write_text("".join(indicators))
    (package / "results.pyi").write_text(RESULTS + "".join(map(result_class, several)))


if __name__ == "__main__":
    main()
