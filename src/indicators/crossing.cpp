#include "indicators/crossing.h"

#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"

namespace qv {

int fillCrossings(const QvArray* a, const QvArray* b, QvArray* out, int start, int end) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a, b});
  const int stop = std::min(end, n);
  for (int i = saturatingSum(f, 1); i < stop; ++i) out->data[i] = crossing(a->data, b->data, i);
  qvSetFirstValid(out, f);
  return QV_OK;
}

}  // namespace qv
