// The Chande momentum oscillator: the balance of a window's rises and falls.
#pragma once

#include "kernels/balances.h"

namespace qv {

inline constexpr auto changeOf = [](double now, double before) { return now - before; };

namespace chain {

class CMO {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit CMO(int period) noexcept : balance_(1, period) {}
  int lead() const noexcept { return balance_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile moves;
    moves[0] = changeOf(x[0], before_.take(x, count));
    map(count - 1, moves + 1, changeOf, x + 1, x);
    balance_.run({moves}, count, out);
  }
  auto state() noexcept { return std::tie(before_, balance_); }

 private:
  Before before_;
  After<Sliding<BalanceOfMoves>> balance_;
};

}  // namespace chain
}  // namespace qv
