#include "tradesim/fills.h"

#include <cmath>

namespace qv::tradesim {

namespace {

// A price that the bar must rise to: buy stop and sell limit. `entryOffset` is one tick for entries.
std::optional<double> fillFromBelow(double price, const FillBar& bar, double tick, double entryOffset,
                                    bool gapFills) noexcept {
  if (!(price <= bar.high)) return std::nullopt;
  if (gapFills && bar.open >= price) return bar.open;
  if (bar.low >= price) return bar.low;
  return roundNearest(price, tick) + entryOffset;
}

// A price that the bar must fall to: sell stop and buy limit.
std::optional<double> fillFromAbove(double price, const FillBar& bar, double tick, double entryOffset,
                                    bool gapFills) noexcept {
  if (!(bar.low <= price)) return std::nullopt;
  if (gapFills && bar.open <= price) return bar.open;
  if (bar.high <= price) return bar.high;
  return truncateTick(price, tick) - entryOffset;
}

}  // namespace

double truncateTick(double x, double tick) noexcept {
  return x - std::fmod(x, tick);
}

double roundNearest(double x, double tick) noexcept {
  return truncateTick(x + tick / 2, tick);
}

std::optional<double> fillPrice(const QvOrder& order, const FillBar& bar, double tick,
                                bool gapFills) noexcept {
  const bool buys = order.direction == QV_BUY;
  const double entryOffset = order.action == QV_ENTRY ? tick : 0.0;
  switch (order.orderType) {
    case QV_MARKET:
      return bar.open;
    case QV_CLOSE:
      return bar.previousClose;
    case QV_STOP:
      return buys ? fillFromBelow(order.price, bar, tick, entryOffset, gapFills)
                  : fillFromAbove(order.price, bar, tick, entryOffset, gapFills);
    case QV_LIMIT:
      return buys ? fillFromAbove(order.price, bar, tick, entryOffset, gapFills)
                  : fillFromBelow(order.price, bar, tick, entryOffset, gapFills);
    default:
      return std::nullopt;
  }
}

}  // namespace qv::tradesim
