// A moving-average crossover system over the daily bars.
#include <algorithm>
#include <cstdio>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"

namespace qvcli {

namespace {

struct OrderSystem : QvOrderSystem {
  OrderSystem() : QvOrderSystem{} {}
  ~OrderSystem() { qvOrderSystemClose(this); }
  OrderSystem(const OrderSystem&) = delete;
  OrderSystem& operator=(const OrderSystem&) = delete;
};

}  // namespace

void showTrading(const DemoData& demo) {
  const QvBars& bars = *demo.bars;
  constexpr int kFast = 20, kSlow = 100;
  qv::Series fast, slow, crossings;
  check(qvMovingAverage(&bars.close, &fast, QV_MA_SIMPLE, kFast, 0), "fast average");
  check(qvMovingAverage(&bars.close, &slow, QV_MA_SIMPLE, kSlow, 0), "slow average");
  check(qvCrossOverFill(&fast, &slow, &crossings, 0, bars.barsize), "crossings");

  OrderSystem system;
  check(qvOrderSystemInit(&system, "20/100 day average crossover", &bars), "trading system");
  system.tickSize = 0.01;
  system.tickValue = 0.01;
  while (qvProcessOrders(&system) == 1) {
    const double cross = qvGetArrayItem(&crossings, system.currentBar);
    if (cross > 0.0) check(qvBuyToOpen(&system, "cross up", 1, 0.0, QV_MARKET, QV_DAY), "order");
    if (cross < 0.0) check(qvSellToOpen(&system, "cross down", 1, 0.0, QV_MARKET, QV_DAY), "order");
  }

  heading(
      "A trading system: one contract with the crossings of the 20- and 100-day averages, always in the "
      "market");
  check(qvProfitRpt(&system, "STDOUT", 1), "performance summary");
  std::printf("\nThe last five trades:\n");
  std::printf("%-6s %-10s %10s  %-10s %10s %10s\n", "", "entered", "price", "left", "price", "points");
  for (int i = std::max(0, system.tradeCount - 5); i < system.tradeCount; ++i) {
    const QvTrade& t = system.trades[i];
    const double points = t.exitPrice - t.position.entryPrice;
    const bool isLong = t.position.direction == QV_BUY;
    std::printf("%-6s %-10s %10.2f  %-10s %10.2f %+10.2f\n", isLong ? "long" : "short",
                dateText(t.position.entryDate).c_str(), t.position.entryPrice, dateText(t.exitDate).c_str(),
                t.exitPrice, isLong ? points : -points);
  }
}

}  // namespace qvcli
