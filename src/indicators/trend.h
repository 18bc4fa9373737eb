// How strongly and for how long prices have trended: Aroon, vertical horizontal filter, random walk index,
// trend score, dynamic momentum index.
#pragma once

#include <cmath>
#include <numeric>

#include "core/calculation.h"
#include "indicators/momentum_rsi.h"
#include "kernels/extremes.h"
#include "kernels/moments.h"
#include "kernels/past.h"

namespace qv {

constexpr auto relativeChangeOf = [](double now, double before) {
  return std::fabs((now - before) / before);
};
constexpr auto scoreOf = [](double now, double before) { return now >= before ? 1.0 : -1.0; };

namespace chain {

// The age of the highest high and of the lowest low of the last period + 1 bars, 100 for the newest.
class Aroon {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 2;

  explicit Aroon(int period) noexcept : period_(period), window_(saturatingSum(period, 1)) {}
  int lead() const noexcept { return period_; }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    window_.run(in, count, out);
    const int none = begin_.pass(count);
    const auto shareLeft = [p = static_cast<double>(period_)](double age) { return (p - age) / p * 100.0; };
    for (double* y : out) map(count - none, y + none, shareLeft, y + none);
  }
  auto state() noexcept { return std::tie(window_, begin_); }

 private:
  int period_;
  Sliding<ExtremeAges> window_;
  Lead begin_{period_};
};

class AroonOscillator {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit AroonOscillator(int period) noexcept : aroon_(period) {}
  int lead() const noexcept { return aroon_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile up, down;
    aroon_.run(in, count, {up, down});
    map(
        count, out[0], [](double u, double d) { return u - d; }, up, down);
  }
  auto state() noexcept { return std::tie(aroon_); }

 private:
  Aroon aroon_;
};

// The range of the last bars in relation to their relative changes. A change from zero counts in the first
// window only, and does not count in the later ones. A series that is too short has one value, at its last
// item.
class VHF {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit VHF(int period) noexcept
      : seed_(saturatingSum(period, 1)), extremes_(1, period), noise_(1, period) {}
  int lead() const noexcept { return noise_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile changes, noise, highest, lowest;
    const double before = before_.take(x, count);
    changes[0] = changeOf(x[0], before);
    map(count - 1, changes + 1, changeOf, x + 1, x);
    const int seeded = seed_.pass(count);
    for (int j = 0; j < seeded; ++j) changes[j] = relativeChangeOf(x[j], j > 0 ? x[j - 1] : before);
    extremes_.run({x, x}, count, {highest, lowest});
    noise_.run({changes}, count, {noise});
    map(count, out[0], filterOf, highest, lowest, noise);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items < 2) return;
    const auto highs = extremes_.stage().itemsSoFar();
    double highest = highs[0], lowest = highs[0];
    for (const double x : highs) {
      highest = x >= highest ? x : highest;
      lowest = x <= lowest ? x : lowest;
    }
    const auto changes = noise_.stage().itemsSoFar();
    *last[0] = filterOf(highest, lowest, std::accumulate(changes.begin(), changes.end(), 0.0));
  }
  auto state() noexcept { return std::tie(before_, seed_, extremes_, noise_); }

 private:
  static constexpr auto changeOf = [](double now, double before) {
    const double change = relativeChangeOf(now, before);
    return before != 0.0 ? change : 0.0;
  };
  static constexpr auto filterOf = [](double highest, double lowest, double noise) {
    const double filter = (highest - lowest) / noise;
    return noise != 0.0 ? filter : 0.0;
  };

  Before before_;
  Lead seed_;  // the first item, which has no change, and the changes of the first window
  After<Sliding<HighestLowest>> extremes_;
  After<Sliding<Sums<1>>> noise_;
};

// How far prices went from each of the last bars, in terms of what a random walk with their mean range
// would have gone. Every bar looks at every distance: the terms of a mean range of zero are those of an
// earlier bar.
class RWI {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 2;

  explicit RWI(int period) noexcept
      : period_(period), high_(period), low_(period), range_(period), begin_(period) {}
  bool ok() const noexcept { return !failed_ && high_.ok() && low_.ok() && range_.ok(); }
  int lead() const noexcept { return period_; }
  void run(Inputs<3> in, int count, Outputs<2> out) noexcept {
    Tile ranges;
    ranges[0] = rangeOf(in[0][0], in[1][0], close_.take(in[2], count));
    map(count - 1, ranges + 1, rangeOf, in[0] + 1, in[1] + 1, in[2]);
    const double *high = high_.with(in[0], count), *low = low_.with(in[1], count),
                 *range = range_.with(ranges, count);
    const int none = begin_.pass(count, out[0], out[1]);
    if (none < count && !begun_) begun_ = makeTerms();
    if (!ok()) return;
    for (int i = none; i < count; ++i) furthest(high + i, low + i, range + i, out[0] + i, out[1] + i);
  }
  bool reserve(int count) noexcept {
    const bool has = begin_.left() >= count || makeTerms();
    failed_ = false;  // nothing was given up
    return has;
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(high_, low_, range_, close_, begin_, begun_);
    v.require(std::min({high_.held(), low_.held(), range_.held()}) >= period_ - begin_.left());
    v.buffer(terms_, begun_ ? sizeOfTerms() : 0);
  }

 private:
  // A gap above the previous close does not count.
  static constexpr auto rangeOf = [](double high, double low, double closeBefore) {
    const double height = high - low, below = closeBefore - low;
    return below >= height ? below : height;
  };
  std::size_t sizeOfTerms() const noexcept { return std::size_t{3} * static_cast<std::size_t>(period_); }
  // 1 / square root of each distance.
  double* perRoot() noexcept { return &terms_[std::size_t{2} * static_cast<std::size_t>(period_)]; }
  bool makeTerms() noexcept {
    if (terms_.ok()) return true;
    terms_ = memory::Buffer<double>(sizeOfTerms());
    for (int j = 1; terms_.ok() && j < period_; ++j) perRoot()[j] = 1.0 / std::sqrt(j + 1.0);
    failed_ = !terms_.ok();
    return !failed_;
  }
  void furthest(const double* high, const double* low, const double* range, double* outHigh,
                double* outLow) noexcept {
    constexpr double kFaint = 1e-300;  // so little may be nothing once it is shared out
    double* last = terms_.data();
    const double* perRoots = perRoot();
    const Two now = {-*low, *high};
    Two best = twice(0.0);
    double sum = range[-1];
    for (int j = 1; j < period_; ++j) {
      sum += range[-j - 1];
      last += 2;
      if (magnitude(sum) >= kFaint || sum / (j + 1) != 0.0) [[likely]] {
        const Two term = (Two{high[-j], -low[-j]} + now) / twice(sum * perRoots[j]);
        storeTwo(last, term);
        best = larger(term, best);
      } else {
        best = larger(loadTwo(last), best);
      }
    }
    *outLow = best[0];
    *outHigh = best[1];
  }

  int period_;
  Past high_, low_, range_;
  Before close_{-kInfinity};
  Lead begin_;
  bool begun_ = false, failed_ = false;
  memory::Buffer<double> terms_;  // of each distance the last ones, from a high and from a low; perRoot
};

// Rises less falls among the last bars; what stands still has risen. A series that is too short has one
// value, at its last item.
class TrendScore {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit TrendScore(int period) noexcept : score_(1, period) {}
  int lead() const noexcept { return score_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile scores;
    scores[0] = scoreOf(x[0], before_.take(x, count));
    map(count - 1, scores + 1, scoreOf, x + 1, x);
    score_.run({scores}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    const auto scores = score_.stage().itemsSoFar();
    if (items > 0) *last[0] = std::accumulate(scores.begin(), scores.end(), 0.0);
  }
  auto state() noexcept { return std::tie(before_, score_); }

 private:
  Before before_;
  After<Sliding<Sums<1>>> score_;
};

// Relative strength without smoothing over a look-back that shortens as the deviation of five bars grows
// above its own mean of ten.
class DMI {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  int lead() const noexcept { return kLongest; }
  bool ok() const noexcept { return items_.ok() && deviations_.ok(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile deviation;
    deviation_.run(in, count, {deviation});
    const double *x = items_.with(in[0], count), *sd = deviations_.with(deviation, count);
    if (!ok()) return;
    for (int i = begin_.pass(count, out[0]); i < count; ++i)
      out[0][i] = strengthOver(lookBack(sd + i), x + i);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(deviation_, items_, deviations_, begin_);
    v.require(std::min(items_.held(), deviations_.held() + (kLongest - kMeanPeriod + 1)) >=
              kLongest - begin_.left());
  }

 private:
  static constexpr int kDeviationPeriod = 5, kMeanPeriod = 10, kShortest = 3, kLongest = 30;

  // Summed afresh at each bar: the look-back turns on the last bit of the mean.
  static int lookBack(const double* sd) noexcept {
    double mean = 0.0;
    for (int j = kMeanPeriod - 1; j >= 0; --j) mean += sd[-j];
    mean /= kMeanPeriod;
    if (!isNonZero(mean) || !isNonZero(*sd)) return kShortest;
    return std::clamp(truncatedInt(std::floor(14.0 / (*sd / mean))), kShortest, kLongest);
  }
  static double strengthOver(int items, const double* x) noexcept {
    double up = 0.0, down = 0.0;
    for (int j = items - 1; j >= 0; --j) {
      up += riseOf(x[-j], x[-j - 1]);
      down += fallOf(x[-j], x[-j - 1]);
    }
    return strengthOf(up, down);
  }

  Sliding<Deviation> deviation_{kDeviationPeriod, {kDeviationPeriod, true}};
  Past items_{kLongest}, deviations_{kMeanPeriod - 1};
  Lead begin_{kLongest};
};

}  // namespace chain
}  // namespace qv
