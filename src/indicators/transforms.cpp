// Price transforms, simple changes, and comparisons of two securities by date.
#include "indicators/transforms.h"

#include <algorithm>

#include "kernels/calculate.h"
#include "qvlib60/indicators/transforms.h"

namespace {

using namespace qv;

// ---- The alignment of two bar sets by date ------------------------------------------------------

int barAtOrAfter(const QvBars& b, int from, int end, double date) noexcept {
  while (from < end && !(b.date.data[from] >= date)) ++from;
  return from;
}

// The bars of the second set that stand beside those of the first are gathered a tile at a time.
template <typename Chain, typename... Parameters>
int compareByDate(const QvBars* bars1, const QvBars* bars2, QvArray* out, double startDate,
                  Parameters... parameters) noexcept {
  Chain chain(startDate, parameters...);
  if (Opening* opening = openingOf(out)) return chain::openComparison(*opening, chain, *bars1, *bars2);
  if (!hasSeries({bars2, kDate | kClose}) || !out || sharesSeries(*out, *bars2)) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars1, kDate | kClose}}, {}, {out});
  if (n < 1) return n;

  const int n2 = bars2->barsize;
  if (n2 < 1) return QV_RECORD_NOT_FOUND;
  const double *date1 = bars1->date.data, *date2 = bars2->date.data;
  const int first = barAtOrAfter(*bars1, 0, n, std::max(date2[0], startDate));
  if (first == n) return QV_RECORD_NOT_FOUND;
  int j = barAtOrAfter(*bars2, 0, n2, date1[first]);
  if (j == n2 || date2[j] != date1[first]) return QV_RECORD_NOT_FOUND;

  for (int i = first, count; i < n; i += count) {  // until one set runs out
    Tile date, close;
    for (count = 0; count < std::min(kTile, n - i); ++count) {
      j = barAtOrAfter(*bars2, j, n2, date1[i + count]);
      if (j == n2) break;
      date[count] = date2[j];
      close[count] = bars2->close.data[j];
    }
    if (count == 0) break;
    chain.run({date1 + i, bars1->close.data + i, date, close}, count, {out->data + i});
  }
  qvSetFirstValid(out, first);
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
  return compareByDate<chain::CompStrength>(bars1, bars2, out, startDate);
}

int QVCALL qvSpread(const QvBars* bars1, const QvBars* bars2, QvArray* out, double w1, double w2,
                    double startDate) noexcept {
  return compareByDate<chain::Spread>(bars1, bars2, out, startDate, chain::SpreadOf{w1, w2});
}

int QVCALL qvCompPerformance(const QvBars* bars1, const QvBars* bars2, QvArray* out,
                             double startDate) noexcept {
  return compareByDate<chain::CompPerformance>(bars1, bars2, out, startDate);
}

}  // extern "C"
