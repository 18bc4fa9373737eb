// The price at which an order fills on a bar, and the tick grid.
#include "tradesim/fills.h"

#include <gtest/gtest.h>

#include "support/trading.h"

namespace qvtest {
namespace {

using qv::tradesim::FillBar;
using qv::tradesim::fillPrice;
using qv::tradesim::roundNearest;
using qv::tradesim::truncateTick;

constexpr double kNone = -1;

double fill(int type, int direction, int action, double price, const FillBar& bar, double tick,
            bool gapFills) {
  QvOrder order{};
  order.orderType = type;
  order.direction = direction;
  order.action = action;
  order.price = price;
  return fillPrice(order, bar, tick, gapFills).value_or(kNone);
}

struct Row {
  double price, exit, entry, gapExit, gapEntry;
};

void expectRows(const FillBar& bar, double tick, bool fromBelow, const std::vector<Row>& rows) {
  // A stop that is bought waits for the same rise as a limit that is sold, and the other way round.
  const int pairs[2][2] = {{QV_STOP, fromBelow ? QV_BUY : QV_SELL}, {QV_LIMIT, fromBelow ? QV_SELL : QV_BUY}};
  for (const auto& [type, direction] : pairs)
    for (const Row& row : rows) {
      SCOPED_TRACE(testing::Message()
                   << "type " << type << " direction " << direction << " price " << row.price);
      EXPECT_DOUBLE_EQ(fill(type, direction, QV_EXIT, row.price, bar, tick, false), row.exit);
      EXPECT_DOUBLE_EQ(fill(type, direction, QV_ENTRY, row.price, bar, tick, false), row.entry);
      EXPECT_DOUBLE_EQ(fill(type, direction, QV_EXIT, row.price, bar, tick, true), row.gapExit);
      EXPECT_DOUBLE_EQ(fill(type, direction, QV_ENTRY, row.price, bar, tick, true), row.gapEntry);
    }
}

constexpr FillBar kBar{10.25, 11, 9.5, 10};  // open, high, low, close of the bar before

TEST(Fills, MarketAtTheOpenAndCloseAtTheCloseBefore) {
  for (int direction : {QV_BUY, QV_SELL})
    for (int action : {QV_EXIT, QV_ENTRY})
      for (bool gapFills : {false, true}) {
        EXPECT_EQ(fill(QV_MARKET, direction, action, 1e9, kBar, 0.25, gapFills), 10.25);
        EXPECT_EQ(fill(QV_CLOSE, direction, action, 1e9, kBar, 0.25, gapFills), 10);
        for (int type : {0, 5, -1, 99})
          EXPECT_EQ(fill(type, direction, action, 10, kBar, 0.25, gapFills), kNone) << type;
      }
}

// Columns: price; exit and entry without gap fills; exit and entry with them.
TEST(Fills, FromBelowOnQuarters) {
  expectRows(kBar, 0.25, true,
             {{11.25, kNone, kNone, kNone, kNone},  // above the high
              {11, 11, 11.25, 11, 11.25},           // on it: an entry may fill above the bar
              {10.5, 10.5, 10.75, 10.5, 10.75},
              {10.25, 10.25, 10.5, 10.25, 10.25},  // on the open, which the gap rule takes
              {10, 10, 10.25, 10.25, 10.25},       // opened beyond
              {9.5, 9.5, 9.5, 10.25, 10.25},       // on the low, which then fills without offset
              {9.25, 9.5, 9.5, 10.25, 10.25},      // wholly beyond
              {10.3, 10.25, 10.5, 10.25, 10.5},    // 10.425 less its remainder 0.175
              {10.375, 10.5, 10.75, 10.5, 10.75},  // half a tick rounds up
              {10.9, 11, 11.25, 11, 11.25}});
}

TEST(Fills, FromAboveOnQuarters) {
  expectRows(kBar, 0.25, false,
             {{9.25, kNone, kNone, kNone, kNone},  // below the low
              {9.5, 9.5, 9.25, 9.5, 9.25},         // on it: an entry may fill below the bar
              {10, 10, 9.75, 10, 9.75},
              {10.2, 10, 9.75, 10, 9.75},  // down, however near the next tick
              {10.25, 10.25, 10, 10.25, 10.25},
              {10.5, 10.5, 10.25, 10.25, 10.25},
              {11, 11, 11, 10.25, 10.25},  // on the high, which then fills without offset
              {11.5, 11, 11, 10.25, 10.25}});
}

TEST(Fills, OnWholeTicks) {
  const FillBar bar{100.4, 102.7, 99.2, 100};
  expectRows(bar, 1, true,
             {{101.4, 101, 102, 101, 102},
              {101.5, 102, 103, 102, 103},
              {100, 100, 101, 100.4, 100.4},
              {99, 99.2, 99.2, 100.4, 100.4}});
  expectRows(bar, 1, false,
             {{99.9, 99, 98, 99, 98}, {101.9, 101, 100, 100.4, 100.4}, {103, 102.7, 102.7, 100.4, 100.4}});
}

TEST(Fills, OnHundredths) {
  const FillBar bar{0.25, 0.5, 0.05, 0.2};
  // 0.3 is stored as 0.29999999999999999: 29 hundredths and nearly one more. 0.1 is stored a hair
  // above ten hundredths.
  expectRows(bar, 0.01, true, {{0.3, 0.3, 0.31, 0.3, 0.31}, {0.1, 0.1, 0.11, 0.25, 0.25}});
  expectRows(bar, 0.01, false, {{0.3, 0.29, 0.28, 0.25, 0.25}, {0.1, 0.1, 0.09, 0.1, 0.09}});
}

TEST(Fills, ABarWithoutRangeFillsAtItsPrice) {
  const FillBar flat{10, 10, 10, 10};
  for (bool fromBelow : {true, false}) expectRows(flat, 0.25, fromBelow, {{10, 10, 10, 10, 10}});
  // Not-a-number trades with nothing, on either side.
  for (int type : {QV_STOP, QV_LIMIT})
    for (int direction : {QV_BUY, QV_SELL}) {
      EXPECT_EQ(fill(type, direction, QV_ENTRY, kNaN, kBar, 0.25, true), kNone);
      EXPECT_EQ(fill(type, direction, QV_ENTRY, 10, {kNaN, kNaN, kNaN, kNaN}, 0.25, true), kNone);
    }
}

TEST(TickGrid, TruncatesAndRounds) {
  struct Grid {
    double x, tick, truncated, nearest;
  };
  // The remainder is that of the stored binary numbers, exactly: where x is a hair below a multiple
  // of the tick, truncation takes a whole tick off.
  const Grid grids[] = {
      {0.1, 0.01, 0.1, 0.1},       {0.3, 0.01, 0.29, 0.3}, {10.1, 0.01, 10.09, 10.1},
      {10.3, 0.01, 10.3, 10.3},    {0.1, 0.25, 0, 0},      {0.3, 0.25, 0.25, 0.25},
      {0.375, 0.25, 0.25, 0.5},    {0.1, 1, 0, 0},         {0.5, 1, 0, 1},
      {99.99, 1, 99, 100},         {-0.3, 0.25, -0.25, 0}, {-10.2, 1, -10, -9},  // toward zero
      {12.75, 0.25, 12.75, 12.75}, {7, 1, 7, 7},
  };
  for (const Grid& g : grids) {
    EXPECT_NEAR(truncateTick(g.x, g.tick), g.truncated, 1e-12) << g.x << " on " << g.tick;
    EXPECT_NEAR(roundNearest(g.x, g.tick), g.nearest, 1e-12) << g.x << " on " << g.tick;
  }
}

TEST(TickGrid, StoredPricesAreTruncatedOnceMore) {
  // One bar at 10.1 on ticks of 0.01. The market entry stores 10.09: 10.1 is a hair below 1010
  // ticks. An exit stop at 10.1 rounds to 10.1, and storing takes a tick off as well.
  const Bars bars(flatBars({10, 10.1, 10.05}));
  System sys(bars);
  sys.onTicks(0.01);
  sys.next();
  sys.buy("a", 1);
  sys.next();
  EXPECT_NEAR(+sys.positions[0].entryPrice, 10.09, 1e-12);

  const Bars rising({{10, 10, 10, 10, 0, 0, 1}, {10, 10, 10, 10, 0, 0, 2}, {10, 10.5, 10, 10, 0, 0, 3}});
  System stop(rising);
  stop.onTicks(0.01);
  stop.next();
  stop.sellShort("a", 1);
  stop.next();
  stop.cover("x", 1, QV_STOP, 10.1);
  stop.next();
  ASSERT_EQ(stop.tradeCount, 1);
  EXPECT_NEAR(+stop.trades[0].exitPrice, 10.09, 1e-12);
}

}  // namespace
}  // namespace qvtest
