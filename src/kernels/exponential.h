// Averages that remember all items: exponential ones and Wilder's.
#pragma once

#include "kernels/recurrence.h"

namespace qv {

// What items are taken relative to, so that averages of equal items are exactly these, and differences of
// averages are exact to the differences of prices: at first the first item. Now and then the item of the day
// takes its place, so that a series that has wandered off, or a first item that was far out, costs nothing.
class Origin {
 public:
  // Of averages that take at least this share of every item. Below what a double can tell from nothing the
  // averages stay where they began, and so does the origin.
  explicit Origin(double share) noexcept : moves_(share > 1e-15) {}
  double value() const noexcept { return value_; }

  // body(at, items) for pieces of x that are relative to one origin; the averages of distances from it go
  // with it.
  template <typename Body, typename... Averages>
  QV_INLINE void over(const double* x, int count, Body body, Averages&... averages) noexcept {
    for (int at = 0; at < count;) {
      if (left_ == 0) {
        if (!begun_ || moves_) {
          if (begun_) (averages.shift(value_ - x[at]), ...);
          value_ = x[at];
        }
        begun_ = true;
        left_ = kItems;
      }
      const int items = std::min(left_, count - at);
      body(at, items);
      left_ -= items;
      at += items;
    }
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(value_, begun_);
    v.within(left_, 0, kItems);
  }

 private:
  static constexpr int kItems = 1024;
  double value_ = 0.0;
  int left_ = 0;
  bool moves_, begun_ = false;
};

// An exponential average as distances from an origin that the caller keeps: y = share x + (1 - share) y'.
// It begins with the origin's first item, whose distance is zero.
class Distance {
 public:
  explicit Distance(double share) noexcept : share_(share), y_(1.0 - share) {}
  void shift(double more) noexcept { y_.shift(more, share_); }
  // y[i], a distance, of distances x[i] + less; y may be x.
  [[gnu::noinline]] void run(const double* x, int count, double* y, double less = 0.0) noexcept {
    y_.run(x, count, y, Less{less}, Times{share_});
  }
  // The same of another one of the same distances, besides; and the one less the other.
  [[gnu::noinline]] void run(Distance& other, const double* x, int count, double* y, double* ofOther,
                             double less) noexcept {
    y_.runBeside(other.y_, x, count, Outputs<2>{y, ofOther}, Less{less}, Both{share_, other.share_});
  }
  [[gnu::noinline]] void apart(Distance& other, const double* x, int count, double* out,
                               double less) noexcept {
    y_.runBeside(other.y_, x, count, Outputs<1>{out}, Less{less}, Apart{share_, other.share_});
  }
  auto state() noexcept { return std::tie(y_); }

 private:
  double share_;
  Recurrence y_;
};

// The weighed sum of an exponential average, that of it, that of that .., as a Distance.
template <int kCount>
class DistancesInTurn {
 public:
  explicit DistancesInTurn(double share,
                           std::array<double, static_cast<std::size_t>(kCount)> weights) noexcept
      : share_(share), weights_(weights) {
    averages_.fill(Recurrence(1.0 - share));
    for (std::size_t k = 0; k < weights_.size(); ++k)
      for (std::size_t times = 0; times <= k; ++times) weights_[k] *= share;
  }
  void shift(double more) noexcept {
    for (Recurrence& average : averages_) {
      average.shift(more, share_);
      more /= share_;
    }
  }
  // out[i] = onto + the result for x[i] - less; out may be x.
  [[gnu::noinline]] void run(const double* x, int count, double* out, double less, double onto) noexcept {
    Recurrence::runInTurn(averages_, x, count, out, Less{less}, SumOnto<kCount>{weights_, onto});
  }
  auto state() noexcept { return std::tie(averages_); }

 private:
  double share_;
  std::array<double, static_cast<std::size_t>(kCount)> weights_;
  std::array<Recurrence, static_cast<std::size_t>(kCount)> averages_;
};

// Exponential average. Begins with its first item.
class Exponential {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit Exponential(double share) noexcept : share_(share), origin_(share), y_(1.0 - share) {}
  int lead() const noexcept { return 0; }
  void shift(double more) noexcept { y_.shift(more, share_); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    origin_.over(
        in[0], count, [&](int at, int items) { relative(in[0] + at, items, out[0] + at); }, *this);
  }
  auto state() noexcept { return std::tie(origin_, y_); }

 private:
  [[gnu::noinline]] void relative(const double* x, int count, double* y) noexcept {
    const double from = origin_.value(), share = share_;
    if (share == 1.0) {  // every item is its own average
      std::copy_n(x, count, y);
      return;
    }
    y_.run(x, count, y, Less{from}, TimesOnto{share, from});
  }

  double share_;
  Origin origin_;
  Recurrence y_;
};

// The same for items about zero that may die out: what is left of them keeps its full precision, so that it
// can be compared with another by their ratio. Not relative to any item, it carries the rounding of its
// results.
class ExponentialAboutZero {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit ExponentialAboutZero(double share) noexcept : share_(share), y_(1.0 - share) {}
  int lead() const noexcept { return 0; }
  // out may be in.
  [[gnu::noinline]] void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double *x = in[0], share = share_;
    double* y = out[0];
    int i = 0;
    if (!begun_) {
      const double first = x[0];  // exactly: a line and its signal line begin as one
      y_.next(first / share);
      y[i++] = first;
    }
    begun_ = true;
    y_.run(x + i, count - i, y + i, AsItIs{}, Times{share});
  }
  auto state() noexcept { return std::tie(y_, begun_); }

 private:
  double share_;
  Recurrence y_;
  bool begun_ = false;
};

// The first `period` items of a memory that begins with their sum: of the items, or for a mean of their
// distances from the first.
class Seed {
 public:
  Seed(int period, bool ofDistances) noexcept
      : period_(period), missing_(period), ofDistances_(ofDistances) {}
  int lead() const noexcept { return period_ - 1; }
  // How many of the next items it takes; the results are 0.0, that of the last begin().
  template <typename Begin>
  QV_INLINE int take(const double* x, int count, double* y, Begin begin) noexcept {
    int i = 0;
    for (; missing_ > 0 && i < count; ++i) {
      if (ofDistances_ && missing_ == period_) first_ = x[i];
      sum_ += x[i] - first_;
      y[i] = 0.0;
      if (--missing_ == 0) y[i] = begin();
    }
    return i;
  }
  double mean() const noexcept { return first_ + sum_ / period_; }
  double sumSoFar() const noexcept { return (period_ - missing_) * first_ + sum_; }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(missing_, 0, period_);
    v(first_, sum_);
  }

 private:
  int period_, missing_;
  bool ofDistances_;
  double first_ = 0.0, sum_ = 0.0;
};

// Wilder's average: begins with the mean of its first `period` items, and every later one counts for one
// item in `period`.
class WilderMean {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit WilderMean(int period) noexcept : seed_(period, true), average_(1.0 / period) {}
  int lead() const noexcept { return seed_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const auto begin = [&]() noexcept {
      double mean = seed_.mean();
      average_.run({&mean}, 1, {&mean});
      return mean;
    };
    const int passed = seed_.take(in[0], count, out[0], begin);
    if (passed < count) average_.run(advanced(in, passed), count - passed, advanced(out, passed));
  }
  double sumSoFar() const noexcept { return seed_.sumSoFar(); }  // while the first items are not complete
  auto state() noexcept { return std::tie(seed_, average_); }

 private:
  Seed seed_;
  Exponential average_;
};

// Wilder's sum: begins with the sum of its first `period` items, and loses one part in `period` with every
// later one.
class WilderSum {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit WilderSum(int period) noexcept : seed_(period, false), y_((period - 1.0) / period) {}
  int lead() const noexcept { return seed_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const int passed = seed_.take(in[0], count, out[0], [&]() noexcept { return y_.next(seed_.sumSoFar()); });
    y_.run(in[0] + passed, count - passed, out[0] + passed);
  }
  double sumSoFar() const noexcept { return seed_.sumSoFar(); }  // while the first items are not complete
  auto state() noexcept { return std::tie(seed_, y_); }

 private:
  Seed seed_;
  Recurrence y_;
};

}  // namespace qv
