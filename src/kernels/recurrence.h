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
// The weighed sum of several results, onto `from`.
template <int kCount>
struct SumOnto {
  std::array<double, static_cast<std::size_t>(kCount)> weights;
  double from;
  QV_INLINE auto operator()(const auto& results) const noexcept {
    auto sum = results[0] * weights[0];
    for (std::size_t k = 1; k < results.size(); ++k) sum = sum + results[k] * weights[k];
    return from + sum;
  }
};
// Two results, and the first less the second.
struct Both {
  double share, shareOfOther;
  QV_INLINE auto operator()(auto x, auto other) const noexcept {
    return std::array{x * share, other * shareOfOther};
  }
};
struct Apart {
  double share, shareOfOther;
  QV_INLINE auto operator()(auto x, auto other) const noexcept {
    return std::array{x * share - other * shareOfOther};
  }
};

class Recurrence;
// Four bars abreast (wide.cpp).
template <typename Enter, typename Leave>
void runWide(Recurrence& y, const double* in, int count, double* out, Enter enter, Leave leave) noexcept;
template <std::size_t kCount, typename Enter, typename Leave>
void runInTurnWide(std::array<Recurrence, kCount>& chain, const double* in, int count, double* out,
                   Enter enter, Leave leave) noexcept;
template <std::size_t kOutputs, typename Enter, typename Leave>
void runBesideWide(Recurrence& y, Recurrence& z, const double* in, int count, Outputs<kOutputs> out,
                   Enter enter, Leave leave) noexcept;

// y = x + b y', with 0 <= b <= 1; before the first item all was zero.
//
// Written four bars ahead, y = (x + b x') + b^2 (x'' + b x''') + b^4 y'''', so that one of four bars waits
// for a result. The formula is the same at every bar, and nothing cancels in it that would not have before.
class Recurrence {
 public:
  explicit Recurrence(double b = 0.0) noexcept : b_(b), b2_(b * b), b4_(b2_ * b2_) {}

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
  // Several of them in one loop, each of the results of the one before: out[i] = leave(results) for
  // x[i] = enter(in[i]); out may be in.
  template <std::size_t kCount, typename Enter, typename Leave>
  static void runInTurn(std::array<Recurrence, kCount>& chain, const double* in, int count, double* out,
                        Enter enter, Leave leave) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4) return runInTurnWide(chain, in, count, out, enter, leave);
#endif
    runInTurnLanes<Two>(chain, in, count, out, enter, leave);
  }
  // Two of the same items in one loop, where each would leave the machine idle: out[k][i] = leave(y[i],
  // z[i])[k] for x[i] = enter(in[i]).
  template <std::size_t kOutputs, typename Enter, typename Leave>
  void runBeside(Recurrence& other, const double* in, int count, Outputs<kOutputs> out, Enter enter,
                 Leave leave) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4) return runBesideWide(*this, other, in, count, out, enter, leave);
#endif
    runBesideLanes<Two>(other, in, count, out, enter, leave);
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
  // Each step works four bars behind the one before it, whose results would else be waited for at every
  // round: steps 2 k and 2 k + 1 are the pairs and the results of recurrence k.
  template <typename Lanes, std::size_t kCount, typename Enter, typename Leave>
  static QV_INLINE void runInTurnLanes(std::array<Recurrence, kCount>& chain, const double* in, int count,
                                       double* out, Enter enter, Leave leave) noexcept {
    constexpr int kLast = 2 * static_cast<int>(kCount) - 1, kBehind = 4 * kLast;
    int i = 0;
    if (count >= kBehind + 4) {
      auto y = foursOf<Lanes>(chain, std::make_index_sequence<kCount>{});
      std::array<std::array<FourBars<Lanes>, kLast - 1>, kCount> before{};  // the results of the last rounds
      const auto take = [&](int at, bool isOn, auto step) QV_LAMBDA {
        constexpr int kStep = decltype(step)::value;
        constexpr std::size_t k = kStep / 2;
        constexpr bool isResult = kStep % 2 == 1, isLast = kStep == kLast;
        if constexpr (isResult && !isLast)
          for (std::size_t back = kLast - 1 - kStep; back > 0; --back) before[k][back] = before[k][back - 1];
        if (!isOn) return;
        if constexpr (kStep == 0) {
          auto items = loadFour<Lanes>(in + at);
          for (auto& v : items) v = enter(v);
          y[k].pair(items);
        } else if constexpr (!isResult) {
          y[k].pair(before[k - 1][0]);
        } else if constexpr (!isLast) {
          before[k][0] = y[k].results();
        } else {
          auto items = y[k].results();
          for (std::size_t part = 0; part < items.size(); ++part) {
            std::array<Lanes, kCount> results;
            for (std::size_t j = 0; j < k; ++j) results[j] = before[j][2 * (k - j) - 1][part];
            results[k] = items[part];
            items[part] = leave(results);
          }
          storeFour(out + at - kBehind, items);
        }
      };
      // The bars at `at` enter, those of the rounds before go on: the steps first .. last, the last one
      // first.
      const auto round = [&](int at, int first, int last) QV_LAMBDA {
        downwards(std::make_integer_sequence<int, kLast + 1>{},
                  [&](auto step) QV_LAMBDA { take(at, first <= step && step <= last, step); });
      };
      const int end = count & -4;
      for (; i < kBehind; i += 4) round(i, 0, i / 4);
      for (; i < end; i += 4) round(i, 0, kLast);
      for (; i < end + kBehind; i += 4) round(i, (i - end) / 4 + 1, kLast);
      i = end;
      for (std::size_t k = 0; k < kCount; ++k) y[k].keepIn(chain[k]);
    }
    for (; i < count; ++i) {
      std::array<double, kCount> results;
      for (std::size_t k = 0; k < kCount; ++k)
        results[k] = chain[k].next(k == 0 ? enter(in[i]) : results[k - 1]);
      out[i] = leave(results);
    }
  }
  template <typename Lanes, std::size_t kOutputs, typename Enter, typename Leave>
  QV_INLINE void runBesideLanes(Recurrence& other, const double* in, int count, Outputs<kOutputs> out,
                                Enter enter, Leave leave) noexcept {
    int i = 0;
    if (count >= 4) {
      Fours<Lanes> y(*this), z(other);
      const auto enterAt = [&](int at) QV_LAMBDA {
        auto items = loadFour<Lanes>(in + at);
        for (auto& v : items) v = enter(v);
        y.pair(items);
        z.pair(items);
      };
      const auto leaveAt = [&](int at) QV_LAMBDA {
        const auto items = y.results(), ofOther = z.results();
        for (std::size_t part = 0; part < items.size(); ++part) {
          const std::array<Lanes, kOutputs> left = leave(items[part], ofOther[part]);
          for (std::size_t k = 0; k < kOutputs; ++k) store(out[k] + at + part * kLanes<Lanes>, left[k]);
        }
      };
      enterAt(0);
      for (; i + 8 <= count; i += 4) {
        leaveAt(i);
        enterAt(i + 4);
      }
      leaveAt(i);
      i += 4;
      y.keepIn(*this);
      z.keepIn(other);
    }
    for (; i < count; ++i) {
      const double x = enter(in[i]);
      const std::array<double, kOutputs> left = leave(next(x), other.next(x));
      for (std::size_t k = 0; k < kOutputs; ++k) out[k][i] = left[k];
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
  auto state() noexcept {
    return std::tie(y_, pairs_, x_);
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
          before_(inAllPairs<Lanes>(of.pairs_)),
          x_(inAllPairs<Lanes>(of.x_)) {
      const Two results[2] = {of.y_[0], of.y_[1]};
      y_ = loadFour<Lanes>(reinterpret_cast<const double*>(results));
    }
    // The items become the results.
    QV_INLINE void next(FourBars<Lanes>& items) noexcept {
      pair(items);
      items = results();
    }
    // The two steps of it.
    QV_INLINE void pair(const FourBars<Lanes>& items) noexcept {
      for (std::size_t k = 0; k < items.size(); ++k) {
        pairs_[k] = items[k] + oneBack(x_, items[k]) * b_;
        x_ = items[k];
      }
    }
    QV_INLINE const FourBars<Lanes>& results() noexcept {
      for (std::size_t k = 0; k < y_.size(); ++k) {
        y_[k] = (pairs_[k] + twoBack(before_, pairs_[k]) * b2_) + y_[k] * b4_;
        before_ = pairs_[k];
      }
      return y_;
    }
    QV_INLINE void keepIn(Recurrence& of) const noexcept {
      of.y_[0] = lower(y_.front());
      of.y_[1] = upper(y_.back());
      of.pairs_ = upper(before_);
      of.x_ = upper(x_);
    }

   private:
    Lanes b_, b2_, b4_;
    FourBars<Lanes> y_, pairs_;
    Lanes before_, x_;  // the last pairs and items
  };

  // body(k) from the last k of 0, 1 .. to the first, each as a constant.
  template <int... k, typename Body>
  static QV_INLINE void downwards(std::integer_sequence<int, k...>, Body body) noexcept {
    (body(std::integral_constant<int, static_cast<int>(sizeof...(k)) - 1 - k>{}), ...);
  }
  template <typename Lanes, std::size_t kCount, std::size_t... k>
  static QV_INLINE std::array<Fours<Lanes>, kCount> foursOf(const std::array<Recurrence, kCount>& chain,
                                                            std::index_sequence<k...>) noexcept {
    return {Fours<Lanes>(chain[k])...};
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
