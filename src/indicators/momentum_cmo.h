// The Chande momentum oscillator: the balance of a window's rises and falls.
#pragma once

#include "kernels/sums.h"

namespace qv {

inline constexpr auto changeOf = [](double now, double before) { return now - before; };

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

namespace chain {

class CMO {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit CMO(int period) noexcept : balance_(1, period) {}
  bool ok() const noexcept { return balance_.ok(); }
  int lead() const noexcept { return balance_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile moves;
    moves[0] = changeOf(x[0], before_.take(x, count));
    map(count - 1, moves + 1, changeOf, x + 1, x);
    balance_.run({moves}, count, out);
  }

 private:
  Before before_;
  After<Sliding<BalanceOfMoves>> balance_;
};

}  // namespace chain
}  // namespace qv
