// How strongly and for how long prices have trended: Aroon, vertical horizontal filter, random walk
// index, trend score, dynamic momentum index.
#include <algorithm>
#include <cmath>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/statistics.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

namespace {

double relativeChange(const double* x, int i) noexcept {
  return std::fabs((x[i] - x[i - 1]) / x[i - 1]);
}

int rise(const double* x, int i) noexcept {
  return x[i] >= x[i - 1] ? 1 : -1;
}

}  // namespace

extern "C" {

int QVCALL qvAroon(const QvBars* bars, QvArray* outUp, QvArray* outDown, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {outUp, outDown});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p);
  memory::Buffer<int> position(static_cast<std::size_t>(n));
  if (!position.ok()) return QV_MALLOC;
  const window::Range range{s, n, saturatingSum(p, 1)};
  auto write = [&](QvArray* out) {
    for (int i = first; i < n; ++i) {
      const int age = position[static_cast<std::size_t>(i)] - i;
      out->data[i] = static_cast<double>(p + age) / p * 100.0;
    }
    qvSetFirstValid(out, first);
  };
  if (const int status = window::maximumPosition(bars->high.data, range, position.data())) return status;
  write(outUp);
  if (const int status = window::minimumPosition(bars->low.data, range, position.data())) return status;
  write(outDown);
  return QV_OK;
}

int QVCALL qvAroonOscillator(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {out});
  if (n < 1) return n;
  Temporary up, down;
  if (const int status = qvAroon(bars, &up, &down, p, start)) return status;
  const int first = up.firstValid;
  for (int i = first; i < n; ++i) out->data[i] = up.data[i] - down.data[i];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvVHF(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, p);
  const double* x = in->data;
  Temporary highest, lowest;
  if (const int status = allocArrays(n, {&highest, &lowest})) return status;
  if (f < n - 1) {
    // The bars of the seed that exist, then every window of p bars.
    const window::Range range{f + 1, n, p, true};
    if (const int status = window::maximum(x, range, highest.data)) return status;
    if (const int status = window::minimum(x, range, lowest.data)) return status;
    const int seeded = std::min(first, n - 1);
    double noise = 0.0;
    for (int i = f + 1; i <= seeded; ++i) noise += relativeChange(x, i);
    if (noise != 0.0) out->data[seeded] = (highest.data[seeded] - lowest.data[seeded]) / noise;
    for (int i = seeded + 1; i < n; ++i) {
      if (x[i - 1] != 0.0) noise += relativeChange(x, i);
      if (x[i - p - 1] != 0.0) noise -= relativeChange(x, i - p);
      out->data[i] = noise != 0.0 ? (highest.data[i] - lowest.data[i]) / noise : 0.0;
    }
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvRWI(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {outHigh, outLow});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p);
  if (first < n) {
    const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
    Temporary range, highTerm, lowTerm, root;
    if (const int status = allocArrays(n, {&range})) return status;
    if (const int status = allocArrays(p, {&highTerm, &lowTerm, &root})) return status;
    for (int j = 1; j < p; ++j) root.data[j] = std::sqrt(j + 1.0);
    range.data[s] = high[s] - low[s];
    for (int i = saturatingSum(s, 1); i < n; ++i) {
      const double height = high[i] - low[i];
      const double below = close[i - 1] - low[i];  // a gap above the previous close does not count
      range.data[i] = below >= height ? below : height;
    }
    for (int i = first; i < n; ++i) {
      double sum = range.data[i - 1];
      double bestHigh = 0.0, bestLow = 0.0;
      for (int j = 1; j < p; ++j) {
        sum += range.data[i - j - 1];
        const double mean = sum / (j + 1), walk = root.data[j] * mean;
        if (mean != 0.0) {  // else the term of an earlier bar stands
          lowTerm.data[j] = (high[i - j] - low[i]) / walk;
          highTerm.data[j] = (high[i] - low[i - j]) / walk;
        }
        bestHigh = std::max(bestHigh, highTerm.data[j]);
        bestLow = std::max(bestLow, lowTerm.data[j]);
      }
      outHigh->data[i] = bestHigh;
      outLow->data[i] = bestLow;
    }
  }
  qvSetFirstValid(outHigh, first);
  qvSetFirstValid(outLow, first);
  return QV_OK;
}

int QVCALL qvTrendScore(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, p);
  const double* x = in->data;
  if (f < n) {
    const int seeded = std::min(first, n - 1);
    int score = 0;
    for (int i = f + 1; i <= seeded; ++i) score += rise(x, i);
    out->data[seeded] = score;
    for (int i = seeded + 1; i < n; ++i) out->data[i] = score += rise(x, i) - rise(x, i - p);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvDMI(const QvArray* in, QvArray* out, int start) noexcept {
  constexpr int kDeviationPeriod = 5, kMeanPeriod = 10, kShortest = 3, kLongest = 30;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, kLongest);
  // The deviations begin where the first mean needs them.
  const int begin = saturatingSum(first, -(kMeanPeriod - 1) - (kDeviationPeriod - 1));
  Temporary deviation;
  if (const int status = qvStdDevMv(in, &deviation, 1, kDeviationPeriod, begin)) return status;
  if (first < n) {
    const double* x = in->data;
    for (int i = first; i < n; ++i) {
      // Summed afresh at each bar: the look-back turns on the last bit of the mean.
      double m = 0.0;
      for (int j = i - kMeanPeriod + 1; j <= i; ++j) m += deviation.data[j];
      m /= kMeanPeriod;
      const double sd = deviation.data[i];
      int t = kShortest;
      if (isNonZero(m) && isNonZero(sd))
        t = std::clamp(truncatedInt(std::floor(14.0 / (sd / m))), kShortest, kLongest);
      double up = 0.0, down = 0.0;
      for (int j = i - t + 1; j <= i; ++j) {
        if (x[j] <= x[j - 1])
          down += x[j - 1] - x[j];
        else
          up += x[j] - x[j - 1];
      }
      out->data[i] = up + down != 0.0 ? 100.0 * up / (up + down) : 0.0;
    }
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
