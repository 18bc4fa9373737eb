// The trading system's record, order entry and withdrawal, and the sequence of the orders.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "core/memory.h"
#include "support/trading.h"
#include "tradesim/order_sort.h"

namespace qvtest {
namespace {

using Names = std::vector<std::string>;
constexpr double kMarketSell = 3.4028234663852886e38;

bool isZero(const QvTradeStats& s) {
  const QvTradeStats zero{};
  return std::memcmp(&s, &zero, sizeof s) == 0;
}

TEST(OrderSystem, BeginsWithItsDefaults) {
  const Bars bars(walkBars(19));
  const std::string longName(100, 'n');
  const System sys(bars, longName.c_str());
  EXPECT_EQ(std::string(sys.systemName), longName.substr(0, 79));
  EXPECT_EQ(sys.tickSize, 0.001);
  EXPECT_EQ(sys.tickValue, 0.001);
  EXPECT_EQ(sys.slippage + sys.commission + sys.deductionRate, 0.0);
  EXPECT_EQ(sys.marginPercent, 100.0);
  EXPECT_EQ(sys.entryDelaySeconds, 0);
  EXPECT_EQ(sys.gapFills, 0);
  EXPECT_EQ(sys.reverseOnEntry, 1);
  EXPECT_EQ(sys.pyramiding, 0);
  EXPECT_EQ(sys.longEntriesAllowed, 1);
  EXPECT_EQ(sys.shortEntriesAllowed, 1);
  EXPECT_EQ(sys.currentBar, -1);
  EXPECT_EQ(sys.orderCapacity, 16);
  EXPECT_EQ(sys.positionCapacity, 16);
  EXPECT_EQ(sys.tradeCapacity, 4) << "a quarter of the bars";
  EXPECT_EQ(sys.orderCount + sys.positionCount + sys.tradeCount, 0);
  EXPECT_EQ(sys.bars.close.data, bars.close.data) << "the caller's own series";
  EXPECT_TRUE(isZero(sys.longStatistics) && isZero(sys.shortStatistics) && isZero(sys.netStatistics));

  const Bars few(walkBars(3));
  EXPECT_EQ(System(few).tradeCapacity, 0);
}

TEST(OrderSystem, MayBeInitialisedFromItsOwnRecord) {
  const Bars bars(walkBars(8));
  System sys(bars, "Again");
  qvOrderSystemClose(&sys);
  ASSERT_EQ(qvOrderSystemInit(&sys, sys.systemName, &sys.bars), 0);
  EXPECT_STREQ(sys.systemName, "Again");
  EXPECT_EQ(sys.bars.barsize, 8);
}

TEST(OrderSystem, IsAllZeroAfterAFailedInit) {
  const Bars bars(walkBars(8));
  const long before = qv::memory::liveBlocks();
  const QvOrderSystem zero{};
  for (long k = 1; k <= 3; ++k) {
    QvOrderSystem sys;
    std::memset(&sys, 0x55, sizeof sys);
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvOrderSystemInit(&sys, "Test", &bars), -3) << k;
    EXPECT_EQ(std::memcmp(&sys, &zero, sizeof sys), 0) << k;
  }
  qv::memory::failAllocation(0);
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(OrderSystem, ResetKeepsSettingsAndCloseFreesTheTables) {
  const Bars bars(walkBars(8));
  const long before = qv::memory::liveBlocks();
  {
    System sys(bars);
    sys.onTicks(0.25).commission = 3;
    sys.next();
    sys.buy("a", 1);
    sys.next();
    sys.sell("x", 1);
    sys.next();
    sys.buy("b", 1);
    sys.next();
    sys.buy("c", 1);
    ASSERT_EQ(sys.tradeCount, 1);
    qvOrderSystemReset(&sys);
    EXPECT_EQ(sys.orderCount + sys.positionCount + sys.tradeCount, 0);
    EXPECT_TRUE(isZero(sys.longStatistics) && isZero(sys.shortStatistics) && isZero(sys.netStatistics));
    EXPECT_EQ(sys.currentBar, -1);
    EXPECT_EQ(
        sys.positionDirection + sys.longContracts + sys.netContracts + sys.barsInLong + sys.barsInPosition,
        0);
    EXPECT_EQ(sys.averageEntryPrice + sys.lastEntryDate, 0.0);
    EXPECT_EQ(sys.tickSize, 0.25);
    EXPECT_EQ(sys.commission, 3.0);
    EXPECT_STREQ(sys.systemName, "Test");
    EXPECT_EQ(sys.orderCapacity, 16);

    EXPECT_EQ(qvOrderSystemClose(&sys), 0);
    EXPECT_EQ(sys.orderCapacity + sys.positionCapacity + sys.tradeCapacity, 0);
    EXPECT_EQ(qv::memory::liveBlocks(), before);
    EXPECT_EQ(qvOrderSystemClose(&sys), 0) << "once more does no harm";
    EXPECT_EQ(qvCancelOrder(&sys, ""), 1);
    EXPECT_EQ(sys.next(), 1);
    EXPECT_EQ(sys.buy("a", 1), 0) << "a closed system takes a new table";
    EXPECT_EQ(sys.next(), 1);
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(OrderEntry, StoresWhatWasAsked) {
  const Bars bars(flatBars({10, 11.5}));
  System sys(bars);
  sys.run(2);
  EXPECT_EQ(qvBuyToOpen(&sys, "market buy", 5, 99, QV_MARKET, QV_DAY), 0);
  EXPECT_EQ(qvSellToOpen(&sys, "market sell", 6, 99, QV_MARKET, QV_GTC), 0);
  EXPECT_EQ(qvSellToClose(&sys, "sell exit", "from entry", 7, 99, QV_MARKET, 0), 0);
  EXPECT_EQ(qvBuyToClose(&sys, "cover", "a twenty-five letter name", 8, 99, QV_MARKET, 0), 0);
  EXPECT_EQ(qvBuyToOpen(&sys, "a twenty-five letter name", 1, 12.25, QV_STOP, 0), 0);
  EXPECT_EQ(qvSellToClose(&sys, "close", "", -1, 12.25, QV_CLOSE, 0), 0);
  EXPECT_EQ(qvBuyToOpen(&sys, "", 0, 7, 99, 0), 0) << "unknown types are stored";
  struct Row {
    const char *name, *from;
    int volume, action, direction, type, tif;
    double price;
  };
  const Row rows[] = {
      {"market buy", "", 5, QV_ENTRY, QV_BUY, QV_MARKET, QV_DAY, 0},
      {"market sell", "", 6, QV_ENTRY, QV_SELL, QV_MARKET, QV_GTC, kMarketSell},
      {"sell exit", "from entry", 7, QV_EXIT, QV_SELL, QV_MARKET, 0, kMarketSell},
      {"cover", "a twenty-five lette", 8, QV_EXIT, QV_BUY, QV_MARKET, 0, 0},
      {"a twenty-five lette", "", 1, QV_ENTRY, QV_BUY, QV_STOP, 0, 12.25},
      {"close", "", -1, QV_EXIT, QV_SELL, QV_CLOSE, 0, 11.5},
      {"", "", 0, QV_ENTRY, QV_BUY, 99, 0, 7},
  };
  ASSERT_EQ(sys.orderCount, 7);
  for (int i = 0; i < 7; ++i) {
    const QvOrder& order = sys.orders[i];
    EXPECT_STREQ(order.name, rows[i].name);
    EXPECT_STREQ(order.fromEntry, rows[i].from) << i;
    EXPECT_EQ(order.volume, rows[i].volume) << i;
    EXPECT_EQ(order.action, rows[i].action) << i;
    EXPECT_EQ(order.direction, rows[i].direction) << i;
    EXPECT_EQ(order.orderType, rows[i].type) << i;
    EXPECT_EQ(order.timeInForce, rows[i].tif) << i;
    EXPECT_EQ(+order.price, rows[i].price) << i;
    EXPECT_EQ(+order.date, 36527.0) << i;
    EXPECT_EQ(order.filled, 0) << i;
  }
}

TEST(OrderEntry, RefusesEntriesThatAreNotAllowed) {
  const Bars bars(flatBars({10, 11}));
  System sys(bars);
  sys.next();
  sys.longEntriesAllowed = 0;
  EXPECT_EQ(sys.buy("a", 1), 0);
  EXPECT_EQ(sys.orderCount, 0);
  EXPECT_EQ(sys.sellShort("b", 1), 0);
  sys.shortEntriesAllowed = 0;
  EXPECT_EQ(sys.sellShort("c", 1), 0);
  EXPECT_EQ(sys.sell("x", 1), 0) << "exits always are";
  EXPECT_EQ(sys.cover("y", 1), 0);
  EXPECT_EQ(sys.orderNames(), (Names{"b", "x", "y"}));
}

TEST(OrderEntry, NeedsABar) {
  const Bars bars(flatBars({10, 11}));
  System sys(bars);
  EXPECT_EQ(sys.buy("a", 1), -1);
  EXPECT_EQ(sys.sellShort("a", 1), -1);
  EXPECT_EQ(sys.sell("a", 1), -1);
  EXPECT_EQ(sys.cover("a", 1), -1);
  EXPECT_EQ(sys.orderCount, 0);
  sys.run(3);
  ASSERT_EQ(sys.currentBar, 2);
  EXPECT_EQ(sys.buy("late", 1, QV_CLOSE), 0) << "behind the last bar";
  EXPECT_EQ(+sys.orders[0].date, 0.0);
  EXPECT_EQ(+sys.orders[0].price, 0.0);
}

TEST(OrderEntry, GrowsTheTableByFour) {
  const Bars bars(flatBars({10, 11}));
  System sys(bars);
  sys.next();
  for (int i = 0; i < 16; ++i) ASSERT_EQ(sys.buy("first", 1), 0);
  qv::memory::failAllocation(1);
  EXPECT_EQ(sys.buy("second", 1), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(sys.orderCount, 16);
  EXPECT_EQ(sys.orderCapacity, 16);
  EXPECT_EQ(qvCancelOrder(&sys, ""), 17) << "one more than the table holds";
  EXPECT_EQ(qvSellToClose(&sys, sys.orders[0].name, sys.orders[1].name, 1, 0, QV_MARKET, 0), 0)
      << "names out of the table that moves";
  EXPECT_EQ(sys.orderCapacity, 20);
  EXPECT_STREQ(sys.orders[16].name, "first");
  EXPECT_STREQ(sys.orders[16].fromEntry, "first");
}

TEST(OrderEntry, CancelMarksByName) {
  const Bars bars(flatBars({10, 11, 12}));
  System sys(bars);
  sys.next();
  EXPECT_EQ(qvCancelOrder(&sys, "a"), 0);
  sys.buy("a twenty-five letter name", 1, QV_STOP, 99, QV_GTC);
  sys.sell("a", 1, QV_STOP, 1, QV_GTC);
  sys.buy("a", 1, QV_STOP, 99, QV_GTC);
  EXPECT_EQ(qvCancelOrder(&sys, "a twenty-five letter name"), 0) << "stored shorter";
  EXPECT_EQ(qvCancelOrder(&sys, "A"), 0);
  EXPECT_EQ(qvCancelOrder(&sys, "a"), 2);
  EXPECT_EQ(sys.orders[0].filled + sys.orders[1].filled + sys.orders[2].filled, 2);
  EXPECT_EQ(qvCancelOrder(&sys, ""), 4) << "the record behind the last one counts";
  EXPECT_EQ(sys.orders[0].filled, 1);
  sys.buy("new", 1, QV_STOP, 99, QV_GTC);
  EXPECT_EQ(sys.orders[3].filled, 0) << "although its place had been marked";
  sys.next();
  EXPECT_EQ(sys.orderNames(), Names{"new"});
  sys.buy("day", 1, QV_STOP, 99, QV_DAY);
  sys.buy("kept", 1, QV_STOP, 99, QV_GTC);
  sys.next();  // "kept" moves up by one; the place that it left still has its name
  EXPECT_EQ(sys.orderNames(), (Names{"new", "kept"}));
  EXPECT_EQ(qvCancelOrder(&sys, "kept"), 2);
}

TEST(OrderSort, ExitsThenBuysThenMarketThenPrice) {
  const Bars bars(flatBars({10, 11}));
  System sys(bars);
  sys.next();
  sys.sellShort("short 4", 1, QV_LIMIT, 4);
  sys.sellShort("short 5", 1, QV_LIMIT, 5);
  sys.sellShort("short market", 1);
  sys.buy("long 4", 1, QV_STOP, 4);
  sys.buy("long 3", 1, QV_LIMIT, 3);
  sys.buy("long market", 1);
  sys.buy("long 3 too", 1, QV_STOP, 3);
  sys.sell("sell 4", 1, QV_LIMIT, 4);
  sys.sell("sell 5", 1, QV_LIMIT, 5);
  sys.sell("sell market", 1);
  sys.cover("cover 4", 1, QV_STOP, 4);
  sys.cover("cover 3", 1, QV_STOP, 3);
  sys.cover("cover market", 1);
  qv::tradesim::sortOrders(sys.orders, sys.orderCount);
  // The market entry to sell short stands where its arrival left it among the buy entries: each of
  // them claims to come first.
  Names names = sys.orderNames();
  EXPECT_EQ(Names(names.begin(), names.begin() + 6),
            (Names{"cover market", "cover 3", "cover 4", "sell market", "sell 5", "sell 4"}));
  const auto at = std::find(names.begin(), names.end(), "short market");
  ASSERT_NE(at, names.end());
  names.erase(at);
  EXPECT_EQ(Names(names.begin() + 6, names.end()),
            (Names{"long market", "long 3", "long 3 too", "long 4", "short 5", "short 4"}));
}

TEST(OrderSort, AMarketSellEntryAndABuyEntryEachComeFirst) {
  const Bars bars(flatBars({10, 11, 12}));
  for (bool sellFirst : {true, false}) {
    System sys(bars);
    sys.next();
    if (sellFirst) sys.sellShort("S", 1);
    sys.buy("B", 1, QV_STOP, 11);
    if (!sellFirst) sys.sellShort("S", 1);
    const QvOrder &s = sys.orders[sellFirst ? 0 : 1], &b = sys.orders[sellFirst ? 1 : 0];
    EXPECT_EQ(qv::tradesim::compareOrders(s, b), -1);
    EXPECT_EQ(qv::tradesim::compareOrders(b, s), -1);
    sys.next();  // the later of the two reverses the earlier one
    EXPECT_EQ(sys.positionDirection, sellFirst ? 1 : 2) << "they are tried in the order of their arrival";
  }
}

TEST(OrderSort, AnySetOfOrdersIsPermutedAndStays) {
  std::mt19937 random(5);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const double prices[] = {0, 1, 2, kMarketSell, kNaN, kInf, -kInf};
  for (int round = 0; round < 300; ++round) {
    std::vector<QvOrder> orders(static_cast<std::size_t>(1 + below(40)));
    int ticket = 0;
    for (QvOrder& order : orders) {
      order = QvOrder{};
      order.volume = ticket++;
      order.action = 1 + below(round % 2 ? 2 : 4);  // also the action that no order call makes
      order.direction = 1 + below(2);
      order.orderType = 1 + below(4);
      order.price = prices[below(7)];
    }
    qv::tradesim::sortOrders(orders.data(), static_cast<int>(orders.size()));
    std::vector<bool> seen(orders.size());
    for (const QvOrder& order : orders) seen[static_cast<std::size_t>(order.volume)] = true;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), ticket);
    for (std::size_t i = 1; i < orders.size(); ++i) {
      const bool equal = qv::tradesim::compareOrders(orders[i - 1], orders[i]) == 0;
      EXPECT_TRUE(!equal || orders[i - 1].volume < orders[i].volume) << "equal orders keep their order";
    }
  }
}

TEST(OrderSystem, SurvivesNullArgumentsAndEmptyRecords) {
  const Bars bars(flatBars({10, 11}));
  QvOrderSystem sys{};
  QvOrderSystem* none = nullptr;
  EXPECT_EQ(qvOrderSystemInit(none, "", &bars), -1);
  EXPECT_EQ(qvOrderSystemInit(&sys, nullptr, &bars), -1);
  EXPECT_EQ(qvOrderSystemInit(&sys, "", nullptr), -1);
  qvOrderSystemReset(none);
  EXPECT_EQ(qvOrderSystemClose(none), -1);
  EXPECT_EQ(qvProcessOrders(none), -1);
  EXPECT_EQ(qvCancelOrder(none, ""), -1);
  EXPECT_EQ(qvCancelOrder(&sys, nullptr), -1);
  for (QvOrderSystem* s : {none, &sys}) {
    const char* name = s ? nullptr : "";
    EXPECT_EQ(qvBuyToOpen(s, name, 1, 1, 1, 1), -1);
    EXPECT_EQ(qvSellToOpen(s, name, 1, 1, 1, 1), -1);
    EXPECT_EQ(qvSellToClose(s, name, "", 1, 1, 1, 1), -1);
    EXPECT_EQ(qvBuyToClose(s, name, "", 1, 1, 1, 1), -1);
  }
  EXPECT_EQ(qvSellToClose(&sys, "", nullptr, 1, 1, 1, 1), -1);
  EXPECT_EQ(qvBuyToClose(&sys, "", nullptr, 1, 1, 1, 1), -1);

  // An all-zero record stands on bar 0 of no bars.
  EXPECT_EQ(qvBuyToOpen(&sys, "", 1, 1, 1, 1), 0) << "entries are not allowed in it";
  EXPECT_EQ(qvSellToClose(&sys, "", "", 1, 1, 1, 1), 0);
  EXPECT_EQ(qvProcessOrders(&sys), 0);
  qvOrderSystemClose(&sys);

  QvBars empty{};
  ASSERT_EQ(qvOrderSystemInit(&sys, "", &empty), 0);
  EXPECT_EQ(qvProcessOrders(&sys), 1) << "the first call only moves";
  EXPECT_EQ(qvProcessOrders(&sys), 0);
  sys.currentBar = INT32_MAX;
  EXPECT_EQ(qvProcessOrders(&sys), 0);
  qvOrderSystemClose(&sys);

  QvBars withoutLow = bars;
  withoutLow.low = QvArray{};
  ASSERT_EQ(qvOrderSystemInit(&sys, "", &withoutLow), 0);
  EXPECT_EQ(qvProcessOrders(&sys), 1);
  EXPECT_EQ(qvProcessOrders(&sys), -1);
  EXPECT_EQ(qvProcessOrders(&sys), 0) << "the bars are passed all the same";
  qvOrderSystemClose(&sys);
}

}  // namespace
}  // namespace qvtest
