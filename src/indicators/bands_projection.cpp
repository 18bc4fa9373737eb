// Projection bands.
//
// The upper band at bar i is the largest high[k] + (i - k) * g over the last p bars k, with g the
// regression slope of the highs: the point that lies furthest in one direction among the points
// (k, high[k]). Only corners of their convex hull can be it. The hull of a window is that of a suffix
// of one block of p bars and of a prefix of the next; both are kept as stacks of corners that grow
// (the prefix) or are taken back step by step (the suffix), so that a bar costs a few steps to keep
// the stacks and a binary search in each, not p.
#include <cmath>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/bands.h"
#include "qvlib60/indicators/statistics.h"

using namespace qv;

namespace {

// The upper hull of points that are added at one end, newest on top. `sign` -1 makes it the lower one.
class Hull {
 public:
  Hull(const double* y, double sign, int room) noexcept
      : y_(y), sign_(sign), corners_(static_cast<std::size_t>(room)), log_(static_cast<std::size_t>(room)) {}
  bool ok() const noexcept { return corners_.ok() && log_.ok(); }
  void clear() noexcept { size_ = steps_ = 0; }

  // Points that are not finite are left out: the slope of a window that holds one is not finite either,
  // and then no projection counts.
  void add(int k) noexcept {
    Step& step = log_[static_cast<std::size_t>(steps_++)];
    step.size = size_;
    if (!std::isfinite(y_[k])) {
      step.at = -1;
      return;
    }
    int at = size_;
    while (at >= 2 && !turns(corner(at - 2), corner(at - 1), k)) --at;
    step.at = at;
    step.was = corner(at);  // may still be a corner of an earlier state of the stack
    corners_[static_cast<std::size_t>(at)] = k;
    size_ = at + 1;
  }

  void takeBack() noexcept {
    const Step& step = log_[static_cast<std::size_t>(--steps_)];
    if (step.at >= 0) corners_[static_cast<std::size_t>(step.at)] = step.was;
    size_ = step.size;
  }

  // The projection to bar i along slope g that lies furthest out, not inside `best`.
  double furthest(int i, double g, double best) const noexcept {
    if (size_ == 0 || !std::isfinite(g)) return best;
    int low = 0, high = size_ - 1;
    while (low < high) {  // along the hull the projections rise to one peak
      const int middle = low + (high - low) / 2;
      if (sign_ * (projected(corner(middle + 1), i, g) - projected(corner(middle), i, g)) > 0.0)
        low = middle + 1;
      else
        high = middle;
    }
    const double found = projected(corner(low), i, g);
    return sign_ * (found - best) >= 0.0 ? found : best;
  }

 private:
  struct Step {
    int at, was, size;
  };

  int corner(int at) const noexcept { return corners_[static_cast<std::size_t>(at)]; }
  double projected(int k, int i, double g) const noexcept { return y_[k] + (i - k) * g; }

  // True when b lies strictly outside the line from a to c (c the newest, at either end).
  bool turns(int a, int b, int c) const noexcept {
    const double along = static_cast<double>(b - a) / (c - a);
    return sign_ * (y_[b] - (y_[a] + along * (y_[c] - y_[a]))) > 0.0;
  }

  const double* y_;
  double sign_;
  memory::Buffer<int> corners_;
  memory::Buffer<Step> log_;
  int size_ = 0, steps_ = 0;
};

// out[i] for i from first on, with windows of p bars and the slopes g.
int projectedExtremes(const double* y, const double* g, double sign, int p, int first, int n,
                      double* out) noexcept {
  if (first >= n) return QV_OK;
  const int origin = first - p + 1;  // the first bar that takes part
  Hull suffix(y, sign, p), prefix(y, sign, p);
  if (!suffix.ok() || !prefix.ok()) return QV_MALLOC;
  for (int k = first; k >= origin; --k) suffix.add(k);
  for (int i = first, offset = p - 1; i < n; ++i, ++offset) {
    if (offset == p) {  // the window fills a block: its suffixes serve the p bars that follow
      suffix.clear();
      for (int k = i - 1; k > i - 1 - p; --k) suffix.add(k);
      prefix.clear();
      offset = 0;
    }
    if (i > first) {
      suffix.takeBack();
      prefix.add(i);
    }
    out[i] = prefix.furthest(i, g[i], suffix.furthest(i, g[i], y[i]));
  }
  return QV_OK;
}

// One band from s + 2p - 2 on.
int projectionBand(const QvArray& y, double sign, int p, int s, int n, double* out) noexcept {
  Temporary slope, intercept;
  if (const int status = qvRegressionLineMv(&y, &slope, &intercept, p, s, n - 1)) return status;
  return projectedExtremes(y.data, slope.data, sign, p, saturatingSum(s, p, p, -2), n, out);
}

// The slopes of both series need one bar more than a period, from where both are valid.
bool longEnough(const QvBars* bars, int p, int s, int n) noexcept {
  return n - 1 >= saturatingSum(firstValidOf(s, {&bars->high, &bars->low}), p);
}

int projectionBands(const QvBars* bars, int p, int s, int n, double* upper, double* lower) noexcept {
  if (!longEnough(bars, p, s, n)) return QV_OK;
  if (const int status = projectionBand(bars->high, 1.0, p, s, n, upper)) return status;
  return projectionBand(bars->low, -1.0, p, s, n, lower);
}

// A series made of the two bands and the close of each bar.
template <typename Value>
int fromBands(const QvBars* bars, QvArray* out, unsigned series, int p, int start, Value value) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, series}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, p, -2);
  Temporary upper, lower;
  if (const int status = allocArrays(n, {&upper, &lower})) return status;
  if (const int status = projectionBands(bars, p, s, n, upper.data, lower.data)) return status;
  if (longEnough(bars, p, s, n))
    for (int i = first; i < n; ++i) out->data[i] = value(upper.data[i], lower.data[i], i);
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvProjectionBands(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                             int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {outUpper, outLower});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  if (const int status = projectionBands(bars, p, s, n, outUpper->data, outLower->data)) return status;
  qvSetFirstValid(outUpper, saturatingSum(s, p, p, -2));
  qvSetFirstValid(outLower, saturatingSum(s, p, p, -2));
  return QV_OK;
}

int QVCALL qvProjectionBandwidth(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return fromBands(bars, out, kHighLow, p, start,
                   [](double u, double d, int) { return 200.0 * (u - d) / (u + d); });
}

int QVCALL qvProjectionOscillator(const QvBars* bars, QvArray* out, int p, int smoothing,
                                  int start) noexcept {
  auto position = [bars](double u, double d, int i) {
    return u != d ? (bars->close.data[i] - d) * 100.0 / (u - d) : 0.0;
  };
  if (const int status = fromBands(bars, out, kHighLowClose, p, start, position)) return status;
  if (smoothing <= 1 || hasNoRoom(out)) return QV_OK;
  return qvExpMA(out, out, smoothing, out->firstValid);
}

}  // extern "C"
