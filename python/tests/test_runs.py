"""Formulas, backtests, the simulator, batches, screens and sweeps."""
import copy
import pickle
import subprocess
from pathlib import Path

import numpy as np
import pytest

import qvlib60 as qv
from conftest import bars_of, random_columns

TOOL = Path(__file__).resolve().parents[2] / "build/release/cli/qv"
CROSSING = {"long": "sma($fast) crosses above sma($slow)", "exit": "sma($fast) crosses below sma($slow)"}


def test_formulas(spx):
    rule = qv.Formula("rsi($n) < 30 and close > sma(200)", n=14)
    assert np.array_equal(rule(spx), qv.eval("rsi($N) < 30 and close > sma(200)", spx, n=14), equal_nan=True)
    assert rule.need() == qv.need("sma(200) + rsi(14)") and rule.need().first == 200
    assert qv.need("dpo").repaints and qv.need("obv").settled is None
    out = np.empty(len(spx))
    assert qv.eval("close", spx, out=out) is out and np.array_equal(out, spx.close)
    for text, values, message in (("rsii(14)", {}, "did you mean rsi"), ("sma($n)", {}, r"\$n has no value"),
                                  ("close", {"n": 1}, r"no parameter \$n"), ("sma($n)", {"n": -3}, "refuses"),
                                  ("close >", {}, "ends"), ("(" * 300, {}, ""), ("x\0y", {}, "")):
        with pytest.raises((TypeError, ValueError), match=message):
            qv.eval(text, spx, **values)
    with pytest.raises(ValueError, match="overlap"):
        qv.eval("sma(3)", qv.Bars(close=out), out=out)


@pytest.mark.skipif(not TOOL.exists(), reason="the tool is not built")
def test_a_backtest_is_the_tools(spx, data):
    result = qv.backtest(spx, **CROSSING, stop="2 * atr(14)", cost=0.0005, fixed=1, fast=20, slow=100)
    arguments = [TOOL, "backtest", data / "text/SPX.CSV", "--long", CROSSING["long"], "--exit", CROSSING["exit"],
                 "--stop", "2 * atr(14)", "--cost", "5bp", "--fixed", "1", "--set", "fast=20", "--set", "slow=100"]
    report = subprocess.run(arguments, capture_output=True, text=True, check=True).stdout
    assert report.split("\n\n", 1)[1].replace(str(arguments[2]), "SPX") == str(result)
    trades = subprocess.run([*arguments, "--trades", "--csv"], capture_output=True, text=True, check=True).stdout
    rows = [line.split(",") for line in trades.splitlines()[1:]]
    assert [float(row[-1]) for row in rows] == pytest.approx(result.trades.result.tolist(), rel=1e-9)


def test_what_a_backtest_tells(spx):
    result = qv.backtest(spx, **CROSSING, fast=20, slow=100)
    assert result.trade_count == len(result.trades) == result.net.trades
    assert result.equity.equity.iloc[-1] == result.final_equity == pytest.approx(10000 + result.trades.result.sum())
    assert (result.orders.state == "filled").all() and result.hold.longest_drawdown > 1000
    for arguments, message in (({}, "nothing is ever entered"), ({"long": "dpo > 0"}, "later bars"),
                               ({"long": "sma($n) > 0"}, r"\$n has no value"), ({"long": "close > 0", "m": 1}, r"\$m"),
                               ({"long": "close > 0", "size": 0}, "size"), ({"long": 3}, "long: a formula"),
                               ({"long": "close > 0", "cost": float("nan")}, "cost")):
        with pytest.raises((TypeError, ValueError), match=message):
            qv.backtest(spx, **arguments)
    with pytest.raises(ValueError, match="needs bars with"):
        qv.backtest(qv.Bars(close=np.ones(9)), long="close > 0")


def test_the_simulator_does_what_rules_do(spx):
    rule = qv.backtest(spx, **CROSSING, fast=20, slow=100)
    fast, slow = qv.sma(spx, 20), qv.sma(spx, 100)

    def step(sim):
        i = sim.bar
        if i and fast[i] > slow[i] and fast[i - 1] <= slow[i - 1] and not sim.position:
            sim.buy_to_open()
        elif i and fast[i] < slow[i] and fast[i - 1] >= slow[i - 1] and sim.position:
            sim.sell_to_close()

    sim = qv.simulate(spx, step)
    assert np.array_equal(sim.equity(), rule.equity.equity) and sim.figures().sharpe == rule.sharpe
    assert sim.trades.entered.equals(rule.trades.entered) and "Total net profit" in str(sim)

    waiting = qv.Simulator(spx, commission=1)
    for call in (waiting.buy_to_open, waiting.sell_to_close):
        with pytest.raises(ValueError, match="call next"):
            call()
    waiting.next()
    waiting.sell_to_open("s", 2, 1e6, type="limit", time="gtc")
    assert waiting.orders == [("s", "entry", "sell", 2, 1e6, "limit", "gtc")]
    waiting.cancel()
    assert not waiting.orders and waiting.positions == [] and not waiting.equity(100)[0] - 100
    for wrong in ({"volume": 0}, {"type": "stop"}, {"type": "some"}, {"time": "week"}, {"volume": 2**40}):
        with pytest.raises((TypeError, ValueError)):
            waiting.buy_to_open(**wrong)
    with pytest.raises(ZeroDivisionError):
        qv.simulate(spx, lambda sim: 1 / 0)


def test_a_batch_is_each_formula_over_each_security():
    sets = [bars_of(random_columns(300, seed)) for seed in range(7)]
    formulas = ["sma($n)", "bollinger.upper", "rsi(14) < 30"]
    for threads in (1, 3):
        got = qv.batch(sets, formulas, threads=threads, n=5)
        for formula, rows in got.items():
            for bars, row in zip(sets, rows):
                values = {"n": 5} if "$n" in formula else {}
                assert np.array_equal(row, qv.eval(formula, bars, **values), equal_nan=True)
    out = np.empty((1, 7, 300))
    assert np.shares_memory(qv.batch(sets, "close", out=out)["close"], out) and np.array_equal(out[0, 3], sets[3].close)
    uneven = qv.batch([sets[0], sets[1][:10]], "close")["close"]
    assert [len(row) for row in uneven] == [300, 10]
    closes = np.array([bars.close for bars in sets])
    assert np.array_equal(qv.batch(closes, "rsi(14)")["rsi(14)"], qv.batch(sets, "rsi(14)")["rsi(14)"], equal_nan=True)
    assert qv.batch([], "close")["close"].shape == (0, 0)
    with pytest.raises(ValueError, match="no high, low"):
        qv.batch(closes, "atr(14)")
    with pytest.raises(ValueError, match="out overlaps"):
        block = np.ones((1, 2, 9))
        qv.batch(block[0], "sma(2)", out=block)


def test_a_screen(tmp_path, data):
    for seed in range(5):
        bars_of(random_columns(50 + 50 * seed, seed)).write(tmp_path / f"S{seed}.CSV")
    (tmp_path / "S9.CSV").write_text("nonsense\n")
    found = qv.screen(tmp_path, "close > sma(90)")
    assert (found.read, found.too_short, found.bars_needed) == (5, 1, 90) and len(found.unreadable) == 1
    expected = [f"S{k}" for k in range(1, 5) if qv.eval("close > sma(90)", qv.read(tmp_path / f"S{k}.CSV"))[-1]]
    assert found.matches.symbol.tolist() == expected and "sma(90)" in found.matches
    before = qv.screen([tmp_path / "S4.CSV"], "close > 0", asof=40009.0)
    assert before.matches.date[0] == qv.dates.datetime64(40009.0)
    with pytest.raises(ValueError, match=r"\$n"):
        qv.screen(tmp_path, "close > sma($n)")


def test_a_sweep_is_a_backtest_for_each_combination(spx):
    calls = []
    result = qv.sweep({"A": spx, "B": spx[1000:]}, **CROSSING, parameters={"fast": [5, 10], "slow": "50:100:50"},
                      cost=0.001, progress=calls.append)
    assert result.rows[["file", "fast", "slow"]].values.tolist()[:3] == [["A", 5, 50], ["A", 5, 100], ["A", 10, 50]]
    for row in result.rows.itertuples():
        one = qv.backtest(spx if row.file == "A" else spx[1000:], **CROSSING, cost=0.001, fast=row.fast, slow=row.slow)
        assert (row.equity, row.sharpe, row.trades) == (one.final_equity, one.sharpe, one.trade_count)
    assert len(result.medians) == 4
    ranked = qv.sweep(spx, **CROSSING, parameters={"fast": range(5, 30, 5), "slow": [50, 100]}, rank="sharpe", threads=1)
    assert ranked.rows.sharpe.is_monotonic_decreasing
    walk = qv.sweep(spx, **CROSSING, parameters={"fast": range(5, 30, 5), "slow": [50, 100]}, walk="5y/5y")
    tuned = qv.sweep(spx["2000":"2004"], **CROSSING, parameters={"fast": range(5, 30, 5), "slow": [50, 100]},
                     rank="sharpe").rows.iloc[0]
    assert walk.rows.tuned_sharpe[0] == tuned.sharpe and walk.rows.fast[0] == tuned.fast
    for arguments, message in (({"parameters": {"fast": []}}, "fast: numbers"), ({"parameters": {}}, r"fast"),
                               ({"parameters": {"fast": 1, "slow": 2, "x": 3}}, "x"),
                               ({"parameters": {"fast": 0, "slow": 2}}, "out of range"),
                               ({"parameters": {"fast": 1, "slow": 2}, "rank": "luck"}, "no such figure"),
                               ({"parameters": {"fast": 1, "slow": 2}, "walk": "5x"}, "5x")):
        with pytest.raises((TypeError, ValueError), match=message):
            qv.sweep(spx, **CROSSING, **arguments)


def test_a_sweep_can_be_stopped(spx):
    def stop(part):
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        qv.sweep(spx, **CROSSING, parameters={"fast": range(2, 200), "slow": range(200, 400)}, progress=stop)


def test_a_stream_gives_the_bits_of_the_whole_call(spx):
    for text in ("rsi(14)", "bollinger.upper + weekly(close)", "close crosses above sma($n)"):
        values = {"n": 9} if "$n" in text else {}
        whole, stream = qv.eval(text, spx, **values), qv.Stream(text, **values)
        got = [stream.update(spx[:1000]), stream.update(spx[1000:1001]), stream.update(spx[1001:2000])]
        again = pickle.loads(pickle.dumps(stream))
        assert np.array_equal(np.concatenate(got), whole[:2000], equal_nan=True) and len(again) == 2000
        bar = spx[2000]
        for one in (stream, again, copy.copy(stream)):
            for step in (one.peek, one.update, one.replace_last):
                assert step(**bar._asdict()) == whole[2000]
    stream = qv.Stream("atr(2)")
    for named, message in (({"close": 1}, "high is missing"), ({"closes": 1}, "columns by name"), ({}, "high is missing"),
                           ({"high": [1, 2], "low": [1], "close": [1, 2]}, "low"), ({"high": "a"}, "high")):
        with pytest.raises((TypeError, ValueError), match=message):
            stream.update(**named)
    with pytest.raises(ValueError, match="no bar yet"):
        stream.replace_last(high=1, low=1, close=1)
    with pytest.raises(ValueError, match="later bars"):
        qv.Stream("dpo(5)")
    block = stream.__reduce__()[1][1]
    for damaged in (b"", block[:-1], block[::-1], bytes(len(block))):
        with pytest.raises(ValueError, match="damaged"):
            qv._core.load_stream(stream.formula._open, damaged)


def test_options_bonds_patterns_charts(spx):
    call = qv.option("call", underlying=100, strike=100, days=90, rate=5, volatility=20)
    put = qv.option("put", underlying=100, strike=100, days=90, rate=5, volatility=20)
    assert call - put == pytest.approx(100 - 100 * np.exp(-0.05 / 4))
    spread = qv.option("bull-call", underlying=100, strike=[95, 105], premium=[7, 2])
    assert spread.max_loss == 5 and spread.max_profit == 5 and spread.lower_breakeven == 100
    for wrong in ({"strike": []}, {"strike": [1, 2, 3]}, {"strike": -1}, {"strike": float("nan")}):
        with pytest.raises(ValueError):
            qv.option("bull-call", underlying=100, **wrong)
    with pytest.raises(ValueError, match="did you mean bull-call"):
        qv.option("bul-call", underlying=100, strike=[95, 105])
    bond = qv.bond(coupon=4, maturity="2030-01-01", settlement="2020-01-01", yield_=4)
    assert bond.price == pytest.approx(100, abs=0.5) and bond.current_yield == pytest.approx(4, abs=0.1)
    soldiers = qv.patterns(spx, "three white")
    assert set(soldiers.pattern) == {"Three White Soldiers"} and len(soldiers) == np.nansum(
        qv.eval("candle('Three White Soldiers')", spx))
    chart = qv.pnf(spx, box=50)
    assert str(chart).count("X") == pytest.approx((chart.columns.volume[chart.columns.open_interest > 0] + 1).sum(), rel=0.2)
    with pytest.raises(ValueError, match="never moves a box"):
        qv.pnf(spx, box=1e6)


def test_charts(spx, tmp_path):
    picture = qv.chart(spx, "sma(50)", "rsi(14)", last=100, volume=True, theme="dark")
    assert picture._repr_svg_() == picture.svg() and "rsi(14)" in picture.svg() and len(picture.svg()) > 10000
    picture.save(tmp_path / "a.svg")
    assert (tmp_path / "a.svg").read_text() == picture.svg()
    picture.save(tmp_path / "a.png", scale=2)
    assert (tmp_path / "a.png").read_bytes()[1:4] == b"PNG"
    assert qv.chart(spx, since="2019", until="2019").svg() == qv.chart(spx, since="2019-01-02", until="2019-12-31").svg()
    assert "rsic(14)" in qv.chart(spx, "rsic(14)", against=spx["2010":]).svg()
    assert "<svg" in qv.backtest(spx, **CROSSING, fast=20, slow=100).chart().svg()
    for arguments, named, message in ((("rsii",), {}, "did you mean rsi"), ((), {"kind": "pie"}, "kind: candles"),
                                      ((), {"since": "2050"}, "no bars"), ((), {"width": 0}, "width")):
        with pytest.raises(ValueError, match=message):
            qv.chart(spx, *arguments, **named)
    with pytest.raises(ValueError, match="end"):
        picture.save(tmp_path / "a.gif")
