// Price moves weighed by volume or open interest.
#include <algorithm>
#include <cmath>

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "core/numbers.h"
#include "core/stretch.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

namespace {

// A running split of bar amounts into rising and falling.
struct Split {
  double up = 0.0, down = 0.0;
};

// The sum of the closes' relative changes over the bars whose volume moved as `counts` says.
template <typename Counts>
int volumeIndex(const QvBars* bars, QvArray* out, int start, Counts counts) noexcept {
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *close = bars->close.data, *volume = bars->volume.data;
  for (int i = first; i < n; ++i) {
    out->data[i] = out->data[i - 1];
    if (counts(volume[i], volume[i - 1])) out->data[i] += (close[i] - close[i - 1]) / close[i - 1];
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvMFI(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLow | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const StretchStats stats = statsOf(bars->volume.data, stretchOf(s, bars->barsize, {&bars->volume}), true);
  const double mean = stats.sum / stats.count;
  for (int i = s; i < n; ++i) {
    const double volume = bars->volume.data[i];
    out->data[i] = volume == 0.0 ? 0.0 : (bars->high.data[i] - bars->low.data[i]) * mean / volume;
  }
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvMoneyFlowIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p);
  Temporary typical;
  if (const int status = allocArrays(n, {&typical})) return status;
  double* t = typical.data;
  for (int i = s; i < n; ++i) t[i] = typicalPrice(bars->high.data[i], bars->low.data[i], bars->close.data[i]);

  Split flow;
  auto add = [&](int i, double sign) {
    const double amount = sign * (t[i] * bars->volume.data[i]);
    if (t[i] > t[i - 1])
      flow.up += amount;
    else if (t[i] < t[i - 1])
      flow.down += amount;
  };
  auto index = [&] { return 100.0 - 100.0 / (flow.up / flow.down + 1.0); };
  if (s < n - 1) {
    const int seeded = std::min(first, n - 1);
    for (int i = s + 1; i <= seeded; ++i) add(i, 1.0);
    if (isNonZero(flow.down)) out->data[seeded] = index();
    for (int i = seeded + 1; i < n; ++i) {
      add(i - p, -1.0);
      add(i, 1.0);
      out->data[i] = flow.down == 0.0 ? 0.0 : index();
    }
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvPVT(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *close = bars->close.data, *volume = bars->volume.data;
  for (int i = first; i < n; ++i)
    out->data[i] = (close[i] - close[i - 1]) * volume[i] / close[i - 1] + out->data[i - 1];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvNVI(const QvBars* bars, QvArray* out, int start) noexcept {
  return volumeIndex(bars, out, start, [](double volume, double previous) { return volume < previous; });
}

int QVCALL qvPVI(const QvBars* bars, QvArray* out, int start) noexcept {
  return volumeIndex(bars, out, start, [](double volume, double previous) { return volume > previous; });
}

int QVCALL qvForceIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, 1);
  Temporary average;
  if (const int status = qvExpMA(&bars->close, &average, p, s)) return status;
  for (int i = first; i < n; ++i)
    out->data[i] = (average.data[i] - average.data[i - 1]) * bars->volume.data[i];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvEMV(const QvBars* bars, QvArray* out, int method, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow | kVolume}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  const double *high = bars->high.data, *low = bars->low.data;
  Temporary ease;
  if (const int status = allocArrays(n, {&ease})) return status;
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    const double box = bars->volume.data[i] / (high[i] - low[i]);
    // Less the whole height of the bar before, where qvArmsEMV takes its midpoint.
    if (isNonZero(box)) ease.data[i] = ((high[i] + low[i]) / 2.0 - high[i - 1] + low[i - 1]) / box;
  }
  if (const int status = qvMovingAverage(&ease, out, method, p, s)) return status;
  qvSetFirstValid(out, saturatingSum(s, p));
  return QV_OK;
}

int QVCALL qvArmsEMV(const QvBars* bars, QvArray* out, int volumeDivisor, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLow | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *high = bars->high.data, *low = bars->low.data, *volume = bars->volume.data;
  for (int i = first; i < n; ++i) {
    if (!(volume[i] > 0.0) || high[i] == low[i]) continue;
    const double box = (volume[i] / volumeDivisor) / (high[i] - low[i]);
    out->data[i] = (medianPrice(high[i], low[i]) - medianPrice(high[i - 1], low[i - 1])) / box;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvHerrickPayoffIndex(const QvBars* bars, QvArray* out, double multiplier, double smoothing,
                                int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLow | kVolume | kOpenInterest}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *high = bars->high.data, *low = bars->low.data;
  const double *volume = bars->volume.data, *interest = bars->openInterest.data;
  for (int i = first; i < n; ++i) {
    const double change = std::fabs(interest[i] - interest[i - 1]);
    const double smaller = std::min(interest[i], interest[i - 1]);
    const double before = out->data[i - 1];
    double payoff = before;
    if (smaller != 0.0) {
      const double move = medianPrice(high[i], low[i]) - medianPrice(high[i - 1], low[i - 1]);
      payoff = multiplier * volume[i] * (2.0 * change / smaller + 1.0) * move;
    }
    out->data[i] = i == first ? payoff : (payoff - before) * smoothing + before;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvVOSC(const QvArray* in, QvArray* out, int p1, int p2, int method, int start) noexcept {
  if (p1 < 1 || p2 < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  const int longer = std::max(p1, p2);
  if (n < 1 || longer >= n) return n;
  Temporary first, second;
  if (const int status = qvMovingAverage(in, &first, method, p1, start)) return status;
  if (const int status = qvMovingAverage(in, &second, method, p2, start)) return status;
  const int begin = saturatingSum(firstValidOf(start, {}), longer);
  for (int i = begin; i < n; ++i) {
    const double a = first.data[i];
    out->data[i] = a != 0.0 ? (a - second.data[i - 1]) * 100.0 / a : 0.0;
  }
  qvSetFirstValid(out, begin);
  return QV_OK;
}

int QVCALL qvVR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p);
  const double *close = bars->close.data, *volume = bars->volume.data;
  Split sum;
  auto add = [&](int i, double sign) {
    if (close[i] < close[i - 1]) {
      sum.down += sign * volume[i];
    } else if (close[i] > close[i - 1]) {
      sum.up += sign * volume[i];
    } else {
      sum.up += sign * (volume[i] / 2.0);
      sum.down += sign * (volume[i] / 2.0);
    }
  };
  for (int i = saturatingSum(s, 1); i < std::min(n, first); ++i) add(i, 1.0);
  for (int i = first; i < n; ++i) {
    add(i, 1.0);
    if (i > first) add(i - p, -1.0);
    out->data[i] = sum.down != 0.0 ? sum.up * 100.0 / sum.down : 0.0;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
