// Range indicator, polarized fractal efficiency, Wilder's volatility system.
#include "indicators/range.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/range.h"

using namespace qv;

namespace {

// The sums of steps that are fewer than a period stand from index p on below the first valid index, and the
// last of a short series at its end.
void keepFirstSums(const QvArray* in, QvArray* out, int p, int f) noexcept {
  const double* x = in->data;
  const int last = std::min(in->size, out->size) - 1, end = std::min(saturatingSum(f, p, -1), last);
  double sum = 0.0;
  for (int i = saturatingSum(f, 1); i <= end; ++i) {
    sum += stepOf(x[i], x[i - 1]);
    if (i >= p || i == last) out->data[i] = sum;
  }
}

}  // namespace

extern "C" {

int QVCALL qvRangeIndicator(const QvBars* bars, QvArray* out, int p, int smoothing, int start) noexcept {
  if (p < 1 || smoothing < 1) return QV_INVALID_PARM;
  return calculate<chain::RangeIndicator>(bars, {out}, start, p, smoothing);
}

int QVCALL qvPFE(const QvArray* in, QvArray* out, int p, int smoothing, int start) noexcept {
  if (p < 1 || smoothing < 1) return QV_INVALID_PARM;
  const int status = calculate<chain::PFE>({in}, {out}, start, p, smoothing);
  if (status == QV_OK && !hasNoRoom(out)) keepFirstSums(in, out, p, firstValidOf(start, {in}));
  return status;
}

int QVCALL qvWellesVolatility(const QvBars* bars, QvArray* outSIC, QvArray* outARC, QvArray* outStop,
                              QvArray* outSignal, double constant, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::WellesVolatility>(bars, {outSIC, outARC, outStop, outSignal}, start, constant, p);
}

}  // extern "C"
