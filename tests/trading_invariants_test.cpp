// What holds for every run: random strategies over random bars under random settings.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "core/memory.h"
#include "support/trading.h"

namespace qvtest {
namespace {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }

 private:
  std::mt19937 random_;
};

void choose(QvOrderSystem& sys, Dice& dice) {
  const double ticks[] = {0.01, 0.25, 1};
  sys.tickSize = ticks[dice.below(3)];
  sys.tickValue = 1 + dice.below(20);
  sys.slippage = dice.below(3);
  sys.commission = dice.below(3);
  sys.deductionRate = 0.1 * dice.below(3);
  sys.marginPercent = 50 * dice.below(3);
  sys.gapFills = dice.below(2);
  sys.reverseOnEntry = dice.below(2);
  sys.pyramiding = dice.below(2);
  sys.entryDelaySeconds = dice.oneIn(4) ? 86400 : 0;
  sys.longEntriesAllowed = !dice.oneIn(5);
  sys.shortEntriesAllowed = !dice.oneIn(5);
}

// Every order has a name of its own, except that exits now and then name an entry.
void placeOrders(System& sys, Dice& dice, int& ticket) {
  while (dice.oneIn(2)) {
    const std::string name = "o" + std::to_string(++ticket);
    const std::string from = dice.oneIn(3) ? "o" + std::to_string(1 + dice.below(ticket)) : "";
    const int volume = 1 + dice.below(5), type = 1 + dice.below(5), tif = 1 + dice.below(2);
    const double price = sys.bars.close.data[sys.currentBar] + 0.25 * (dice.below(17) - 8);
    switch (dice.below(4)) {
      case 0:
        sys.buy(name.c_str(), volume, type, price, tif);
        break;
      case 1:
        sys.sellShort(name.c_str(), volume, type, price, tif);
        break;
      case 2:
        sys.sell(name.c_str(), volume, type, price, tif, from.c_str());
        break;
      default:
        sys.cover(name.c_str(), volume, type, price, tif, from.c_str());
        break;
    }
  }
  if (dice.oneIn(20)) qvCancelOrder(&sys, dice.oneIn(2) ? "" : ("o" + std::to_string(ticket)).c_str());
}

struct Held {
  int contracts = 0, bars = 0;
  double cost = 0, openPL = 0;
};

Held heldOf(const QvOrderSystem& sys, int direction) {
  Held held;
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& p = sys.positions[i];
    if (p.direction != direction) continue;
    const double gain = sys.bars.close.data[sys.currentBar] - p.entryPrice;
    held.contracts += p.remaining;
    held.cost += p.remaining * p.entryPrice;
    held.bars = std::max(held.bars, sys.currentBar - p.entryBar + 1);
    held.openPL += (direction == QV_BUY ? gain : -gain) / sys.tickSize * sys.tickValue * p.remaining;
  }
  return held;
}

void expectNear(double a, double b, const char* what) {
  EXPECT_NEAR(a, b, 1e-9 * (1 + std::fabs(b))) << what;
}

void checkSummary(const QvOrderSystem& sys) {
  const Held l = heldOf(sys, QV_BUY), s = heldOf(sys, QV_SELL);
  EXPECT_EQ(sys.longContracts, l.contracts);
  EXPECT_EQ(sys.shortContracts, s.contracts);
  EXPECT_EQ(sys.netContracts, std::abs(l.contracts - s.contracts));
  EXPECT_EQ(sys.positionDirection, l.contracts > s.contracts ? 1 : l.contracts < s.contracts ? 2 : 0);
  EXPECT_EQ(sys.barsInLong, l.bars);
  EXPECT_EQ(sys.barsInShort, s.bars);
  expectNear(sys.longStatistics.openPositionPL, l.openPL, "long open profit");
  expectNear(sys.shortStatistics.openPositionPL, s.openPL, "short open profit");
  expectNear(sys.netStatistics.openPositionPL, l.openPL + s.openPL, "open profit");
  const Held& prevailing = l.contracts > s.contracts ? l : s;
  if (l.contracts != s.contracts)
    expectNear(sys.averageEntryPrice, prevailing.cost / prevailing.contracts, "average entry price");
  EXPECT_TRUE(sys.reverseOnEntry == 0 || l.contracts == 0 || s.contracts == 0);
}

bool onGrid(double price, double tick) {
  const double ticks = price / tick;
  return std::fabs(ticks - std::round(ticks)) < 1e-6;
}

double closesRange(const QvOrderSystem& sys, int from, int to) {
  const auto [low, high] = std::minmax_element(sys.bars.close.data + from, sys.bars.close.data + to + 1);
  return *high - *low;
}

struct Sums {
  double net = 0, profit = 0, loss = 0, drawdown = 0;
  int trades = 0, winners = 0, losers = 0, barsInWinners = 0, barsInLosers = 0;
};

void checkBlock(const QvTradeStats& s, const Sums& sums) {
  expectNear(s.totalNetProfit, sums.net, "net profit");
  expectNear(s.grossProfit, sums.profit, "gross profit");
  expectNear(s.grossLoss, sums.loss, "gross loss");
  expectNear(s.maximumIntradayDrawdown, sums.drawdown, "drawdown");
  EXPECT_EQ(s.totalNumberOfTrades, sums.trades);
  EXPECT_EQ(s.numberOfWinningTrades, sums.winners);
  EXPECT_EQ(s.numberOfLosingTrades, sums.losers);
  EXPECT_EQ(s.totalBarsInWinners, sums.barsInWinners);
  EXPECT_EQ(s.totalBarsInLosers, sums.barsInLosers);
}

void checkTrades(const QvOrderSystem& sys) {
  Sums blocks[2];
  std::map<std::string, int> closed;  // contracts by the name of the entry
  for (int i = 0; i < sys.tradeCount; ++i) {
    const QvTrade& t = sys.trades[i];
    const QvPosition& p = t.position;
    const double gain = p.direction == QV_BUY ? t.exitPrice - p.entryPrice : p.entryPrice - t.exitPrice;
    const double money = gain / sys.tickSize * sys.tickValue - sys.slippage;
    const double result = (1 - sys.deductionRate) * (money * t.exitVolume - 2 * sys.commission);
    Sums& sums = blocks[p.direction - 1];
    sums.net += result;
    (result > 0 ? sums.profit : sums.loss) += result;
    sums.trades += 1;
    (result > 0 ? sums.winners : sums.losers) += result != 0;
    if (result != 0) (result > 0 ? sums.barsInWinners : sums.barsInLosers) += t.exitBar - p.entryBar + 1;
    const double range = closesRange(sys, p.entryBar, t.exitBar);
    sums.drawdown = std::min(sums.drawdown, -range / sys.tickSize * sys.tickValue * t.exitVolume);

    EXPECT_NE(t.exitDirection, p.direction);
    EXPECT_TRUE(onGrid(p.entryPrice, sys.tickSize) && onGrid(t.exitPrice, sys.tickSize)) << i;
    int& already = closed[p.entryName];
    EXPECT_EQ(p.remaining, p.volume - already) << "what the exits before left of " << p.entryName;
    EXPECT_TRUE(t.exitVolume >= 1 && t.exitVolume <= p.remaining);
    already += t.exitVolume;
  }
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& p = sys.positions[i];
    EXPECT_EQ(p.volume, closed[p.entryName] + p.remaining) << "entered = closed + held";
    closed.erase(p.entryName);
  }
  for (int i = 0; i < sys.tradeCount; ++i) {
    const QvPosition& p = sys.trades[i].position;
    EXPECT_TRUE(!closed.count(p.entryName) || closed[p.entryName] == p.volume) << "wholly closed";
  }
  checkBlock(sys.longStatistics, blocks[0]);
  checkBlock(sys.shortStatistics, blocks[1]);
  const QvTradeStats& net = sys.netStatistics;
  expectNear(net.totalNetProfit, blocks[0].net + blocks[1].net, "net profit of all");
  EXPECT_EQ(net.totalNumberOfTrades, sys.tradeCount);
  EXPECT_EQ(net.numberOfWinningTrades, blocks[0].winners + blocks[1].winners);
  EXPECT_EQ(net.numberOfLosingTrades, blocks[0].losers + blocks[1].losers);
}

struct Outcome {
  std::vector<QvTrade> trades;
  std::vector<QvPosition> positions;
  QvTradeStats longs, shorts, net;
};

Outcome runStrategy(System& sys, unsigned seed, bool check) {
  Dice dice(seed);
  int ticket = 0;
  while (sys.next() == 1) {
    if (check) checkSummary(sys);
    placeOrders(sys, dice, ticket);
  }
  return {{sys.trades, sys.trades + sys.tradeCount},
          {sys.positions, sys.positions + sys.positionCount},
          sys.longStatistics,
          sys.shortStatistics,
          sys.netStatistics};
}

template <typename Record>
bool sameBytes(const std::vector<Record>& a, const std::vector<Record>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Record)) == 0);
}

TEST(TradingInvariants, RandomStrategies) {
  int trades = 0, stillOpen = 0;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    const Bars bars(walkBars(300, seed));
    System sys(bars);
    choose(sys, dice);
    const Outcome first = runStrategy(sys, seed, true);
    checkTrades(sys);
    trades += sys.tradeCount;
    stillOpen += sys.positionCount;
    if (testing::Test::HasFailure()) return;

    qvOrderSystemReset(&sys);
    const Outcome second = runStrategy(sys, seed, false);
    EXPECT_TRUE(sameBytes(first.trades, second.trades));
    EXPECT_TRUE(sameBytes(first.positions, second.positions));
    EXPECT_EQ(std::memcmp(&first.longs, &second.longs, sizeof first.longs), 0);
    EXPECT_EQ(std::memcmp(&first.shorts, &second.shorts, sizeof first.shorts), 0);
    EXPECT_EQ(std::memcmp(&first.net, &second.net, sizeof first.net), 0);
  }
  EXPECT_GT(trades, 1000) << "the strategies must trade, or nothing is checked";
  EXPECT_GT(stillOpen, 10);
}

TEST(TradingInvariants, NothingIsAllocatedOnceTheTablesAreLargeEnough) {
  const Bars bars(walkBars(300));
  System sys(bars);
  sys.pyramiding = 1;
  const Outcome first = runStrategy(sys, 3, false);
  ASSERT_GT(first.trades.size(), 20u);
  qvOrderSystemReset(&sys);
  qv::memory::failAllocation(1);  // the next one would lose an order, a position or a trade
  const Outcome second = runStrategy(sys, 3, false);
  qv::memory::failAllocation(0);
  EXPECT_TRUE(sameBytes(first.trades, second.trades));
  EXPECT_TRUE(sameBytes(first.positions, second.positions));
}

TEST(TradingInvariants, AnyAllocationMayFail) {
  const Bars bars(walkBars(40));  // so few bars that the trade table grows several times
  const long before = qv::memory::liveBlocks();
  for (long k = 1; k <= 12; ++k) {
    System sys(bars);
    sys.pyramiding = 1;
    qv::memory::failAllocation(k);
    Dice dice(7);
    int ticket = 0;
    while (sys.next() == 1) {
      checkSummary(sys);
      for (int i = 0; i < 8; ++i) placeOrders(sys, dice, ticket);
    }
    qv::memory::failAllocation(0);
    EXPECT_LE(sys.tradeCount, sys.netStatistics.totalNumberOfTrades);
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(TradingInvariants, WildBarsAndSettingsAreSurvived) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    Dice dice(seed);
    std::vector<Bar> wild = walkBars(120, seed);
    const double odd[] = {kNaN, kInf, -kInf, 0, -5, 1e300, -1e300, 5e-324};
    for (Bar& b : wild)
      for (double* x : {&b.open, &b.high, &b.low, &b.close, &b.date})
        if (dice.oneIn(6)) *x = odd[dice.below(8)];
    const Bars bars(wild);
    System sys(bars);
    choose(sys, dice);
    for (double* x : {&sys.tickSize, &sys.tickValue, &sys.slippage, &sys.commission, &sys.deductionRate,
                      &sys.marginPercent})
      if (dice.oneIn(4)) *x = odd[dice.below(8)];
    const int extremes[] = {INT32_MAX, INT32_MIN, -1};
    if (dice.oneIn(3)) sys.entryDelaySeconds = extremes[dice.below(3)];
    runStrategy(sys, seed, false);
    EXPECT_EQ(sys.netStatistics.totalNumberOfTrades, sys.tradeCount);
  }
}

}  // namespace
}  // namespace qvtest
