// What rises in a window against what falls.
#pragma once

#include "kernels/sums.h"

namespace qv {

// The sum of moves in percent of the sum of their sizes. A move that is no number counts as none; a market
// that stands still has no momentum.
struct BalanceOfMoves : Adding {
  static constexpr int kInputs = 1, kRows = 2, kOutputs = 1;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> terms(const Items& x, const Items&, Number) const noexcept {
    const Number move = x[0] == x[0] ? x[0] : all<Number>(0.0);
    return {move, magnitude(move)};
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items&, Number,
                                    const Items&) const noexcept {
    const Number none = all<Number>(0.0), balance = sums[0] / sums[1] * 100.0;
    return {sums[1] == none ? none : balance};
  }
};

inline constexpr auto moneyFlowIndexOf = [](auto rising, auto falling)
                                             QV_LAMBDA { return rising / (rising + falling) * 100.0; };

// The money flow index of a window's flows; 0.0 without any falling flow.
struct MoneyFlow : AddingItems<2> {
  static constexpr int kOutputs = 1;

  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& flows, const Items&, Number,
                                    const Items&) const noexcept {
    const Number none = all<Number>(0.0), index = moneyFlowIndexOf(flows[0], flows[1]);
    return {flows[1] == none ? none : index};
  }
};

}  // namespace qv
