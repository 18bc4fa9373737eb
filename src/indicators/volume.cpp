// Price moves weighed by volume or open interest.
#include "indicators/volume.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

namespace {

// The mean of the items from .. to that are not zero; four pairs abreast hide what an addition takes.
double meanOfNonZero(const double* x, int from, int to) noexcept {
  constexpr int kPairs = 4;
  Two sums[kPairs]{};
  decltype(Two{} == Two{}) zeros[kPairs]{};  // counted down: what is true is -1
  const int count = std::max(0, to - from + 1), whole = count - count % (2 * kPairs);
  const double* next = x + from;
  for (int i = 0; i < whole; i += 2 * kPairs)
    for (int k = 0; k < kPairs; ++k, next += 2) {
      const Two items = loadTwo(next);
      sums[k] += items;
      zeros[k] += items == Two{};
    }
  double sum = 0.0, items = count;
  for (int k = 0; k < kPairs; ++k)
    for (int lane = 0; lane < 2; ++lane) {
      sum += sums[k][lane];
      items += static_cast<double>(zeros[k][lane]);
    }
  for (int i = whole; i < count; ++i) {
    sum += x[from + i];
    items -= x[from + i] == 0.0 ? 1.0 : 0.0;
  }
  return sum / items;
}

}  // namespace

extern "C" {

// No chain: every bar is measured by the mean volume of them all.
int QVCALL qvMFI(const QvBars* bars, QvArray* out, int start) noexcept {
  const BarInput set{bars, kHighLow | kVolume};
  int s;
  const int n = prepareOverwritten({&set, 1}, {}, {&out, 1}, start, &s, 0);
  if (n < 1) return n;
  const QvArray& volume = bars->volume;
  const double mean = meanOfNonZero(volume.data, std::max(s, volume.firstValid),
                                    std::min(bars->barsize, saturatingSum(volume.size, -1)));
  const auto facilitationOf = [mean](double high, double low, double amount) {
    const double facilitation = (high - low) * mean / amount;
    return amount == 0.0 ? 0.0 : facilitation;
  };
  if (s < n)
    map(n - s, out->data + s, facilitationOf, bars->high.data + s, bars->low.data + s, volume.data + s);
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvMoneyFlowIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::MoneyFlowIndex>(bars, {out}, start, p);
}

int QVCALL qvPVT(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::PVT>(bars, {out}, start);
}

int QVCALL qvNVI(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::NVI>(bars, {out}, start);
}

int QVCALL qvPVI(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::PVI>(bars, {out}, start);
}

int QVCALL qvForceIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::ForceIndex>(bars, {out}, StartEnd(start).needingMoreThan(p), p);
}

int QVCALL qvEMV(const QvBars* bars, QvArray* out, int method, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (!isAverageMethod(method)) return refuseMoreThan(p, {{bars, kHighLow | kVolume}}, {}, {out});
  return calculate<chain::EMV>(bars, {out}, StartEnd(start).needingMoreThan(p), method, p);
}

int QVCALL qvArmsEMV(const QvBars* bars, QvArray* out, int volumeDivisor, int start) noexcept {
  return calculate<chain::ArmsEMV>(bars, {out}, start, volumeDivisor);
}

int QVCALL qvHerrickPayoffIndex(const QvBars* bars, QvArray* out, double multiplier, double smoothing,
                                int start) noexcept {
  return calculate<chain::HerrickPayoffIndex>(bars, {out}, start, multiplier, smoothing);
}

int QVCALL qvVOSC(const QvArray* in, QvArray* out, int p1, int p2, int method, int start) noexcept {
  if (p1 < 1 || p2 < 1) return QV_INVALID_PARM;
  const int longer = std::max(p1, p2);
  if (!isAverageMethod(method)) return refuseMoreThan(longer, {}, {in}, {out});
  return calculate<chain::VOSC>({in}, {out}, StartEnd(start).needingMoreThan(longer), p1, p2, method,
                                itemsBehind(in, start));
}

int QVCALL qvVR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::VR>(bars, {out}, StartEnd(start).needingMoreThan(p), p);
}

}  // extern "C"
