// Where two series cross and where one turns, bar by bar and as signal series.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "indicators/crossing.h"
#include "qvlib60/patterns/formations.h"

namespace {

using namespace qv;

int turn(const double* a, int i) noexcept {
  const bool trough = (a[i] > a[i - 1]) & (a[i - 1] < a[i - 2]);
  const bool peak = (a[i] < a[i - 1]) & (a[i - 1] > a[i - 2]);
  return trough - peak;
}

}  // namespace

extern "C" {

int QVCALL qvCrossOver(const QvArray* a, const QvArray* b, int i) noexcept {
  if (!a || !b) return QV_INVALID_PARM;
  return i >= 1 && hasItem(*a, i) && hasItem(*b, i) ? crossing(a->data, b->data, i) : 0;
}

int QVCALL qvCrossOverFill(const QvArray* a, const QvArray* b, QvArray* out, int start, int end) noexcept {
  return fillCrossings(a, b, out, start, end);
}

int QVCALL qvTurn(const QvArray* a, int i) noexcept {
  if (!a) return QV_INVALID_PARM;
  return i >= 2 && hasItem(*a, i) ? turn(a->data, i) : 0;
}

int QVCALL qvTurnFill(const QvArray* in, QvArray* out, int start, int end) noexcept {
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int last = std::min(end, n - 1);  // the end is inclusive here, unlike in qvCrossOverFill
  for (int i = saturatingSum(f, 2); i <= last; ++i) out->data[i] = turn(in->data, i);
  qvSetFirstValid(out, f);
  return QV_OK;
}

}  // extern "C"
