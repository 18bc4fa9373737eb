// Relative strength: the share of the rises in a series' recent moves, both smoothed as Wilder does.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "indicators/wilder.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

namespace {

// The move from `before` to `now` as a rise and a fall, one of them 0. What does not fall or stand
// still counts as a rise, not-a-number included.
struct Move {
  Move(double now, double before) noexcept
      : rise(now <= before ? 0.0 : now - before), fall(now <= before ? before - now : 0.0) {}
  double rise, fall;
};

double strength(double up, double down) noexcept {
  const double total = up + down;
  return total != 0.0 ? 100.0 * up / total : 0.0;
}

// qvRMI's values in x[f .. n - 1], f + momentum < n. A series too short for the seed has one value, at
// its last item, from sums divided by the whole period.
void relativeMomentum(const double* x, int f, int n, int period, int momentum, double* out) noexcept {
  const int begin = f + momentum;
  const int end = std::min(n, saturatingSum(begin, period));
  double up = 0.0, down = 0.0;
  for (int i = begin; i < end; ++i) {
    const Move move(x[i], x[i - momentum]);
    up += move.rise;
    down += move.fall;
  }
  up /= period;
  down /= period;
  out[end - 1] = strength(up, down);
  for (int i = end; i < n; ++i) {
    const Move move(x[i], x[i - momentum]);
    up = wilderStep(up, move.rise, period);
    down = wilderStep(down, move.fall, period);
    out[i] = strength(up, down);
  }
}

// Wilder's average of gain(now, before). The seed is divided by the moves that exist, not by the
// period.
template <typename Gain>
int averageMoves(const QvArray* in, QvArray* out, int period, int start, Gain gain) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int begin = saturatingSum(f, 1);
  if (begin < n) {
    const double* x = in->data;
    double* y = out->data;
    const int end = std::min(n, saturatingSum(begin, period));
    double average = 0.0;
    for (int i = begin; i < end; ++i) average += gain(x[i], x[i - 1]);
    y[end - 1] = average /= end - begin;
    for (int i = end; i < n; ++i) y[i] = average = wilderStep(average, gain(x[i], x[i - 1]), period);
  }
  qvSetFirstValid(out, saturatingSum(f, period));
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvRMI(const QvArray* in, QvArray* out, int p, int m, int start) noexcept {
  if (p < 1 || m < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  if (saturatingSum(f, m) < n) relativeMomentum(in->data, f, n, p, m, out->data);
  qvSetFirstValid(out, saturatingSum(f, m, p, -1));
  return QV_OK;
}

int QVCALL qvRSI(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return qvRMI(in, out, p, 1, start);
}

int QVCALL qvUpAverage(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return averageMoves(in, out, p, start,
                      [](double now, double before) { return now > before ? now - before : 0.0; });
}

int QVCALL qvDownAverage(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return averageMoves(in, out, p, start,
                      [](double now, double before) { return now < before ? before - now : 0.0; });
}

int QVCALL qvStochRSI(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  Temporary rsi;
  if (const int status = allocArrays(n, {&rsi})) return status;
  if (const int status = qvRSI(in, &rsi, p, start)) return status;
  return qvStochastic(&rsi, out, p, saturatingSum(std::max(start, 0), p));
}

}  // extern "C"
