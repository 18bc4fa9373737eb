// The Chande momentum oscillator: the balance of a window's rises and falls. It has a source of its
// own because the averages that adapt to momentum stand on it.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

namespace {

// The sums of a window's rises and falls, rolled from bar to bar.
class Moves {
 public:
  void add(double change) noexcept {
    up_ += rise(change);
    down_ += rise(-change);
    ups_ += change > 0.0;
    downs_ += change < 0.0;
  }

  void remove(double change) noexcept {
    up_ -= rise(change);
    down_ -= rise(-change);
    ups_ -= change > 0.0;
    downs_ -= change < 0.0;
    // What rounding leaves of moves that have gone must not pass for a move: a flat window is zero.
    if (ups_ == 0) up_ = 0.0;
    if (downs_ == 0) down_ = 0.0;
  }

  double balance() const noexcept {
    const double total = up_ + down_;
    return isNonZero(total) ? (up_ - down_) / total * 100.0 : 0.0;
  }

 private:
  static double rise(double change) noexcept { return change > 0.0 ? change : 0.0; }

  double up_ = 0.0, down_ = 0.0;
  int ups_ = 0, downs_ = 0;
};

}  // namespace

extern "C" {

int QVCALL qvCMO(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, period);
  if (first < n) {
    const double* x = in->data;
    Moves moves;
    for (int i = f + 1; i <= first; ++i) moves.add(x[i] - x[i - 1]);
    out->data[first] = moves.balance();
    for (int i = first + 1; i < n; ++i) {
      moves.add(x[i] - x[i - 1]);
      moves.remove(x[i - period] - x[i - period - 1]);
      out->data[i] = moves.balance();
    }
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
