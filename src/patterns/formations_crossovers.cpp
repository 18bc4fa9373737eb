// Where two series cross and where one turns, bar by bar and as signal series.
#include "core/numbers.h"
#include "indicators/crossing.h"
#include "kernels/calculate.h"
#include "patterns/formations.h"
#include "qvlib60/patterns/formations.h"

using namespace qv;

extern "C" {

int QVCALL qvCrossOver(const QvArray* a, const QvArray* b, int i) noexcept {
  if (!a || !b) return QV_INVALID_PARM;
  return i >= 1 && hasItem(*a, i) && hasItem(*b, i) ? crossing(a->data, b->data, i) : 0;
}

int QVCALL qvCrossOverFill(const QvArray* a, const QvArray* b, QvArray* out, int start, int end) noexcept {
  return calculate<chain::CrossOverFill>({a, b}, {out}, {start, end});
}

int QVCALL qvTurn(const QvArray* a, int i) noexcept {
  if (!a) return QV_INVALID_PARM;
  return i >= 2 && hasItem(*a, i)
             ? static_cast<int>(chain::TurnFill::turnOf(a->data[i], a->data[i - 1], a->data[i - 2]))
             : 0;
}

int QVCALL qvTurnFill(const QvArray* in, QvArray* out, int start, int end) noexcept {
  // the end is inclusive here, unlike in qvCrossOverFill
  return calculate<chain::TurnFill>({in}, {out}, {start, saturatingSum(end, 1)});
}

}  // extern "C"
