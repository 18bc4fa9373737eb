// The trading system's record, order entry and withdrawal, the sequence of the orders, and the price at which
// an order fills.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "core/memory.h"
#include "support/expect.h"
#include "support/trading.h"
#include "tradesim/fills.h"
#include "tradesim/order_sort.h"

namespace qvtest {
namespace {

using Names = std::vector<std::string>;

std::string bytesOf(const QvOrderSystem& sys) {
  return {reinterpret_cast<const char*>(&sys), sizeof sys};
}

TEST(OrderSystem, BeginsWithItsDefaults) {
  const Bars bars(walkBars(19));
  const std::string longName(100, 'n');
  QvOrderSystem sys;
  std::memset(&sys, 0x55, sizeof sys);
  ASSERT_EQ(qvOrderSystemInit(&sys, longName.c_str(), &bars), 0);
  qvOrderSystemClose(&sys);
  ASSERT_EQ(qvOrderSystemInit(&sys, sys.systemName, &sys.bars), 0) << "from its own record";
  EXPECT_EQ(std::string(sys.systemName), longName.substr(0, 79));
  QvOrderSystem wanted{};
  std::memcpy(wanted.systemName, sys.systemName, 80);
  wanted.tickSize = wanted.tickValue = 0.001;
  wanted.marginPercent = 100;
  wanted.reverseOnEntry = wanted.longEntriesAllowed = wanted.shortEntriesAllowed = 1;
  wanted.currentBar = -1;
  wanted.orderCapacity = wanted.positionCapacity = 16;
  wanted.tradeCapacity = 4;  // a quarter of the bars
  std::memcpy(&wanted.orders, &sys.orders, 3 * sizeof(void*));
  wanted.bars = bars;  // the caller's own series
  EXPECT_EQ(bytesOf(sys), bytesOf(wanted));
  qvOrderSystemClose(&sys);

  expectAnswersExhaustedMemory("qvOrderSystemInit", [&] {
    const int status = qvOrderSystemInit(&sys, "Test", &bars);
    EXPECT_TRUE(status == 0 || bytesOf(sys) == bytesOf({}));
    qvOrderSystemClose(&sys);
    return status;
  });
}

TEST(OrderSystem, ResetKeepsSettingsAndCloseFreesTheTables) {
  const long before = qv::memory::liveBlocks();
  Backtest sys(walkBars(8));
  sys.commission = 3;
  const std::string fresh = bytesOf(sys);
  sys.next();
  for (const Ask& ask : {buy("a", 1), sell("x", 1), buy("b", 1), sell("y", 9, QV_STOP, 1, QV_GTC)})
    sys.bar({ask});
  ASSERT_TRUE(sys.orderCount == 1 && sys.positionCount == 1 && sys.tradeCount == 1);
  qvOrderSystemReset(&sys);
  EXPECT_EQ(bytesOf(sys), fresh);

  for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(qvOrderSystemClose(&sys), 0);
  EXPECT_EQ(sys.orderCapacity + sys.positionCapacity + sys.tradeCapacity, 0);
  EXPECT_EQ(qv::memory::liveBlocks(), before + 7) << "the bars are the caller's";
  EXPECT_EQ(qvCancelOrder(&sys, ""), 1);
  EXPECT_EQ(sys.next(), 1);
  EXPECT_EQ(sys.bar({buy("a", 1)}), 1) << "a closed system takes a new table";
  EXPECT_EQ(sys.positionCount, 1);
}

TEST(OrderEntry, StoresWhatWasAsked) {
  Backtest sys({10, 11.5});
  while (sys.currentBar < 1) sys.next();
  sys.place({buy("market", 5, QV_MARKET, 99), sell("exit", 7, QV_MARKET, 99, 0, "a twenty-five letter name"),
             buy("a twenty-five letter name", 0, 99, 12.25, 0), sell("close", -1, QV_CLOSE, 12.25)});
  const QvOrder rows[] = {
      {"market", "", 5, QV_ENTRY, QV_BUY, 0, QV_MARKET, QV_DAY, 36527, 0},
      {"exit", "a twenty-five lette", 7, QV_EXIT, QV_SELL, 3.4028234663852886e38, QV_MARKET, 0, 36527, 0},
      {"a twenty-five lette", "", 0, QV_ENTRY, QV_BUY, 12.25, 99, 0, 36527, 0},  // nothing is checked
      {"close", "", -1, QV_EXIT, QV_SELL, 11.5, QV_CLOSE, QV_DAY, 36527, 0},
  };
  ASSERT_EQ(sys.orderCount, 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(std::memcmp(&sys.orders[i], &rows[i], sizeof rows[i]), 0) << i;
}

TEST(OrderEntry, RefusesEntriesThatAreNotAllowedOrHaveNoBar) {
  Backtest sys({10});
  for (const Ask& ask : {buy("a", 1), sell("a", 1)}) EXPECT_EQ(sys.place(ask), -1);
  sys.next();
  sys.longEntriesAllowed = 0;
  for (const Ask& ask : {buy("a", 1), sellShort("b", 1)}) EXPECT_EQ(sys.place(ask), 0);
  sys.shortEntriesAllowed = 0;
  sys.place({sellShort("c", 1), sell("x", 1), cover("y", 1)});
  EXPECT_EQ(orderNames(sys), (Names{"b", "x", "y"})) << "exits are always allowed";
  sys.next();
  EXPECT_EQ(sys.place(cover("late", 1, QV_CLOSE)), 0) << "behind the last bar: no date, no price";
  EXPECT_TRUE(sys.orders[3].date == 0 && sys.orders[3].price == 0);
}

TEST(OrderEntry, GrowsTheTableByFour) {
  Backtest sys({10, 11});
  sys.next();
  for (int i = 0; i < 16; ++i) ASSERT_EQ(sys.place(buy("first", 1)), 0);
  qv::memory::failAllocation(1);
  EXPECT_EQ(sys.place(buy("second", 1)), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(qvCancelOrder(&sys, ""), 17) << "one more than the table holds";
  const QvOrder* table = sys.orders;  // moves, with the names given
  EXPECT_EQ(sys.place(sell(table[0].name, 1, QV_MARKET, 0, 0, table[1].name)), 0);
  EXPECT_TRUE(sys.orderCount == 17 && sys.orderCapacity == 20);
  EXPECT_EQ(sys.orders[16].name + std::string(sys.orders[16].fromEntry), "firstfirst");
}

TEST(OrderEntry, CancelMarksByName) {
  Backtest sys({10, 11, 12});
  sys.next();
  EXPECT_EQ(qvCancelOrder(&sys, "a"), 0);
  sys.place({buy("a twenty-five letter name", 1, QV_STOP, 99, QV_GTC), sell("a", 1, QV_STOP, 1, QV_GTC),
             buy("a", 1, QV_STOP, 99, QV_GTC)});
  for (const char* other : {"A", "a twenty-five letter name"}) EXPECT_EQ(qvCancelOrder(&sys, other), 0);
  EXPECT_EQ(qvCancelOrder(&sys, "a"), 2);
  EXPECT_EQ(sys.orders[0].filled + sys.orders[1].filled + sys.orders[2].filled, 2);
  EXPECT_EQ(qvCancelOrder(&sys, ""), 4) << "the record behind the last one counts";
  sys.bar({buy("new", 1, QV_STOP, 99, QV_GTC)});
  EXPECT_EQ(orderNames(sys), Names{"new"}) << "although its place had been marked";
}

// A market sell entry is first among the entries that came after it; buys that came before it stay first.
TEST(OrderSort, ExitsThenBuysThenMarketThenPrice) {
  Backtest sys({10, 11, 12});
  sys.next();
  sys.place({sellShort("market 1", 1), sellShort("short 4", 1, QV_LIMIT, 4),
             sellShort("short 5", 1, QV_LIMIT, 5), buy("long 4", 1, QV_STOP, 4),
             buy("long 3", 1, QV_LIMIT, 3), buy("long market", 1), buy("long 3 too", 1, QV_STOP, 3),
             sellShort("market 2", 1), sell("sell 4", 1, QV_LIMIT, 4), sell("sell 5", 1, QV_LIMIT, 5),
             sell("sell market", 1), cover("cover 4", 1, QV_STOP, 4), cover("cover 3", 1, QV_STOP, 3),
             cover("cover market", 1)});
  qv::tradesim::sortOrders(sys.orders, sys.orderCount);
  EXPECT_EQ(orderNames(sys),
            (Names{"cover market", "cover 3", "cover 4", "sell market", "sell 5", "sell 4", "market 1",
                   "long market", "long 3", "long 3 too", "long 4", "market 2", "short 5", "short 4"}));
  // An action that no order call makes.
  sys.orders[9].action = QV_CLOSE;
  EXPECT_EQ(qv::tradesim::compareOrders(sys.orders[9], sys.orders[0]), -1);
  EXPECT_EQ(qv::tradesim::compareOrders(sys.orders[0], sys.orders[9]), 1);
}

TEST(OrderSystem, SurvivesNullArgumentsAndEmptyRecords) {
  const Bars bars(walkBars(2));
  QvOrderSystem sys{}, *none = nullptr;
  qvOrderSystemReset(none);
  for (int status : {qvOrderSystemInit(none, "", &bars), qvOrderSystemInit(&sys, nullptr, &bars),
                     qvOrderSystemInit(&sys, "", nullptr), qvOrderSystemClose(none), qvProcessOrders(none),
                     qvCancelOrder(none, ""), qvCancelOrder(&sys, nullptr), qvBuyToOpen(none, "", 1, 1, 1, 1),
                     qvBuyToOpen(&sys, nullptr, 1, 1, 1, 1), qvSellToClose(&sys, "", nullptr, 1, 1, 1, 1)})
    EXPECT_EQ(status, -1);
  EXPECT_EQ(qvProcessOrders(&sys), 0) << "an all-zero record stands on bar 0 of no bars";

  QvBars withoutLow = bars;
  withoutLow.low = QvArray{};
  QvBars withShortLow = bars;
  withShortLow.low.capacity = 1;
  System empty(QvBars{}), lacking(withoutLow), shorter(withShortLow);
  for (int status : {1, 0, 0}) EXPECT_EQ(empty.next(), status) << "the first call only moves";
  for (int status : {1, -1, 0}) EXPECT_EQ(lacking.next(), status) << "the bars are passed all the same";
  for (int status : {1, -1, 0}) EXPECT_EQ(shorter.next(), status);
  empty.currentBar = INT32_MAX;
  EXPECT_EQ(empty.next(), 0);
}

// ---- Fills ----

constexpr double kNone = -1;
using qv::tradesim::FillBar;

double fill(int type, int direction, int action, double price, const FillBar& bar, double tick,
            bool gapFills) {
  const QvOrder order{"", "", 1, action, direction, price, type, QV_DAY, 0, 0};
  return qv::tradesim::fillPrice(order, bar, tick, gapFills).value_or(kNone);
}

using Row = std::array<double, 5>;  // price; fills of an exit and an entry without gap fills, and with them

// A stop that is bought waits for the same rise as a limit that is sold, and the other way round.
void expectRows(const FillBar& bar, double tick, bool fromBelow, const std::vector<Row>& rows) {
  for (int type : {QV_STOP, QV_LIMIT})
    for (const Row& row : rows)
      for (std::size_t k = 0; k < 4; ++k) {
        const int direction = fromBelow == (type == QV_STOP) ? QV_BUY : QV_SELL;
        EXPECT_DOUBLE_EQ(fill(type, direction, k % 2 ? QV_ENTRY : QV_EXIT, row[0], bar, tick, k > 1),
                         row[k + 1])
            << "type " << type << " price " << row[0] << " column " << k;
      }
}

TEST(Fills, AtThePriceThatTheTypeOfOrderTakes) {
  const FillBar bar{10.25, 11, 9.5, 10};  // open, high, low, close of the bar before
  for (int direction : {QV_BUY, QV_SELL})
    for (int action : {QV_EXIT, QV_ENTRY}) {
      EXPECT_EQ(fill(QV_MARKET, direction, action, 1e9, bar, 0.25, true), 10.25);
      EXPECT_EQ(fill(QV_CLOSE, direction, action, 1e9, bar, 0.25, true), 10);
      for (int type : {0, 5}) EXPECT_EQ(fill(type, direction, action, 10, bar, 0.25, true), kNone);
    }
  expectRows(bar, 0.25, true,
             {{11.25, kNone, kNone, kNone, kNone},  // above the high
              {11, 11, 11.25, 11, 11.25},           // on it: an entry may fill above the bar
              {10.375, 10.5, 10.75, 10.5, 10.75},   // half a tick rounds up
              {10.3, 10.25, 10.5, 10.25, 10.5},     // 10.425 less its remainder 0.175
              {10.25, 10.25, 10.5, 10.25, 10.25},   // on the open, which the gap rule takes
              {9.5, 9.5, 9.5, 10.25, 10.25},        // on the low, which then fills without offset
              {kNaN, kNone, kNone, kNone, kNone}});
  expectRows(bar, 0.25, false,
             {{9.25, kNone, kNone, kNone, kNone},  // below the low
              {9.5, 9.5, 9.25, 9.5, 9.25},         // on it: an entry may fill below the bar
              {10.2, 10, 9.75, 10, 9.75},          // down, however near the next tick
              {10.25, 10.25, 10, 10.25, 10.25},
              {11, 11, 11, 10.25, 10.25},  // on the high, which then fills without offset
              {kNaN, kNone, kNone, kNone, kNone}});
  // 0.3 is stored as 0.29999999999999999: 29 hundredths and nearly one more.
  expectRows({0.25, 0.5, 0.05, 0.2}, 0.01, true, {{0.3, 0.3, 0.31, 0.3, 0.31}});
  expectRows({0.25, 0.5, 0.05, 0.2}, 0.01, false, {{0.3, 0.29, 0.28, 0.25, 0.25}});
}

TEST(Fills, StoredPricesAreTruncatedOnceMore) {
  Backtest sys({10, 10.1, 10.1});  // a hair below 1010 ticks
  sys.tickSize = 0.01;
  sys.next();
  for (const Ask& ask : {buy("a", 1), sell("x", 1)}) sys.bar({ask});
  EXPECT_NEAR(+sys.trades[0].position.entryPrice, 10.09, 1e-12);
  EXPECT_NEAR(+sys.trades[0].exitPrice, 10.09, 1e-12);
  EXPECT_EQ(qv::tradesim::truncateTick(-10.2, 1), -10) << "toward zero";
  EXPECT_EQ(qv::tradesim::roundNearest(-10.2, 1), -9);
}

}  // namespace
}  // namespace qvtest
