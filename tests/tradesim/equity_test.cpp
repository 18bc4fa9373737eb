// The equity of every bar and its figures: cases worked out by hand, and a loop that keeps the account
// itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect.h"
#include "support/spx.h"
#include "support/trading.h"

namespace qvtest {
namespace {

TEST(Equity, CountsClosedTradesAndOpenPositionsWithTheirCosts) {
  Backtest sys({10, 11, 13, 12, 15, 14});
  sys.slippage = 0.5;
  sys.commission = 1;
  Array out;
  EXPECT_EQ(qvEquity(&sys, 100, 0, &out), -1);  // no bar yet
  sys.next();
  sys.bar({buy("A", 4)});   // at 11
  sys.bar({});              // at 13: 4 * (2 - 0.5) - 2
  sys.bar({sell("X", 1)});  // 1 leaves at 12: 1 - 0.5 - 2 = -1.5; of 3 the same a contract: 3 * 0.5 - 2
  expectGives(qvEquity(&sys, 100, 0, &out), out, {100, 96, 104, 98}, 0);  // ends with the current bar
  sys.bar({sellShort("S", 2)});  // turns at 15: 3 * 3.5 - 2 closed, 2 * -0.5 - 2 open
  sys.bar({});                   // at 14: 2 * 0.5 - 2
  sys.next();                    // behind the last bar
  expectGives(qvEquity(&sys, 100, 0, out.fresh()), out, {100, 96, 104, 98, 104, 106});

  QvTradeFigures t;
  ASSERT_EQ(qvTradeFigures(&sys, 0, &t), 0);
  EXPECT_EQ(Items({t.grossProfit, t.grossLoss, t.profitFactor, t.expectancy}),
            Items({8.5, -1.5, 8.5 / 1.5, 3.5}));
  EXPECT_EQ(Items({1. * t.trades, 1. * t.barsHeld, t.exposure}), Items({2, 5, 500. / 6}));

  // A tenth of the traded value on both sides, of each contract: 0.1 * (11 + 12) and 0.1 * (11 + 15).
  ASSERT_EQ(qvTradeFigures(&sys, 0.1, &t), 0);
  EXPECT_NEAR(t.grossLoss, -1.5 - 2.3, 1e-12);
  EXPECT_NEAR(t.grossProfit, 8.5 - 3 * 2.6, 1e-12);
  sys.deductionRate = 0.5;  // of all of it
  ASSERT_EQ(qvEquity(&sys, 100, 0.1, &out), 0);
  EXPECT_NEAR(out[1], 100 + 0.5 * (4 * (-0.5 - 2.2) - 2), 1e-12);
  EXPECT_NEAR(out[5], 100 + 0.5 * (-3.8 + 0.7 + 2 * (1 - 0.5 - 2.9) - 2), 1e-12);
}

// Records that a caller has changed: what was not held within the bars counts for nothing.
TEST(Equity, LeavesOutWhatHasNoPlaceInTheBars) {
  const std::function<void(QvTrade&)> trades[] = {
      [](QvTrade& t) { t.position.entryBar = 99; }, [](QvTrade& t) { t.position.entryBar = -1; },
      [](QvTrade& t) { t.exitBar = 0; }, [](QvTrade& t) { t.exitBar = 99; }};
  const std::function<void(QvPosition&)> positions[] = {[](QvPosition& p) { p.entryBar = 99; },
                                                        [](QvPosition& p) { p.entryBar = -1; },
                                                        [](QvPosition& p) { p.remaining = 0; }};
  for (const auto& changeTrade : trades)
    for (const auto& changePosition : positions) {
      Backtest sys({10, 11, 13, 12});
      sys.next();
      sys.bar({buy("A", 2)});
      sys.bar({sell("X", 1)});
      changeTrade(sys.trades[0]);
      changePosition(sys.positions[0]);
      Array out;
      expectGives(qvEquity(&sys, 50, 0, &out), out, {50, 50, 50});
      QvTradeFigures t;
      EXPECT_EQ(qvTradeFigures(&sys, 0, &t), 0);
      EXPECT_TRUE(t.barsHeld >= 0 && t.barsHeld <= 3);
    }
  const QvOrderSystem zero{};
  Array out;
  EXPECT_EQ(qvEquity(&zero, 50, 0, &out), -1) << "bar 0 of no bars";
}

TEST(Equity, OfNoTradeAndOfOneBarIsTheCapital) {
  Backtest idle({10, 11, 12}), oneBar({10});
  Array out;
  QvTradeFigures t;
  ASSERT_EQ(qvTradeFigures(&idle, 0, &t), 0);  // before the first bar
  while (idle.next() == 1) {
  }
  oneBar.next();
  expectGives(qvEquity(&idle, 50, 0.01, &out), out, {50, 50, 50}, 0);
  ASSERT_EQ(qvTradeFigures(&idle, 0.01, &t), 0);
  EXPECT_EQ(Items({t.profitFactor, t.expectancy, t.exposure}), Items({0, 0, 0}));
  expectGives(qvEquity(&oneBar, 50, 0, out.fresh()), out, {50});
  EXPECT_EQ(qvEquity(&idle, 1, 0, &idle.bars.close), -1);
  out.reset();
  expectAnswersExhaustedMemory("qvEquity", [&] { return qvEquity(&idle, 50, 0, &out); });
  expectAnswersExhaustedMemory("qvTradeFigures", [&] { return qvTradeFigures(&idle, 0, &t); });

  Backtest winner({10, 11, 12, 13});
  winner.next();
  winner.bar({buy("A", 1)});
  winner.bar({sell("X", 1)});
  ASSERT_EQ(qvTradeFigures(&winner, 0, &t), 0);
  EXPECT_EQ(t.profitFactor, kInf);
  winner.trades[0].position.entryBar = -5;  // what no run leaves behind is left out
  winner.trades[0].exitBar = 100;
  EXPECT_EQ(qvEquity(&winner, 50, 0, out.fresh()), 0);
  EXPECT_EQ(qvTradeFigures(&winner, 0, &t), 0);
}

// Equity after each bar from what the system holds then, over a run with partial exits, both sides, pyramids.
TEST(Equity, IsWhatAnAccountKeptBarByBarTells) {
  const Bars& bars = spx();
  System sys(bars);
  sys.tickSize = sys.tickValue = 0.25;
  sys.slippage = 0.1;
  sys.commission = 2;
  sys.deductionRate = 0.01;
  sys.pyramiding = sys.gapFills = 1;
  constexpr double kCapital = 1e5, kRate = 0.0005;
  const auto result = [&](const QvPosition& p, double exit, int n) {
    const double gain = p.direction == QV_LONG ? exit - p.entryPrice : p.entryPrice - exit;
    return 0.99 * ((gain - 0.1 - kRate * (p.entryPrice + exit)) * n - 4);
  };
  Items wanted;
  double closed = kCapital;
  int counted = 0, held = 0;
  while (sys.next() == 1) {
    const int i = sys.currentBar;
    double open = 0;
    bool holds = false;
    for (; counted < sys.tradeCount; ++counted) {
      const QvTrade& t = sys.trades[counted];
      closed += result(t.position, t.exitPrice, t.exitVolume);
    }
    for (int k = 0; k < sys.positionCount; ++k) {
      open += result(sys.positions[k], bars.close.data[i], sys.positions[k].remaining);
      holds = true;
    }
    wanted.push_back(closed + open);
    held += holds;
    const double close = bars.close.data[i];
    if (i % 7 == 0) sys.place(buy("long", 5, QV_STOP, close * 1.001, QV_GTC));
    if (i % 5 == 3) sys.place(sell("part", 2, QV_LIMIT, close * 1.004));
    if (i % 31 == 5) sys.place(sellShort("short", 3));
    if (i % 11 == 7) sys.place(cover("part", 1, QV_STOP, close * 1.002, QV_GTC));
    if (i % 101 == 0) sys.place({sell("out", 50, QV_CLOSE), cover("out", 50)});
  }
  ASSERT_GT(sys.tradeCount, 500);
  Array out;
  expectEach(qvEquity(&sys, kCapital, kRate, &out), out, 0, 1e-12,
             [&](int i) { return wanted[static_cast<std::size_t>(i)]; });
  QvTradeFigures t;
  ASSERT_EQ(qvTradeFigures(&sys, kRate, &t), 0);
  EXPECT_EQ(t.barsHeld, held);
  EXPECT_NEAR(t.expectancy * t.trades, closed - kCapital, 1e-6);
}

TEST(EquityFigures, AreThoseWorkedOutByHand) {
  // Quarterly bars: 4 a year, a year and a quarter in all; returns 0.1, -0.1, 0.1, -0.1, 0.1, and 0.1 less
  // each with a rate that costs a tenth a quarter.
  const Array equity({7, 100, 110, 99, 108.9, 98.01, 107.811}, 1);
  QvEquityFigures f;
  ASSERT_EQ(qvEquityFigures(&equity, nullptr, 4, 0, &f), 0);
  EXPECT_EQ(Items({f.first, f.last, 1. * f.bars, f.barsPerYear}), Items({100, 107.811, 6, 4}));
  EXPECT_NEAR(f.totalGrowth, 7.811, 1e-12);
  EXPECT_NEAR(f.annualGrowth, 100 * (std::pow(1.07811, 0.8) - 1), 1e-12);
  EXPECT_NEAR(f.sharpe, 0.02 / std::sqrt(0.048 / 4) * 2,
              1e-12);  // squares about 0.02: 3 * 0.0064 + 2 * 0.0144
  EXPECT_NEAR(f.sortino, 0.02 / std::sqrt(0.02 / 5) * 2, 1e-12);
  EXPECT_NEAR(f.greatestDrawdown, 110 - 98.01, 1e-12);
  EXPECT_NEAR(f.greatestDrawdownPercent, 100 * (1 - 98.01 / 110), 1e-12);
  EXPECT_EQ(f.greatestDrawdownBars, 4);  // 110 is not seen again
  ASSERT_EQ(qvEquityFigures(&equity, nullptr, 4, std::pow(1.1, 4) - 1, &f), 0);
  EXPECT_NEAR(f.sharpe, -0.08 / std::sqrt(0.048 / 4) * 2, 1e-12);
  EXPECT_NEAR(f.sortino, -0.08 / std::sqrt(0.08 / 5) * 2, 1e-12);

  // Two bars a year by their dates; the way back takes two bars, the greatest fall is another one.
  const Array steps{10, 9, 10, 11, 9.5, 11.5}, dates{0, 182.625, 365.25, 547.875, 730.5, 913.125};
  ASSERT_EQ(qvEquityFigures(&steps, &dates, 0, 0, &f), 0);
  EXPECT_EQ(Items({f.barsPerYear, f.greatestDrawdown, 1. * f.greatestDrawdownBars}), Items({2, 1.5, 2}));
}

TEST(EquityFigures, HaveAnAnswerWhereThereIsNoneToTell) {
  QvEquityFigures f;
  const auto figuresOf = [&](const Items& items, double rate = 0) {
    const Array equity(items);
    EXPECT_EQ(qvEquityFigures(&equity, nullptr, 252, rate, &f), 0);
    return Items({f.totalGrowth, f.annualGrowth, f.sharpe, f.sortino, f.greatestDrawdown,
                  f.greatestDrawdownPercent, 1. * f.greatestDrawdownBars});
  };
  EXPECT_EQ(figuresOf({5}), Items({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(figuresOf({5, 5, 5, 5}), Items({0, 0, 0, 0, 0, 0, 0}));
  figuresOf({3, 3, 3, 3, 3}, 0.02);  // flat below a rate: nothing varies
  EXPECT_EQ(f.sharpe, 0);
  EXPECT_LT(f.sortino, 0);
  EXPECT_EQ(figuresOf({0, 5, 6}), Items({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(figuresOf({-5, -6}), Items({0, 0, 0, 0, 1, 0, 1}));

  // Nothing is left: the returns end there, 0.5 and -1.5, means -0.5, deviation the root of 2.
  figuresOf({10, 15, -7.5, 30});
  EXPECT_NEAR(f.sharpe, -0.5 / std::sqrt(2) * std::sqrt(252), 1e-12);
  EXPECT_EQ(Items({f.totalGrowth, f.greatestDrawdown, f.greatestDrawdownPercent}), Items({200, 22.5, 150}));
  figuresOf({10, -10});
  EXPECT_EQ(Items({f.totalGrowth, f.annualGrowth}), Items({-200, -100}));

  const Array equity{1, 2, 3}, sameDay{7, 7, 7}, none;
  ASSERT_EQ(qvEquityFigures(&equity, &sameDay, 0, 0, &f), 0);
  EXPECT_EQ(Items({f.barsPerYear, f.annualGrowth, f.sharpe}), Items({0, 0, 0}));
  const Array twoDays{7, 8};
  ASSERT_EQ(qvEquityFigures(&equity, &twoDays, 0, 0, &f), 0);
  EXPECT_EQ(f.barsPerYear, 0) << "fewer dates than equities";
  figuresOf({1, kInf, 3});
  EXPECT_EQ(f.sharpe, 0) << "nothing can be told of a return without bounds";
  const Array late({1, 2, 3}, 3);
  for (const int status :
       {qvEquityFigures(&equity, nullptr, 0, 0, &f), qvEquityFigures(&equity, nullptr, 252, -1, &f),
        qvEquityFigures(&equity, nullptr, 252, kNaN, &f), qvEquityFigures(&none, nullptr, 252, 0, &f),
        qvEquityFigures(&late, nullptr, 252, 0, &f)})
    EXPECT_EQ(status, -1);
}

// Holding the index, every figure by the obvious loop.
TEST(EquityFigures, OfTheBundledPricesAreThoseOfThePlainLoop) {
  const Bars& bars = spx();
  QvEquityFigures f;
  ASSERT_EQ(qvEquityFigures(&bars.close, &bars.date, 0, 0.03, &f), 0);
  const Items c = itemsOf(bars.close);
  const std::size_t n = c.size();
  const double years = (bars.date.data[n - 1] - bars.date.data[0]) / 365.25;
  const double perYear = static_cast<double>(n - 1) / years, free = std::pow(1.03, 1 / perYear) - 1;
  Items excess;
  double sum = 0, squares = 0, below = 0, money = 0, percent = 0;
  std::size_t longest = 0;
  for (std::size_t i = 1; i < n; ++i) {
    excess.push_back(c[i] / c[i - 1] - 1 - free);
    sum += excess.back();
    below += excess.back() < 0 ? excess.back() * excess.back() : 0;
  }
  const double mean = sum / static_cast<double>(n - 1);
  for (const double x : excess) squares += (x - mean) * (x - mean);
  for (std::size_t i = 0; i < n; ++i) {  // from every bar to the lowest one before it is reached again
    std::size_t k = i + 1;
    for (; k < n && c[k] < c[i]; ++k) {
      money = std::max(money, c[i] - c[k]);
      percent = std::max(percent, 100 * (1 - c[k] / c[i]));
    }
    if (k > i + 1) longest = std::max(longest, std::min(k, n - 1) - i);
  }
  EXPECT_NEAR(f.barsPerYear, perYear, 1e-9);
  EXPECT_NEAR(f.annualGrowth, 100 * (std::pow(c[n - 1] / c[0], 1 / years) - 1), 1e-9);
  EXPECT_NEAR(f.sharpe, mean / std::sqrt(squares / static_cast<double>(n - 2)) * std::sqrt(perYear), 1e-9);
  EXPECT_NEAR(f.sortino, mean / std::sqrt(below / static_cast<double>(n - 1)) * std::sqrt(perYear), 1e-9);
  EXPECT_NEAR(f.greatestDrawdown, money, 1e-9);
  EXPECT_NEAR(f.greatestDrawdownPercent, percent, 1e-9);
  EXPECT_EQ(f.greatestDrawdownBars, static_cast<int>(longest));
}

}  // namespace
}  // namespace qvtest
