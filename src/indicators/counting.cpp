// Counts and sums of bar-to-bar changes.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/counting.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvPsychologyLine(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, p);
  auto rose = [x = in->data](int i) { return x[i] > x[i - 1] ? 1 : 0; };
  int count = 0;
  for (int i = saturatingSum(f, 1); i < n; ++i) {
    count += rose(i);
    if (i <= first) continue;  // the first valid bar itself has always stayed 0.0
    count -= rose(i - p);
    out->data[i] = static_cast<double>(count) / p * 100.0;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvWilliamsAD(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
  for (int i = first; i < n; ++i) {
    const double sum = out->data[i - 1], before = close[i - 1];
    if (close[i] > before)
      out->data[i] = sum + close[i] - std::min(low[i], before);
    else if (close[i] < before)
      out->data[i] = sum - (std::max(high[i], before) - close[i]);
    else
      out->data[i] = sum;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvPVrank(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *close = bars->close.data, *volume = bars->volume.data;
  for (int i = first; i < n; ++i) {
    const bool priceUp = close[i] >= close[i - 1], volumeUp = volume[i] >= volume[i - 1];
    out->data[i] = priceUp ? (volumeUp ? 1.0 : 2.0) : (volumeUp ? 4.0 : 3.0);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvLineOsc(const QvArray* a, const QvArray* b, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a, b});
  Temporary averageA, averageB;
  if (const int status = qvSimpleMA(a, &averageA, p, f)) return status;
  if (const int status = qvSimpleMA(b, &averageB, p, f)) return status;
  return qvOscillator(&averageA, &averageB, out, saturatingSum(f, p, -1));
}

int QVCALL qvNMO(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (const int status = qvRSI(in, out, p, start)) return status;
  // From the caller's start, whatever the series' first valid index.
  for (int i = saturatingSum(std::max(start, 0), p); i < out->size; ++i)
    out->data[i] = 2.0 * out->data[i] - 100.0;
  return QV_OK;
}

}  // extern "C"
