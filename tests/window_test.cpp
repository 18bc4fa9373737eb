// Every sliding kernel against the obvious loop over each window.
#include "core/window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numeric>
#include <string>

#include "core/memory.h"
#include "support/series.h"

namespace qvtest {
namespace {

using namespace qv::window;
using Items = std::vector<double>;
using Naive = std::function<double(const Items&)>;
using Kernel = std::function<int(const double*, Range, double*)>;

constexpr double kUntouched = -77.25;

std::size_t at(int i) {
  return static_cast<std::size_t>(i);
}

Items windowEndingAt(const Items& x, const Range& r, int i) {
  const int begin = std::max(i - std::min(r.period, i + 1) + 1, r.first);
  return {x.begin() + begin, x.begin() + i + 1};
}

bool hasResult(const Range& r, int i) {
  return i >= r.first && i < r.end && (r.cut || i - r.first >= r.period - 1);
}

double scaleOf(const Items& w) {
  double scale = 0.0;
  for (double v : w) scale = std::max(scale, std::fabs(v));
  return scale;
}

long double meanOf(const Items& w) {
  long double sum = 0;
  for (double v : w) sum += v;
  return sum / static_cast<long double>(w.size());
}

long double products(const Items& a, const Items& b) {
  const long double ma = meanOf(a), mb = meanOf(b);
  long double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - ma) * (b[i] - mb);
  return sum;
}

Items positions(const Items& w) {
  Items x;
  for (std::size_t i = 0; i < w.size(); ++i) x.push_back(static_cast<double>(i + 1));
  return x;
}

double slopeOf(const Items& w) {
  const Items x = positions(w);
  return w.size() < 2 ? w[0] * 0.0 : static_cast<double>(products(x, w) / products(x, x));
}

double standardErrorOf(const Items& w) {
  const long double slope = slopeOf(w), mean = meanOf(w);
  const long double n = static_cast<long double>(w.size());
  long double residual = 0;
  for (std::size_t i = 0; i < w.size(); ++i) {
    const long double e = w[i] - mean - slope * (static_cast<long double>(i) - (n - 1) / 2);
    residual += e * e;
  }
  const long double variance = residual / (n - 2);
  return w.size() > 2 && variance > 0 ? static_cast<double>(std::sqrt(variance)) : 0.0;
}

double sumOf(const Items& w) {
  double sum = 0.0;
  for (double v : w) sum += v;
  return sum;
}

double weightedSumOf(const Items& w) {
  double sum = 0.0;
  for (std::size_t i = 0; i < w.size(); ++i) sum += static_cast<double>(i + 1) * w[i];
  return sum;
}

double deviationOf(const Items& w, bool sample) {
  const double n = static_cast<double>(w.size()) - (sample ? 1.0 : 0.0);
  return std::sqrt(static_cast<double>(products(w, w)) / n);
}

double extremeOf(const Items& w, bool highest, bool skipZeros) {
  double extreme = w[0];
  for (double v : w)
    if (!(skipZeros && v == 0.0) && (highest ? v >= extreme : v <= extreme)) extreme = v;
  return extreme;
}

int positionOf(const Items& w, bool highest) {
  std::size_t best = 0;
  for (std::size_t i = 0; i < w.size(); ++i)
    if (highest ? w[i] > w[best] : w[i] < w[best]) best = i;
  return static_cast<int>(best);
}

// What a kernel may be off by: nothing, or a relative error and one that is relative to the size of the
// terms it adds up (a sum of large terms can come out near zero).
struct Tolerance {
  double relative = 0.0;
  std::function<double(const Items&)> terms = [](const Items&) { return 0.0; };
};

void compare(const std::string& what, const Items& x, const Kernel& kernel, const Naive& naive,
             const Tolerance& tolerance) {
  const int n = static_cast<int>(x.size());
  for (int period : {1, 2, 3, 4, 5, 6, 7, 8, 9, 14, 37, n - 4, n - 3, n, n + 1, 2'000'000'000}) {
    for (int first : {0, 3}) {
      for (int end : {n, n - 2}) {
        for (bool cut : {false, true}) {
          const Range r{first, end, period, cut};
          Items out(x.size(), kUntouched), inPlace = x;
          ASSERT_EQ(kernel(x.data(), r, out.data()), 0);
          ASSERT_EQ(kernel(inPlace.data(), r, inPlace.data()), 0);
          for (int i = 0; i < n; ++i) {
            SCOPED_TRACE(what + ": item " + std::to_string(i) + " period " + std::to_string(period) +
                         " first " + std::to_string(first) + (cut ? " cut" : ""));
            if (!hasResult(r, i)) {
              ASSERT_EQ(out[at(i)], kUntouched);
              ASSERT_EQ(std::memcmp(&inPlace[at(i)], &x[at(i)], sizeof(double)), 0);
              continue;
            }
            const Items w = windowEndingAt(x, r, i);
            const double expected = naive(w), result = out[at(i)];
            ASSERT_EQ(std::memcmp(&inPlace[at(i)], &result, sizeof(double)), 0) << "in place";
            if (expected != expected) {
              ASSERT_NE(result, result);
            } else if (tolerance.relative == 0.0) {
              ASSERT_EQ(std::memcmp(&expected, &result, sizeof(double)), 0) << expected << " " << result;
            } else {
              const double allowed = tolerance.relative * std::fabs(expected) + tolerance.terms(w);
              ASSERT_NEAR(expected, result, allowed);
            }
          }
        }
      }
    }
  }
}

void compareOnAllShapes(const Kernel& kernel, const Naive& naive, const Tolerance& tolerance = {}) {
  for (Shape shape : kShapes)
    compare("shape " + std::to_string(static_cast<int>(shape)), shaped(shape, 61), kernel, naive, tolerance);
}

// Ten rounding errors of each term of a sum: the naive loop makes as many.
double termError(const Items& w, double largest) {
  return 10 * std::numeric_limits<double>::epsilon() * static_cast<double>(w.size()) * largest;
}

TEST(Window, Sums) {
  compareOnAllShapes(sum, sumOf, {1e-15, [](const Items& w) { return termError(w, scaleOf(w)); }});
  compareOnAllShapes(
      mean, [](const Items& w) { return sumOf(w) / static_cast<double>(w.size()); },
      {1e-15, [](const Items& w) { return termError(w, scaleOf(w)) / static_cast<double>(w.size()); }});
  compareOnAllShapes(
      weightedSum, weightedSumOf,
      {1e-15, [](const Items& w) { return termError(w, scaleOf(w) * static_cast<double>(w.size())); }});
}

// Sums are made in stretches of 256 items, or in parts of 64 for periods from there on.
TEST(Window, SumsAcrossStretches) {
  constexpr int kItems = 1300;
  Items x = shaped(Shape::Integers, kItems);  // exact in any order
  x[700] = kNaN;
  for (int period : {1, 9, 62, 63, 64, 65, 127, 128, 129, 257, 641, 1295, 1296}) {
    for (bool cut : {false, true}) {
      const Range r{4, kItems, period, cut};
      Items sums(x.size(), kUntouched), inPlace = x;
      ASSERT_EQ(sum(x.data(), r, sums.data()), 0);
      ASSERT_EQ(sum(inPlace.data(), r, inPlace.data()), 0);
      for (int i = 0; i < kItems; ++i) {
        SCOPED_TRACE("item " + std::to_string(i) + " of " + std::to_string(period));
        if (!hasResult(r, i)) {
          ASSERT_EQ(sums[at(i)], kUntouched);
        } else if (const double expected = sumOf(windowEndingAt(x, r, i)); expected == expected) {
          ASSERT_EQ(sums[at(i)], expected);
          ASSERT_EQ(inPlace[at(i)], expected);
        } else {
          ASSERT_NE(sums[at(i)], sums[at(i)]);
        }
      }
    }
  }
}

TEST(Window, ExtremesAreExact) {
  Items signedZeros = {0.0, -0.0, 1.0, -0.0, 0.0, -0.0, kInf, 0.0, -1.0, -kInf, 0.0, kNaN, -0.0, 0.0};
  for (int i = 0; i < 3; ++i) signedZeros.insert(signedZeros.end(), signedZeros.begin(), signedZeros.end());
  for (bool skip : {false, true}) {
    const Kernel lowest = [skip](const double* x, Range r, double* out) { return minimum(x, r, out, skip); };
    const Naive naive = [skip](const Items& w) { return extremeOf(w, false, skip); };
    compareOnAllShapes(lowest, naive);
    signedZeros.resize(70);
    compare("signed zeros", signedZeros, lowest, naive, {});
  }
  const Naive naive = [](const Items& w) { return extremeOf(w, true, false); };
  compareOnAllShapes(maximum, naive);
  compare("signed zeros", signedZeros, maximum, naive, {});
}

// Short blocks are worked on in stretches of about 512 items, long ones alone: a stretch boundary must
// not show, nor the last block that is cut short. Integers keep all but the square roots exact.
TEST(Window, NothingShowsWhereStretchesMeet) {
  constexpr int kItems = 1300;
  Items x = shaped(Shape::Integers, kItems), y = shaped(Shape::Integers, kItems, 2);
  x[700] = kNaN;
  for (int period : {2, 9, 73, 256, 257, 511, 512, 513, 649, 1299}) {
    const Range r{1, kItems, period};
    Items lowest = x, weighted = x, deviations = x, covariances = x, slopes = x, errors = x;
    std::vector<int> where(x.size());
    ASSERT_EQ(minimum(x.data(), r, lowest.data()), 0);
    ASSERT_EQ(minimumPosition(x.data(), r, where.data()), 0);
    for (Items* inPlace : {&weighted, &deviations, &covariances, &slopes, &errors}) {
      double* io = inPlace->data();
      ASSERT_EQ(inPlace == &weighted      ? weightedSum(io, r, io)
                : inPlace == &deviations  ? deviation(io, r, false, io)
                : inPlace == &covariances ? covariance(io, y.data(), r, io)
                : inPlace == &slopes      ? regressionLine(io, r, io, nullptr)
                                          : standardError(io, r, io),
                0);
    }
    for (int i = period; i < kItems; ++i) {
      SCOPED_TRACE("item " + std::to_string(i) + " of " + std::to_string(period));
      const Items w = windowEndingAt(x, r, i);
      const double low = extremeOf(w, false, false);
      ASSERT_TRUE(lowest[at(i)] == low || (low != low && lowest[at(i)] != lowest[at(i)]));
      ASSERT_EQ(where[at(i)], i + 1 - period + positionOf(w, false));
      if (i >= 700 && i < 700 + period) {
        for (const Items* spoilt : {&weighted, &deviations, &covariances, &slopes})
          ASSERT_NE((*spoilt)[at(i)], (*spoilt)[at(i)]);
        ASSERT_EQ(errors[at(i)], 0.0);
        continue;
      }
      if (i % 7 != 0 && i > period + 1) continue;  // a sample of the slow ones
      ASSERT_EQ(weighted[at(i)], weightedSumOf(w));
      ASSERT_NEAR(deviations[at(i)], deviationOf(w, false), 1e-14);
      const double cov = static_cast<double>(products(w, windowEndingAt(y, r, i))) / (period - 1);
      ASSERT_NEAR(covariances[at(i)], cov, 1e-13);
      ASSERT_NEAR(slopes[at(i)], slopeOf(w), 1e-14);
      ASSERT_NEAR(errors[at(i)], standardErrorOf(w), 1e-13);
    }
  }
}

TEST(Window, PositionsAreTheEarliest) {
  for (Shape shape : kShapes) {
    const Items x = shaped(shape, 61);
    for (int period : {1, 2, 3, 7, 14, 61, 62}) {
      for (bool cut : {false, true}) {
        const Range r{2, 60, period, cut};
        std::vector<int> highest(x.size(), -9), lowest(x.size(), -9);
        ASSERT_EQ(maximumPosition(x.data(), r, highest.data()), 0);
        ASSERT_EQ(minimumPosition(x.data(), r, lowest.data()), 0);
        for (int i = 0; i < 61; ++i) {
          const Items w = hasResult(r, i) ? windowEndingAt(x, r, i) : Items{};
          const int begin = i + 1 - static_cast<int>(w.size());
          ASSERT_EQ(highest[at(i)], w.empty() ? -9 : begin + positionOf(w, true)) << i << " of " << period;
          ASSERT_EQ(lowest[at(i)], w.empty() ? -9 : begin + positionOf(w, false)) << i << " of " << period;
        }
      }
    }
  }
}

TEST(Window, DeviationsAndCovariances) {
  for (bool sample : {false, true}) {
    compareOnAllShapes(
        [sample](const double* x, Range r, double* out) { return deviation(x, r, sample, out); },
        [sample](const Items& w) { return deviationOf(w, sample); }, {1e-10});
  }
  for (Shape shape : {Shape::Walk, Shape::Offset, Shape::Integers, Shape::NaNs}) {
    const Items a = shaped(shape, 61, 5), b = shaped(shape, 61, 6);
    for (int period : {1, 2, 3, 14, 50}) {
      for (bool cut : {false, true}) {
        const Range r{1, 61, period, cut};
        Items together(a.size()), coefficient(a.size()), sampled(a.size());
        ASSERT_EQ(covariance(a.data(), b.data(), r, together.data()), 0);
        ASSERT_EQ(correlation(a.data(), b.data(), r, false, coefficient.data()), 0);
        ASSERT_EQ(correlation(a.data(), b.data(), r, true, sampled.data()), 0);
        for (int i = 1; i < 61; ++i) {
          if (!hasResult(r, i)) continue;
          SCOPED_TRACE(std::to_string(i) + " of " + std::to_string(period));
          const Items wa = windowEndingAt(a, r, i), wb = windowEndingAt(b, r, i);
          const double cov = static_cast<double>(products(wa, wb)) / static_cast<double>(wa.size() - 1);
          const double deviations = deviationOf(wa, false) * deviationOf(wb, false);
          if (cov != cov) {
            ASSERT_NE(together[at(i)], together[at(i)]);
          } else {
            ASSERT_NEAR(cov, together[at(i)], 1e-10 * deviations);
          }
          const bool flat = !(deviations > 0.0);
          ASSERT_NEAR(flat ? 0.0 : cov / deviations, coefficient[at(i)], 1e-10);
          const double ratio = 1.0 - 1.0 / static_cast<double>(wa.size());
          ASSERT_NEAR(flat ? 0.0 : cov / deviations * ratio, sampled[at(i)], 1e-10);
        }
      }
    }
  }
}

TEST(Window, RegressionLines) {
  const auto noise = [](const Items& w) {  // a slope made of a rounding error of the range
    const double range = extremeOf(w, true, false) - extremeOf(w, false, false);
    return range == range ? 1e-14 * range : 0.0;
  };
  const Kernel slope = [](const double* x, Range r, double* out) {
    return regressionLine(x, r, out, nullptr);
  };
  const Kernel intercept = [](const double* x, Range r, double* out) {
    return regressionLine(x, r, nullptr, out);
  };
  for (Shape shape : kShapes) {
    const Items x = shaped(shape, 61);
    if (shape != Shape::NaNs) compare("slope", x, slope, slopeOf, {1e-10, noise});
    compare("intercept", x, intercept,
            [](const Items& w) {
              const double half = (static_cast<double>(w.size()) + 1) / 2;
              return static_cast<double>(meanOf(w) - static_cast<long double>(slopeOf(w)) * half);
            },
            {1e-10, [&](const Items& w) { return 100 * noise(w); }});
    compare("standard error", x, standardError, standardErrorOf, {1e-10, noise});
  }
}

TEST(Window, LongPeriodsStayAccurateBehindAStep) {
  // The anchor, the last item before the step, stands apart from nearly all of the window.
  constexpr int p = 20000;
  Items x = shaped(Shape::Integers, 2 * p);
  for (int i = 0; i < 2 * p; ++i)
    x[static_cast<std::size_t>(i)] = (i < p ? 200 : 100) + 0.01 * x[static_cast<std::size_t>(i)];
  Items deviations(x.size()), covariances(x.size());
  ASSERT_EQ(deviation(x.data(), {0, 2 * p, p}, true, deviations.data()), 0);
  ASSERT_EQ(covariance(x.data(), x.data(), {0, 2 * p, p}, covariances.data()), 0);
  for (int i : {p, 2 * p - 100, 2 * p - 3, 2 * p - 2}) {
    const auto from = x.begin() + (i - p + 1);
    const long double mean = std::accumulate(from, from + p, 0.0L) / p;
    long double squares = 0;
    for (auto at = from; at != from + p; ++at) squares += (*at - mean) * (*at - mean);
    const double variance = static_cast<double>(squares / (p - 1));
    EXPECT_NEAR(deviations[static_cast<std::size_t>(i)] / std::sqrt(variance), 1.0, 1e-10) << i;
    EXPECT_NEAR(covariances[static_cast<std::size_t>(i)] / variance, 1.0, 1e-10) << i;
  }
}

TEST(Window, EqualItemsHaveNoDeviation) {
  const Items x(60, 0.1);  // 0.1 is not exact: a mean of several is off by a bit
  Items out(x.size(), 1.0), intercepts(x.size());
  for (int period : {1, 2, 3, 7, 10, 59}) {
    const Range r{0, 60, period, true};
    ASSERT_EQ(deviation(x.data(), r, false, out.data()), 0);
    EXPECT_EQ(out, Items(60, 0.0));
    ASSERT_EQ(regressionLine(x.data(), r, out.data(), intercepts.data()), 0);
    EXPECT_EQ(out, Items(60, 0.0));
    EXPECT_EQ(intercepts, x);
    ASSERT_EQ(standardError(x.data(), r, out.data()), 0);
    EXPECT_EQ(out, Items(60, 0.0));
    ASSERT_EQ(correlation(x.data(), x.data(), r, false, out.data()), 0);
    EXPECT_EQ(out, Items(60, 0.0));
  }
}

// A trend of a million bars with a hair of noise, and prices near 1e8 that move by cents: checked on
// windows picked over the whole length.
TEST(Window, StaysAccurateOnLongTrends) {
  constexpr int kBars = 1'000'000;
  Items trend = shaped(Shape::Rising, kBars), cents = shaped(Shape::Offset, kBars);
  const Items hair = shaped(Shape::Integers, kBars, 9);
  for (std::size_t i = 0; i < trend.size(); ++i) trend[i] += 0.01 * hair[i];
  for (const Items& x : {trend, cents}) {
    for (int period : {14, 2000}) {
      Items deviations(x.size()), slopes(x.size()), errors(x.size()), sums(x.size());
      const Range r{0, kBars, period};
      ASSERT_EQ(deviation(x.data(), r, true, deviations.data()), 0);
      ASSERT_EQ(regressionLine(x.data(), r, slopes.data(), nullptr), 0);
      ASSERT_EQ(standardError(x.data(), r, errors.data()), 0);
      ASSERT_EQ(sum(x.data(), r, sums.data()), 0);
      for (int i = period - 1; i < kBars; i += 49'999) {
        const Items w = windowEndingAt(x, r, i);
        const double dev = deviationOf(w, true);
        EXPECT_NEAR(deviations[at(i)], dev, 1e-10 * dev);
        EXPECT_NEAR(slopes[at(i)], slopeOf(w), 1e-10 * dev / period);
        EXPECT_NEAR(errors[at(i)], standardErrorOf(w), 1e-10 * standardErrorOf(w));
        EXPECT_NEAR(sums[at(i)], static_cast<double>(meanOf(w)) * period, 1e-12 * sums[at(i)]);
      }
    }
  }
}

TEST(Window, ForgetsWildItemsOncePassed) {
  const Items clean = shaped(Shape::Walk, 200);
  const std::vector<std::pair<const char*, Kernel>> kernels = {
      {"sum", sum},
      {"mean", mean},
      {"weightedSum", weightedSum},
      {"maximum", maximum},
      {"minimum", [](const double* x, Range r, double* out) { return minimum(x, r, out); }},
      {"deviation", [](const double* x, Range r, double* out) { return deviation(x, r, true, out); }},
      {"correlation", [](const double* x, Range r, double* out) { return correlation(x, x, r, true, out); }},
      {"line", [](const double* x, Range r, double* out) { return regressionLine(x, r, nullptr, out); }},
      {"standardError", standardError},
  };
  for (const auto& [name, kernel] : kernels) {
    for (double wild : {kNaN, kInf, -kInf, 1e300, -1e17}) {
      for (int where : {0, 57, 62, 63, 64, 69}) {
        Items x = clean, expected(x.size()), out(x.size());
        x[at(where)] = wild;
        const Range r{0, 200, 7};
        ASSERT_EQ(kernel(clean.data(), r, expected.data()), 0);
        ASSERT_EQ(kernel(x.data(), r, out.data()), 0);
        for (int i = 6; i < 200; ++i) {
          if (i >= where && i < where + 7) continue;
          ASSERT_EQ(out[at(i)], expected[at(i)]) << name << " " << wild << " " << i;
        }
      }
    }
  }
}

TEST(Window, WritesNothingWithoutItemsOrMemory) {
  const Items x = shaped(Shape::Walk, 20);
  Items out(x.size(), kUntouched);
  for (const Range& r : {Range{20, 20, 3, true}, Range{25, 20, 3, true}, Range{0, 20, 0, true}}) {
    EXPECT_EQ(sum(x.data(), r, out.data()), 0);
    EXPECT_EQ(minimum(x.data(), r, out.data()), 0);
    EXPECT_EQ(deviation(x.data(), r, true, out.data()), 0);
    EXPECT_EQ(standardError(x.data(), r, out.data()), 0);
  }
  const Range r{0, 20, 3};
  const Items longer = shaped(Shape::Walk, 300);
  Items sums(longer.size(), kUntouched);
  std::vector<int> where(x.size(), -9);
  const std::function<int()> calls[] = {
      [&] {
        return sum(longer.data(), {0, 300, 200}, sums.data());
      },  // short periods need none
      [&] { return weightedSum(x.data(), r, out.data()); },
      [&] { return maximum(x.data(), r, out.data()); },
      [&] { return maximumPosition(x.data(), r, where.data()); },
      [&] { return covariance(x.data(), x.data(), r, out.data()); },
      [&] { return standardError(x.data(), r, out.data()); },
  };
  for (const auto& call : calls) {
    qv::memory::failAllocation(1);
    EXPECT_EQ(call(), -3);
    qv::memory::failAllocation(0);
  }
  EXPECT_EQ(out, Items(x.size(), kUntouched));
  EXPECT_EQ(sums, Items(longer.size(), kUntouched));
  EXPECT_EQ(where, std::vector<int>(x.size(), -9));
}

}  // namespace
}  // namespace qvtest
