"""Arrays of doubles out of whatever people pass, and results of the kind that they passed."""
from __future__ import annotations

import sys
from typing import Any

import numpy as np
from numpy.typing import NDArray

Doubles = NDArray[np.float64]


def pandas_types(*names: str) -> tuple[type, ...]:
    """Classes of pandas; none where nobody has imported it, for then nobody has such an object."""
    pandas = sys.modules.get("pandas")
    return tuple(getattr(pandas, name) for name in names) if pandas else ()


def doubles(values: Any, name: str) -> Doubles:
    """The numbers as contiguous doubles in one dimension: the memory of `values` itself where it is so already."""
    if isinstance(values, pandas_types("Series", "Index")):
        array = _of_pandas(values, name)
    elif isinstance(values, np.ma.MaskedArray):
        array = np.where(np.ma.getmaskarray(values), np.nan, values.data)  # type: ignore[no-untyped-call]
    elif isinstance(values, (str, bytes, dict, set)) or values is None:
        raise TypeError(f"{name}: a series of numbers is wanted, {type(values).__name__} is given")
    else:
        array = _asarray(values, name)
    if array.ndim != 1:
        raise ValueError(f"{name}: one dimension is wanted, it has {array.ndim}")
    if array.dtype.kind not in "biufO":
        raise TypeError(f"{name}: numbers are wanted, it holds {array.dtype}")
    try:
        return np.require(array, dtype=np.float64, requirements=["C", "A", "E"])
    except (TypeError, ValueError, OverflowError) as error:
        raise TypeError(f"{name}: numbers are wanted, {error}") from None


def _asarray(values: Any, name: str) -> NDArray[Any]:
    try:
        array = np.asarray(values)
    except (TypeError, ValueError, OverflowError) as error:
        raise TypeError(f"{name}: a series of numbers is wanted: {error}") from None
    if array.ndim == 0:
        raise TypeError(f"{name}: a series of numbers is wanted, {type(values).__name__} is given")
    return array


def _of_pandas(values: Any, name: str) -> NDArray[Any]:
    kind = getattr(values.dtype, "kind", "O")
    if isinstance(values.dtype, np.dtype):
        return np.asarray(values)
    if kind not in "biuf":
        raise TypeError(f"{name}: numbers are wanted, it holds {values.dtype}")
    converted: NDArray[Any] = values.to_numpy(dtype=np.float64, na_value=np.nan)
    return converted


def index_of(values: Any, like: Any) -> Any:
    """The index that results take: that of the first argument that has one. Others must have the same."""
    if not isinstance(values, pandas_types("Series")):
        return like
    if like is None:
        return values.index
    if like is not values.index and not like.equals(values.index):
        raise ValueError("the series have different indexes: align them first")
    return like


def wrapped(array: Doubles, index: Any, name: str) -> Any:
    """The array as a series over that index."""
    import pandas

    return pandas.Series(array, index=index, name=name, copy=False)


def frame(columns: dict[str, Any], index: Any = None) -> Any:
    """A table of results: a DataFrame."""
    try:
        import pandas
    except ImportError:
        raise ImportError("tables are pandas' DataFrames: install pandas") from None
    return pandas.DataFrame(columns, index=index)
