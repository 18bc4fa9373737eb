// Averages and sums that remember all items: every item moves them by a share of its value.
#pragma once

#include "kernels/tiles.h"

namespace qv {

// y = x + b y', with 0 <= b <= 1; before the first item all was zero.
//
// Written four bars ahead, y = (x + b x') + b^2 (x'' + b x''') + b^4 y'''', so that one of four bars waits
// for a result. The formula is the same at every bar, and nothing cancels in it that would not have before.
class Recurrence {
 public:
  explicit Recurrence(double b) noexcept : b_(b), b2_(b * b), b4_(b2_ * b2_) {}

  double next(double x) noexcept {
    const double pair = x + b_ * x_[1];
    const double y = (pair + b2_ * pairs_[0]) + b4_ * y_[0][0];
    x_ = Two{0.0, x};
    pairs_ = Two{pairs_[1], pair};
    y_[0] = oneBack(y_[0], y_[1]);
    y_[1] = Two{y_[1][1], y};
    return y;
  }

  // out[i] = after(y[i]) for x[i] = before(in[i]); both take one item or two. out may be in.
  template <typename Enter, typename Leave>
  QV_INLINE void run(const double* in, int count, double* out, Enter before, Leave after) noexcept {
    Recurrence y = *this;  // in registers
    int i = 0;
    for (; i + 4 <= count; i += 4) {
      Two y0 = before(loadTwo(in + i)), y1 = before(loadTwo(in + i + 2));
      y.four(y0, y1);
      storeTwo(out + i, after(y0));
      storeTwo(out + i + 2, after(y1));
    }
    for (; i < count; ++i) out[i] = after(y.next(before(in[i])));
    *this = y;
  }
  [[gnu::noinline]] void run(const double* in, int count, double* out) noexcept {
    const auto same = [](auto x) QV_LAMBDA { return x; };
    run(in, count, out, same, same);
  }
  // Two of them in one loop, where each would leave the machine idle: out[i] = after(y[i], z[i]) of
  // y = this of before(in) and z = `second` of y.
  template <typename Enter, typename Leave>
  QV_INLINE void runTwo(Recurrence& second, const double* in, int count, double* out, Enter before,
                        Leave after) noexcept {
    Recurrence y = *this, z = second;
    int i = 0;
    for (; i + 4 <= count; i += 4) {
      Two y0 = before(loadTwo(in + i)), y1 = before(loadTwo(in + i + 2));
      y.four(y0, y1);
      Two z0 = y0, z1 = y1;
      z.four(z0, z1);
      storeTwo(out + i, after(y0, z0));
      storeTwo(out + i + 2, after(y1, z1));
    }
    for (; i < count; ++i) {
      const double first = y.next(before(in[i]));
      out[i] = after(first, z.next(first));
    }
    *this = y;
    second = z;
  }

  // All items so far, and all that was before them, become larger by `more`, which is 1 / weight of that in
  // the results.
  void shift(double more, double weight) noexcept {
    const Two ofResults = twice(more / weight);
    x_ = x_ + twice(more);
    pairs_ = pairs_ + twice(more * (1.0 + b_));
    y_[0] = y_[0] + ofResults;
    y_[1] = y_[1] + ofResults;
  }

 private:
  QV_INLINE void four(Two& x0, Two& x1) noexcept {
    const Two pairs0 = x0 + oneBack(x_, x0) * b_, pairs1 = x1 + oneBack(x0, x1) * b_;
    y_[0] = (pairs0 + pairs_ * b2_) + y_[0] * b4_;
    y_[1] = (pairs1 + pairs0 * b2_) + y_[1] * b4_;
    x_ = x1;
    pairs_ = pairs1;
    x0 = y_[0];
    x1 = y_[1];
  }

  double b_, b2_, b4_;
  Two y_[2]{}, pairs_{}, x_{};  // the last four results, two pairs, item
};

// Running total. Four items cost one addition that waits for the last; what adds nothing leaves the total
// exactly as it was.
class Total {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  int lead() const noexcept { return 0; }
  [[gnu::noinline]] void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    double* y = out[0];
    int i = 0;
    for (; place_ != 0 && i < count; ++i) y[i] = next(x[i]);
    Two sum = twice(sum_);
    for (; i + 4 <= count; i += 4) {
      const Two a = loadTwo(x + i), b = loadTwo(x + i + 2);
      const Two first = a + oneBack(Two{}, a), rest = b + oneBack(Two{}, b);
      storeTwo(y + i, sum + first);
      sum = sum + (twice(first[1]) + rest);
      storeTwo(y + i + 2, sum);
      sum = twice(sum[1]);
    }
    sum_ = sum[1];
    for (; i < count; ++i) y[i] = next(x[i]);
  }

 private:
  double next(double x) noexcept {
    switch (place_++) {
      case 0:
        return sum_ + (first_ = x + 0.0);
      case 1:
        return sum_ + (first_ = x + first_);
      case 2:
        return sum_ + (first_ + (rest_ = x + 0.0));
      default:
        place_ = 0;
        return sum_ = sum_ + (first_ + (x + rest_));
    }
  }

  double sum_ = 0.0, first_ = 0.0, rest_ = 0.0;  // all fours, of this one the first and the second two
  int place_ = 0;
};

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
    y_.run(
        x, count, y, [less](auto v) QV_LAMBDA { return v - less; },
        [share = share_](auto v) QV_LAMBDA { return v * share; });
  }

 private:
  double share_;
  Recurrence y_;
};

// near e1 + far e2 of an exponential average e1 and that of it, e2, as a Distance.
class DoubleDistance {
 public:
  DoubleDistance(double share, double near, double far) noexcept
      : share_(share),
        near_(near * share),
        far_(far * share * share),
        first_(1.0 - share),
        second_(1.0 - share) {}
  void shift(double more) noexcept {
    first_.shift(more, share_);
    second_.shift(more / share_, share_);
  }
  // out[i] = onto + the result for x[i] - less; out may be x.
  [[gnu::noinline]] void run(const double* x, int count, double* out, double less, double onto) noexcept {
    first_.runTwo(
        second_, x, count, out, [less](auto v) QV_LAMBDA { return v - less; },
        [near = near_, far = far_, onto](auto y, auto z) QV_LAMBDA { return onto + (y * near + z * far); });
  }

 private:
  double share_, near_, far_;
  Recurrence first_, second_;
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

 private:
  [[gnu::noinline]] void relative(const double* x, int count, double* y) noexcept {
    const double from = origin_.value(), share = share_;
    if (share == 1.0) {  // every item is its own average
      std::copy_n(x, count, y);
      return;
    }
    y_.run(
        x, count, y, [from](auto v) QV_LAMBDA { return v - from; },
        [from, share](auto v) QV_LAMBDA { return from + v * share; });
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
    y_.run(
        x + i, count - i, y + i, [](auto v) QV_LAMBDA { return v; },
        [share](auto v) QV_LAMBDA { return v * share; });
  }

 private:
  double share_;
  Recurrence y_;
  bool begun_ = false;
};

// Wilder's average: begins with the mean of its first `period` items, and every later one counts for one
// item in `period`.
class WilderMean {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit WilderMean(int period) noexcept : period_(period), missing_(period), average_(1.0 / period) {}
  int lead() const noexcept { return period_ - 1; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    double* y = out[0];
    int i = 0;
    for (; missing_ > 0 && i < count; ++i) {
      if (missing_ == period_) first_ = x[i];
      sum_ += x[i] - first_;
      y[i] = 0.0;
      if (--missing_ == 0) {
        const double seed = first_ + sum_ / period_;
        average_.run({&seed}, 1, {y + i});
      }
    }
    if (i < count) average_.run({x + i}, count - i, {y + i});
  }
  double sumSoFar() const noexcept {  // of the first items, while they are not complete
    return (period_ - missing_) * first_ + sum_;
  }

 private:
  int period_, missing_;
  double first_ = 0.0, sum_ = 0.0;  // of the distances from the first item
  Exponential average_;
};

// Wilder's sum: begins with the sum of its first `period` items, and loses one part in `period` with every
// later one.
class WilderSum {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit WilderSum(int period) noexcept : period_(period), missing_(period), y_((period - 1.0) / period) {}
  int lead() const noexcept { return period_ - 1; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    double* y = out[0];
    int i = 0;
    for (; missing_ > 0 && i < count; ++i) {
      sum_ += x[i];
      y[i] = 0.0;
      if (--missing_ == 0) y[i] = y_.next(sum_);
    }
    y_.run(x + i, count - i, y + i);
  }
  double sumSoFar() const noexcept { return sum_; }  // of the first items, while they are not complete

 private:
  int period_, missing_;
  double sum_ = 0.0;
  Recurrence y_;
};

}  // namespace qv
