// Wilder's smoothing, shared by his average, the strength indices and the directional averages.
#pragma once

namespace qv {

// One step: the new value counts for one bar in `period`.
inline double wilderStep(double average, double value, int period) noexcept {
  return ((period - 1) * average + value) / period;
}

}  // namespace qv
