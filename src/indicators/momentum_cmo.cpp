// The Chande momentum oscillator: the balance of a window's rises and falls. It has a source of its
// own because the averages that adapt to momentum stand on it.
#include <algorithm>

#include "core/calculation.h"
#include "kernels/guarded.h"
#include "core/numbers.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

namespace {

double rise(double move) noexcept {
  return move > 0.0 ? move : 0.0;
}

double balance(double up, double down) noexcept {
  return (up - down) / (up + down) * 100.0;
}

// The rises and falls of one window.
struct Moves {
  double up = 0.0, down = 0.0;
  int ups = 0, downs = 0;  // how many they are
};

Moves movesOf(const double* x, int from, int to) noexcept {
  Moves window;
  for (int i = from; i <= to; ++i) {
    const double move = x[i] - x[i - 1];
    window.up += rise(move);
    window.down += rise(-move);
    window.ups += move > 0.0;
    window.downs += move < 0.0;
  }
  return window;
}

// Rolls the window from bar `begin` to the end of the series. From bar to bar only the sums hang on
// each other; the moves before them and the quotients behind them are made for many bars at a time.
void roll(const double* x, int begin, int n, int period, Moves window, double* y) noexcept {
  constexpr int kMany = 128;
  double up[kMany], down[kMany], oldUp[kMany], oldDown[kMany];
  int ups[kMany], downs[kMany];
  for (; begin < n; begin += kMany) {
    const int count = std::min(kMany, n - begin);
    const double* entering = x + begin;
    const double* leaving = entering - period;
    for (int k = 0; k < count; ++k) {
      const double move = entering[k] - entering[k - 1], oldMove = leaving[k] - leaving[k - 1];
      up[k] = rise(move);
      down[k] = rise(-move);
      oldUp[k] = rise(oldMove);
      oldDown[k] = rise(-oldMove);
      ups[k] = (move > 0.0) - (oldMove > 0.0);
      downs[k] = (move < 0.0) - (oldMove < 0.0);
    }
    for (int k = 0; k < count; ++k) {
      window.ups += ups[k];
      window.downs += downs[k];
      // What rounding leaves of moves that are gone must not pass for a move: a market that stands
      // still has no momentum.
      window.up = window.ups > 0 ? window.up + up[k] - oldUp[k] : 0.0;
      window.down = window.downs > 0 ? window.down + down[k] - oldDown[k] : 0.0;
      up[k] = window.up;
      down[k] = window.down;
    }
    fillGuarded(
        0, count, y + begin, [&](int k) { return balance(up[k], down[k]); },
        [&](int k) { return up[k] + down[k] != 0.0; }, 0.0);
  }
}

}  // namespace

extern "C" {

int QVCALL qvCMO(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, period);
  if (first < n) {
    const Moves window = movesOf(in->data, f + 1, first);
    if (window.up + window.down != 0.0) out->data[first] = balance(window.up, window.down);
    roll(in->data, first + 1, n, period, window, out->data);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
