#include "indicators/bands_projection.h"

#include <cmath>

#include "kernels/calculate.h"
#include "qvlib60/indicators/bands.h"

using namespace qv;

namespace {

double projected(const double* y, int k, int i, double g) noexcept {
  return y[k] + (i - k) * g;
}

}  // namespace

// Points that are not finite are left out: the slope of a window that holds one is not finite either, and
// then no projection counts.
void Hull::add(const double* y, int k) noexcept {
  Step& step = log_[static_cast<std::size_t>(steps_++)];
  step.size = size_;
  if (!std::isfinite(y[k])) {
    step.at = -1;
    return;
  }
  int at = size_;
  while (at >= 2 && !turns(y, corner(at - 2), corner(at - 1), k)) --at;
  step.at = at;
  step.was = corner(at);  // may still be a corner of an earlier state of the stack
  corners_[static_cast<std::size_t>(at)] = k;
  size_ = at + 1;
}

void Hull::takeBack() noexcept {
  const Step& step = log_[static_cast<std::size_t>(--steps_)];
  if (step.at >= 0) corners_[static_cast<std::size_t>(step.at)] = step.was;
  size_ = step.size;
}

double Hull::furthest(const double* y, int i, double g, double best) const noexcept {
  if (size_ == 0 || !std::isfinite(g)) return best;
  int low = 0, high = size_ - 1;
  while (low < high) {  // along the hull the projections rise to one peak
    const int middle = low + (high - low) / 2;
    if (sign_ * (projected(y, corner(middle + 1), i, g) - projected(y, corner(middle), i, g)) > 0.0)
      low = middle + 1;
    else
      high = middle;
  }
  const double found = projected(y, corner(low), i, g);
  return sign_ * (found - best) >= 0.0 ? found : best;
}

// True when b lies strictly outside the line from a to c (c the newest, at either end).
bool Hull::turns(const double* y, int a, int b, int c) const noexcept {
  const double along = static_cast<double>(b - a) / (c - a);
  return sign_ * (y[b] - (y[a] + along * (y[c] - y[a]))) > 0.0;
}

bool FurthestProjection::makeRoom() noexcept {
  const auto period = static_cast<std::size_t>(period_), held = y_.count();
  if (!y_.grow(2 * period) || !suffix_.makeRoom(period) || !prefix_.makeRoom(period)) return false;
  std::fill(y_.data() + held, y_.data() + y_.count(), 0.0);
  return true;
}

bool FurthestProjection::restored() noexcept {
  if (!begun_) return true;
  if (!makeRoom()) return false;
  const int place = place_;
  blockIsFull();
  for (; place_ < place; ++place_) {
    suffix_.takeBack();
    prefix_.add(block(), place_);
  }
  return true;
}

double FurthestProjection::next(double y, double slope) noexcept {
  if (!begun_) {
    failed_ = !y_.grow(static_cast<std::size_t>(place_) + 1);
    if (failed_) return 0.0;
    y_[static_cast<std::size_t>(place_++)] = y;
    if (place_ < period_) return 0.0;
    begun_ = true;
    failed_ = !makeRoom();
    if (failed_) return 0.0;
    blockIsFull();
    return furthest(-1, slope);
  }
  if (place_ == period_) {
    std::copy_n(block(), period_, y_.data());
    blockIsFull();
  }
  block()[place_] = y;
  suffix_.takeBack();
  prefix_.add(block(), place_);
  return furthest(place_++, slope);
}

// Its suffixes serve the bars of the next one.
void FurthestProjection::blockIsFull() noexcept {
  suffix_.clear();
  for (int k = -1; k >= -period_; --k) suffix_.add(block(), k);
  prefix_.clear();
  place_ = 0;
}

double FurthestProjection::furthest(int i, double slope) noexcept {
  const double* y = block();
  return prefix_.furthest(y, i, slope, suffix_.furthest(y, i, slope, y[i]));
}

namespace {

template <typename Chain, std::size_t kResults, typename... Parameters>
int overBars(const QvBars* bars, const std::array<QvArray*, kResults>& results, int p, int start,
             Parameters... parameters) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int s = std::max(start, 0);
  // Where both slopes exist there is one bar more than a period.
  StartEnd range = s;
  if (bars && bars->barsize <= saturatingSum(startOf(bars, kHighLow, s), p)) range.end = 0;
  return calculate<Chain>(bars, results, range, p, parameters..., startOf(bars, kHigh, s) - s,
                          startOf(bars, kLow, s) - s);
}

}  // namespace

extern "C" {

int QVCALL qvProjectionBands(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                             int start) noexcept {
  return overBars<chain::ProjectionBands>(bars, std::array{outUpper, outLower}, p, start);
}

int QVCALL qvProjectionBandwidth(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return overBars<chain::ProjectionBandwidth>(bars, std::array{out}, p, start);
}

int QVCALL qvProjectionOscillator(const QvBars* bars, QvArray* out, int p, int smoothing,
                                  int start) noexcept {
  return overBars<chain::ProjectionOscillator>(bars, std::array{out}, p, start, smoothing);
}

}  // extern "C"
