// On balance: volume or open interest added on rising closes and subtracted on falling ones.
#include <algorithm>
#include <array>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

namespace {

double onBalance(const double* close, const double* amount, int i) noexcept {
  return close[i] > close[i - 1] ? amount[i] : close[i] < close[i - 1] ? -amount[i] : 0.0;
}

// `amounts` of the bars from + 1 .. to, on balance, on top of `sum`.
double sumOnBalance(const QvBars& bars, const QvArray& amounts, int from, int to, double sum) noexcept {
  const int last = std::min({to, bars.barsize - 1, amounts.capacity - 1, bars.close.capacity - 1});
  for (int i = saturatingSum(from, 1); i <= last; ++i) sum += onBalance(bars.close.data, amounts.data, i);
  return sum;
}

// Sums of the `changes` changes that end at each bar, from bar s + changes on.
int movingOnBalance(const QvBars& bars, const QvArray& amounts, int s, int n, int changes,
                    double* out) noexcept {
  Temporary signedAmounts;
  if (const int status = allocArrays(n, {&signedAmounts})) return status;
  for (int i = saturatingSum(s, 1); i < n; ++i)
    signedAmounts.data[i] = onBalance(bars.close.data, amounts.data, i);
  return window::sum(signedAmounts.data, {saturatingSum(s, 1), n, changes}, out);
}

// The last three recorded swings of either kind, newest first.
class Swings {
 public:
  void record(double value, bool high) noexcept {
    last_[2] = last_[1];
    last_[1] = last_[0];
    last_[0] = {value, high};
    if (count_ < 3) ++count_;
  }

  // +1.0 when the values of each kind rise, -1.0 when they fall; with three swings of two kinds
  // there is always a pair to compare.
  double trend() const noexcept {
    if (count_ < 3) return 0.0;
    bool rising = true, falling = true;
    for (int later = 0; later < 2; ++later)
      for (int earlier = later + 1; earlier < 3; ++earlier) {
        const Swing &a = last_[static_cast<std::size_t>(earlier)],
                    &b = last_[static_cast<std::size_t>(later)];
        if (a.high != b.high) continue;
        rising = rising && b.value > a.value;
        falling = falling && b.value < a.value;
      }
    return rising ? 1.0 : falling ? -1.0 : 0.0;
  }

 private:
  struct Swing {
    double value;
    bool high;
  };
  std::array<Swing, 3> last_{};
  int count_ = 0;
};

}  // namespace

extern "C" {

int QVCALL qvOBV(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *close = bars->close.data, *volume = bars->volume.data;
  for (int i = first; i < n; ++i) out->data[i] = out->data[i - 1] + onBalance(close, volume, i);
  qvSetFirstValid(out, first);
  return QV_OK;
}

double QVCALL qvOBVol(const QvBars* bars, int from, int to) noexcept {
  if (!bars || !bars->close.data || !bars->volume.data) return 0.0;
  return sumOnBalance(*bars, bars->volume, std::max(from, 0), to, 0.0);
}

int QVCALL qvOBVolMv(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  if (const int status = movingOnBalance(*bars, bars->volume, s, n, p, out->data)) return status;
  qvSetFirstValid(out, saturatingSum(s, p));
  return QV_OK;
}

double QVCALL qvOBOi(const QvBars* bars, int from, int to) noexcept {
  if (!bars || !bars->close.data || !bars->openInterest.data) return 0.0;
  from = std::max(from, 0);
  if (from >= std::min(bars->barsize, bars->openInterest.capacity)) return 0.0;
  return sumOnBalance(*bars, bars->openInterest, from, to, bars->openInterest.data[from]);
}

int QVCALL qvOBOiMv(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kClose | kOpenInterest}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, -1);
  if (p > 1)
    if (const int status = movingOnBalance(*bars, bars->openInterest, s, n, p - 1, out->data)) return status;
  for (int i = first; i < n; ++i) out->data[i] += bars->openInterest.data[i - p + 1];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvOBVolExp(const QvBars* bars, QvArray* outVolume, QvArray* outBreakout, QvArray* outTrend, int p,
                      int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kClose | kVolume}}, {}, {outVolume, outBreakout, outTrend});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, 1);
  double* obv = outVolume->data;
  for (int i = first; i < n; ++i) obv[i] = obv[i - 1] + onBalance(bars->close.data, bars->volume.data, i);

  // The bar p before i is a swing when it is the extreme of the 2p + 1 bars that end at i.
  Temporary highest, lowest;
  if (const int status = allocArrays(n, {&highest, &lowest})) return status;
  const window::Range range{s, n, saturatingSum(p, p, 1)};
  if (const int status = window::maximum(obv, range, highest.data)) return status;
  if (const int status = window::minimum(obv, range, lowest.data)) return status;

  Swings swings;
  bool anyHigh = false, anyLow = false, wasHigh = false, wasLow = false;
  double lastHigh = 0.0, lastLow = 0.0, trend = 0.0;
  for (int i = saturatingSum(s, p, p); i < n; ++i) {
    const double middle = obv[i - p];
    const bool isHigh = middle == highest.data[i], isLow = middle == lowest.data[i];
    const bool held = middle == obv[i - p - (i > s + p ? 1 : 0)];  // still the run of the bar before
    if (isHigh && !(wasHigh && held)) {
      swings.record(middle, true);
      lastHigh = middle;
      anyHigh = true;
      trend = swings.trend();
    }
    if (isLow && !(wasLow && held)) {
      swings.record(middle, false);
      lastLow = middle;
      anyLow = true;
      trend = swings.trend();
    }
    wasHigh = isHigh;
    wasLow = isLow;
    if (anyHigh && obv[i] >= lastHigh)
      outBreakout->data[i] = 1.0;
    else if (anyLow && obv[i] <= lastLow)
      outBreakout->data[i] = -1.0;
    outTrend->data[i] = trend;
  }
  for (QvArray* out : {outVolume, outBreakout, outTrend}) qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
