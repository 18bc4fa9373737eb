// Popularity and willingness ratios, the Elder rays, and the change of a smoothed series.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/sentiment.h"

using namespace qv;

namespace {

// One side of the bars less the average of their closes.
int ray(const QvBars* bars, unsigned side, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, side | kClose}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  Temporary average;
  if (const int status = qvExpMA(&bars->close, &average, p, s)) return status;
  const double* price = side == kHigh ? bars->high.data : bars->low.data;
  for (int i = s; i < n; ++i) out->data[i] = price[i] - average.data[i];
  qvSetFirstValid(out, s);
  return QV_OK;
}

// What the bars reach above and below a base price, summed.
struct Reach {
  double above = 0.0, below = 0.0;

  void add(const QvBars& bars, int i, double base) noexcept {
    above += bars.high.data[i] - base;
    below += base - bars.low.data[i];
  }
  void remove(const QvBars& bars, int i, double base) noexcept {
    above -= bars.high.data[i] - base;
    below -= base - bars.low.data[i];
  }
  double percent() const noexcept { return below != 0.0 ? above * 100.0 / below : 0.0; }
};

}  // namespace

extern "C" {

int QVCALL qvAR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kOpen | kHighLow}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, -1);
  const double* open = bars->open.data;
  Reach reach;
  for (int i = s; i < n; ++i) {
    reach.add(*bars, i, open[i]);
    // The bar p - 1 back goes, not the one p back: bar start stays in the sums for good.
    if (i > first) reach.remove(*bars, i - p + 1, open[i - p + 1]);
    if (i >= first) out->data[i] = reach.percent();
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvBR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p);
  const double* close = bars->close.data;
  Reach reach;
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    reach.add(*bars, i, close[i - 1]);
    if (i < first) continue;
    reach.remove(*bars, i - p + 1, close[i - p]);
    out->data[i] = reach.percent();
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvERAYBull(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return ray(bars, kHigh, out, p, start);
}

int QVCALL qvERAYBear(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return ray(bars, kLow, out, p, start);
}

int QVCALL qvSONAR(const QvArray* in, QvArray* out, int p, int lag, int start) noexcept {
  if (p < 1 || lag < 0) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1 || saturatingSum(p, lag) >= n) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, lag);
  Temporary average;
  if (const int status = qvExpMA(in, &average, p, s)) return status;
  for (int i = first; i < n; ++i) {
    const double base = average.data[i - lag];
    out->data[i] = base != 0.0 ? (average.data[i] - base) * 100.0 / base : 0.0;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
