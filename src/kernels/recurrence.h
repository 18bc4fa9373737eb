// Averages and sums that remember all items: every item moves them by a share of its value.
#pragma once

#include "kernels/tiles.h"

namespace qv {

// What items and results of a recurrence are taken as.
struct AsItIs {
  QV_INLINE auto operator()(auto x) const noexcept { return x; }
};
struct Less {
  double from;
  QV_INLINE auto operator()(auto x) const noexcept { return x - from; }
};
struct Times {
  double share;
  QV_INLINE auto operator()(auto x) const noexcept { return x * share; }
};
struct TimesOnto {
  double share, from;
  QV_INLINE auto operator()(auto x) const noexcept { return from + x * share; }
};
struct BothOnto {
  double near, far, from;
  QV_INLINE auto operator()(auto x, auto ofThat) const noexcept { return from + (x * near + ofThat * far); }
};

class Recurrence;
// Four bars abreast (wide.cpp).
template <typename Enter, typename Leave>
void runWide(Recurrence& y, const double* in, int count, double* out, Enter enter, Leave leave) noexcept;
template <typename Enter, typename Leave>
void runTwoWide(Recurrence& y, Recurrence& z, const double* in, int count, double* out, Enter enter,
                Leave leave) noexcept;
template <typename Enter, typename Leave>
void runBesideWide(Recurrence& y, Recurrence& z, const double* in, int count, double* out, double* outOfZ,
                   Enter enter, Leave leave, Leave leaveZ) noexcept;

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

  // out[i] = leave(y[i]) for x[i] = enter(in[i]); out may be in.
  template <typename Enter, typename Leave>
  void run(const double* in, int count, double* out, Enter enter, Leave leave) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4) return runWide(*this, in, count, out, enter, leave);
#endif
    runLanes<Two>(in, count, out, enter, leave);
  }
  void run(const double* in, int count, double* out) noexcept {
    run(in, count, out, AsItIs{}, AsItIs{});
  }
  // Two of them in one loop, where each would leave the machine idle: out[i] = leave(y[i], z[i]) of
  // y = this of enter(in) and z = `second` of y.
  template <typename Enter, typename Leave>
  void runTwo(Recurrence& second, const double* in, int count, double* out, Enter enter,
              Leave leave) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4) return runTwoWide(*this, second, in, count, out, enter, leave);
#endif
    runTwoLanes<Two>(second, in, count, out, enter, leave);
  }

  // Two of the same items in one loop, for the same reason.
  template <typename Enter, typename Leave>
  void runBeside(Recurrence& other, const double* in, int count, double* out, double* outOfOther, Enter enter,
                 Leave leave, Leave leaveOther) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4)
      return runBesideWide(*this, other, in, count, out, outOfOther, enter, leave, leaveOther);
#endif
    runBesideLanes<Two>(other, in, count, out, outOfOther, enter, leave, leaveOther);
  }

  template <typename Lanes, typename Enter, typename Leave>
  QV_INLINE void runLanes(const double* in, int count, double* out, Enter enter, Leave leave) noexcept {
    int i = 0;
    if (count >= 4) {
      Fours<Lanes> y(*this);  // in registers
      for (; i + 4 <= count; i += 4) {
        auto items = loadFour<Lanes>(in + i);
        for (auto& v : items) v = enter(v);
        y.next(items);
        for (auto& v : items) v = leave(v);
        storeFour(out + i, items);
      }
      y.keepIn(*this);
    }
    for (; i < count; ++i) out[i] = leave(next(enter(in[i])));
  }
  template <typename Lanes, typename Enter, typename Leave>
  QV_INLINE void runTwoLanes(Recurrence& second, const double* in, int count, double* out, Enter enter,
                             Leave leave) noexcept {
    int i = 0;
    if (count >= 4) {
      Fours<Lanes> y(*this), z(second);
      for (; i + 4 <= count; i += 4) {
        auto first = loadFour<Lanes>(in + i);
        for (auto& v : first) v = enter(v);
        y.next(first);
        auto items = first;
        z.next(items);
        for (std::size_t k = 0; k < items.size(); ++k) items[k] = leave(first[k], items[k]);
        storeFour(out + i, items);
      }
      y.keepIn(*this);
      z.keepIn(second);
    }
    for (; i < count; ++i) {
      const double first = next(enter(in[i]));
      out[i] = leave(first, second.next(first));
    }
  }

  template <typename Lanes, typename Enter, typename Leave>
  QV_INLINE void runBesideLanes(Recurrence& other, const double* in, int count, double* out,
                                double* outOfOther, Enter enter, Leave leave, Leave leaveOther) noexcept {
    int i = 0;
    if (count >= 4) {
      Fours<Lanes> y(*this), z(other);
      for (; i + 4 <= count; i += 4) {
        auto items = loadFour<Lanes>(in + i);
        for (auto& v : items) v = enter(v);
        auto ofOther = items;
        y.next(items);
        z.next(ofOther);
        for (auto& v : items) v = leave(v);
        for (auto& v : ofOther) v = leaveOther(v);
        storeFour(out + i, items);
        storeFour(outOfOther + i, ofOther);
      }
      y.keepIn(*this);
      z.keepIn(other);
    }
    for (; i < count; ++i) {
      const double x = enter(in[i]);
      out[i] = leave(next(x));
      outOfOther[i] = leaveOther(other.next(x));
    }
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
  template <typename V>
  void fields(V& v) noexcept {
    v(y_, pairs_, x_);
  }

 private:
  // Four bars as two Two or one Four.
  template <typename Lanes>
  using FourBars = std::array<Lanes, 4 / kLanes<Lanes>>;
  template <typename Lanes>
  static QV_INLINE FourBars<Lanes> loadFour(const double* p) noexcept {
    FourBars<Lanes> bars;
    for (std::size_t k = 0; k < bars.size(); ++k) bars[k] = load<Lanes>(p + k * kLanes<Lanes>);
    return bars;
  }
  template <typename Bars>
  static QV_INLINE void storeFour(double* p, const Bars& bars) noexcept {
    for (std::size_t k = 0; k < bars.size(); ++k) store(p + k * 4 / bars.size(), bars[k]);
  }
  template <typename Lanes>
  class Fours {
   public:
    explicit QV_INLINE Fours(const Recurrence& of) noexcept
        : b_(all<Lanes>(of.b_)),
          b2_(all<Lanes>(of.b2_)),
          b4_(all<Lanes>(of.b4_)),
          pairs_(inAllPairs<Lanes>(of.pairs_)),
          x_(inAllPairs<Lanes>(of.x_)) {
      const Two results[2] = {of.y_[0], of.y_[1]};
      y_ = loadFour<Lanes>(reinterpret_cast<const double*>(results));
    }
    // The items become the results.
    QV_INLINE void next(FourBars<Lanes>& items) noexcept {
      for (std::size_t k = 0; k < items.size(); ++k) {
        const Lanes x = items[k], pairs = x + oneBack(x_, x) * b_;
        y_[k] = (pairs + twoBack(pairs_, pairs) * b2_) + y_[k] * b4_;
        x_ = x;
        pairs_ = pairs;
        items[k] = y_[k];
      }
    }
    QV_INLINE void keepIn(Recurrence& of) const noexcept {
      of.y_[0] = lower(y_.front());
      of.y_[1] = upper(y_.back());
      of.pairs_ = upper(pairs_);
      of.x_ = upper(x_);
    }

   private:
    Lanes b_, b2_, b4_;
    FourBars<Lanes> y_;
    Lanes pairs_, x_;
  };

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
  template <typename V>
  void fields(V& v) noexcept {
    v(sum_, first_, rest_);
    v.within(place_, 0, 3);
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

}  // namespace qv
