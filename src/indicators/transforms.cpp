// Price transforms, simple changes, and comparisons of two securities by date.
#include "indicators/transforms.h"

#include <algorithm>

#include "kernels/calculate.h"
#include "qvlib60/indicators/transforms.h"

namespace {

using namespace qv;

// ---- The alignment of two bar sets by date ------------------------------------------------------

// Bar i of the first set and bar j of the second.
struct BarPair {
  int i, j;
};

int barAtOrAfter(const QvBars& b, int from, int end, double date) noexcept {
  while (from < end && !(b.date.data[from] >= date)) ++from;
  return from;
}

// Entry step of the comparisons: prepares the output by the first set alone and finds the first
// matched bars, where values begin. Returns the working count, or -1, -3, -9.
int beginComparison(const QvBars* bars1, const QvBars* bars2, QvArray* out, double startDate,
                    BarPair& first) noexcept {
  if (!hasSeries({bars2, kDate | kClose}) || !out || sharesSeries(*out, *bars2)) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars1, kDate | kClose}}, {}, {out});
  if (n < 1) return n;

  const int n2 = bars2->barsize;
  if (n2 < 1) return QV_RECORD_NOT_FOUND;
  first.i = barAtOrAfter(*bars1, 0, n, std::max(bars2->date.data[0], startDate));
  if (first.i == n) return QV_RECORD_NOT_FOUND;
  const double date = bars1->date.data[first.i];
  first.j = barAtOrAfter(*bars2, 0, n2, date);
  if (first.j == n2 || bars2->date.data[first.j] != date) return QV_RECORD_NOT_FOUND;

  qvSetFirstValid(out, first.i);
  return n;
}

// From the given pair on, until one set runs out: value(i, j) at the dates that both sets have, gap(i)
// at those that the second set lacks.
template <typename Value, typename Gap>
void compareByDate(const QvBars& bars1, const QvBars& bars2, int n, BarPair at, double* out, Value value,
                   Gap gap) noexcept {
  const double *date1 = bars1.date.data, *date2 = bars2.date.data;
  const int n2 = bars2.barsize;
  for (int i = at.i, j = at.j; i < n; ++i) {
    j = barAtOrAfter(bars2, j, n2, date1[i]);
    if (j == n2) return;
    out[i] = date2[j] == date1[i] ? value(i, j) : gap(i);
  }
}

// The comparisons that carry their last value over a gap.
template <typename Value>
int compareCarryingForward(const QvBars* bars1, const QvBars* bars2, QvArray* out, double startDate,
                           Value value) noexcept {
  BarPair first;
  const int n = beginComparison(bars1, bars2, out, startDate, first);
  if (n < 1) return n;
  const double *close1 = bars1->close.data, *close2 = bars2->close.data;
  const double* values = out->data;
  compareByDate(
      *bars1, *bars2, n, first, out->data, [=](int i, int j) { return value(close1[i], close2[j]); },
      [=](int i) { return values[i - 1]; });
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvAvgPrices(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::AvgPrices>(bars, {out}, start);
}

int QVCALL qvMedianPrices(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::MedianPrices>(bars, {out}, start);
}

int QVCALL qvTypicalPrices(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::TypicalPrices>(bars, {out}, start);
}

int QVCALL qvWeightedCloses(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::WeightedCloses>(bars, {out}, start);
}

int QVCALL qvPerformancePct(const QvArray* in, QvArray* out, int start) noexcept {
  return calculate<chain::PerformancePct>({in}, {out}, start);
}

int QVCALL qvDiffValue(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::DiffValue>({in}, {out}, start, p);
}

int QVCALL qvCompStrength(const QvBars* bars1, const QvBars* bars2, QvArray* out, double startDate) noexcept {
  return compareCarryingForward(bars1, bars2, out, startDate,
                                [](double close1, double close2) { return close1 / close2; });
}

int QVCALL qvSpread(const QvBars* bars1, const QvBars* bars2, QvArray* out, double w1, double w2,
                    double startDate) noexcept {
  return compareCarryingForward(bars1, bars2, out, startDate,
                                [=](double close1, double close2) { return w1 * close1 - w2 * close2; });
}

int QVCALL qvCompPerformance(const QvBars* bars1, const QvBars* bars2, QvArray* out,
                             double startDate) noexcept {
  BarPair first;
  const int n = beginComparison(bars1, bars2, out, startDate, first);
  if (n < 1) return n;
  const double *close1 = bars1->close.data, *close2 = bars2->close.data;
  const double r0 = close1[first.i] / close2[first.j];
  out->data[first.i] = 1.0;
  compareByDate(
      *bars1, *bars2, n, {first.i + 1, first.j}, out->data,
      [=](int i, int j) { return (close1[i] / close2[j] - r0) / r0 + 1.0; },
      [](int) { return -1.0; });  // a gap marks its bar; the last value is not carried forward
  return QV_OK;
}

}  // extern "C"
