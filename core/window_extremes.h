// Sliding extremes of whatever offers, for each index, the value that a window begun there starts from
// and the value that counts in every window.
#pragma once

#include <limits>

#include "core/window_blocks.h"

namespace qv::window {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

// `later` replaces `earlier` when it is at least as extreme. Neither may be not-a-number; kNone gives way
// to every value.
struct Highest {
  static constexpr double kNone = -kInfinity;
  static double of(double earlier, double later) noexcept { return earlier > later ? earlier : later; }
  static bool reaches(double x, double extreme) noexcept { return x >= extreme; }
};
struct Lowest {
  static constexpr double kNone = kInfinity;
  static double of(double earlier, double later) noexcept { return earlier < later ? earlier : later; }
  static bool reaches(double x, double extreme) noexcept { return x <= extreme; }
};

// items.start(i): what a window that begins at i starts from; not-a-number there is never replaced.
// items.counted(i): what item i contributes to every window, Order::kNone when that is nothing.
template <typename Order, typename Items>
int slidingExtreme(const Items& items, const Range& r, double* out) noexcept {
  memory::Buffer<double> scratch = scratchFor(r);
  if (!scratch.ok()) return QV_MALLOC;
  double* suffix = scratch.data();
  const auto from = [](double start, double extreme) {
    return Order::reaches(extreme, start) ? extreme : start;
  };
  forEachBlock(
      r,
      [&](int left, int results) {
        double extreme = Order::kNone;
        for (int j = r.period - 1; j >= 0; --j) {
          extreme = Order::of(items.counted(left + j), extreme);
          suffix[j] = from(items.start(left + j), extreme);
        }
        double* result = out + left + r.period - 1;
        result[0] = suffix[0];
        extreme = Order::kNone;
        for (int j = 1; j < results; ++j) {
          extreme = Order::of(extreme, items.counted(left + r.period - 1 + j));
          result[j] = from(suffix[j], extreme);
        }
      },
      [&](int results) {
        const double start = items.start(r.first);
        double extreme = Order::kNone;
        for (int i = r.first; i < r.first + results; ++i) {
          extreme = Order::of(extreme, items.counted(i));
          out[i] = from(start, extreme);
        }
      });
  return QV_OK;
}

}  // namespace qv::window
