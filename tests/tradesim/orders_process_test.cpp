// Runs bar by bar: what fills, what is held, what was earned. First by hand, then what holds for every
// run. Unless a test says otherwise bars have one price, a price difference is worth itself, and market
// orders fill at the next price.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <sstream>

#include "core/memory.h"
#include "support/trading.h"

namespace qvtest {
namespace {

// What is held, what was closed on this bar, and what is pending: "S -1@15, L>C 2@8 [order]".
std::string state(const QvOrderSystem& sys) {
  std::ostringstream text;
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& p = sys.positions[i];
    text << ", " << p.entryName << (p.direction == QV_BUY ? " " : " -") << p.remaining << '@' << p.entryPrice;
  }
  for (int i = 0; i < sys.tradeCount; ++i) {
    const QvTrade& t = sys.trades[i];
    if (t.exitBar == sys.currentBar)
      text << ", " << t.position.entryName << '>' << t.exitName << ' ' << t.exitVolume << '@' << t.exitPrice;
  }
  for (const std::string& name : orderNames(sys)) text << " [" << name << ']';
  return text.str().erase(0, 2);
}

// The position summary follows from the open positions.
void checkSummary(const QvOrderSystem& sys) {
  double contracts[2] = {}, cost[2] = {};  // long, short
  int bars[2] = {};
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& p = sys.positions[i];
    const int side = p.direction == QV_SELL;
    contracts[side] += p.remaining;
    cost[side] += p.remaining * p.entryPrice;
    bars[side] = std::max(bars[side], sys.currentBar - p.entryBar + 1);
  }
  const double net = contracts[0] - contracts[1], close = sys.bars.close.data[sys.currentBar];
  EXPECT_TRUE(sys.longContracts == contracts[0] && sys.shortContracts == contracts[1]);
  EXPECT_EQ(sys.netContracts, std::fabs(net));
  EXPECT_EQ(sys.positionDirection, net > 0 ? 1 : net < 0 ? 2 : 0);
  EXPECT_TRUE(sys.barsInLong == bars[0] && sys.barsInShort == bars[1]);
  EXPECT_EQ(sys.barsInPosition, net == 0 ? 0 : bars[net < 0]);
  EXPECT_NEAR(sys.averageEntryPrice, net == 0 ? 0 : cost[net < 0] / contracts[net < 0], 1e-8);
  EXPECT_NEAR(sys.netStatistics.openPositionPL,
              (net * close - cost[0] + cost[1]) / sys.tickSize * sys.tickValue, 1e-8);
  EXPECT_TRUE(sys.reverseOnEntry == 0 || contracts[0] == 0 || contracts[1] == 0);
}

void play(System& sys, const std::vector<std::pair<std::vector<Ask>, const char*>>& steps) {
  if (sys.currentBar < 0) sys.next();
  for (const auto& [asks, after] : steps) {
    EXPECT_EQ(sys.bar(asks), 1);
    EXPECT_EQ(state(sys), after) << "bar " << sys.currentBar;
    checkSummary(sys);
  }
}

TEST(Trading, ReversalAndPartialCover) {
  Backtest sys({10, 12, 15, 11, 8, 9});
  play(sys, {{{buy("L", 2)}, "L 2@12"},
             {{sellShort("S", 3)}, "S -3@15, L>S 2@15"},
             {{}, "S -3@15"},
             {{cover("C", 2)}, "S -1@15, S>C 2@8"}});
  EXPECT_EQ(+sys.netStatistics.totalNetProfit, 6.0 + 14);
  play(sys, {{{cover("D", 1)}, "S>D 1@9"}});
  const QvTrade& last = sys.trades[2];
  EXPECT_TRUE(last.position.remaining == 1 && last.position.volume == 3) << "as it stood before the exit";
  EXPECT_EQ(sys.lastEntryDate, 36528.0);
  for (int bar : {6, 7}) EXPECT_TRUE(sys.next() == 0 && sys.currentBar == bar);
}

TEST(Trading, EntriesWaitWhileAPositionIsHeld) {
  Backtest sys({10, 11, 12, 13, 14, 15});
  play(sys, {{{buy("A", 1)}, "A 1@11"},
             {{buy("day", 1), buy("waits", 1, QV_MARKET, 0, QV_GTC)}, "A 1@11 [waits]"},
             {{sell("X", 1)}, "A>X 1@13 [waits]"},  // closed, but the entry still sees the position before
             {{}, "waits 1@14"}});
}

TEST(Trading, PyramidingWithPartialExits) {
  Backtest sys({10, 10, 12, 16, 20, 21});
  sys.pyramiding = 1;
  play(sys, {{{buy("A", 2)}, "A 2@10"},
             {{buy("B", 3)}, "A 2@10, B 3@12"},
             {{buy("A", 2)}, "A 2@10, B 3@12, A 2@16"}});
  EXPECT_DOUBLE_EQ(sys.averageEntryPrice, 88.0 / 7) << "20 + 36 + 32 for 7";
  // An exit that finds nothing is used up; the last one closes all of B, then the rest of A.
  play(sys, {{{sell("none", 9, QV_MARKET, 0, QV_GTC, "C"), sell("some", 3, QV_MARKET, 0, QV_DAY, "A")},
              "B 3@12, A 1@16, A>some 2@20, A>some 1@20"},
             {{sell("rest", 4)}, "B>rest 3@21, A>rest 1@21"}});
  EXPECT_EQ(+sys.netStatistics.totalNetProfit, 20 + 4 + 27 + 5);
}

TEST(Trading, OneEntryOfEachDirectionPerBar) {
  Backtest sys(std::vector<Bar>(3, {10, 12, 8, 10}));
  sys.pyramiding = 1;
  sys.next();
  sys.place(buy("cancelled", 1));
  qvCancelOrder(&sys, "cancelled");
  // The limit at 5 is tried first and does not trade; 9 comes before 10, one tick below for an
  // entry. All pending entries of the direction go with it, other orders that last stay.
  play(sys, {{{buy("at 10", 1, QV_LIMIT, 10, QV_GTC), buy("at 9", 1, QV_LIMIT, 9, QV_GTC),
               buy("far", 1, QV_LIMIT, 5, QV_GTC), buy("unknown", 1, 7, 10, QV_GTC),
               sellShort("unknown", 1, 7, 10, QV_GTC), sell("stop", 1, QV_STOP, 5, QV_GTC),
               sell("today", 1, QV_STOP, 5), cover("target", 1, QV_LIMIT, 5, QV_GTC)},
              "at 9 1@8 [target] [stop] [unknown]"}});
}

TEST(Trading, AReversalOnTheSameBarDiscardsWithoutTrade) {
  for (int reverse : {1, 0}) {
    Backtest sys({10, 11, 12, 13});
    sys.reverseOnEntry = reverse;
    play(sys, {{{buy("A", 1)}, "A 1@11"},
               {{sell("X", 1)}, "A>X 1@12"},
               {{buy("B", 2), sellShort("S", 3, QV_LIMIT, 13)}, reverse ? "S -3@13" : "B 2@13, S -3@13"}});
  }
}

TEST(Trading, CloseOrdersTradeAtTheCloseBeforeAndGapsAtTheOpen) {
  for (int gapFills : {0, 1}) {
    Backtest sys({{10, 10, 10, 10, 0, 0, 100}, {20, 22, 18, 21, 0, 0, 101}, {30, 33, 29, 31, 0, 0, 102}});
    sys.gapFills = gapFills;
    play(sys, {{{buy("in", 1, QV_CLOSE)}, "in 1@10"},
               {{sell("out", 1, QV_CLOSE), sellShort("S", 1, QV_LIMIT, 25)},
                gapFills ? "S -1@30, in>out 1@21" : "S -1@29, in>out 1@21"}});
    // An entry is dated by the bar that fills it, an exit by the bar whose close it took.
    EXPECT_TRUE(sys.trades[0].position.entryDate == 101 && sys.trades[0].exitDate == 101);
    EXPECT_EQ(+sys.longStatistics.averageBarsInWinners, 2.0) << "counted by bars, not dates";
  }
}

TEST(Trading, TheEntryDelayIsInWholeDays) {
  const int day = 86400;
  for (auto [seconds, filledAt] : std::map<int, int>{{-day, 1}, {day, 1}, {2 * day - 1, 1}, {2 * day, 2}}) {
    Backtest sys({10, 11, 12, 13});
    sys.entryDelaySeconds = seconds;
    sys.next();
    sys.place(buy("A", 1, QV_MARKET, 0, QV_GTC));
    for (int bar = 1; bar <= 3; ++bar) sys.next();
    EXPECT_TRUE(sys.positionCount == 1 && sys.positions[0].entryBar == filledAt) << seconds;
  }
}

// What the report of profits does not show: long trades of +4 0 +3 -2 -1 -1, the fifth over three bars.
TEST(Trading, RunsDrawsMarginAndPessimisticReturn) {
  Backtest sys({10, 10, 14, 14, 14, 14, 17, 17, 15, 15, 15, 14, 14, 13, 13, 13});
  sys.marginPercent = 50;
  sys.next();
  const QvTradeStats& s = sys.longStatistics;
  for (int trade = 1; trade <= 6; ++trade) {
    sys.bar({buy("L", 1)});
    if (trade == 5) sys.next();
    sys.bar({sell("X", 1)});
    EXPECT_TRUE(trade != 3 || (s.profitFactor == 0 && s.prr == (2 - std::sqrt(2.0)) / 3 * 7 / 2));
  }
  EXPECT_EQ(s.totalNumberOfTrades, 6);
  EXPECT_EQ(s.numberOfWinningTrades + s.numberOfLosingTrades, 5) << "the draw counts as a trade only";
  EXPECT_EQ(s.maximumConsecutiveWinners, 2) << "and breaks no run";
  EXPECT_EQ(s.maximumConsecutiveLosers, 3);
  EXPECT_EQ(+s.largestLosingTrade, -2.0);
  EXPECT_EQ(+s.averageBarsInLosers, 2.0) << "7 / 3";
  EXPECT_DOUBLE_EQ(+s.prr, (2 - std::sqrt(2.0)) / 6 * 7 / 2 / (4 * (3 + std::sqrt(3.0)) / 6 / 3));
  EXPECT_EQ(+s.accountSizeRequired, 8.0) << "drawdown 4 on half the usual margin";
  EXPECT_EQ(+s.returnOnAccount, 37.5) << "of 3";
  sys.commission = 5;  // no price change: two commissions lost
  for (const Ask& ask : {sellShort("S", 1), cover("C", 1)}) sys.bar({ask});
  EXPECT_EQ(+sys.shortStatistics.grossLoss, -10.0);
  EXPECT_EQ(+sys.shortStatistics.prr, 0.0) << "no winner";
}

TEST(Trading, HugeAndOddVolumes) {
  Backtest sys({10, 11, 12, 13, 14});
  sys.pyramiding = 1;
  sys.next();
  for (int i = 0; i < 2; ++i) sys.bar({buy("A", INT_MAX)});
  EXPECT_TRUE(sys.longContracts == INT_MAX && sys.averageEntryPrice == 11.5) << "saturates";
  sys.bar({sell("none", INT_MIN), sell("none", 0), sellShort("S", INT_MIN), buy("zero", 0)});
  // The sale closed the long positions, whatever its own volume.
  EXPECT_TRUE(sys.tradeCount == 2 && sys.longContracts == 0 && sys.shortContracts == 0);
}

// ---- What holds for every run: random strategies over random bars under random settings ----

struct Dice {
  std::mt19937 random;
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }
  double from(const std::vector<double>& values) { return values[random() % values.size()]; }
};

void choose(QvOrderSystem& sys, Dice& dice) {
  sys.tickSize = dice.from({0.01, 0.25, 1});
  sys.tickValue = dice.from({0.25, 1, 12.5});
  sys.slippage = dice.below(3);
  sys.commission = dice.below(3);
  sys.deductionRate = 0.1 * dice.below(3);
  sys.gapFills = dice.below(2);
  sys.reverseOnEntry = dice.below(2);
  sys.pyramiding = dice.below(2);
  sys.entryDelaySeconds = dice.oneIn(4) ? 86400 : 0;
}

// Every order has a name of its own, except that exits now and then name an entry.
void placeOrders(System& sys, Dice& dice, int& ticket) {
  while (dice.oneIn(2)) {
    const std::string name = "o" + std::to_string(++ticket);
    const std::string from = dice.oneIn(3) ? "o" + std::to_string(1 + dice.below(ticket)) : "";
    const double price = sys.bars.close.data[sys.currentBar] + 0.25 * (dice.below(17) - 8);
    const int action = 1 + dice.below(2), direction = 1 + dice.below(2), volume = 1 + dice.below(5);
    const int type = 1 + dice.below(5), tif = 1 + dice.below(2);
    sys.place({action, direction, name.c_str(), volume, type, price, tif, from.c_str()});
  }
  if (dice.oneIn(20)) qvCancelOrder(&sys, dice.oneIn(2) ? "" : ("o" + std::to_string(ticket)).c_str());
}

void checkTrades(const QvOrderSystem& sys) {
  double sum = 0;
  std::map<std::string, int> left;  // contracts by the name of the entry
  for (int i = 0; i < sys.tradeCount; ++i) {
    const QvTrade& t = sys.trades[i];
    const QvPosition& p = t.position;
    const double gain = (t.exitPrice - p.entryPrice) * (p.direction == QV_BUY ? 1 : -1);
    const double money = gain / sys.tickSize * sys.tickValue - sys.slippage;
    sum += (1 - sys.deductionRate) * (money * t.exitVolume - 2 * sys.commission);
    EXPECT_NE(t.exitDirection, p.direction);
    for (double price : {+p.entryPrice, +t.exitPrice})
      EXPECT_NEAR(price / sys.tickSize, std::round(price / sys.tickSize), 1e-6) << "on the grid";
    int& contracts = left.emplace(p.entryName, p.volume).first->second;
    EXPECT_TRUE(p.remaining == contracts && t.exitVolume >= 1) << p.entryName;
    contracts -= t.exitVolume;
  }
  for (const QvPosition* p = sys.positions; p < sys.positions + sys.positionCount; ++p)
    left.emplace(p->entryName, p->volume).first->second -= p->remaining;
  for (const auto& [name, contracts] : left) EXPECT_EQ(contracts, 0) << "entered = closed + held: " << name;
  EXPECT_NEAR(sys.netStatistics.totalNetProfit, sum, 1e-7);
  EXPECT_EQ(sys.netStatistics.totalNumberOfTrades, sys.tradeCount);
}

// Answers what the run leaves.
std::string runStrategy(System& sys, unsigned seed, bool check, int ordersPerBar = 1) {
  Dice dice{std::mt19937(seed)};
  int ticket = 0;
  while (sys.next() == 1) {
    if (check) checkSummary(sys);
    for (int i = 0; i < ordersPerBar; ++i) placeOrders(sys, dice, ticket);
  }
  const char* statistics = reinterpret_cast<const char*>(&sys.longStatistics);
  return state(sys) + std::string(statistics, 3 * sizeof(QvTradeStats));
}

TEST(Trading, RandomStrategies) {
  int trades = 0, stillOpen = 0;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice{std::mt19937(seed)};
    Backtest sys(walkBars(300, seed));
    choose(sys, dice);
    const std::string outcome = runStrategy(sys, seed, true);
    checkTrades(sys);
    trades += sys.tradeCount;
    stillOpen += sys.positionCount;
    qvOrderSystemReset(&sys);
    qv::memory::failAllocation(1);  // it would lose an order, a position or a trade
    const std::string again = runStrategy(sys, seed, false);
    qv::memory::failAllocation(0);
    ASSERT_TRUE(again == outcome && !HasFailure());
  }
  EXPECT_TRUE(trades > 1000 && stillOpen > 10) << "the strategies must trade, or nothing is checked";
}

TEST(Trading, WildBarsAndSettingsAndFailingAllocationsAreSurvived) {
  const std::vector<double> odd{kNaN, kInf, -kInf, 0, -5, 1e300, -1e300, 5e-324};
  int lost = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    Dice dice{std::mt19937(seed)};
    std::vector<Bar> bars = walkBars(120, seed);
    for (Bar& b : bars)
      for (double* x : {&b.open, &b.high, &b.low, &b.close, &b.date})
        if (seed > 12 && dice.oneIn(6)) *x = dice.from(odd);
    Backtest sys(bars);
    choose(sys, dice);
    for (double* x : {&sys.tickSize, &sys.tickValue, &sys.slippage, &sys.commission, &sys.deductionRate,
                      &sys.marginPercent})
      if (seed > 12 && dice.oneIn(4)) *x = dice.from(odd);
    if (seed > 12 && dice.oneIn(3)) sys.entryDelaySeconds = dice.oneIn(2) ? INT_MAX : INT_MIN;
    qv::memory::failAllocation(1 + seed % 12);
    runStrategy(sys, seed, seed <= 12, 8);
    qv::memory::failAllocation(0);
    EXPECT_LE(sys.tradeCount, sys.netStatistics.totalNumberOfTrades);
    lost += sys.netStatistics.totalNumberOfTrades - sys.tradeCount;
  }
  EXPECT_GT(lost, 0) << "the statistics keep a trade that finds no place in the table";

  Backtest sys(closingAt(Items(60, 10.0)));
  sys.pyramiding = 1;
  sys.next();
  while (sys.positionCount < sys.positionCapacity) ASSERT_EQ(sys.bar({buy("A", 1)}), 1);
  const int full = sys.positionCount;
  sys.place(buy("A", 1));
  qv::memory::failAllocation(1);
  EXPECT_EQ(sys.next(), 1);
  qv::memory::failAllocation(0);
  EXPECT_EQ(sys.positionCount, full) << "an entry that finds no place is not made";
  sys.longStatistics.totalNumberOfTrades = -1;  // as a caller may have left it
  sys.bar({sell("X", 1)});
  EXPECT_EQ(+sys.longStatistics.averageTrade, 0);
}

}  // namespace
}  // namespace qvtest
