// Sliding standard error of estimate.
//
// On a trend the residuals are tiny beside the squares of the prices, and any difference of such sums
// drowns them. So the residual squares themselves are carried: item by item through the error of the
// running line's forecast, and where two stretches meet through the disagreement of their lines. All
// these terms are squares; they only ever add.
#include <cmath>

#include "kernels/window_blocks.h"

namespace qv::window {

namespace {

// The least-squares line through the items taken so far, one step apart. It is held as the change that it
// expects to the next item: on a steep trend its height would swamp the scatter around it.
struct RunningLine {
  double last = 0.0;      // the item taken last
  double expected = 0.0;  // the line's value one step on, less that item
  double slope = 0.0;
  double residual = 0.0;  // sum of squared distances from the line

  // `weight` is 1 / ((n + 1) (n + 2)) for the n items taken before.
  void take(double y, double n, double weight) noexcept {
    const double error = n > 0.0 ? (y - last) - expected : 0.0;
    residual += error * error * (n * (n - 1.0) * weight);
    expected = slope - error * (1.0 - 4.0 * (n + 2.0) * weight);
    slope += error * (6.0 * weight);
    last = y;
  }
  double mean(double n, double anchor) const noexcept {
    return (last - anchor) + (expected - slope * ((n + 1.0) / 2.0));
  }
};

// Sum of squared distances of n items' positions from their centre.
double spread(double n) noexcept {
  return n * (n * n - 1.0) / 12.0;
}

double errorOf(double residual, double n) noexcept {
  const double variance = residual / (n - 2.0);
  return variance > 0.0 ? std::sqrt(variance) : 0.0;
}

struct StandardError {
  static constexpr int kSuffixRows = 3, kPrefixRows = 4;  // slope, mean, residual; number of items
  static constexpr double kNone = 0.0;
  const double* y;
  const double* weights;
  int period;
  double* out;
  double anchor = 0.0;

  void load(int, int, Rows) const noexcept {}
  void anchorAt(int i) noexcept { anchor = y[i]; }
  void suffixes(int i, int n, Rows rows) const noexcept {
    double* __restrict slope = rows[0], * __restrict mean = rows[1], * __restrict residual = rows[2];
    RunningLine line;  // runs towards the start: its slope has the other sign
    for (int j = n - 1, taken = 0; j >= 0; --j, ++taken) {
      line.take(y[i + j], taken, weights[taken]);
      slope[j] = -line.slope;
      mean[j] = line.mean(taken + 1, anchor);
      residual[j] = line.residual;
    }
  }
  void prefixes(int i, int n, Rows rows) const noexcept {
    double* __restrict slope = rows[0], * __restrict mean = rows[1], * __restrict residual = rows[2];
    double* __restrict items = rows[3];
    RunningLine line;
    for (int j = 0; j < n; ++j) {
      line.take(y[i + j], j, weights[j]);
      slope[j] = line.slope;
      mean[j] = line.mean(j + 1, anchor);
      residual[j] = line.residual;
      items[j] = j + 1;
    }
  }
  // Each stretch's slope and the slope between their means vote for the common slope.
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    const double* __restrict slopeA = suffix[0], * __restrict meanA = suffix[1];
    const double* __restrict residualA = suffix[2];
    const double* __restrict slopeB = prefix[0], * __restrict meanB = prefix[1];
    const double* __restrict residualB = prefix[2], * __restrict itemsB = prefix[3];
    double* __restrict result = out + i;
    if (period < 3) {
      std::fill_n(result, n, 0.0);
      return;
    }
    const double p = period, perStep = 2.0 / p, perSpread = 1.0 / spread(p);
    for (int j = 0; j < n; ++j) {
      const double b = itemsB[j], a = p - b;
      const double between = (meanB[j] - meanA[j]) * perStep;
      const double weightA = spread(a), weightB = spread(b), weightBetween = a * b * p / 4.0;
      const double slope = (weightA * slopeA[j] + weightB * slopeB[j] + weightBetween * between) * perSpread;
      const double da = slopeA[j] - slope, db = slopeB[j] - slope, dc = between - slope;
      const double disagreement = weightA * da * da + weightB * db * db + weightBetween * dc * dc;
      result[j] = errorOf(residualA[j] + residualB[j] + disagreement, p);
    }
  }
  void finishCut(int i, int n, Rows prefix) const noexcept {
    for (int j = 0; j < n; ++j) out[i + j] = j < 2 ? 0.0 : errorOf(prefix[2][j], j + 1.0);
  }
};

}  // namespace

int standardError(const double* in, Range r, double* out) noexcept {
  const int longest = std::min(r.period, itemsOf(r));
  memory::Buffer<double> weights(static_cast<std::size_t>(longest));
  if (!weights.ok()) return QV_MALLOC;
  for (int n = 0; n < longest; ++n) weights[static_cast<std::size_t>(n)] = 1.0 / ((n + 1.0) * (n + 2.0));
  return slide(StandardError{in, weights.data(), r.period, out}, r);
}

}  // namespace qv::window
