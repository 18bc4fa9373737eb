// The price at which an order fills on one bar: prices in, fill price out, no state.
//
//   order                   trades when    fills at the first that applies
//   market                  always         the open
//   close                   always         the close of the bar before
//   buy stop, sell limit    P <= high      gap fills and open >= P: the open; low >= P: the low;
//                                          else roundNearest(P), for entries one tick above it
//   sell stop, buy limit    low <= P       gap fills and open <= P: the open; high <= P: the high;
//                                          else truncateTick(P), for entries one tick below it
//
// A stop and a limit that wait for the same move share their rule, so that a buy stop rounds like a
// sell limit. Without gap fills a bar wholly beyond the price fills at its extreme nearest to it.
//
// Ticks are binary fractions: 0.3 lies a hair below 30 times 0.01, and truncation takes it to 0.29.
#pragma once

#include <optional>

#include "qvlib60/tradesim/records.h"

namespace qv::tradesim {

struct FillBar {
  double open, high, low, previousClose;
};

// The multiple of tick at or toward zero from x. A tick of 0 gives not-a-number.
double truncateTick(double x, double tick) noexcept;
double roundNearest(double x, double tick) noexcept;

// Nothing when the order does not trade on the bar. The price is not yet put on the grid.
std::optional<double> fillPrice(const QvOrder& order, const FillBar& bar, double tick,
                                bool gapFills) noexcept;

}  // namespace qv::tradesim
