// The stages: every result against the plain function of its window, and the same bits however a series is
// cut, from a copy, and in either width of the loops.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <span>

#include "indicators/bands_projection.h"
#include "kernels/balances.h"
#include "kernels/bar_extremes.h"
#include "kernels/exponential.h"
#include "kernels/logarithm.h"
#include "kernels/mean_deviation.h"
#include "kernels/moments.h"
#include "kernels/standard_error.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

using namespace qv;

// The allocation that fails while a stage runs, and whether it came to that.
struct Failure {
  long allocation;
  bool happened = false;
};

// One result of a stage of a period over two series, fed in pieces that `nextPiece` chooses; from a copy of
// the stage now and then, but for one whose memory fails.
using Pieces = const std::function<int(int left)>&;
using Runner =
    std::function<Items(int period, const Items& a, const Items& b, Pieces nextPiece, Failure* failure)>;
using Twin = double (*)(const QvArray* a, const QvArray* b, int from, int to);

struct Kernel {
  const char* name;
  Runner runner;
  Twin twin = nullptr;    // of the window from .. to
  double relative = 0.0;  // what the result may be off by
  Twin noise = nullptr;   // and absolutely

  Items run(int period, const Items& a, const Items& b, Pieces nextPiece, Failure* failure = nullptr) const {
    return runner(period, a, b, nextPiece, failure);
  }
};

template <typename Make>
Runner runnerOf(int output, Make make) {
  return [=](int period, const Items& a, const Items& b, Pieces nextPiece, Failure* failure) {
    auto stage = make(period);
    memory::failAllocation(failure ? failure->allocation : 0);
    using Stage = decltype(stage);
    const int n = static_cast<int>(a.size());
    std::vector<Items> results(Stage::kOutputs, Items(a.size(), kNaN));
    for (int at = 0; at < n;) {
      const int count = std::min(nextPiece(n - at), n - at);
      Inputs<Stage::kInputs> in;
      for (std::size_t s = 0; s < in.size(); ++s) in[s] = (s % 2 ? b : a).data() + at;
      Outputs<Stage::kOutputs> out;
      for (std::size_t k = 0; k < out.size(); ++k) out[k] = results[k].data() + at;
      at += count;
      if (failure) {
        stage.run(in, count, out);
        continue;
      }
      auto copy = stage;
      copy.run(in, count, out);
      EXPECT_TRUE(isOk(copy));
      stage = at % 3 ? std::move(copy) : copy;
    }
    memory::failAllocation(0);
    if (failure) failure->happened = !isOk(stage);
    const int lead = std::min(leadOf(stage, output), n);
    const Items& result = results[static_cast<std::size_t>(output)];
    EXPECT_TRUE(
        std::all_of(result.begin(), result.begin() + lead, [](double y) { return sameBits(y, 0.0); }));
    return result;
  };
}

double rounding(const QvArray* a, int from, int to, double weight) {
  double largest = 0.0;
  for (int i = from; i <= to; ++i) largest = std::max(largest, std::fabs(a->data[i]));
  return 4e-15 * weight * largest;
}
double rangeNoise(const QvArray* a, const QvArray*, int from, int to) {
  const auto [low, high] = bothOf(qvArrayStats, *a, nullptr, nullptr, from, to, 0);
  return 1e-14 * (high - low);
}
double weighed(const QvArray* a, const QvArray* weights, int from, int to) {
  long double sum = 0.0, total = 0.0;
  for (int i = from; i <= to; ++i) {
    const long double weight = weights ? weights->data[i] : i - from + 1;
    sum += weight * a->data[i];
    total += weight;
  }
  return total == 0.0L ? 0.0 : static_cast<double>(sum / total);
}
// Bars with these numbers as opens and lows, highs and closes.
QvBars barsOf(const QvArray* a, const QvArray* b) {
  QvBars bars{};
  bars.open = bars.low = *a;
  bars.high = bars.close = *b;
  bars.barsize = a->size;
  return bars;
}
double mean(const QvArray* a, int from, int to) {
  long double sum = 0.0;
  for (int i = from; i <= to; ++i) sum += a->data[i];
  return static_cast<double>(sum / (to - from + 1));
}

double meanDeviation(const QvArray* a, int from, int to) {
  long double sum = 0.0, mean = 0.0;
  for (int i = from; i <= to; ++i) mean += a->data[i];
  mean /= to - from + 1;
  for (int i = from; i <= to; ++i) sum += std::fabs(a->data[i] - mean);
  return static_cast<double>(sum / (to - from + 1));
}

// A window of an even number of items out of those half as long.
template <typename Statistic, bool kMeans>
class OfHalfWindows {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit OfHalfWindows(int period) : doubles_(period % 2 == 0), window_(lengthOf(period), of(period)) {}
  bool ok() const { return window_.ok() && twice_.ok(); }
  int lead() const { return doubles_ ? twice_.lead() : window_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) {
    for (int at = 0, items; at < count; at += items) {
      items = std::min(kTile, count - at);
      Tile half;
      window_.run({in[0] + at}, items, {doubles_ ? half : out[0] + at});
      if (doubles_) twice_.run({half}, items, {out[0] + at});
    }
  }

 private:
  static int lengthOf(int period) { return period % 2 ? period : period / 2; }
  static Statistic of([[maybe_unused]] int period) {
    if constexpr (kMeans)
      return Statistic(lengthOf(period));
    else
      return {};
  }
  bool doubles_;
  Sliding<Statistic> window_;
  OfHalves<kMeans> twice_{window_.lead() + 1};
};

#define STAGE(output, ...) runnerOf(output, [](int period) { return __VA_ARGS__; })
#define TWIN(...)                                                                                     \
  []([[maybe_unused]] const QvArray* a, [[maybe_unused]] const QvArray* b, [[maybe_unused]] int from, \
     [[maybe_unused]] int to) -> double { return __VA_ARGS__; }
const Kernel kWindows[] = {
    {"sum", STAGE(0, Sliding<Sums<1>>(period)), TWIN(mean(a, from, to) * (to - from + 1)), 1e-15,
     TWIN(rounding(a, from, to, to - from + 1.0))},
    {"second sum", STAGE(1, Sliding<Sums<2>>(period)), TWIN(mean(b, from, to) * (to - from + 1)), 1e-15,
     TWIN(rounding(b, from, to, to - from + 1.0))},
    {"mean", STAGE(0, Sliding<Means<1>>(period, Means<1>(period))), TWIN(mean(a, from, to)), 1e-15,
     TWIN(rounding(a, from, to, 4))},
    {"sum of halves", STAGE(0, OfHalfWindows<Sums<1>, false>(period)),
     TWIN(mean(a, from, to) * (to - from + 1)), 1e-15, TWIN(rounding(a, from, to, to - from + 1.0))},
    {"mean of halves", STAGE(0, OfHalfWindows<Means<1>, true>(period)), TWIN(mean(a, from, to)), 1e-15,
     TWIN(rounding(a, from, to, 4))},
    {"weighted mean", STAGE(0, Sliding<WeightedMean>(period, WeightedMean(period))),
     TWIN(weighed(a, nullptr, from, to)), 1e-15, TWIN(rounding(a, from, to, 8))},
    {"deviation", STAGE(0, Sliding<Deviation>(period, {static_cast<double>(period), false})),
     TWIN(qvStdDev(a, 0, from, to)), 1e-11},
    {"deviation of a sample", STAGE(0, Sliding<Deviation>(period, {static_cast<double>(period), true})),
     TWIN(qvStdDev(a, 1, from, to)), 1e-11},
    {"band above the mean", STAGE(0, Sliding<DeviationBands>(period, {2.0, static_cast<double>(period)})),
     TWIN(mean(a, from, to) + 2.0 * qvStdDev(a, 0, from, to)), 1e-11},
    {"mean between bands", STAGE(1, Sliding<DeviationBands>(period, {2.0, static_cast<double>(period)})),
     TWIN(mean(a, from, to)), 1e-15, TWIN(rounding(a, from, to, 4))},
    {"distance from the mean", STAGE(0, MeanDeviation(period)), TWIN(a->data[to] - mean(a, from, to)), 1e-15,
     TWIN(rounding(a, from, to, 4))},
    {"mean deviation", STAGE(1, MeanDeviation(period)), TWIN(meanDeviation(a, from, to)), 1e-15,
     TWIN(rounding(a, from, to, 4))},
    {"covariance", STAGE(0, Sliding<Covariance>(period, Covariance(period))),
     TWIN(qvCovariance(a, b, from, to)), 0,
     TWIN(1e-11 * qvStdDev(a, 0, from, to) * qvStdDev(b, 0, from, to))},
    {"correlation", STAGE(0, Sliding<Correlation>(period, Correlation(period, false))),
     TWIN(qvCorCoef(a, b, 0, from, to)), 0, TWIN(1e-11)},
    {"slope", STAGE(0, Sliding<SlopeIntercept>(period, SlopeIntercept(period))),
     TWIN(from < to ? bothOf(qvRegressionLine, *a, from, to).first : 0.0 * a->data[from]), 1e-11, rangeNoise},
    {"intercept", STAGE(1, Sliding<SlopeIntercept>(period, SlopeIntercept(period))),
     TWIN(bothOf(qvRegressionLine, *a, from, to).second), 1e-11, TWIN(100 * rangeNoise(a, b, from, to))},
    {"maximum", STAGE(0, Sliding<HighestLowest>(period)),
     TWIN(bothOf(qvArrayStats, *a, nullptr, nullptr, from, to, 0).second)},
    {"minimum", STAGE(1, Sliding<HighestLowest>(period)),
     TWIN(bothOf(qvArrayStats, *b, nullptr, nullptr, from, to, 0).first)},
    {"age of the maximum", STAGE(0, Sliding<ExtremeAges>(period)),
     TWIN(to - bothOf<int>(qvArrayStatsPos, *a, from, to, 0).second)},
    {"age of the minimum", STAGE(1, Sliding<ExtremeAges>(period)),
     TWIN(to - bothOf<int>(qvArrayStatsPos, *b, from, to, 0).first)},
    {"standard error", STAGE(0, StandardError(period)), TWIN(qvStdErr(a, from, to)), 1e-11, rangeNoise},
    {"highest price", STAGE(0, SlidingBars<HighestLowestOf<BarExtremes>>(period)),
     TWIN(bothOf(qvBarStats, barsOf(a, b), from, to).second)},
    {"lowest price", STAGE(1, SlidingBars<HighestLowestOf<BarExtremes>>(period)),
     TWIN(bothOf(qvBarStats, barsOf(a, b), from, to).first)},
};
const Kernel kOthers[] = {
    {"mean by weight", STAGE(0, Sliding<MeanByWeight>(period))},
    {"exponential", STAGE(0, Exponential(2.0 / (period + 1.0)))},
    {"Wilder's mean", STAGE(0, qv::WilderMean(period))},
    {"Wilder's sum", STAGE(0, WilderSum(period))},
    {"total", STAGE(0, Total((void(period), Total())))},
    {"delay", STAGE(0, Delay(period))},
    {"furthest projection", STAGE(0, FurthestProjection(1.0, period))},
    {"percent below", STAGE(0, Sliding<PercentBelow>(period))},
    {"balance of moves", STAGE(0, Sliding<BalanceOfMoves>(period))},
    {"behind another", STAGE(0, After<Sliding<PercentWithin>>(period, period))},
};
#undef STAGE
#undef TWIN

constexpr int kPeriods[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 14, 37, 57, 58, 61, 62, 2'000'000'000};

QvArray viewOf(const Items& x) {
  const int n = static_cast<int>(x.size());
  return {const_cast<double*>(x.data()), n, n, 0};
}
int whole(int left) {
  return left;
}

void expectAgrees(const Kernel& k, const Items& x, const Items& y, int period, int from = 0, int step = 1) {
  const QvArray a = viewOf(x), b = viewOf(y);
  const Items got = k.run(period, x, y, whole);
  for (int i = std::max(from, std::min(period, a.size + 1) - 1); i < a.size; i += step) {
    const double result = got[static_cast<std::size_t>(i)], wanted = k.twin(&a, &b, i - period + 1, i);
    const double noise = k.noise ? k.noise(&a, &b, i - period + 1, i) : 0.0;
    ASSERT_TRUE(sameBits(result, wanted) ||
                std::fabs(result - wanted) <= k.relative * std::fabs(wanted) + noise)
        << result << " instead of " << wanted << ": " << k.name << " at " << i << ", period " << period;
  }
}

TEST(Windows, AgreeWithTheirStretchOnEveryShape) {
  Items special = {0.0, -0.0, 1.0, -0.0, 0.0, -0.0, kInf, 0.0, -1.0, -kInf, 0.0, kNaN, -0.0, 0.0};
  while (special.size() < 61) special.push_back(special[special.size() - 14]);
  for (const Kernel& k : kWindows)
    for (int period : kPeriods) {
      if (k.relative == 0 && !k.noise) {
        ASSERT_NO_FATAL_FAILURE(expectAgrees(k, special, special, period));
      }
      for (Shape shape : kShapes)
        ASSERT_NO_FATAL_FAILURE(expectAgrees(k, shaped(shape, 61), shaped(shape, 61, 6), period));
    }
}

// A trend with a hair of noise, prices near 1e8 that move by cents, and a window that stands apart from its
// anchor, the item behind a step. What a wild item does ends with the last window that holds it.
TEST(Windows, StayAccurateOnLongSeries) {
  constexpr int n = 200'000;
  Items trend = shaped(Shape::Integers, n), step(trend.begin(), trend.begin() + 40'000);
  Items wild(trend.begin(), trend.begin() + 2000);
  wild[300] = -1e17;
  wild[700] = kNaN;
  const Items cents = shaped(Shape::Offset, n);
  for (int i = 0; double& v : trend) v = 0.01 * v + 800'000 + i++;
  for (int i = 0; double& v : step) v = 0.01 * v + (i++ < 20'000 ? 200 : 100);
  const std::pair<const Items&, int> cases[] = {{trend, 14},   {trend, 2000},  {cents, 14},
                                                {cents, 2000}, {step, 20'000}, {wild, 300},
                                                {wild, 129},   {wild, 64},     {wild, 7}};
  for (const auto& [x, period] : cases)
    for (const Kernel& k : kWindows)
      ASSERT_NO_FATAL_FAILURE(
          expectAgrees(k, x, x, period, period - 2, x.size() <= 2000 ? 1 : 9'999 + (period < 10'000)));
}

// Items of which no sum is a number: what comes of their windows is the same however the series is cut, and
// they are forgotten with the last of these.
TEST(Windows, ForgetItemsOfAnySize) {
  constexpr double kHuge[] = {1.7e308, -1.7e308, 1e308, -1e308, 3e305, -1e17};
  constexpr std::size_t kPeriod = 300, kWild = 1500;
  for (const std::size_t step : {7, 40}) {
    Items x(3000);
    std::mt19937 random(3);
    double price = 100.0;  // that moves little: the deviation falls to a trifle where a huge item leaves
    for (std::size_t i = 0; double& item : x) {
      price += (static_cast<int>(random() % 100) - 50) * 0.01;
      item = i < kWild && i % step == 0 ? kHuge[random() % std::size(kHuge)] : price;
      ++i;
    }
    for (const Kernel& k : kWindows) {
      const Items once = k.run(kPeriod, x, x, whole), pieces = k.run(kPeriod, x, x, [](int) { return 37; });
      ASSERT_TRUE(std::equal(once.begin(), once.end(), pieces.begin(), sameBits)) << k.name;
      ASSERT_NO_FATAL_FAILURE(expectAgrees(k, x, x, kPeriod, kWild + kPeriod));
    }
  }
}

TEST(Windows, GiveTheBitsOfEqualItems) {
  std::mt19937 random(5);
  for (int period = 1; period < 40; ++period) {
    const double item = std::uniform_real_distribution<>(-1e3, 1e3)(random);
    Items x = shaped(Shape::Walk, 150), weights = shaped(Shape::Walk, 150, 4);
    std::fill(x.begin() + 30, x.end(), item);
    for (const char* name : {"mean", "weighted mean", "mean by weight", "mean between bands",
                             "mean of halves", "deviation", "mean deviation"})
      for (const auto& kernels : {std::span<const Kernel>(kWindows), std::span<const Kernel>(kOthers, 1)})
        for (const Kernel& k : kernels)
          if (std::string(k.name) == name) {
            const Items got = k.run(period, x, weights, whole);
            for (std::size_t i = static_cast<std::size_t>(29 + period); i < got.size(); ++i)
              ASSERT_EQ(got[i], std::string(k.name).ends_with("deviation") ? 0.0 : item) << name << period;
          }
  }
}

TEST(Stages, DoNotDependOnHowASeriesIsCut) {
  std::mt19937 random(11);
  for (const Shape shape : {Shape::Walk, Shape::NaNs, Shape::Integers}) {
    const int n = shape == Shape::Walk ? 2500 : 400;
    const Items a = shaped(shape, n), b = shaped(shape, n, 3);
    for (const auto& kernels : {std::span<const Kernel>(kWindows), std::span<const Kernel>(kOthers)})
      for (const Kernel& k : kernels)
        for (int period : {1, 2, 3, 5, 7, 8, 9, 14, 15, 200, 333, 1400, 5000}) {
          const Items once = k.run(period, a, b, whole);
          for (int longest : {1, 9, 700}) {
            const auto piece = [&](int) { return std::uniform_int_distribution<>(1, longest)(random); };
            const Items pieces = k.run(period, a, b, piece);
            ASSERT_TRUE(std::equal(once.begin(), once.end(), pieces.begin(), sameBits)) << k.name << period;
          }
          wideLoops = !wideLoops;
          const Items other = k.run(period, a, b, whole);
          wideLoops = !wideLoops;
          ASSERT_TRUE(std::equal(once.begin(), once.end(), other.begin(), sameBits)) << k.name << period;
        }
  }
}

// Each allocation in turn: what comes behind it is 0.0, what came before it as ever. A copy that could not be
// made says so and gives zeros.
TEST(Stages, SayWhenTheyHaveNoMemory) {
  const Items a = shaped(Shape::Walk, 1500), b = shaped(Shape::Walk, 1500, 3);
  for (const auto& kernels : {std::span<const Kernel>(kWindows), std::span<const Kernel>(kOthers)})
    for (const Kernel& k : kernels) {
      const Items once = k.run(334, a, b, whole);
      for (int longest : {1, 97, 1500}) {
        Failure failure{0, true};
        while (failure.happened) {
          failure = {failure.allocation + 1};
          const Items got = k.run(
              334, a, b, [longest](int) { return longest; }, &failure);
          const auto end = std::mismatch(got.begin(), got.end(), once.begin(), sameBits).first;
          ASSERT_EQ(end == got.end(), !failure.happened) << k.name << " at allocation " << failure.allocation;
          ASSERT_TRUE(std::all_of(end, got.end(), [](double y) { return sameBits(y, 0.0); })) << k.name;
        }
      }
    }
  Sliding<Means<1>> window(200, Means<1>(200));
  StandardError error(200);
  Delay delay(200);
  const auto expectZeros = [&](auto& stage) {
    Items out(a.size());
    stage.run({a.data()}, 300, {out.data()});
    memory::failAllocation(1);
    auto copy = stage;
    memory::failAllocation(0);
    EXPECT_TRUE(isOk(stage));
    EXPECT_FALSE(isOk(copy));
    copy.run({a.data()}, 1500, {out.data()});
    EXPECT_EQ(out, Items(a.size(), 0.0));
  };
  expectZeros(window);
  expectZeros(error);
  expectZeros(delay);
}

// Beyond kPlainItems, where rounding errors are summed beside: a bar at a time and many at once.
TEST(Windows, OfManyItemsDoNotDependOnHowASeriesIsCut) {
  const Items a = shaped(Shape::Walk, 10'400), b = shaped(Shape::Walk, 10'400, 3);
  for (const Kernel& k : kWindows) {
    const Items once = k.run(5000, a, b, whole);
    const Items pieces = k.run(5000, a, b, [](int left) { return left > 300 ? 1700 : 1; });
    ASSERT_TRUE(std::equal(once.begin(), once.end(), pieces.begin(), sameBits)) << k.name;
  }
}

TEST(Logarithm, AgreesWithTheExactOne) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 100'000; ++i) {
    const double near = 1.0 + std::uniform_real_distribution<>(-0.5, 1.0)(random);
    const double any = std::bit_cast<double>(random() & 0x7fefffffffffffff);
    for (const double x : {near, any}) {
      const long double exact = std::log(static_cast<long double>(x));
      ASSERT_LE(std::fabs(logarithmOf(x) - exact), 2.3e-16L * std::fabs(exact)) << x;
    }
  }
  for (const double x : {0.0, -0.0, -1.0, 1.0, kInf, -kInf, kNaN, 5e-324})
    EXPECT_TRUE(sameBits(logarithmOf(x), std::log(x))) << x;
}

// Against the recurrence as it is defined; of a constant series every bar is that constant.
TEST(Recurrences, FollowTheirDefinition) {
  for (int period : {1, 2, 5, 14, 200, 3000}) {
    for (Shape shape : {Shape::Walk, Shape::Offset}) {
      const Items x = shaped(shape, 5000);
      Items exponential(x.size()), wilder(x.size()), sum(x.size());
      const long double share = 2.0L / (period + 1.0L);
      long double e = x[0], mean = 0.0, total = 0.0;
      Exponential(2.0 / (period + 1.0)).run({x.data()}, 5000, {exponential.data()});
      qv::WilderMean(period).run({x.data()}, 5000, {wilder.data()});
      WilderSum(period).run({x.data()}, 5000, {sum.data()});
      for (int i = 0; i < 5000; ++i) {
        const auto at = static_cast<std::size_t>(i);
        e += share * (x[at] - e);
        if (i < period) {
          total += x[at];
          mean = total / period;
        } else {
          total += x[at] - total / period;
          mean += (x[at] - mean) / period;
        }
        ASSERT_NEAR(exponential[at], static_cast<double>(e), 2e-15 * std::fabs(x[0])) << i;
        if (i < period - 1) continue;
        ASSERT_NEAR(wilder[at], static_cast<double>(mean), 2e-15 * std::fabs(x[0])) << i;
        ASSERT_NEAR(sum[at], static_cast<double>(total), 1e-13 * std::fabs(x[0]) * period) << i;
      }
    }
    const Items flat(5000, 0.1 * period + 1e-9);
    Items out(5000);
    Exponential(2.0 / (period + 1.0)).run({flat.data()}, 5000, {out.data()});
    EXPECT_EQ(out, flat);
    qv::WilderMean(period).run({flat.data()}, 5000, {out.data()});
    EXPECT_TRUE(std::equal(out.begin() + period - 1, out.end(), flat.begin()));
  }
}

}  // namespace
}  // namespace qvtest
