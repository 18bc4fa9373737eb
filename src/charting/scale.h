// The vertical scale of a sub-window: from values to heights and back, and its ticks.
#pragma once

#include "charting/texts.h"
#include "qvlib60/charting.h"

namespace qv::charting {

// Values beyond this are gaps, so that differences stay finite.
inline constexpr double kMostValue = 1e300;
inline bool isValue(double v) noexcept {
  return v >= -kMostValue && v <= kMostValue;
}

struct Extent {
  double low = kMostValue, high = -kMostValue;

  bool known() const noexcept { return low <= high; }
  void take(double v) noexcept {
    if (!isValue(v)) return;
    if (v < low) low = v;
    if (v > high) high = v;
  }
  void take(const Extent& other) noexcept {
    if (!other.known()) return;
    take(other.low);
    take(other.high);
  }
};

struct Tick {
  double value;  // in the scale's own measure: a percentage under QV_SCALE_PERCENT
  double y;
};

class Scale {
 public:
  static constexpr int kMostTicks = 128;

  // What the caller set.
  int kind = QV_SCALE_LINEAR;
  double fixedLow = 0.0, fixedHigh = 0.0;
  bool isFixed() const noexcept { return fixedLow < fixedHigh; }

  // Fits the scale to the values (percentages under QV_SCALE_PERCENT) between two heights, with some air
  // beyond the ends that are not `firm`.
  void fit(const Extent& values, bool firmLow, bool firmHigh, double top, double bottom) noexcept;
  // Nothing is drawn on it.
  void forget() noexcept { known_ = false; }
  bool known() const noexcept { return known_; }

  // The height of a value and the value at a height; not-a-number where there is none. `base` is what a
  // percentage is taken of.
  double y(double value, double base) const noexcept;
  double value(double y, double base) const noexcept;
  double ofMeasure(double measure) const noexcept;  // the height of a tick's value
  double measure(double value, double base) const noexcept;

  // Round values, rising, at least `gap` apart; their number.
  int ticks(double gap, Tick (&out)[kMostTicks], NumberFormat& format) const noexcept;
  // For single values.
  NumberFormat fineFormat() const noexcept;

 private:
  int linearTicks(double gap, Tick (&out)[kMostTicks], double& step) const noexcept;
  int logarithmicTicks(double gap, Tick (&out)[kMostTicks], double& step) const noexcept;
  double lowest() const noexcept;
  double highest() const noexcept;

  bool known_ = false;
  double low_ = 0.0, high_ = 1.0;  // logarithms under QV_SCALE_LOG
  double top_ = 0.0, bottom_ = 1.0;
};

// The smallest of 1, 2, 5 times a power of ten that is not below `least`, which is above 0.
double roundStep(double least) noexcept;

}  // namespace qv::charting
