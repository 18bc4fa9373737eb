// Sliding extremes of whatever offers, for each index, the value that a window begun there starts from
// and the value that counts in every window.
#pragma once

#include "kernels/window_blocks.h"

namespace qv::window {

// One machine instruction each, a where it is beyond b, else b. Left to choose, the compiler makes
// branches of some of these conditions, and which item is the larger one is anyone's guess.
#if defined(__SSE2__) && defined(__GNUC__)
inline double largerOf(double a, double b) noexcept {
  __asm__("maxsd %1, %0" : "+x"(a) : "x"(b));
  return a;
}
inline double smallerOf(double a, double b) noexcept {
  __asm__("minsd %1, %0" : "+x"(a) : "x"(b));
  return a;
}
#else
inline double largerOf(double a, double b) noexcept {
  return a > b ? a : b;
}
inline double smallerOf(double a, double b) noexcept {
  return a < b ? a : b;
}
#endif

// of: the later value replaces the earlier one when it is at least as extreme; neither may be
// not-a-number. kNone gives way to every value. numberOf: kNone in place of not-a-number.
struct Highest {
  static constexpr double kNone = -kInfinity;
  static double of(double earlier, double later) noexcept { return largerOf(earlier, later); }
  static double numberOf(double x) noexcept { return x > kNone ? x : kNone; }
  static bool reaches(double x, double extreme) noexcept { return x >= extreme; }
};
struct Lowest {
  static constexpr double kNone = kInfinity;
  static double of(double earlier, double later) noexcept { return smallerOf(earlier, later); }
  static double numberOf(double x) noexcept { return x < kNone ? x : kNone; }
  static bool reaches(double x, double extreme) noexcept { return x <= extreme; }
};

// items.start(i): what a window that begins at i starts from; not-a-number there is never replaced.
// items.counted(i): what item i contributes to every window, Order::kNone when that is nothing. Where
// that takes several steps, Items::kSeveralSteps, it is found first, in a loop that becomes vector code.
template <typename Order, typename Items>
struct Extreme {
  static constexpr int kSuffixRows = 1, kPrefixRows = Items::kSeveralSteps ? 2 : 1;
  static constexpr double kNone = Order::kNone;
  Items items;
  double* out;
  const double* found = nullptr;  // what counts of the items from foundFrom on
  int foundFrom = 0;

  static double from(double start, double extreme) noexcept {
    return Order::reaches(extreme, start) ? extreme : start;
  }
  void load(int i, int n, Rows prefix) noexcept {
    if constexpr (Items::kSeveralSteps) {
      double* __restrict row = prefix[1];
      for (int j = 0; j < n; ++j) row[j] = items.counted(i + j);
      found = row;
      foundFrom = i;
    }
  }
  double counted(int i) const noexcept {
    if constexpr (Items::kSeveralSteps) return found[i - foundFrom];
    return items.counted(i);
  }
  void anchorAt(int) const noexcept {}
  void suffixes(int i, int n, Rows rows) const noexcept {
    double* __restrict suffix = rows[0];
    runBackwards<Order>(
        n, [i, k = *this](int j) { return k.counted(i + j); },
        [=, k = items](int j, double extreme) { suffix[j] = from(k.start(i + j), extreme); });
  }
  void prefixes(int i, int n, Rows rows) const noexcept {
    double* __restrict prefix = rows[0];
    runForwards<Order>(
        n, [i, k = *this](int j) { return k.counted(i + j); },
        [=](int j, double extreme) { prefix[j] = extreme; });
  }
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    const double* __restrict s = suffix[0], * __restrict t = prefix[0];
    double* result = out + i;
    for (int j = 0; j < n; ++j) result[j] = from(s[j], t[j]);
  }
  void finishCut(int i, int n, Rows prefix) const noexcept {
    const double start = items.start(i);
    for (int j = 0; j < n; ++j) out[i + j] = from(start, prefix[0][j]);
  }
};

template <typename Order, typename Items>
int slidingExtreme(const Items& items, const Range& r, double* out) noexcept {
  return slide(Extreme<Order, Items>{items, out}, r);
}

}  // namespace qv::window
