// Accumulation: volume weighed by where the close lies in its bar, and the Chaikin family.
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

namespace {

// -1 at the low, +1 at the high. A bar without height counts as bought in full unless its close fell.
double closeLocation(const QvBars& bars, int i, int first) noexcept {
  const double high = bars.high.data[i], low = bars.low.data[i], close = bars.close.data[i];
  if (high != low) return ((close - low) - (high - close)) / (high - low);
  return i > first && close < bars.close.data[i - 1] ? -1.0 : 1.0;
}

}  // namespace

extern "C" {

int QVCALL qvAccumDist(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLowClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  double sum = 0.0;
  for (int i = s; i < n; ++i) out->data[i] = sum = closeLocation(*bars, i, s) * bars->volume.data[i] + sum;
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvAccumulate(const QvArray* in, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  if (f < n) out->data[f] = in->data[f];
  for (int i = saturatingSum(f, 1); i < n; ++i) out->data[i] = out->data[i - 1] + in->data[i];
  qvSetFirstValid(out, f);
  return QV_OK;
}

int QVCALL qvChaikinMoneyFlow(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary flow, volume;
  if (const int status = allocArrays(n, {&flow})) return status;
  for (int i = s; i < n; ++i) flow.data[i] = closeLocation(*bars, i, s) * bars->volume.data[i];
  if (const int status = qvMovingSum(&flow, &flow, p, 0)) return status;
  if (const int status = qvMovingSum(&bars->volume, &volume, p, 0)) return status;
  const int first = saturatingSum(s, p, -1);
  for (int i = first; i < n; ++i) out->data[i] = volume.data[i] != 0.0 ? flow.data[i] / volume.data[i] : 0.0;
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvChaikinOscillator(const QvBars* bars, QvArray* out, int fast, int slow, int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  Temporary line, fastAverage, slowAverage;
  if (const int status = qvAccumDist(bars, &line, start)) return status;
  if (const int status = qvExpMA(&line, &fastAverage, fast, start)) return status;
  if (const int status = qvExpMA(&line, &slowAverage, slow, start)) return status;
  return qvOscillator(&fastAverage, &slowAverage, out, start);
}

int QVCALL qvChaikinVolatility(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary average;
  if (const int status = allocArrays(n, {&average})) return status;
  const double *high = bars->high.data, *low = bars->low.data;
  const double k = qvPeriodToExp(p);
  if (s < n) average.data[s] = high[s] - low[s];
  for (int i = saturatingSum(s, 1); i < n; ++i)
    average.data[i] = (high[i] - low[i]) * k + (1.0 - k) * average.data[i - 1];
  return qvRateOfChange(&average, out, 100.0, p, s);
}

}  // extern "C"
