// Utilities on whole series, and the price formulas of a single bar.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/array_formulas.h"
#include "core/bar_prices.h"
#include "core/calculation.h"
#include "core/numbers.h"
#include "core/power.h"
#include "core/stretch.h"

namespace {

using namespace qv;

// Both members of these scalings may be the same block: item i is read before it is written.
template <typename Formula>
void mapItems(const QvArray& in, QvArray& out, int from, int end, Formula formula) noexcept {
  const double* x = in.data;
  double* y = out.data;
  for (int i = from; i < end; ++i) y[i] = formula(x[i]);
}

}  // namespace

extern "C" {

int QVCALL qvScaleArray(const QvArray* in, QvArray* out, double oldMin, double oldMax, double newMin,
                        double newMax, int skipZeros, int start) noexcept {
  const int n = prepareOutputInPlace(in, out);
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  if (!isNonZero(oldMin) && !isNonZero(oldMax)) {
    const StretchStats stats = statsOf(in->data, {s, in->size - 1}, skipZeros != 0);
    oldMin = stats.minimum;
    oldMax = stats.maximum;
  }
  const double ratio = std::fabs(newMax - newMin) / std::fabs(oldMax - oldMin);
  mapItems(*in, *out, s, n, [=](double x) { return (x - oldMin) * ratio + newMin; });
  return QV_OK;
}

void QVCALL qvShiftArray(QvArray* a, int k) noexcept {
  if (!a || !a->data || k == 0) return;
  a->firstValid = std::clamp(saturatingSum(a->firstValid, k), 0, a->capacity);
  const auto bytes = [](int items) { return static_cast<std::size_t>(items) * sizeof(double); };
  if (k < 0) {
    const int kept = std::max(saturatingSum(a->size, k), 0);
    if (kept > 0) std::memmove(a->data, a->data + (a->size - kept), bytes(kept));
    a->size = kept;
  } else {
    const int zeros = std::min(k, a->capacity);
    a->size = std::min(saturatingSum(std::max(a->size, 0), k), a->capacity);
    std::memmove(a->data + zeros, a->data, bytes(a->size - zeros));
    std::fill_n(a->data, static_cast<std::size_t>(zeros), 0.0);
  }
}

int QVCALL qvMultAddArray(const QvArray* in, QvArray* out, double mult, double add, int start) noexcept {
  const int n = prepareOutputInPlace(in, out);
  if (n < 1) return n;
  mapItems(*in, *out, firstValidOf(start, {in}), n, [=](double x) { return multipleOf(x, mult, add); });
  return QV_OK;
}

int QVCALL qvDivide(const QvArray* a, const QvArray* b, QvArray* out, double factor, int start) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {a, b});
  for (int i = s; i < n; ++i) out->data[i] = quotientOf(a->data[i], b->data[i], factor);
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvFillInterval(const QvArray* values, const QvArray* marks, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {values, marks}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {values, marks});
  const double* value = values->data;
  double* line = out->data;
  int anchor = 0;  // also where s is later: the first line begins at item 0
  for (int i = s; i < n; ++i) {
    line[i] = value[i];
    const bool marked = marks->data[i] != 0.0 && i > 0;
    if (!marked && i != n - 1) continue;
    const double step = (value[i] - value[anchor]) / (i - anchor);
    for (int j = anchor + 1; j < i; ++j) line[j] = line[j - 1] + step;
    anchor = i;
  }
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvFindDate(const QvBars* b, double date) noexcept {
  if (!b) return QV_INVALID_PARM;
  if (b->barsize > 0 && (!b->date.data || b->date.capacity < b->barsize)) return QV_INVALID_PARM;
  int i = 0;
  while (i < b->barsize && !(b->date.data[i] >= date)) ++i;
  return i;
}

int QVCALL qvFirstNonZeroItem(const QvArray* a) noexcept {
  if (!a) return QV_INVALID_PARM;
  if (!a->data) return 0;
  for (int i = std::max(a->firstValid, 0); i < a->size; ++i)
    if (a->data[i] != 0.0) return i;
  return 0;
}

double QVCALL qvSumPrev(const QvArray* a, int count, int index) noexcept {
  if (!a || !a->data) return 0.0;
  const int first = std::max({saturatingSum(index, -std::int64_t{count}, 1), a->firstValid, 0});
  double sum = 0.0;
  for (int j = std::min(index, saturatingSum(a->size, -1)); j >= first; --j) sum += a->data[j];
  return sum;
}

int QVCALL qvDecimals(double x, int digits) noexcept {
  const double whole = std::floor(std::fabs(x));
  const double fraction = std::isinf(whole) ? 0.0 : std::fabs(x) - whole;
  if (fraction <= std::numeric_limits<double>::epsilon()) return 0;
  return truncatedInt(std::floor(fraction * powerOf(10.0, digits)));
}

double QVCALL qvTrueHigh(const QvBars* b, int i) noexcept {
  return hasBar({b, kHigh | kClose}, i) ? trueHigh(b->high.data, b->close.data, i) : 0.0;
}

double QVCALL qvTrueLow(const QvBars* b, int i) noexcept {
  return hasBar({b, kLow | kClose}, i) ? trueLow(b->low.data, b->close.data, i) : 0.0;
}

double QVCALL qvTrueRange(const QvBars* b, int i) noexcept {
  if (!hasBar({b, kHighLowClose}, i)) return 0.0;
  return trueRange(b->high.data, b->low.data, b->close.data, i);
}

double QVCALL qvTypicalPrice(const QvBars* b, int i) noexcept {
  if (!hasBar({b, kHighLowClose}, i)) return 0.0;
  return typicalPrice(b->high.data[i], b->low.data[i], b->close.data[i]);
}

double QVCALL qvWeightedClose(const QvBars* b, int i) noexcept {
  if (!hasBar({b, kHighLowClose}, i)) return 0.0;
  return weightedClose(b->high.data[i], b->low.data[i], b->close.data[i]);
}

double QVCALL qvMedianPrice(const QvBars* b, int i) noexcept {
  return hasBar({b, kHighLow}, i) ? medianPrice(b->high.data[i], b->low.data[i]) : 0.0;
}

}  // extern "C"
