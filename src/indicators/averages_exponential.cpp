// Averages with an unlimited memory: every bar moves the average by a share of its distance from the
// new value. Exponential, double and triple exponential, generalised double smoothing, zero lag, and
// Wilder's smoothing.
//
// Each bar waits for the one before it, so these loops are bound by the latency of that step; all
// that does not hang on the previous result stays outside the chain.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "indicators/wilder.h"
#include "qvlib60/indicators/averages.h"

using namespace qv;

namespace {

// Refuses a not-a-number too.
bool isPeriod(double period) noexcept {
  return period >= 1.0;
}

class Smoothing {
 public:
  explicit Smoothing(double period) noexcept : k_(qvPeriodToExp(period)), rest_(1.0 - k_) {}
  double next(double previous, double value) const noexcept { return k_ * value + rest_ * previous; }

 private:
  double k_, rest_;
};

// combined(e) of exponential averages e[0], e[1] .., each of which smooths the one before it. The seed
// stands one bar before the first valid index.
template <int kStages, typename Combined>
int ofStages(const QvArray* in, QvArray* out, double period, int start, Combined combined) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  if (s < n) {
    const Smoothing smoothing(period);
    const double* x = in->data;
    double* y = out->data;
    double e[kStages];
    std::fill_n(e, kStages, x[s]);
    y[s] = x[s];
    for (int i = s + 1; i < n; ++i) {
      double value = x[i];
      for (double& average : e) value = average = smoothing.next(average, value);
      y[i] = combined(e);
    }
  }
  qvSetFirstValid(out, saturatingSum(s, 1));
  return QV_OK;
}

// Generalised double smoothing of x[s .. n - 1] into y, which may be x, kPasses times over; y[s] is the
// seed x[s]. With factor 0 a pass is the exponential average, with factor 1 the double exponential one.
// Several passes run abreast: each waits for its own last bar only.
template <int kPasses>
void smoothTwice(const double* x, int s, int n, Smoothing smoothing, double factor, double* y) noexcept {
  if (s >= n) return;
  double e1[kPasses], e2[kPasses];
  std::fill_n(e1, kPasses, x[s]);
  std::fill_n(e2, kPasses, x[s]);
  y[s] = x[s];
  for (int i = s + 1; i < n; ++i) {
    double value = x[i];
    for (int pass = 0; pass < kPasses; ++pass) {
      e1[pass] = smoothing.next(e1[pass], value);
      e2[pass] = smoothing.next(e2[pass], e1[pass]);
      value = (1.0 + factor) * e1[pass] - factor * e2[pass];
    }
    y[i] = value;
  }
}

// Far above any use; a wild number of passes must not keep the caller waiting for days.
constexpr int kMostPasses = 10000;

// Wilder's average and sum: seed(sum) of the first `period` items from s, or of as many as there are, with
// the output cleared over those before it; next(last, item) follows.
template <typename Seed, typename Next>
int wellesSmoothing(const QvArray* in, QvArray* out, int period, int start, Seed seed, Next next) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  int s;
  const int n = prepareOverwritten(in, out, start, &s);
  if (n < 1) return n;
  if (s < n) {
    const double* x = in->data;
    double *y = out->data, last = 0.0;
    const int end = std::min(n, saturatingSum(s, period));
    for (int i = s; i < end; ++i) {
      last += x[i];
      y[i] = 0.0;
    }
    y[end - 1] = last = seed(last);
    for (int i = end; i < n; ++i) y[i] = last = next(last, x[i]);
  }
  qvSetFirstValid(out, saturatingSum(s, period, -1));
  return QV_OK;
}

}  // namespace

extern "C" {

double QVCALL qvPeriodToExp(double period) noexcept {
  return 2.0 / (period + 1.0);
}

double QVCALL qvExpToPeriod(double exponent) noexcept {
  return (2.0 - exponent) / exponent;
}

double QVCALL qvEMA(double previous, double value, double period) noexcept {
  return previous + (2.0 / (period + 1.0)) * (value - previous);
}

int QVCALL qvExpMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  int s;
  const int n = prepareOverwritten(in, out, start, &s);
  if (n < 1) return n;
  if (s < n) {
    const Smoothing smoothing(period);
    const double* x = in->data;
    double* y = out->data;
    double average = y[s] = x[s];
    for (int i = s + 1; i < n; ++i) y[i] = average = smoothing.next(average, x[i]);
  }
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvZeroLagExpMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  const int lag = truncatedInt(std::max(1.0, (period - 1.0) / 2.0));
  const int first = saturatingSum(s, lag, -1);
  if (first < n) {
    const Smoothing smoothing(period);
    const double* x = in->data;
    double* y = out->data;
    double average = y[first] = x[s];
    for (int i = first + 1; i < n; ++i) y[i] = average = smoothing.next(average, 2.0 * x[i] - x[i - lag]);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvDEMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  return ofStages<2>(in, out, period, start, [](const double* e) { return 2.0 * e[0] - e[1]; });
}

int QVCALL qvTEMA(const QvArray* in, QvArray* out, double period, int start) noexcept {
  return ofStages<3>(in, out, period, start, [](const double* e) { return 3.0 * e[0] - 3.0 * e[1] + e[2]; });
}

int QVCALL qvT3(const QvArray* in, QvArray* out, double period, double volumeFactor, int passes,
                int start) noexcept {
  if (!isPeriod(period)) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  const double factor = volumeFactor > 0.0 ? std::min(volumeFactor, 1.0) : 0.0;
  const Smoothing smoothing(period);
  const double* x = in->data;
  int left = std::clamp(passes, 1, kMostPasses);
  for (; left >= 3; left -= 3, x = out->data) smoothTwice<3>(x, s, n, smoothing, factor, out->data);
  for (; left > 0; --left, x = out->data) smoothTwice<1>(x, s, n, smoothing, factor, out->data);
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvWellesMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  return wellesSmoothing(
      in, out, period, start, [=](double sum) { return sum / period; },
      [=](double average, double x) { return wilderStep(average, x, period); });
}

int QVCALL qvWellesSum(const QvArray* in, QvArray* out, int period, int start) noexcept {
  return wellesSmoothing(
      in, out, period, start, [](double sum) { return sum; },
      [=](double sum, double x) { return sum - sum / period + x; });
}

}  // extern "C"
