// Ranges of bars and the efficiency of moves.
#include <gtest/gtest.h>

#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Range : testing::Test {
  Array out, second, third, fourth;
};

TEST_F(Range, RangeIndicator) {
  // Ranges 4 / 2 (the close rose by 2), 6 (it fell), 3, 8 / 4: 2 6 3 2. Over two bars: 100, 0, 0.
  const Bars bars{{0, 10, 10, 10}, {0, 13, 9, 12}, {0, 12, 6, 8}, {0, 9, 6, 8}, {0, 14, 6, 12}};
  expectNear(qvRangeIndicator(&bars, &out, 2, 1, 0), out, {0, 0, 100, 0, 0}, 2);
  expectNear(qvRangeIndicator(&bars, &out, 2, 3, 0), out, {0, 0, 100, 50, 25}, 2);
}

TEST_F(Range, WellesVolatility) {
  // True ranges 2, 2, 6, 3, 6, 9, scaled by 2. Short from 10 with the stop at 10 + 4, which 15 passes; then
  // long: the stops 15 - 12, 17 - 6 and 17 - 12 stand off the highest close, until 4 falls through.
  const Bars turned{{0, 11, 9, 10},  {0, 11, 9, 10},  {0, 16, 14, 15},
                    {0, 18, 16, 17}, {0, 13, 11, 12}, {0, 5, 3, 4}};
  const int status = qvWellesVolatility(&turned, &out, &second, &third, &fourth, 2.0, 1, 0);
  expectNear(status, out, {10, 10, 15, 17, 17, 4}, 0);
  expectNear(status, second, {4, 4, 12, 6, 12, 18}, 0);
  expectNear(status, third, {0, 14, 14, 3, 11, 5}, 1);
  expectNear(status, fourth, {0, 0, 1, 0, 0, -1}, 1);
}

TEST_F(Range, PFE) {
  // Moves 0 1.5 -1.5 over two bars: the straight way spans one of them, and is negative for a fall.
  const Array in{1, 1, 2.5, 1};
  const double way = std::sqrt(3.25), rise = 250 / (1 + way), fall = -250 / (2 * way);
  expectNear(qvPFE(&in, &out, 2, 1, 0), out, {0, 0, rise, fall}, 2);
  expectNear(qvPFE(&in, &out, 2, 3, 0), out, {0, 0, rise, (rise + fall) / 2}, 2);
}

}  // namespace
}  // namespace qvtest
