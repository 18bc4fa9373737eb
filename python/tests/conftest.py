from pathlib import Path

import numpy as np
import pytest

import qvlib60 as qv

DATA = Path(__file__).resolve().parents[2] / "data"


@pytest.fixture(scope="session")
def data():
    return DATA


@pytest.fixture(scope="session")
def spx():
    return qv.read(DATA / "text/SPX.CSV")


def random_columns(size, seed=1):
    """Date, open .. open interest of a random walk."""
    rng = np.random.default_rng(seed)
    close = 100 * np.exp(np.cumsum(rng.normal(0, 0.02, size)))
    open = close * np.exp(rng.normal(0, 0.01, size))
    spread = np.abs(rng.normal(0, 0.01, size)) * close
    volume = np.floor(rng.uniform(1e3, 1e6, size))
    return [np.arange(40000.0, 40000.0 + size), open, np.maximum(open, close) + spread,
            np.minimum(open, close) - spread, close, volume, np.floor(volume / 3)]


def bars_of(columns):
    names = ("date", "open", "high", "low", "close", "volume", "open_interest")
    return qv.Bars(**dict(zip(names, columns)))
