// Numbers and dates as the reports write them.
#pragma once

#include <cstdio>

#include "dates/pictures.h"

namespace qv::tradesim {

// What a report prints for v: not-a-number and infinities are 0.
double printable(double v) noexcept;

// The two integers of a field like "%8lld.%02d": the whole part, truncated and saturating, and the
// first `digits` decimals, truncated. The sign goes with the whole part: -0.5 prints as 0.50.
struct FixedPoint {
  long long whole;
  int fraction;
};
FixedPoint fixedPoint(double v, int digits) noexcept;

struct DateText {
  char text[dates::kPictureRoom];
};
DateText dateText(double date, dates::Picture picture) noexcept;

// The price that a report shows for a stored order price: a market sell order has none.
double shownOrderPrice(double price) noexcept;

}  // namespace qv::tradesim
