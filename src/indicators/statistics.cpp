// Statistics over a stretch of one series or of a pair.
#include <cmath>
#include <limits>

#include "core/bar_prices.h"
#include "core/numbers.h"
#include "core/stretch.h"
#include "kernels/logarithm.h"
#include "qvlib60/indicators/statistics.h"

namespace {

using namespace qv;

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

double countOf(Stretch s) noexcept {
  return s.empty() ? 0.0 : s.last - s.first + 1.0;
}

// Taken of the distances from the first item: exact for equal items, and prices of any size keep their
// last digits.
double meanOf(const double* x, Stretch s) noexcept {
  double sum = 0.0;
  for (int i = s.first; i <= s.last; ++i) sum += x[i] - x[s.first];
  return x[s.first] + sum / countOf(s);
}

// Sum of the products of the distances from the means.
double productsOf(const double* a, const double* b, Stretch s) noexcept {
  const double meanA = meanOf(a, s), meanB = meanOf(b, s);
  double sum = 0.0;
  for (int i = s.first; i <= s.last; ++i) sum += (a[i] - meanA) * (b[i] - meanB);
  return sum;
}

double deviationOf(const double* x, bool sample, Stretch s) noexcept {
  return std::sqrt(productsOf(x, x, s) / (countOf(s) - (sample ? 1.0 : 0.0)));
}

// Least-squares line of a stretch: its value in the middle and its slope.
struct Line {
  double mean, slope;
};

// Distance of item i from the middle of the stretch.
double fromMiddle(int i, Stretch s) noexcept {
  return (i - s.first) - (s.last - s.first) / 2.0;
}

Line lineOf(const double* y, Stretch s) noexcept {
  Line line{meanOf(y, s), 0.0};
  if (s.first == s.last) return line;
  double products = 0.0;
  for (int i = s.first; i <= s.last; ++i) products += fromMiddle(i, s) * (y[i] - line.mean);
  const double n = countOf(s);
  line.slope = products / (n * (n * n - 1.0) / 12.0);
  return line;
}

// A price moves the minimum unless it is zero; both extremes take the last of equal prices.
void takePrice(double price, double& min, double& max) noexcept {
  if (isNonZero(price) && price <= min) min = price;
  if (price >= max) max = price;
}

}  // namespace

extern "C" {

int QVCALL qvArrayStats(const QvArray* a, double* min, double* max, double* avg, double* sum, int from,
                        int to, int skipZeros) noexcept {
  if (!a || !a->data) return QV_INVALID_PARM;
  const StretchStats stats = statsOf(a->data, stretchOf(from, to, {a}), skipZeros != 0);
  if (min) *min = stats.minimum;
  if (max) *max = stats.maximum;
  if (avg) *avg = stats.count > 0 ? stats.sum / stats.count : kNoValue;
  if (sum) *sum = stats.sum;
  return QV_OK;
}

int QVCALL qvArrayStatsPos(const QvArray* a, int* minPos, int* maxPos, int from, int to,
                           int skipZeros) noexcept {
  if (!a || !a->data) return QV_INVALID_PARM;
  const Stretch s = stretchOf(from, to, {a});
  const double* x = a->data;
  int lowest = s.empty() ? -1 : s.first, highest = lowest;
  for (int i = s.first; i <= s.last; ++i) {
    if (x[i] < x[lowest] && !(skipZeros && x[i] == 0.0)) lowest = i;
    if (x[i] > x[highest]) highest = i;
  }
  if (minPos) *minPos = lowest;
  if (maxPos) *maxPos = highest;
  return QV_OK;
}

int QVCALL qvBarStats(const QvBars* b, double* min, double* max, int from, int to) noexcept {
  if (!b) return QV_INVALID_PARM;
  const Stretch s{std::max(std::min(from, to), 0),
                  std::min(std::max(from, to), saturatingSum(b->barsize, -1))};
  double lowest = 0.0, highest = 0.0;
  if (!s.empty()) {
    if (!hasBar({b, kPrices}, s.last)) return QV_INVALID_PARM;
    const double *open = b->open.data, *high = b->high.data, *low = b->low.data, *close = b->close.data;
    lowest = highest = close[s.first];
    for (int i = s.first; i <= s.last; ++i)
      for (const double price : {open[i], high[i], low[i], close[i]}) takePrice(price, lowest, highest);
  }
  if (min) *min = lowest;
  if (max) *max = highest;
  return QV_OK;
}

double QVCALL qvAvgPrice(const QvBars* b, int i) noexcept {
  if (!hasBar({b, kPrices}, i)) return 0.0;
  return averagePrice(b->open.data[i], b->high.data[i], b->low.data[i], b->close.data[i]);
}

double QVCALL qvStdDev(const QvArray* a, int sample, int from, int to) noexcept {
  if (!a) return 0.0;
  const Stretch s = stretchOf(from, to, {a});
  return s.empty() ? kNoValue : deviationOf(a->data, sample != 0, s);
}

double QVCALL qvStdErr(const QvArray* a, int from, int to) noexcept {
  if (!a) return 0.0;
  const Stretch s = stretchOf(from, to, {a});
  if (countOf(s) < 3.0) return 0.0;
  const Line line = lineOf(a->data, s);
  double squares = 0.0;
  for (int i = s.first; i <= s.last; ++i) {
    const double distance = a->data[i] - line.mean - line.slope * fromMiddle(i, s);
    squares += distance * distance;
  }
  const double variance = squares / (countOf(s) - 2.0);
  return variance > 0.0 ? std::sqrt(variance) : 0.0;
}

double QVCALL qvDispersion(const QvArray* a, int from, int to) noexcept {
  if (!a) return 0.0;
  const Stretch s = stretchOf(from, to, {a});
  if (s.empty()) return kNoValue;
  double sum = 0.0;
  for (int i = s.first + 1; i <= s.last; ++i) sum += std::fabs(logarithmOf(a->data[i] / a->data[i - 1]));
  return std::sqrt(sum / (s.last - s.first));
}

int QVCALL qvRegressionLine(const QvArray* a, double* slope, double* intercept, int from, int to) noexcept {
  if (!a || !a->data || !slope || !intercept) return QV_INVALID_PARM;
  const Stretch s = stretchOf(from, to, {a});
  *slope = *intercept = 0.0;
  if (s.empty()) return QV_OK;
  const Line line = lineOf(a->data, s);
  *slope = line.slope;
  *intercept = line.mean - line.slope * ((countOf(s) + 1.0) / 2.0);
  return QV_OK;
}

double QVCALL qvCovariance(const QvArray* a, const QvArray* b, int from, int to) noexcept {
  if (!a || !b) return 0.0;
  const Stretch s = stretchOf(from, to, {a, b});
  return s.empty() ? kNoValue : productsOf(a->data, b->data, s) / (s.last - s.first);
}

double QVCALL qvCorCoef(const QvArray* a, const QvArray* b, int sample, int from, int to) noexcept {
  if (!a || !b) return 0.0;
  const Stretch s = stretchOf(from, to, {a, b});
  if (s.empty()) return 0.0;
  const double deviations = deviationOf(a->data, sample != 0, s) * deviationOf(b->data, sample != 0, s);
  const double covariance = productsOf(a->data, b->data, s) / (s.last - s.first);
  return isNonZero(deviations) ? covariance / deviations : 0.0;
}

double QVCALL qvSlopeArrayPts(const QvArray* a, int i1, int i2) noexcept {
  if (!a) return 0.0;
  return (qvGetArrayItem(a, i2) - qvGetArrayItem(a, i1)) / (static_cast<double>(i2) - i1);
}

double QVCALL qvSlopePts(double x1, double y1, double x2, double y2) noexcept {
  return (y2 - y1) / (x2 - x1);
}

}  // extern "C"
