// Averages with an unlimited memory: every bar moves the average by a share of its distance from the new
// value. Exponential, double and triple exponential, generalised double smoothing, zero lag, and Wilder's
// smoothing.
#pragma once

#include "kernels/exponential.h"

namespace qv {

// The share of a new value in an average over so many bars.
constexpr double shareOf(double period) noexcept {
  return 2.0 / (period + 1.0);
}
// Refuses a not-a-number too.
constexpr bool isPeriod(double period) noexcept {
  return period >= 1.0;
}

// Two exponential averages of one series, as distances from an item of it: their difference is as exact as
// the differences of the items are, however large these.
class ExponentialPair {
 public:
  ExponentialPair(double firstShare, double secondShare) noexcept
      : origin_(std::min(firstShare, secondShare)), first_(firstShare), second_(secondShare) {}
  // body(at, items, from, first, second): pieces of the averages, both less `from`.
  template <typename Body>
  QV_INLINE void run(const double* x, int count, Body body) noexcept {
    origin_.over(
        x, count,
        [&](int at, int items) {
          Tile first, second;
          first_.run(second_, x + at, items, first, second, origin_.value());
          body(at, items, origin_.value(), first, second);
        },
        first_, second_);
  }
  // out[i] = first[i] - second[i].
  void apart(const double* x, int count, double* out) noexcept {
    origin_.over(
        x, count, [&](int at, int items) { first_.apart(second_, x + at, items, out + at, origin_.value()); },
        first_, second_);
  }
  auto state() noexcept { return std::tie(origin_, first_, second_); }

 private:
  Origin origin_;
  Distance first_, second_;
};

namespace chain {

class ExpMA {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;
  static constexpr bool kInPlace = true;

  explicit ExpMA(double period) noexcept : average_(shareOf(period)) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept { average_.run(in, count, out); }
  auto state() noexcept { return std::tie(average_); }

 private:
  Exponential average_;
};

// The weighed sum of an exponential average, that of it, that of that ..; the seed stands one bar before the
// first valid index.
template <int kCount>
class AveragesInTurn {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  AveragesInTurn(double period, const std::array<double, static_cast<std::size_t>(kCount)>& weights) noexcept
      : origin_(shareOf(period)), averages_(shareOf(period), weights) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    origin_.over(
        in[0], count,
        [&](int at, int items) {
          averages_.run(in[0] + at, items, out[0] + at, origin_.value(), origin_.value());
        },
        averages_);
  }
  auto state() noexcept { return std::tie(origin_, averages_); }

 private:
  Origin origin_;
  DistancesInTurn<kCount> averages_;
};

class DEMA : public AveragesInTurn<2> {
 public:
  explicit DEMA(double period) noexcept : AveragesInTurn(period, {2.0, -1.0}) {}
};

class TEMA : public AveragesInTurn<3> {
 public:
  explicit TEMA(double period) noexcept : AveragesInTurn(period, {3.0, -3.0, 1.0}) {}
};

// Generalised double smoothing, pass after pass. With factor 0 a pass is the exponential average, with factor
// 1 the double exponential one.
class T3 {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  T3(double period, double volumeFactor, int passes)
  noexcept : origin_(shareOf(period)), passes_(static_cast<std::size_t>(std::clamp(passes, 1, kMostPasses))) {
    const double factor = volumeFactor > 0.0 ? std::min(volumeFactor, 1.0) : 0.0;
    if (ok())
      std::fill_n(passes_.data(), passes_.count(),
                  DistancesInTurn<2>(shareOf(period), {1.0 + factor, -factor}));
  }
  bool ok() const noexcept { return passes_.ok(); }
  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    if (!ok()) return std::fill_n(out[0], count, 0.0), void();
    origin_.over(
        in[0], count, [&](int at, int items) { relative(in[0] + at, items, out[0] + at); }, *this);
  }
  void shift(double more) noexcept {
    for (std::size_t k = 0; k < passes_.count(); ++k) passes_[k].shift(more);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(origin_);
    v.buffer(passes_, passes_.count());
  }

 private:
  // Far above any use; a wild number of passes must not keep the caller waiting for days.
  static constexpr int kMostPasses = 10000;

  void relative(const double* x, int count, double* out) noexcept {
    const double from = origin_.value();
    const std::size_t last = passes_.count() - 1;
    for (std::size_t k = 0; k <= last; ++k)
      passes_[k].run(k == 0 ? x : out, count, out, k == 0 ? from : 0.0, k == last ? from : 0.0);
  }

  Origin origin_;
  memory::Buffer<DistancesInTurn<2>> passes_;
};

// Takes out of each bar what it moved in the last half of the period, before it is averaged.
class ZeroLagExpMA {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit ZeroLagExpMA(double period) noexcept
      : lag_(truncatedInt(std::max(1.0, (period - 1.0) / 2.0))), average_(lag_.lead() - 1, shareOf(period)) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    if (!begun_) seed_ = x[0];
    begun_ = true;
    for (int at = 0; at < count; at += kTile) {
      Tile ahead;
      const int items = std::min(kTile, count - at);
      const int none = lag_.over(x + at, items, [&](int from, int some, const double* before) {
        map(
            some, ahead + from, [](double now, double then) { return 2.0 * now - then; }, x + at + from,
            before);
      });
      std::fill_n(ahead, none, seed_);
      average_.run({ahead}, items, {out[0] + at});
    }
  }
  auto state() noexcept { return std::tie(lag_, average_, seed_, begun_); }

 private:
  Delay lag_;
  After<Exponential> average_;
  double seed_ = 0.0;
  bool begun_ = false;
};

// Wilder's average and sum. A series that is too short leaves the average or sum of what there is.
class WellesMA {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;
  static constexpr bool kInPlace = true;

  explicit WellesMA(int period) noexcept : period_(period), average_(period) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept { average_.run(in, count, out); }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items > 0) *last[0] = average_.sumSoFar() / period_;
  }
  auto state() noexcept { return std::tie(average_); }

 private:
  int period_;
  WilderMean average_;
};

class WellesSum {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;
  static constexpr bool kInPlace = true;

  explicit WellesSum(int period) noexcept : sum_(period) {}
  int lead() const noexcept { return sum_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept { sum_.run(in, count, out); }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items > 0) *last[0] = sum_.sumSoFar();
  }
  auto state() noexcept { return std::tie(sum_); }

 private:
  WilderSum sum_;
};

}  // namespace chain
}  // namespace qv
