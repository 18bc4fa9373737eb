// The relative volatility index smooths the deviations of rises and of falls.
#include <gtest/gtest.h>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct RelativeVolatility : testing::Test {
  const int p = 6;
  const Array walk{shaped(Shape::Walk, 80, 3), 2};
  const Bars bars{walkBars(70)};
  Array out, second, third;
};

TEST_F(RelativeVolatility, RVIoriginal) {
  const int first = 2 + p + 8;
  WilderMean up{p}, down{p};
  const auto volatility = [&](int i) {
    const double s = qvStdDev(&walk, 1, i - 9, i);
    up.add(walk[i] > walk[i - 1] ? s : 0);
    down.add(walk[i] < walk[i - 1] ? s : 0);
    return 100 * up.mean / (up.mean + down.mean);
  };
  for (int i = 2 + 9; i < first; ++i) volatility(i);
  expectEach(qvRVIoriginal(&walk, &out, p, 0), out, first, 1e-11, volatility);
  const Array flat(Items(20, 7.0)), rising(shaped(Shape::Rising, 20));
  expectGives(qvRVIoriginal(&flat, out.fresh(), p, 0), out, Items(20, 0.0), 14);
  expectEach(qvRVIoriginal(&rising, &out, p, 0), out, 14, 1e-15, [](int) { return 100.0; });
  ASSERT_EQ(qvRVIoriginal(&rising, &out, 100, 0), 0);
  EXPECT_DOUBLE_EQ(out[19], 100.0) << "fewer items than the seed: one value at the last of them";
}

TEST_F(RelativeVolatility, RVI) {
  qvRVIoriginal(&bars.high, &second, p, 3);
  qvRVIoriginal(&bars.low, &third, p, 3);
  expectEach(qvRVI(&bars, &out, p, 3), out, 17, 0, [&](int i) { return (second[i] + third[i]) / 2; });
}

TEST_F(RelativeVolatility, Inertia) {
  qvRVI(&bars, &second, p, 3);
  qvLstSqrMA(&second, &third, 10, 17);
  expectGives(qvInertia(&bars, &out, p, 10, 3), out, third.items(), 26);
}

}  // namespace
}  // namespace qvtest
