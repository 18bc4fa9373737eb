// The method codes of the moving averages, for calculations that hand one on and refuse a wrong one
// before they write anything.
#pragma once

namespace qv {

inline constexpr int kAverageMethods = 8;

constexpr bool isAverageMethod(int method) noexcept {
  return method >= 0 && method < kAverageMethods;
}

}  // namespace qv
