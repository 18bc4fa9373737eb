#include "charting/scale.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qv::charting {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// 10 to a whole power, rounded once where that is possible.
double powerOfTen(double exponent) noexcept {
  return exponent < 0.0 ? 1.0 / std::pow(10.0, -exponent) : std::pow(10.0, exponent);
}

// A range of one value is widened, so that the value stands in the middle.
void widen(double& low, double& high) noexcept {
  const double greatest = std::max(std::fabs(low), std::fabs(high));
  if (high - low > greatest * 1e-12) return;
  const double by = greatest > 0.0 ? greatest * 0.01 : 1.0;
  low -= by;
  high += by;
}

}  // namespace

double roundStep(double least) noexcept {
  const double e = std::floor(std::log10(least));
  for (const double digit : {1.0, 2.0, 5.0}) {
    const double step = e < 0.0 ? digit / std::pow(10.0, -e) : digit * powerOfTen(e);
    if (step >= least * (1.0 - 1e-9)) return step;
  }
  return powerOfTen(e + 1.0);
}

void Scale::fit(const Extent& values, bool firmLow, bool firmHigh, double top, double bottom) noexcept {
  const bool log = kind == QV_SCALE_LOG;
  double low = isFixed() ? fixedLow : values.low, high = isFixed() ? fixedHigh : values.high;
  known_ = bottom > top && low <= high;  // above 0 where it is logarithmic
  if (!known_) return;
  if (log) {
    low = std::log10(low);
    high = std::log10(high);
    if (high - low < 1e-9) {
      low -= 0.005;
      high += 0.005;
    }
  } else if (!isFixed()) {
    widen(low, high);
  }
  constexpr double kAir = 0.04;
  const double air = isFixed() ? 0.0 : (high - low) * kAir;
  low_ = firmLow ? low : low - air;
  high_ = firmHigh ? high : high + air;
  top_ = top;
  bottom_ = bottom;
  known_ = high_ - low_ > 0.0;
}

double Scale::measure(double value, double base) const noexcept {
  if (!isValue(value)) return kNone;
  if (kind != QV_SCALE_PERCENT) return value;
  const double percent = base > 0.0 ? (value / base - 1.0) * 100.0 : kNone;
  return isValue(percent) ? percent : kNone;
}

double Scale::ofMeasure(double measure) const noexcept {
  if (!known_) return kNone;
  const double at = kind != QV_SCALE_LOG ? measure : measure > 0.0 ? std::log10(measure) : kNone;
  return bottom_ - (at - low_) / (high_ - low_) * (bottom_ - top_);
}

double Scale::y(double value, double base) const noexcept {
  return ofMeasure(measure(value, base));
}

double Scale::value(double y, double base) const noexcept {
  if (!known_) return kNone;
  const double at = low_ + (bottom_ - y) / (bottom_ - top_) * (high_ - low_);
  if (kind == QV_SCALE_LOG) return std::pow(10.0, at);
  return kind == QV_SCALE_PERCENT ? base * (1.0 + at / 100.0) : at;
}

double Scale::lowest() const noexcept {
  return kind == QV_SCALE_LOG ? std::pow(10.0, low_) : low_;
}
double Scale::highest() const noexcept {
  return kind == QV_SCALE_LOG ? std::pow(10.0, high_) : high_;
}

int Scale::linearTicks(double gap, Tick (&out)[kMostTicks], double& step) const noexcept {
  const double low = lowest(), high = highest();
  const double room = std::clamp(std::floor((bottom_ - top_) / gap), 1.0, kMostTicks - 2.0);
  step = roundStep((high - low) / room);
  const double first = std::ceil(low / step - 1e-9), last = std::floor(high / step + 1e-9);
  // Beyond this many steps from 0 neighbours are not told apart.
  constexpr double kMostSteps = 1e12;
  constexpr double kFinest = 1e-300;
  if (!(std::fabs(first) < kMostSteps && std::fabs(last) < kMostSteps && step > kFinest)) return 0;
  const double inverse = std::round(1.0 / step);  // 3 / 10 is 0.3, 3 * 0.1 is not
  int count = 0;
  for (double k = first; k <= last && count < kMostTicks; k += 1.0) {
    const double value = step >= 1.0 ? k * step : k / inverse;
    out[count++] = {value, ofMeasure(value)};
  }
  return count;
}

// 1, 2 and 5 of each decade; every so many decades where these are too dense.
int Scale::logarithmicTicks(double gap, Tick (&out)[kMostTicks], double& step) const noexcept {
  const double perDecade = (bottom_ - top_) / (high_ - low_);
  constexpr double kNarrowest = 0.30102999566398120;  // from 1 to 2
  const bool digits = perDecade * kNarrowest >= gap;
  const double decades = digits ? 1.0 : std::max(1.0, std::ceil(gap / perDecade));
  const double first = std::floor(low_ / decades) * decades;
  int count = 0;
  step = 0.0;
  for (double e = first; e <= high_ && count < kMostTicks; e += decades)
    for (const double digit : {1.0, 2.0, 5.0}) {
      const double value = digit * powerOfTen(e), at = std::log10(value);
      if ((digit > 1.0 && !digits) || at < low_ - 1e-9 || at > high_ + 1e-9 || count >= kMostTicks) continue;
      if (count == 0) step = digit > 1.0 ? powerOfTen(e) : value;
      out[count++] = {value, ofMeasure(value)};
    }
  return count;
}

int Scale::ticks(double gap, Tick (&out)[kMostTicks], NumberFormat& format) const noexcept {
  format = {};
  if (!known_) return 0;
  double step = 0.0;
  int count = 0;
  if (kind == QV_SCALE_LOG) {
    count = logarithmicTicks(gap, out, step);
    // Less than a decade or so is read better by equal steps; those that stand too near are left out.
    if (count < 4 && high_ - low_ < 2.0) {
      const int equal = linearTicks(gap * 0.6, out, step);
      count = 0;
      for (int i = 0; i < equal; ++i)
        if (count == 0 || out[count - 1].y - out[i].y >= gap) out[count++] = out[i];
    }
  } else {
    count = linearTicks(gap, out, step);
  }
  if (count > 0)
    format = formatFor(std::max({std::fabs(out[0].value), std::fabs(out[count - 1].value), step}), step);
  return count;
}

NumberFormat Scale::fineFormat() const noexcept {
  if (!known_) return {};
  const double low = lowest(), high = highest();
  const double step = (kind == QV_SCALE_LOG ? low : high - low) / 2000.0;
  return formatFor(std::max({std::fabs(low), std::fabs(high), step}), std::max(step, 1e-305));
}

}  // namespace qv::charting
