// Every sliding kernel against the plain function of a stretch, over each window.
#include "kernels/window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/memory.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

using namespace qv::window;

constexpr double kUntouched = -77.25;

using Twin = double (*)(const QvArray* a, const QvArray* b, int from, int to);

// What a kernel may be off by: a relative error, and one that is relative to the size of the terms it adds
// up (a sum of large terms can come out near zero).
struct Kernel {
  const char* name;
  int (*run)(const double* x, const double* y, Range r, double* out);
  Twin twin;
  double relative = 0.0;
  Twin noise = nullptr;
};

Pair extremes(const QvArray* a, int from, int to, int skipZeros = 0) {
  return bothOf(qvArrayStats, *a, nullptr, nullptr, from, to, skipZeros);
}

QvArray viewOf(const Items& x) {
  const int n = static_cast<int>(x.size());
  return {const_cast<double*>(x.data()), n, n, 0};
}

double slope(const QvArray* a, int from, int to) {  // of one item that is no number: none
  return from < to ? bothOf(qvRegressionLine, *a, from, to).first : 0.0 * a->data[from];
}

double total(const QvArray* a, int from, int to, int rise = 0) {  // weights 1, 1 + rise, ...
  long double sum = 0.0;
  for (int i = from; i <= to; ++i) sum += (rise * (i - from) + 1.0L) * a->data[i];
  return static_cast<double>(sum);
}

// Rounding errors of `weight` terms as large as the largest item, and of the range of the items.
double rounding(const QvArray* a, int from, int to, double weight) {
  const auto [low, high] = extremes(a, from, to);
  return 10 * std::numeric_limits<double>::epsilon() * weight * std::max(std::fabs(low), std::fabs(high));
}
double rangeNoise(const QvArray* a, const QvArray*, int from, int to) {
  const auto [low, high] = extremes(a, from, to);
  return high >= low ? 1e-14 * (high - low) : 0.0;
}

int positions(int (*kernel)(const double*, Range, int*) noexcept, const double* x, Range r, double* out) {
  std::vector<int> found(static_cast<std::size_t>(r.end), -9);
  const int status = kernel(x, r, found.data());
  for (int i = 0; i < r.end; ++i)
    if (const int position = found[static_cast<std::size_t>(i)]; position != -9) out[i] = position;
  return status;
}

#define RUN(call) \
  [](const double* x, [[maybe_unused]] const double* y, Range r, double* out) -> int { return call; }
#define TWIN(value)                                                                                   \
  []([[maybe_unused]] const QvArray* a, [[maybe_unused]] const QvArray* b, [[maybe_unused]] int from, \
     [[maybe_unused]] int to) -> double { return value; }
const Kernel kKernels[] = {
    {"sum", RUN(sum(x, r, out)), TWIN(total(a, from, to)), 1e-15,
     TWIN(rounding(a, from, to, to - from + 1.0))},
    {"mean", RUN(mean(x, r, out)), TWIN(total(a, from, to) / (to - from + 1)), 1e-15,
     TWIN(rounding(a, from, to, 1))},
    {"weightedSum", RUN(weightedSum(x, r, out)), TWIN(total(a, from, to, 1)), 1e-15,
     TWIN(rounding(a, from, to, 2 * std::pow(to - from + 1.0, 2)))},
    {"maximum", RUN(maximum(x, r, out)), TWIN(extremes(a, from, to).second)},
    {"minimum", RUN(minimum(x, r, out)), TWIN(extremes(a, from, to).first)},
    {"minimum but zeros", RUN(minimum(x, r, out, true)), TWIN(extremes(a, from, to, true).first)},
    {"maximumPosition", RUN(positions(maximumPosition, x, r, out)),
     TWIN(bothOf<int>(qvArrayStatsPos, *a, from, to, 0).second)},
    {"minimumPosition", RUN(positions(minimumPosition, x, r, out)),
     TWIN(bothOf<int>(qvArrayStatsPos, *a, from, to, 0).first)},
    {"deviation", RUN(deviation(x, r, false, out)), TWIN(qvStdDev(a, 0, from, to)), 1e-11},
    {"deviation of a sample", RUN(deviation(x, r, true, out)), TWIN(qvStdDev(a, 1, from, to)), 1e-11},
    {"covariance", RUN(covariance(x, y, r, out)), TWIN(qvCovariance(a, b, from, to)), 0,
     TWIN(1e-11 * qvStdDev(a, 0, from, to) * qvStdDev(b, 0, from, to))},
    {"correlation", RUN(correlation(x, y, r, false, out)), TWIN(qvCorCoef(a, b, 0, from, to)), 0,
     TWIN(1e-11)},
    {"correlation of a sample", RUN(correlation(x, y, r, true, out)), TWIN(qvCorCoef(a, b, 1, from, to)), 0,
     TWIN(1e-11)},
    {"slope", RUN(regressionLine(x, r, out, nullptr)), TWIN(slope(a, from, to)), 1e-11, rangeNoise},
    {"intercept", RUN(regressionLine(x, r, nullptr, out)),
     TWIN(bothOf(qvRegressionLine, *a, from, to).second), 1e-11, TWIN(100 * rangeNoise(a, b, from, to))},
    {"standardError", RUN(standardError(x, r, out)), TWIN(qvStdErr(a, from, to)), 1e-11, rangeNoise},
};

// Into another block and in place; every item from `from` on in steps.
void expectAgrees(const Kernel& k, const Items& x, const Items& y, const Range& r, int from = 0,
                  int step = 1) {
  const QvArray a = viewOf(x), b = viewOf(y);
  Items out(x.size(), kUntouched), inPlace = x;
  ASSERT_EQ(k.run(x.data(), y.data(), r, out.data()), 0);
  ASSERT_EQ(k.run(inPlace.data(), y.data(), r, inPlace.data()), 0);
  for (int i = from; i < a.size; i += step) {
    const double result = out[static_cast<std::size_t>(i)], itself = inPlace[static_cast<std::size_t>(i)];
    const bool has = i >= r.first && i < r.end && (r.cut || i - r.first >= r.period - 1);
    const int begin = std::max(i - std::min(r.period, i + 1) + 1, r.first);
    const double wanted = has ? k.twin(&a, &b, begin, i) : kUntouched;
    const double noise = has && k.noise ? k.noise(&a, &b, begin, i) : 0.0;
    const double allowed = k.relative * std::fabs(wanted) + noise;
    ASSERT_TRUE(sameBits(result, wanted) || std::fabs(result - wanted) <= allowed)
        << result << " instead of " << wanted << ": " << k.name << " at " << i << ", period " << r.period
        << ", from " << r.first << (r.cut ? ", cut" : "");
    ASSERT_TRUE(sameBits(itself, has ? result : a.data[i])) << k.name << " in place at " << i;
  }
}

TEST(Window, AgreesWithItsStretchOnEveryShape) {
  Items special = {0.0, -0.0, 1.0, -0.0, 0.0, -0.0, kInf, 0.0, -1.0, -kInf, 0.0, kNaN, -0.0, 0.0};
  while (special.size() < 61) special.push_back(special[special.size() - 14]);
  std::vector<std::pair<Items, Items>> data{{special, special}, {Items(61, 0.1), Items(61, 0.3)}};
  for (Shape shape : kShapes) data.push_back({shaped(shape, 61), shaped(shape, 61, 6)});
  for (const auto& [x, y] : data)
    for (const Kernel& k : kKernels) {
      if (&x == &data[0].first && (k.relative > 0 || k.noise)) continue;  // only the exact ones
      for (int period : {1, 2, 3, 4, 5, 6, 7, 8, 9, 14, 37, 57, 58, 61, 62, 2'000'000'000})
        for (int first : {0, 3})
          for (int end : {61, 59})
            for (bool cut : {false, true})
              ASSERT_NO_FATAL_FAILURE(expectAgrees(k, x, y, {first, end, period, cut}));
    }
}

// Short blocks are worked on in stretches of 256 or about 512 items, long ones alone or in parts of 64.
// What a wild item does ends with the last window that holds it.
TEST(Window, NothingShowsWhereStretchesMeet) {
  Items x = shaped(Shape::Integers, 1300);
  const Items y = shaped(Shape::Integers, 1300, 2);
  x[300] = -1e17;
  x[700] = kNaN;
  for (const Kernel& k : kKernels)
    for (int period : {9, 62, 63, 64, 65, 73, 128, 129, 256, 257, 511, 512, 513, 649, 1295, 1299})
      ASSERT_NO_FATAL_FAILURE(expectAgrees(k, x, y, {1, 1300, period}));
}

// A trend with a hair of noise, prices near 1e8 that move by cents, and a window that stands apart from
// its anchor, the last item before a step.
TEST(Window, StaysAccurateOnLongSeries) {
  constexpr int n = 200'000;
  Items trend = shaped(Shape::Integers, n), step(trend.begin(), trend.begin() + 40'000);
  const Items cents = shaped(Shape::Offset, n);
  for (int i = 0; double& v : trend) v = 0.01 * v + 800'000 + i++;
  for (int i = 0; double& v : step) v = 0.01 * v + (i++ < 20'000 ? 200 : 100);
  const std::pair<const Items&, int> cases[] = {
      {trend, 14}, {trend, 2000}, {cents, 14}, {cents, 2000}, {step, 20'000}};
  for (const auto& [x, period] : cases)
    for (const Kernel& k : kKernels)
      ASSERT_NO_FATAL_FAILURE(expectAgrees(k, x, x, {0, static_cast<int>(x.size()), period}, period - 2,
                                           9'999 + (period < 10'000)));
}

TEST(Window, WritesNothingWithoutItemsOrMemory) {
  const Items x = shaped(Shape::Walk, 300);
  for (const Kernel& k : kKernels) {
    Items out(x.size(), kUntouched);
    for (const Range& r : {Range{20, 20, 3, true}, Range{25, 20, 3, true}, Range{0, 20, 0, true}})
      EXPECT_EQ(k.run(x.data(), x.data(), r, out.data()), 0) << k.name;
    qv::memory::failAllocation(1);  // short sums need none
    EXPECT_EQ(k.run(x.data(), x.data(), {0, 300, 200}, out.data()), -3) << k.name;
    qv::memory::failAllocation(0);
    EXPECT_EQ(out, Items(x.size(), kUntouched)) << k.name;
  }
}

}  // namespace
}  // namespace qvtest
