// On balance: volume or open interest added on rising closes and subtracted on falling ones.
#include "indicators/volume_on_balance.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

namespace {

// `amounts` of the bars from + 1 .. to, on balance, on top of `sum`.
double sumOnBalance(const QvBars& bars, const QvArray& amounts, int from, int to, double sum) noexcept {
  const int last =
      std::min({to, saturatingSum(bars.barsize, -1), amounts.capacity - 1, bars.close.capacity - 1});
  const double* close = bars.close.data;
  for (int i = saturatingSum(from, 1); i <= last; ++i)
    sum += OnBalance{}(close[i], close[i - 1], amounts.data[i], amounts.data[i - 1]);
  return sum;
}

}  // namespace

extern "C" {

int QVCALL qvOBV(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::OBV>(bars, {out}, start);
}

double QVCALL qvOBVol(const QvBars* bars, int from, int to) noexcept {
  if (!bars || !bars->close.data || !bars->volume.data) return 0.0;
  return sumOnBalance(*bars, bars->volume, std::max(from, 0), to, 0.0);
}

int QVCALL qvOBVolMv(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::OBVolMv>(bars, {out}, start, p);
}

double QVCALL qvOBOi(const QvBars* bars, int from, int to) noexcept {
  if (!bars || !bars->close.data || !bars->openInterest.data) return 0.0;
  from = std::max(from, 0);
  if (from >= std::min(bars->barsize, bars->openInterest.capacity)) return 0.0;
  return sumOnBalance(*bars, bars->openInterest, from, to, bars->openInterest.data[from]);
}

int QVCALL qvOBOiMv(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::OBOiMv>(bars, {out}, start, p);
}

int QVCALL qvOBVolExp(const QvBars* bars, QvArray* outVolume, QvArray* outBreakout, QvArray* outTrend, int p,
                      int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::OBVolExp>(bars, {outVolume, outBreakout, outTrend}, start, p);
}

}  // extern "C"
