// Sliding standard error of estimate.
//
// On a trend the residuals are tiny beside the squares of the prices, and any difference of such sums
// drowns them. So the residual squares themselves are carried: item by item through the error of the
// running line's forecast, and where two stretches meet through the disagreement of their lines. All
// these terms are squares; they only ever add.
#include <cmath>

#include "core/window_blocks.h"

namespace qv::window {

namespace {

// The least-squares line through the items taken so far, one step apart.
class RunningLine {
 public:
  void take(double y) noexcept {
    if (n_ == 0.0) forecast_ = y;
    const double error = y - forecast_;
    const double weight = 1.0 / ((n_ + 1.0) * (n_ + 2.0));
    residual_ += error * error * (n_ * (n_ - 1.0) * weight);
    const double lift = error * (4.0 * (n_ + 2.0) * weight), turn = error * (6.0 * weight);
    forecast_ = forecast_ + slope_ + lift;
    slope_ += turn;
    n_ += 1.0;
  }
  double slope() const noexcept { return slope_; }
  double mean() const noexcept { return forecast_ - slope_ * ((n_ + 1.0) / 2.0); }
  double residual() const noexcept { return residual_; }

 private:
  double n_ = 0.0;
  double forecast_ = 0.0;  // the line's value one step on
  double slope_ = 0.0;
  double residual_ = 0.0;  // sum of squared distances from the line
};

struct Fit {
  double slope, mean, residual;
};

// Sum of squared distances of n items' positions from their centre.
double spread(double n) noexcept {
  return n * (n * n - 1.0) / 12.0;
}

// Residual squares of the line through both stretches, a of `na` items followed by b of `nb`. Each
// stretch's slope and the slope between their means vote for the common slope.
double joinedResidual(const Fit& a, double na, const Fit& b, double nb) noexcept {
  const double between = (b.mean - a.mean) / ((na + nb) / 2.0);
  const double weightA = spread(na), weightB = spread(nb), weightBetween = na * nb * (na + nb) / 4.0;
  const double slope = (weightA * a.slope + weightB * b.slope + weightBetween * between) / spread(na + nb);
  const double da = a.slope - slope, db = b.slope - slope, dc = between - slope;
  return a.residual + b.residual + (weightA * da * da + weightB * db * db + weightBetween * dc * dc);
}

double errorOf(double residual, double n) noexcept {
  const double variance = n > 2.0 ? residual / (n - 2.0) : 0.0;
  return variance > 0.0 ? std::sqrt(variance) : 0.0;
}

}  // namespace

int standardError(const double* in, Range r, double* out) noexcept {
  memory::Buffer<Fit> scratch(static_cast<std::size_t>(std::min(r.period, itemsOf(r))));
  if (!scratch.ok()) return QV_MALLOC;
  Fit* suffix = scratch.data();
  const double n = r.period;
  forEachBlock(
      r,
      [&](int left, int results) {
        const int last = left + r.period - 1;
        const double anchor = in[last];
        RunningLine line;  // runs towards the start: its slope has the other sign
        for (int j = r.period - 1; j >= 0; --j) {
          line.take(in[left + j] - anchor);
          suffix[j] = {-line.slope(), line.mean(), line.residual()};
        }
        out[last] = errorOf(suffix[0].residual, n);
        line = {};
        for (int j = 1; j < results; ++j) {
          line.take(in[last + j] - anchor);
          const Fit prefix{line.slope(), line.mean(), line.residual()};
          out[last + j] = errorOf(joinedResidual(suffix[j], n - j, prefix, j), n);
        }
      },
      [&](int results) {
        const double anchor = in[r.first];
        RunningLine line;
        for (int j = 0; j < results; ++j) {
          line.take(in[r.first + j] - anchor);
          out[r.first + j] = errorOf(line.residual(), j + 1.0);
        }
      });
  return QV_OK;
}

}  // namespace qv::window
