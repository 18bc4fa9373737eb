"""Screens and sweeps by worker processes: the rows that one process gets, whatever happens to the workers."""
import os
import signal
import warnings

import pytest

import qvlib60 as qv
from conftest import bars_of, random_columns
from qvlib60 import _work, cluster

distributed = pytest.importorskip("distributed")
RULES = {"long": "sma($fast) crosses above sma($slow)", "exit": "sma($fast) crosses below sma($slow)"}


@pytest.fixture(scope="module")
def client():
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None,
                                      silence_logs=50) as local, distributed.Client(local) as made:
            yield made


@pytest.fixture(scope="module")
def prices(tmp_path_factory):
    folder = tmp_path_factory.mktemp("prices")
    for seed in range(4):
        bars_of(random_columns(2000, seed)).write(folder / f"S{seed}.CSV")
    (folder / "X.CSV").write_text("nonsense\n")
    return folder


def same(a, b):
    return a.reset_index(drop=True).equals(b.reset_index(drop=True))


@pytest.fixture(autouse=True)
def small_units(monkeypatch):
    """Blocks of less than eight combinations, however fast the machine is."""
    monkeypatch.setattr(_work, "UNIT", 0.02)
    monkeypatch.setattr(cluster, "measured", lambda job: 0.005)


@pytest.mark.filterwarnings("ignore")
def test_a_sweep_is_that_of_one_process(client, prices, tmp_path, capfd):
    parameters = {"fast": range(2, 12), "slow": [20, 40, 60]}
    alone = qv.sweep(prices, **RULES, parameters=parameters, rank="sharpe")
    small = cluster.sweep(client, prices, **RULES, parameters=parameters, rank="sharpe")
    assert "done here" in capfd.readouterr().err and same(small.rows, alone.rows)

    record, parts = tmp_path / "rows.jsonl", []
    arguments = dict(**RULES, parameters=parameters, rank="sharpe", rows=record, force=True)
    sent = cluster.sweep(client, prices, **arguments, progress=parts.append)
    assert same(sent.rows, alone.rows) and same(sent.medians, alone.medians) and sent.failed == alone.failed
    assert parts == sorted(parts) and parts[-1] == 1 and len(parts) > 4

    # An interruption cut the record short: only what is missing is computed.
    lines = record.read_text().splitlines(keepends=True)
    record.write_text("".join(lines[:-2]) + lines[-2][:30])
    parts.clear()
    assert same(cluster.sweep(client, prices, **arguments, progress=parts.append).rows, alone.rows)
    assert len(parts) == 2
    with pytest.raises(ValueError, match="another run"):
        cluster.sweep(client, prices, **{**arguments, "rank": "growth"})


@pytest.mark.filterwarnings("ignore")
def test_walks_and_screens(client, prices):
    parameters = {"fast": range(2, 8), "slow": [20, 40]}
    alone = qv.sweep(prices, **RULES, parameters=parameters, walk="24m/12m")
    sent = cluster.sweep(client, prices, **RULES, parameters=parameters, walk="24m/12m", force=True, progress=False)
    assert same(sent.rows, alone.rows) and sent.failed == alone.failed and len(sent.rows) > 4
    rule = "rsi(14) < 60 and close > 0"
    one, many = qv.screen(prices, rule), cluster.screen(client, prices, rule, force=True, progress=False)
    assert same(one.matches, many.matches) and one.unreadable == many.unreadable and one.read == many.read == 4
    loader = cluster.Loader(["S1", "S3"], lambda name: qv.read(prices / f"{name}.CSV"))
    loaded = cluster.sweep(client, loader, **RULES, parameters=parameters, force=True, progress=False)
    by_name = qv.sweep({n: qv.read(prices / f"{n}.CSV") for n in loader.names}, **RULES, parameters=parameters)
    assert same(loaded.rows, by_name.rows)
    assert cluster.screen(client, loader, "close > 0", force=True).matches.symbol.tolist() == ["S1", "S3"]
    with pytest.raises(ValueError, match="out of range"):
        cluster.sweep(client, prices, **RULES, parameters={"fast": 0, "slow": 3}, force=True)
    with pytest.raises(TypeError, match="bars do not travel"):
        cluster.sweep(client, qv.read(prices / "S1.CSV"), **RULES, parameters=parameters)


@pytest.mark.filterwarnings("ignore")
def test_a_worker_is_killed_in_the_middle(client, prices):
    parameters = {"fast": range(2, 40), "slow": range(50, 100, 5)}
    alone = qv.sweep(prices, **RULES, parameters=parameters)
    workers = list(client.run(os.getpid).values())
    killed = []

    def kill_one(part):
        if not killed and part > 0.2:
            os.kill(workers[0], signal.SIGKILL)
            killed.append(part)

    sent = cluster.sweep(client, prices, **RULES, parameters=parameters, force=True, progress=kill_one)
    assert killed and killed[0] < 0.9
    assert same(sent.rows, alone.rows) and same(sent.medians, alone.medians)
