// Backtests by rules: a run worked out by hand, and the bundled prices against a loop that trades by itself.
#include "runs/backtest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "support/spx.h"

namespace qvtest {
namespace {

using qv::runs::Backtest;
using qv::runs::BacktestSettings;
using qv::runs::Figures;
using qv::runs::OrderRecord;
using qv::runs::Rules;
using qv::runs::RuleTexts;
using qv::runs::Signals;
using qv::runs::TradeRecord;

std::string numberText(double x) {
  std::string text = std::to_string(x);
  text.erase(text.find_last_not_of('0') + 1);
  return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

// "long 1@11 to 3@12 by exit: 0.5".
std::vector<std::string> tradesOf(const Backtest& test) {
  std::vector<std::string> texts;
  for (const TradeRecord& t : test.trades()) {
    const QvPosition& p = t.trade.position;
    texts.push_back(std::string(p.direction == QV_LONG ? "long " : "short ") + std::to_string(p.entryBar) +
                    "@" + numberText(p.entryPrice) + " to " + std::to_string(t.trade.exitBar) + "@" +
                    numberText(t.trade.exitPrice) +
                    (t.isOpen ? " open: " : " by " + std::string(t.trade.exitName) + ": ") +
                    numberText(t.result));
  }
  return texts;
}
// "3 exit 4@12", "5 stop 8 -", "7 long pending".
std::vector<std::string> ordersOf(const Backtest& test) {
  std::vector<std::string> texts;
  for (const OrderRecord& o : test.orders()) {
    std::string text = std::to_string(o.placed) + " " + qv::runs::kRuleNames[o.rule];
    if (o.rule == qv::runs::kStop) text += " " + numberText(o.price);
    if (o.state == OrderRecord::Filled) text += " " + std::to_string(o.filled) + "@" + numberText(o.fill);
    if (o.state == OrderRecord::Cancelled) text += " -";
    if (o.state == OrderRecord::Pending) text += " pending";
    texts.push_back(text);
  }
  return texts;
}

// The signals are in the volume: 1 long, 2 exit, 4 short, 8 cover, in sums. The stop's distance is the open
// interest.
const RuleTexts kByVolume = {"volume = 1 or volume = 3 or volume = 5 or volume = 9",
                             "volume = 2 or volume = 3", "volume = 4 or volume = 5 or volume = 12",
                             "volume = 8 or volume = 12 or volume = 9", "openinterest"};

TEST(Backtest, TradesAsWorkedOutByHand) {
  const Bars bars{
      //  open high low close  signal stop date
      {10, 11, 9, 10, 1, 0, 1},  // 0 long
      {11, 12, 9, 12, 2, 3,
       2},  // 1 bought at 11; the low does not touch a stop that is not yet set, at 8; exit
      {12, 13, 11, 12, 3, 0, 3},    // 2 sold at 12; a long that is an exit, too, is none
      {12, 13, 11, 12, 5, 0, 4},    // 3 nor is one that both sides enter
      {12, 13, 11, 12, 1, 0, 5},    // 4 long
      {12, 14, 12, 14, 1, 2.5, 6},  // 5 bought at 12, stop at 9.5; held already
      {14, 15, 10, 10, 0, 9, 7},    // 6 the distance stays
      {10, 11, 9, 9, 0, 9, 8},      // 7 stopped at 9.5
      {9, 10, 8, 9, 4, 0, 9},       // 8 short
      {10, 11, 9, 10, 12, 1, 10},   // 9 sold at 10, stop at 11; cover, and a short that is one, too
      {13, 14, 8, 9, 4, 0, 11},     // 10 bought at the open, 13: the stop is out of the market; short
      {9, 10, 8, 9, 1, 2, 12},      // 11 sold at 9, stop at 11; long
      {12, 13, 6, 7, 0, 6, 13},     // 12 turned at the open, 12, though 11 lies on the way; stop at 6
      {5, 6, 4, 5, 4, 1, 14},       // 13 opens beyond the stop: 5; short
      {4, 5, 3, 4, 0, 0, 15},       // 14 sold at 4 with a distance of 0: no stop
      {9, 9, 2, 3, 8, 0, 16},       // 15 cover, pending
  };
  Rules rules(kByVolume);
  rules.check();
  BacktestSettings settings;
  settings.capital = 100;
  Backtest test(bars, "by hand", settings);
  const Figures f = test.runInFull(rules.over(bars));
  EXPECT_EQ(tradesOf(test),
            (std::vector<std::string>{"long 1@11 to 2@12 by exit: 1", "long 5@12 to 7@9.5 by stop: -2.5",
                                      "short 9@10 to 10@13 by cover: -3", "short 11@9 to 12@12 by long: -3",
                                      "long 12@12 to 13@5 by stop: -7", "short 14@4 to 15@3 open: 1"}));
  EXPECT_EQ(ordersOf(test),
            (std::vector<std::string>{"0 long 1@11", "1 exit 2@12", "4 long 5@12", "5 stop 9.5 7@9.5",
                                      "8 short 9@10", "9 cover 10@13", "10 short 11@9", "11 long 12@12",
                                      "12 stop 6 13@5", "13 short 14@4", "15 cover pending"}));
  EXPECT_EQ(test.entriesWithoutStop(), 1);
  EXPECT_EQ(Items(test.equity().items().begin(), test.equity().items().end()),
            Items({100, 101, 101, 101, 101, 103, 99, 98.5, 98.5, 98.5, 95.5, 95.5, 87.5, 85.5, 85.5, 86.5}));
  EXPECT_EQ(Items({f.trades.grossProfit, f.trades.grossLoss, 1. * f.trades.barsHeld, f.equity.last}),
            Items({1, -15.5, 8, 86.5}));
  EXPECT_EQ(test.holdingFigures().last, 30);

  // A tenth of the traded value and 1 for each fill, ten contracts: 0.1 * 23 * 10 + 2 of the first trade.
  settings.cost = 0.06;
  settings.slip = 0.04;
  settings.fixed = 1;
  settings.size = 10;
  Backtest costly(bars, "by hand", settings);
  const Figures less = costly.runInFull(rules.over(bars));
  const std::vector<TradeRecord> trades = costly.trades();
  EXPECT_NEAR(trades[0].result, 10 - 25, 1e-12);
  double results = 0, costs = 0, orderCosts = 0;
  for (const TradeRecord& t : trades) results += t.isOpen ? 0 : t.result;
  for (const TradeRecord& t : trades) costs += t.isOpen ? t.cost - 0.1 * 3 * 10 - 1 : t.cost;
  for (const OrderRecord& o : costly.orders()) orderCosts += o.cost;
  EXPECT_NEAR(orderCosts, costs, 1e-12);
  EXPECT_NEAR(costly.system().netStatistics.totalNetProfit, results, 1e-9);
  EXPECT_NEAR(less.trades.expectancy * less.trades.trades, results, 1e-9);
  EXPECT_NEAR(less.equity.last, 100 + results + trades[5].result, 1e-9);
}

TEST(Backtest, NoRuleActsBeforeItsFirstValidBarNorKnowsLaterOnes) {
  std::vector<Bar> data;
  for (int i = 0; i < 12; ++i) data.push_back({10. + i, 11. + i, 9. + i, 10.5 + i, 0, 0, 1. + i});
  const Bars bars(data);
  const auto firstEntry = [&](const RuleTexts& texts) {
    Rules rules(texts);
    rules.check();
    Backtest test(bars, "rising", {});
    test.run(rules.over(bars));
    return test.system().positionCount > 0 ? +test.system().positions[0].entryBar : -1;
  };
  EXPECT_EQ(firstEntry({"close > 0", "", "", "", ""}), 1);
  EXPECT_EQ(firstEntry({"not close < sma(5)", "", "", "", ""}), 5);
  EXPECT_EQ(firstEntry({"close > 0", "", "", "", "atr(8)"}), 7);  // its bar is the first that has a distance
  EXPECT_EQ(firstEntry({"close > sma(20)", "", "", "", ""}), -1);
  const auto refusal = [](const RuleTexts& texts) -> std::string {
    try {
      Rules rules(texts);
      const std::vector<double> none(rules.parameters().size(), 0.0);
      rules.set(none);
      rules.check();
    } catch (const qv::Error& e) {
      return e.what();
    }
    return "";
  };
  EXPECT_EQ(refusal({"ichimoku.lagging > 0", "", "", "", ""}),
            "long: looks at later bars, nobody could have acted on it");
  EXPECT_EQ(refusal({"", "close > 1", "", "", ""}),
            "rules: nothing is ever entered, give a long or a short rule");
  EXPECT_EQ(refusal({"close > 1", "", "", "close > 1", ""}), "cover: never acts without a short rule");
  EXPECT_EQ(refusal({"rsi($N) > 1", "", "", "", ""}), "long: a number is out of range with n=0");
  EXPECT_EQ(refusal({"close >", "", "", "", ""}).substr(0, 16), "long 'close >': ");

  Bars noOpens(data);
  noOpens.open.firstValid = noOpens.barsize;
  EXPECT_THROW(Backtest(noOpens, "no opens", {}), qv::Error);
  EXPECT_THROW(Backtest(Bars(), "no bars", {}), qv::Error);
}

// Both sides with stops and costs on the bundled prices, against a loop with an account of its own.
TEST(Backtest, IsTheLoopThatOneWouldWrite) {
  const Bars& bars = spx();
  Rules rules({"sma(20) crosses above sma(100)", "close < sma(200)", "sma(20) crosses below sma(100)",
               "close > sma(200)", "2 * atr(14)"});
  BacktestSettings settings;
  settings.cost = 0.0005;
  settings.fixed = 1.5;
  settings.size = 3;
  Backtest test(bars, "SPX", settings);
  const Signals s = rules.over(bars);
  test.runInFull(s);

  using namespace qv::runs;
  const double *open = bars.open.data, *high = bars.high.data, *low = bars.low.data, *close = bars.close.data;
  int side = 0, entryBar = 0, next = 0;  // next: the position that the orders at the market lead to
  bool isOrdered = false;
  double entry = 0, stop = 0, cash = settings.capital;
  std::size_t trades = 0;
  const std::vector<TradeRecord> records = test.trades();
  const auto leave = [&](int i, double price) {
    ASSERT_LT(trades, records.size());
    const QvTrade& t = records[trades++].trade;
    EXPECT_EQ(Items({+t.position.entryPrice, 1. * t.position.entryBar, +t.exitPrice, 1. * t.exitBar}),
              Items({entry, 1. * entryBar, price, 1. * i}));
    cash += side * 3 * (price - entry) - 0.0005 * 3 * (price + entry) - 3;
    side = 0;
  };
  for (int i = 0; i < bars.barsize; ++i) {
    if (isOrdered) {
      if (side != 0) leave(i, open[i]);
      side = next;
      if (side != 0) {
        entry = open[i];
        entryBar = i;
        stop = 0;
      }
      isOrdered = false;
    } else if (side > 0 && low[i] <= stop) {
      leave(i, std::min(open[i], stop));
    } else if (side < 0 && high[i] >= stop) {
      leave(i, std::max(open[i], stop));
    }
    if (side != 0 && entryBar == i) stop = entry - side * s.rules[kStop]->data[i];
    const double openResult = side == 0 ? 0 : side * 3 * (close[i] - entry) - 0.0015 * (close[i] + entry) - 3;
    ASSERT_NEAR(test.equity()[i], cash + openResult, 1e-8) << i;
    const auto is = [&](Rule r) { return i >= s.rules[r]->firstValid && s.rules[r]->data[i] == 1; };
    if (side <= 0 && is(kLong) && !is(kExit) && !(is(kShort) && !is(kCover)))
      isOrdered = true, next = 1;
    else if (side >= 0 && is(kShort) && !is(kCover) && !(is(kLong) && !is(kExit)))
      isOrdered = true, next = -1;
    else if ((side > 0 && is(kExit)) || (side < 0 && is(kCover)))
      isOrdered = true, next = 0;
  }
  EXPECT_GT(trades, 30u);
  EXPECT_EQ(static_cast<int>(trades), test.system().tradeCount);
  if (side == 0) {
    EXPECT_NEAR(test.system().netStatistics.totalNetProfit, cash - settings.capital, 1e-8);
  }
}

}  // namespace
}  // namespace qvtest
