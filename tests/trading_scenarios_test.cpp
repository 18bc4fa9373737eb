// Whole runs worked out by hand. Unless a test says otherwise bars have one price, ticks are 1 and
// worth 1, so that a price difference is worth itself, and market orders fill at the next price.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "core/memory.h"
#include "support/trading.h"

namespace qvtest {
namespace {

using Names = std::vector<std::string>;

// entry name, exit name, contracts, entry and exit price, entry and exit bar
std::string text(const QvTrade& t) {
  return std::string(t.position.entryName) + ">" + t.exitName + " " + std::to_string(t.exitVolume) + " at " +
         std::to_string(std::lround(t.position.entryPrice)) + ">" + std::to_string(std::lround(t.exitPrice)) +
         " bars " + std::to_string(t.position.entryBar) + ">" + std::to_string(t.exitBar);
}
Names tradesOf(const QvOrderSystem& sys) {
  Names texts;
  for (int i = 0; i < sys.tradeCount; ++i) texts.push_back(text(sys.trades[i]));
  return texts;
}

TEST(Scenario, ReversalAndPartialCover) {
  const Bars bars(flatBars({10, 12, 15, 11, 8, 9}));
  System sys(bars);
  sys.onTicks(1);
  EXPECT_EQ(sys.next(), 1);
  sys.buy("L", 2);
  sys.next();  // bar 1: long 2 at 12
  EXPECT_EQ(sys.positionDirection, 1);
  EXPECT_EQ(sys.longContracts, 2);
  EXPECT_EQ(sys.averageEntryPrice, 12.0);
  sys.sellShort("S", 3);
  sys.next();  // bar 2: short 3 at 15, which closes the long two for 3 each
  EXPECT_EQ(tradesOf(sys), Names{"L>S 2 at 12>15 bars 1>2"});
  EXPECT_EQ(sys.trades[0].exitDirection, QV_SELL);
  EXPECT_EQ(sys.trades[0].position.entryName[19], ' ') << "blanks behind the names";
  EXPECT_EQ(sys.trades[0].exitName[19], ' ');
  EXPECT_EQ(+sys.trades[0].exitDate, 36528.0);
  EXPECT_EQ(+sys.longStatistics.totalNetProfit, 6.0);
  EXPECT_EQ(sys.positionDirection, 2);
  EXPECT_EQ(sys.longContracts, 0);
  EXPECT_EQ(sys.shortContracts, 3);
  EXPECT_EQ(sys.netContracts, 3);
  EXPECT_EQ(sys.averageEntryPrice, 15.0);
  EXPECT_EQ(sys.lastEntryDate, 36528.0);
  EXPECT_EQ(sys.positionCount, 1);
  sys.next();  // bar 3, at 11: open profit 3 * 4
  EXPECT_EQ(+sys.shortStatistics.openPositionPL, 12.0);
  EXPECT_EQ(+sys.netStatistics.openPositionPL, 12.0);
  EXPECT_EQ(sys.barsInShort, 2);
  EXPECT_EQ(sys.barsInPosition, 2);
  EXPECT_EQ(sys.barsInLong, 0);
  sys.cover("C", 2);
  sys.next();  // bar 4, at 8: two contracts earn 7 each, the third is 7 ahead
  EXPECT_EQ(tradesOf(sys).back(), "S>C 2 at 15>8 bars 2>4");
  EXPECT_EQ(sys.trades[1].position.remaining, 3) << "as it stood before the exit";
  EXPECT_EQ(sys.trades[1].position.volume, 3);
  EXPECT_EQ(sys.positions[0].remaining, 1);
  EXPECT_EQ(+sys.netStatistics.totalNetProfit, 20.0);
  EXPECT_EQ(+sys.netStatistics.openPositionPL, 7.0);
  sys.cover("D", 1);
  sys.next();  // bar 5, at 9: flat
  EXPECT_EQ(+sys.netStatistics.totalNetProfit, 26.0);
  EXPECT_EQ(sys.positionDirection + sys.netContracts + sys.barsInPosition + sys.positionCount, 0);
  EXPECT_EQ(sys.averageEntryPrice, 0.0);
  EXPECT_EQ(sys.lastEntryDate, 36528.0) << "stays";
  EXPECT_EQ(sys.next(), 0);
  EXPECT_EQ(sys.next(), 0);
  EXPECT_EQ(sys.currentBar, 7);
}

TEST(Scenario, EntriesWaitWhileAPositionIsHeld) {
  const Bars bars(flatBars({10, 11, 12, 13, 14, 15}));
  System sys(bars);
  sys.onTicks(1);
  sys.next();
  sys.buy("A", 1);
  sys.next();  // bar 1: long at 11
  sys.buy("day", 1);
  sys.buy("waits", 1, QV_MARKET, 0, QV_GTC);
  sys.next();  // bar 2: held
  EXPECT_EQ(sys.longContracts, 1);
  EXPECT_EQ(sys.orderNames(), Names{"waits"});
  sys.sell("X", 1);
  sys.next();  // bar 3: closed, but the entry still sees the position of bar 2
  EXPECT_EQ(tradesOf(sys), Names{"A>X 1 at 11>13 bars 1>3"});
  EXPECT_EQ(sys.positionDirection, 0);
  sys.next();  // bar 4
  EXPECT_EQ(sys.longContracts, 1);
  EXPECT_EQ(sys.averageEntryPrice, 14.0);
  EXPECT_EQ(sys.orderCount, 0);
}

TEST(Scenario, PyramidingWithPartialExits) {
  const Bars bars(flatBars({10, 10, 12, 16, 20, 21}));
  System sys(bars);
  sys.onTicks(1).pyramiding = 1;
  sys.next();
  for (const char* name : {"A", "B", "A"}) {
    sys.buy(name, name[0] == 'A' ? 2 : 3);
    sys.next();
  }
  // 2 at 10, 3 at 12, 2 at 16: (20 + 36 + 32) / 7
  EXPECT_EQ(sys.longContracts, 7);
  EXPECT_DOUBLE_EQ(sys.averageEntryPrice, 88.0 / 7);
  EXPECT_EQ(+sys.longStatistics.openPositionPL, 2 * 6 + 3 * 4);
  EXPECT_EQ(sys.barsInLong, 3) << "since the first entry";
  EXPECT_EQ(+sys.longStatistics.maximumContractsHeld, 7);
  sys.sell("none", 9, QV_MARKET, 0, QV_GTC, "C");
  sys.sell("from A", 3, QV_MARKET, 0, QV_DAY, "A");
  sys.next();  // bar 4: two of the first A, one of the other
  EXPECT_EQ(tradesOf(sys), (Names{"A>from A 2 at 10>20 bars 1>4", "A>from A 1 at 16>20 bars 3>4"}));
  EXPECT_EQ(sys.trades[1].position.remaining, 2);
  EXPECT_EQ(sys.orderCount, 0) << "an exit that finds nothing is used up";
  EXPECT_EQ(sys.positionCount, 2);
  sys.sell("rest", 4);
  sys.next();  // bar 5: all three of B, then the last A
  EXPECT_EQ(tradesOf(sys)[2], "B>rest 3 at 12>21 bars 2>5");
  EXPECT_EQ(tradesOf(sys)[3], "A>rest 1 at 16>21 bars 3>5");
  EXPECT_EQ(sys.positionCount, 0);
  EXPECT_EQ(+sys.netStatistics.totalNetProfit, 20 + 4 + 27 + 5);
}

TEST(Scenario, OneEntryOfEachDirectionPerBar) {
  const Bars bars({{10, 12, 8, 10, 0, 0, 1}, {10, 12, 8, 10, 0, 0, 2}, {10, 12, 8, 10, 0, 0, 3}});
  System sys(bars);
  sys.onTicks(1).pyramiding = 1;
  sys.next();
  sys.buy("at 10", 1, QV_LIMIT, 10, QV_GTC);
  sys.buy("at 9", 1, QV_LIMIT, 9, QV_GTC);
  sys.buy("far", 1, QV_LIMIT, 5, QV_GTC);
  sys.sell("stop", 1, QV_STOP, 5, QV_GTC);
  sys.cover("target", 1, QV_LIMIT, 5, QV_GTC);
  sys.next();
  // The limit at 5 is tried first and does not trade; 9 comes before 10, one tick below for an
  // entry. All pending entries of the direction go with it, exits stay.
  ASSERT_EQ(sys.positionCount, 1);
  EXPECT_STREQ(sys.positions[0].entryName, "at 9");
  EXPECT_EQ(+sys.positions[0].entryPrice, 8.0);
  EXPECT_EQ(sys.orderNames(), (Names{"target", "stop"}));
}

TEST(Scenario, AReversalOnTheSameBarDiscardsWithoutTrade) {
  const Bars bars(flatBars({10, 11, 12, 13}));
  for (int reverse : {1, 0}) {
    System sys(bars);
    sys.onTicks(1).reverseOnEntry = reverse;
    sys.next();
    sys.buy("A", 1);
    sys.next();
    sys.sell("X", 1);
    sys.next();  // flat again, with one trade
    sys.buy("B", 2);
    sys.sellShort("S", 3, QV_LIMIT, 13);
    sys.next();
    EXPECT_EQ(sys.tradeCount, 1);
    EXPECT_EQ(sys.shortContracts, 3);
    EXPECT_EQ(sys.longContracts, reverse ? 0 : 2);
    EXPECT_EQ(sys.positionCount, reverse ? 1 : 2);
    EXPECT_EQ(sys.netContracts, reverse ? 3 : 1);
    EXPECT_EQ(sys.positionDirection, 2);
    EXPECT_EQ(sys.lastEntryDate, 36529.0);
  }
}

TEST(Scenario, EqualLongAndShortIsFlat) {
  const Bars bars(flatBars({10, 11, 14}));
  System sys(bars);
  sys.onTicks(1).reverseOnEntry = 0;
  sys.next();
  sys.buy("A", 2);
  sys.sellShort("S", 2, QV_STOP, 11);
  sys.next();  // a sell stop on the high of the bar fills there, without the offset
  sys.next();
  EXPECT_EQ(sys.longContracts, 2);
  EXPECT_EQ(sys.shortContracts, 2);
  EXPECT_EQ(sys.netContracts + sys.positionDirection + sys.barsInPosition, 0);
  EXPECT_EQ(sys.averageEntryPrice, 0.0);
  EXPECT_EQ(sys.barsInLong, 2);
  EXPECT_EQ(sys.barsInShort, 2);
  EXPECT_EQ(+sys.longStatistics.openPositionPL, 6.0);
  EXPECT_EQ(+sys.shortStatistics.openPositionPL, -6.0);
  EXPECT_EQ(+sys.netStatistics.openPositionPL, 0.0);
}

TEST(Scenario, CloseOrdersTradeAtTheCloseBefore) {
  const Bars bars({{10, 10, 10, 10, 0, 0, 100}, {20, 22, 18, 21, 0, 0, 101}, {30, 33, 29, 31, 0, 0, 102}});
  System sys(bars);
  sys.onTicks(1);
  sys.next();
  sys.buy("in", 1, QV_CLOSE);
  EXPECT_EQ(+sys.orders[0].price, 10.0);
  sys.next();
  // An entry is dated by the bar that fills it, an exit by the bar whose close it took.
  EXPECT_EQ(+sys.positions[0].entryPrice, 10.0);
  EXPECT_EQ(+sys.positions[0].entryDate, 101.0);
  EXPECT_EQ(sys.positions[0].entryBar, 1);
  sys.sell("out", 1, QV_CLOSE);
  sys.next();
  ASSERT_EQ(sys.tradeCount, 1);
  EXPECT_EQ(+sys.trades[0].exitPrice, 21.0);
  EXPECT_EQ(sys.trades[0].exitBar, 2);
  EXPECT_EQ(+sys.trades[0].exitDate, 101.0);
  EXPECT_EQ(+sys.longStatistics.averageBarsInWinners, 2.0) << "counted by bars, not dates";
}

TEST(Scenario, CancelledOrdersAndDayOrders) {
  const Bars bars(flatBars({10, 11, 12, 13}));
  System sys(bars);
  sys.onTicks(1);
  sys.next();
  sys.buy("A", 1, QV_MARKET, 0, QV_GTC);
  sys.sell("never", 1, QV_STOP, 5, QV_GTC);
  sys.sell("today", 1, QV_STOP, 5, QV_DAY);
  sys.buy("unknown", 1, 7, 11, QV_GTC);
  EXPECT_EQ(qvCancelOrder(&sys, "A"), 1);
  sys.next();
  EXPECT_EQ(sys.positionCount, 0) << "a cancelled order does not fill";
  EXPECT_EQ(sys.orderNames(), (Names{"never", "unknown"}));
  sys.buy("B", 1);
  sys.next();
  EXPECT_EQ(sys.longContracts, 1);
  EXPECT_EQ(sys.orderNames(), Names{"never"}) << "a filled entry takes even the unknown one with it";
}

TEST(Scenario, TheEntryDelayIsInWholeDays) {
  for (const auto& [seconds, filledAt] :
       {std::pair{0, 1}, {86399, 1}, {86400, 1}, {2 * 86400, 2}, {-86400, 1}}) {
    const Bars bars(flatBars({10, 11, 12, 13}));
    System sys(bars);
    sys.entryDelaySeconds = seconds;
    sys.next();
    sys.buy("A", 1, QV_MARKET, 0, QV_GTC);
    sys.run(3);
    ASSERT_EQ(sys.positionCount, 1);
    EXPECT_EQ(sys.positions[0].entryBar, filledAt) << seconds;
  }
  const Bars bars(flatBars({10, 11, 12, 13}));
  System sys(bars);
  sys.entryDelaySeconds = 2 * 86400;
  sys.next();
  sys.buy("A", 1);
  sys.run(3);
  EXPECT_EQ(sys.positionCount, 0) << "a day order may end before it begins";
}

TEST(Scenario, CostsOfATrade) {
  const Bars bars(flatBars({10, 10, 10, 10, 14}));
  System sys(bars);
  sys.onTicks(1).commission = 5;
  sys.next();
  sys.buy("A", 1);
  sys.next();
  sys.sell("X", 1);
  sys.next();  // no price change: two commissions lost
  EXPECT_EQ(+sys.longStatistics.totalNetProfit, -10.0);
  EXPECT_EQ(sys.longStatistics.numberOfLosingTrades, 1);
  sys.tickValue = 12.5;
  sys.slippage = 2;
  sys.deductionRate = 0.25;
  sys.sellShort("S", 3);
  sys.next();
  sys.cover("C", 3);
  sys.next();  // 0.75 * ((-4 * 12.5 - 2) * 3 - 10) = 0.75 * -166
  EXPECT_EQ(+sys.shortStatistics.totalNetProfit, -124.5);
  // drawdown (10 - 14) * 3 * 12.5, the same for a short trade
  EXPECT_EQ(+sys.shortStatistics.maximumIntradayDrawdown, -150.0);
}

// Three long and two short trades of one contract, one after the other:
//   long  bar 1 at 10, bar 3 at 16: +6, 3 bars, closes 10 .. 16
//   long  bar 4 at 16, bar 5 at 12: -4, 2 bars
//   long  bar 6 at 12, bar 7 at 20: +8, 2 bars
//   short bar 8 at 20, bar 9 at 25: -5, 2 bars
//   short bar 10 at 25, bar 13 at 15: +10, 4 bars, closes 30 .. 15
void runFiveTrades(System& sys) {
  sys.onTicks(1);
  while (sys.next() == 1) switch (sys.currentBar + 1) {  // the bar that fills the order
      case 1:
      case 4:
      case 6:
        sys.buy("L", 1);
        break;
      case 3:
      case 5:
      case 7:
        sys.sell("LX", 1);
        break;
      case 8:
      case 10:
        sys.sellShort("S", 1);
        break;
      case 9:
      case 13:
        sys.cover("SX", 1);
        break;
    }
}
const std::vector<double> kFiveTrades = {10, 10, 12, 16, 16, 12, 12, 20, 20, 25, 25, 30, 20, 15};

TEST(Scenario, StatisticsOfFiveTrades) {
  const Bars bars(flatBars(kFiveTrades));
  System sys(bars);
  runFiveTrades(sys);
  struct Expected {
    const QvTradeStats* s;
    double net, profit, loss;
    int trades, winners, losers;
    double percent, largestWin, largestLoss, averageWin, averageLoss, ratio, average;
    int barsInWinners, barsInLosers;
    double drawdown, factor, account, onAccount, prr;
  };
  const double root2 = std::sqrt(2.0), root3 = std::sqrt(3.0);
  const Expected blocks[] = {
      // 2 of 3: (2 - root 2) / 3 * 14 / 2 over 4 * (1 + 1) / 3
      {&sys.longStatistics,
       10,
       14,
       -4,
       3,
       2,
       1,
       200.0 / 3,
       8,
       -4,
       7,
       -4,
       1.75,
       10.0 / 3,
       2,
       2,
       -8,
       3.5,
       8,
       125,
       (2 - root2) * 7 / 8},
      // 1 of 2: nothing is left of one winner
      {&sys.shortStatistics, 5, 10, -5, 2, 1, 1, 50, 10, -5, 10, -5, 2, 2.5, 4, 2, -15, 2, 15, 100.0 / 3, 0},
      // bars (3 + 2 + 4) / 3 and (2 + 2) / 2; factor 3.5 + 2
      {&sys.netStatistics,
       15,
       24,
       -9,
       5,
       3,
       2,
       60,
       10,
       -5,
       8,
       -4.5,
       8 / 4.5,
       3,
       3,
       2,
       -15,
       5.5,
       15,
       100,
       ((3 - root3) / 5 * 8) / (9 * ((2 + root2) / 5) / 2)}};
  for (const Expected& e : blocks) {
    SCOPED_TRACE(&e - blocks);
    EXPECT_EQ(+e.s->totalNetProfit, e.net);
    EXPECT_EQ(+e.s->grossProfit, e.profit);
    EXPECT_EQ(+e.s->grossLoss, e.loss);
    EXPECT_EQ(e.s->totalNumberOfTrades, e.trades);
    EXPECT_EQ(e.s->numberOfWinningTrades, e.winners);
    EXPECT_EQ(e.s->numberOfLosingTrades, e.losers);
    EXPECT_DOUBLE_EQ(+e.s->percentProfitable, e.percent);
    EXPECT_EQ(+e.s->largestWinningTrade, e.largestWin);
    EXPECT_EQ(+e.s->largestLosingTrade, e.largestLoss);
    EXPECT_EQ(+e.s->averageWinningTrade, e.averageWin);
    EXPECT_EQ(+e.s->averageLosingTrade, e.averageLoss);
    EXPECT_DOUBLE_EQ(+e.s->ratioAverageWinAverageLoss, e.ratio);
    EXPECT_DOUBLE_EQ(+e.s->averageTrade, e.average);
    EXPECT_EQ(e.s->maximumConsecutiveWinners, 1);
    EXPECT_EQ(e.s->maximumConsecutiveLosers, 1);
    EXPECT_EQ(+e.s->averageBarsInWinners, e.barsInWinners);
    EXPECT_EQ(+e.s->averageBarsInLosers, e.barsInLosers);
    EXPECT_EQ(+e.s->maximumIntradayDrawdown, e.drawdown);
    EXPECT_EQ(+e.s->profitFactor, e.factor);
    EXPECT_EQ(+e.s->maximumContractsHeld, 1.0);
    EXPECT_EQ(+e.s->accountSizeRequired, e.account);
    EXPECT_DOUBLE_EQ(+e.s->returnOnAccount, e.onAccount);
    EXPECT_DOUBLE_EQ(+e.s->prr, e.prr);
    EXPECT_EQ(+e.s->openPositionPL, 0.0);
  }
  EXPECT_EQ(sys.longStatistics.totalBarsInWinners, 5);
  EXPECT_EQ(sys.longStatistics.totalBarsInLosers, 2);
  EXPECT_EQ(sys.longStatistics.currentRunOfWinners, 1);
  EXPECT_EQ(sys.longStatistics.currentRunOfLosers, 0);
  const QvTradeStats& net = sys.netStatistics;
  EXPECT_EQ(net.totalBarsInWinners + net.totalBarsInLosers + net.currentRunOfWinners + net.currentRunOfLosers,
            0)
      << "not kept for the net block";
}

TEST(Scenario, AccountSizeFollowsTheMargin) {
  const Bars bars(flatBars(kFiveTrades));
  struct Row {
    double margin, account, onAccount;
  };
  // net profit 15 on a drawdown of 15
  for (const Row& row : {Row{50, 30, 50}, Row{100, 15, 100}, Row{-50, 30, 50}, Row{0, 0, 0}}) {
    System sys(bars);
    sys.marginPercent = row.margin;
    runFiveTrades(sys);
    EXPECT_EQ(+sys.netStatistics.accountSizeRequired, row.account) << row.margin;
    EXPECT_EQ(+sys.netStatistics.returnOnAccount, row.onAccount) << row.margin;
    EXPECT_EQ(+sys.longStatistics.accountSizeRequired, row.account * 8 / 15) << row.margin;
  }
}

TEST(Scenario, RunsOfWinnersAndLosersAndPrrWithoutLosers) {
  const Bars bars(flatBars({10, 10, 14, 14, 17, 17, 17, 17, 15, 15, 14, 14, 13}));
  System sys(bars);
  sys.onTicks(1);
  const auto expectRuns = [&](int trades, int winners, int losers) {
    const QvTradeStats& s = sys.longStatistics;
    EXPECT_EQ(s.totalNumberOfTrades, trades);
    EXPECT_EQ(s.maximumConsecutiveWinners, winners) << trades;
    EXPECT_EQ(s.maximumConsecutiveLosers, losers) << trades;
  };
  for (int trade = 1; trade <= 6; ++trade) {
    sys.next();
    sys.buy("L", 1);
    sys.next();
    sys.sell("X", 1);
    if (trade == 3) {  // +4 and +3: (2 - root 2) / 2 * 7 / 2
      EXPECT_DOUBLE_EQ(+sys.longStatistics.prr, 1.75 * (2 - std::sqrt(2.0)));
      EXPECT_EQ(+sys.longStatistics.profitFactor, 0.0) << "no loss to divide by";
    }
  }
  sys.next();
  expectRuns(6, 2, 3);  // +4 +3 0 -2 -1 -1: the draw counts as a trade only
  EXPECT_EQ(sys.longStatistics.numberOfWinningTrades + sys.longStatistics.numberOfLosingTrades, 5);
  EXPECT_EQ(+sys.longStatistics.largestWinningTrade, 4.0);
  EXPECT_EQ(+sys.longStatistics.largestLosingTrade, -2.0);
}

TEST(Scenario, TablesThatCannotGrowLoseTheirRecords) {
  const Bars bars(flatBars({10, 12, 15}));
  for (long k : {0L, 1L}) {  // fewer than four bars: the first trade makes the table
    System sys(bars);
    sys.onTicks(1);
    sys.next();
    sys.buy("A", 1);
    sys.next();
    sys.sell("X", 1);
    qv::memory::failAllocation(k);
    EXPECT_EQ(sys.next(), 1);
    qv::memory::failAllocation(0);
    EXPECT_EQ(sys.tradeCount, k ? 0 : 1);
    EXPECT_EQ(+sys.netStatistics.totalNetProfit, 3.0) << "the statistics keep the trade";
    EXPECT_EQ(sys.positionCount, 0);
  }
  const Bars more(flatBars(std::vector<double>(30, 10.0)));
  System sys(more);
  sys.pyramiding = 1;
  sys.next();
  for (int i = 0; i < 17; ++i) {
    sys.buy("A", 1);
    qv::memory::failAllocation(1);
    sys.next();
  }
  qv::memory::failAllocation(0);
  EXPECT_EQ(sys.positionCount, 16);
  EXPECT_EQ(sys.orderCount, 0) << "the entry that found no room is gone";
  sys.buy("A", 1);
  sys.next();
  EXPECT_EQ(sys.positionCapacity, 20);
  EXPECT_EQ(sys.longContracts, 17);
}

TEST(Scenario, HugeAndOddVolumes) {
  const Bars bars(flatBars({10, 11, 12, 13, 14}));
  System sys(bars);
  sys.onTicks(1).pyramiding = 1;
  sys.next();
  sys.buy("A", INT_MAX);
  sys.next();
  sys.buy("A", INT_MAX);
  sys.next();
  EXPECT_EQ(sys.longContracts, INT_MAX) << "saturates";
  EXPECT_EQ(sys.averageEntryPrice, 11.5);
  sys.sell("none", INT_MIN);
  sys.sell("none", 0);
  sys.sellShort("S", INT_MIN);
  sys.buy("zero", 0);
  sys.next();
  EXPECT_EQ(sys.tradeCount, 2) << "the sale closed the long positions, whatever its own volume";
  EXPECT_EQ(sys.longContracts + sys.shortContracts, 0);
  sys.tickSize = 0;
  sys.buy("A", 1);
  sys.next();
  EXPECT_TRUE(std::isnan(+sys.positions[sys.positionCount - 1].entryPrice)) << "there is no grid";
}

}  // namespace
}  // namespace qvtest
