// The price at which an order fills on a bar, and the tick grid.
#include "tradesim/fills.h"

#include <gtest/gtest.h>

#include "support/trading.h"

namespace qvtest {
namespace {

using qv::tradesim::FillBar;

constexpr double kNone = -1;
constexpr FillBar kBar{10.25, 11, 9.5, 10};  // open, high, low, close of the bar before

double fill(int type, int direction, int action, double price, const FillBar& bar, double tick,
            bool gapFills) {
  const QvOrder order{"", "", 1, action, direction, price, type, QV_DAY, 0, 0};
  return qv::tradesim::fillPrice(order, bar, tick, gapFills).value_or(kNone);
}

struct Row {
  double price, wanted[4];  // an exit and an entry without gap fills, and with them
};

// A stop that is bought waits for the same rise as a limit that is sold, and the other way round.
void expectRows(const FillBar& bar, double tick, bool fromBelow, const std::vector<Row>& rows) {
  for (int type : {QV_STOP, QV_LIMIT})
    for (const Row& row : rows)
      for (int k = 0; k < 4; ++k) {
        const int direction = fromBelow == (type == QV_STOP) ? QV_BUY : QV_SELL;
        EXPECT_DOUBLE_EQ(fill(type, direction, k % 2 ? QV_ENTRY : QV_EXIT, row.price, bar, tick, k > 1),
                         row.wanted[k])
            << "type " << type << " price " << row.price << " column " << k;
      }
}

TEST(Fills, MarketAtTheOpenCloseAtTheCloseBeforeOthersNever) {
  for (int direction : {QV_BUY, QV_SELL})
    for (int action : {QV_EXIT, QV_ENTRY})
      for (bool gapFills : {false, true}) {
        EXPECT_EQ(fill(QV_MARKET, direction, action, 1e9, kBar, 0.25, gapFills), 10.25);
        EXPECT_EQ(fill(QV_CLOSE, direction, action, 1e9, kBar, 0.25, gapFills), 10);
        for (int type : {0, 5}) EXPECT_EQ(fill(type, direction, action, 10, kBar, 0.25, gapFills), kNone);
        for (int type : {QV_STOP, QV_LIMIT}) {  // not-a-number trades with nothing
          EXPECT_EQ(fill(type, direction, action, kNaN, kBar, 0.25, gapFills), kNone);
          EXPECT_EQ(fill(type, direction, action, 10, {kNaN, kNaN, kNaN, kNaN}, 0.25, gapFills), kNone);
        }
      }
}

TEST(Fills, StopsAndLimits) {
  expectRows(kBar, 0.25, true,
             {{11.25, kNone, kNone, kNone, kNone},  // above the high
              {11, 11, 11.25, 11, 11.25},           // on it: an entry may fill above the bar
              {10.375, 10.5, 10.75, 10.5, 10.75},   // half a tick rounds up
              {10.3, 10.25, 10.5, 10.25, 10.5},     // 10.425 less its remainder 0.175
              {10.25, 10.25, 10.5, 10.25, 10.25},   // on the open, which the gap rule takes
              {10, 10, 10.25, 10.25, 10.25},        // opened beyond
              {9.5, 9.5, 9.5, 10.25, 10.25},        // on the low, which then fills without offset
              {9.25, 9.5, 9.5, 10.25, 10.25}});     // wholly beyond
  expectRows(kBar, 0.25, false,
             {{9.25, kNone, kNone, kNone, kNone},  // below the low
              {9.5, 9.5, 9.25, 9.5, 9.25},         // on it: an entry may fill below the bar
              {10.2, 10, 9.75, 10, 9.75},          // down, however near the next tick
              {10.25, 10.25, 10, 10.25, 10.25},
              {10.5, 10.5, 10.25, 10.25, 10.25},
              {11, 11, 11, 10.25, 10.25},  // on the high, which then fills without offset
              {11.5, 11, 11, 10.25, 10.25}});
  // 0.3 is stored as 0.29999999999999999: 29 hundredths and nearly one more.
  expectRows({0.25, 0.5, 0.05, 0.2}, 0.01, true, {{0.3, 0.3, 0.31, 0.3, 0.31}});
  expectRows({0.25, 0.5, 0.05, 0.2}, 0.01, false, {{0.3, 0.29, 0.28, 0.25, 0.25}});
}

// The market entry at 10.1, a hair below 1010 ticks, and the exit limit that rounds to it.
TEST(Fills, StoredPricesAreTruncatedOnceMore) {
  Backtest sys({{10, 10, 10, 10, 0, 0, 1}, {10.1, 10.1, 10.1, 10.1, 0, 0, 2}, {10, 10.5, 10, 10, 0, 0, 3}});
  sys.tickSize = 0.01;
  sys.next();
  sys.bar({buy("a", 1)});
  sys.bar({sell("x", 1, QV_LIMIT, 10.1)});
  ASSERT_EQ(sys.tradeCount, 1);
  EXPECT_NEAR(+sys.trades[0].position.entryPrice, 10.09, 1e-12);
  EXPECT_NEAR(+sys.trades[0].exitPrice, 10.09, 1e-12);
  EXPECT_EQ(qv::tradesim::truncateTick(-10.2, 1), -10) << "toward zero";
  EXPECT_EQ(qv::tradesim::roundNearest(-10.2, 1), -9);
}

}  // namespace
}  // namespace qvtest
