// Extremes over a window, exactly as the stretch statistics find them: the last of equal items is kept; a
// number that is none is passed over, but a window that begins with it stays with it.
#pragma once

#include "kernels/sliding.h"

namespace qv {

// The maximum of the first series and the minimum of the second, which is kept as the maximum of -x.
struct Extremes {
  static constexpr int kInputs = 2, kRows = 2;
  static constexpr double kNone = -kInfinity;
  static constexpr bool kCountsOnce = false;
  static constexpr int kShortWindow = 8;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> terms(const Items& x, const Items&, Number) const noexcept {
    return {x[0], -x[1]};
  }
  template <typename Rows>
  static QV_INLINE Rows numbers(const Rows& x) noexcept {
    using Number = typename Rows::value_type;
    return {larger(x[0], all<Number>(kNone)), larger(x[1], all<Number>(kNone))};
  }
  template <typename Rows>
  static QV_INLINE Rows join(const Rows& earlier, const Rows& later) noexcept {
    return {larger(earlier[0], later[0]), larger(earlier[1], later[1])};
  }
  template <typename Rows>
  static QV_INLINE Rows begunWith(const Rows& first, const Rows& rows) noexcept {
    return {first[0] == first[0] ? rows[0] : first[0], first[1] == first[1] ? rows[1] : first[1]};
  }
  template <typename Rows>
  static QV_INLINE Rows combine(const Rows& suffix, const Rows& prefix) noexcept {
    return {prefix[0] >= suffix[0] ? prefix[0] : suffix[0], prefix[1] >= suffix[1] ? prefix[1] : suffix[1]};
  }
};

// What follows is made of the extremes of a Base: Extremes, or others of the same first rows and inputs.

template <typename Base>
struct HighestLowestOf : Base {
  static constexpr int kOutputs = 2;

  template <typename Rows, typename Items, typename Number>
  QV_INLINE Group<Number, 2> finish(const Rows& e, const Items&, Number, const Items&) const noexcept {
    return {e[0], -e[1]};
  }
};
using HighestLowest = HighestLowestOf<Extremes>;

// Where the third series stands between the highest of the first and the lowest of the second, in percent: 0
// at the low. A flat range reads `flat`.
template <typename Base>
struct PercentWithinOf : Base {
  static constexpr int kInputs = 3, kOutputs = 1;
  double flat = 100.0;

  template <typename Rows, typename Items, typename Number>
  QV_INLINE Group<Number, 1> finish(const Rows& e, const Items&, Number, const Items& x) const noexcept {
    const Number low = -e[1], share = (x[2] - low) * 100.0 / (e[0] - low);
    return {e[0] == low ? all<Number>(flat) : share};
  }
};
using PercentWithin = PercentWithinOf<Extremes>;

// The same counted down from the high: 0 there, 100 at the low. A flat range reads 0.
struct PercentBelow : Extremes {
  static constexpr int kInputs = 3, kOutputs = 1;

  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& e, const Items&, Number,
                                    const Items& x) const noexcept {
    const Number height = e[0] + e[1], share = (e[0] - x[2]) * 100.0 / height;
    return {height == all<Number>(0.0) ? all<Number>(0.0) : share};
  }
};

// How many items ago the maximum of the first series and the minimum of the second stood; of equal items the
// earliest.
struct ExtremeAges {
  static constexpr int kInputs = 2, kRows = 4, kOutputs = 2;  // both extremes, both places
  static constexpr double kNone = -kInfinity;
  static constexpr bool kCountsOnce = false;
  static constexpr int kShortWindow = 8;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 4> terms(const Items& x, const Items&, Number k) const noexcept {
    return {x[0], -x[1], k, k};
  }
  template <typename Rows>
  static QV_INLINE Rows numbers(const Rows& x) noexcept {
    using Number = typename Rows::value_type;
    return {larger(x[0], all<Number>(kNone)), larger(x[1], all<Number>(kNone)), x[2], x[3]};
  }
  template <typename Rows>
  static QV_INLINE Rows join(const Rows& earlier, const Rows& later) noexcept {
    return {later[0] > earlier[0] ? later[0] : earlier[0], later[1] > earlier[1] ? later[1] : earlier[1],
            later[0] > earlier[0] ? later[2] : earlier[2], later[1] > earlier[1] ? later[3] : earlier[3]};
  }
  // What begins a window and is no number stays, and so does what begins one without any number.
  template <typename Rows>
  static QV_INLINE Rows begunWith(const Rows& first, const Rows& rows) noexcept {
    using Number = typename Rows::value_type;
    const Number none = all<Number>(kNone);
    const auto kept = [none](Number item, Number extreme, Number place, Number where) QV_LAMBDA {
      const Number found = extreme > none ? where : place;
      return item == item ? found : place;
    };
    return {first[0] == first[0] ? rows[0] : first[0], first[1] == first[1] ? rows[1] : first[1],
            kept(first[0], rows[0], first[2], rows[2]), kept(first[1], rows[1], first[3], rows[3])};
  }
  template <typename Rows>
  static QV_INLINE Rows combine(const Rows& suffix, const Rows& prefix) noexcept {
    return join(suffix, prefix);
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 2> finish(const Group<Number, 4>& e, const Items&, Number k,
                                    const Items&) const noexcept {
    return {k - e[2], k - e[3]};
  }
};

}  // namespace qv
