"""The examples of the pages and of the modules' own texts, as they run."""
import doctest
import importlib
import pkgutil
from pathlib import Path

import pytest

import qvlib60

ROOT = Path(__file__).resolve().parents[2]
FLAGS = doctest.NORMALIZE_WHITESPACE | doctest.ELLIPSIS


@pytest.mark.parametrize("page", ["docs/python.md", "python/README.md"])
def test_pages(page, monkeypatch):
    monkeypatch.chdir(ROOT)
    failed, tried = doctest.testfile(str(ROOT / page), module_relative=False, optionflags=FLAGS)
    assert tried and not failed


def test_modules():
    tried = 0
    for module in pkgutil.iter_modules(qvlib60.__path__):
        result = doctest.testmod(importlib.import_module(f"qvlib60.{module.name}"), optionflags=FLAGS)
        assert not result.failed
        tried += result.attempted
    assert tried > 20
