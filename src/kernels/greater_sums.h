// Sums over the greater ones of an item and a window's mean, for many windows side by side.
#pragma once

#include "kernels/tiles.h"

namespace qv {

// Neighbouring windows: the first one's items are items[0 .. period - 1] and all the open ones.
struct WindowsAboutMeans {
  const double* items;
  int period;
  const double* anchors;  // what each window's items are distances from; null: they are distances
  const double* open;
  int openCount;
  const double* means;
  double* sums;  // are added to
};

// The windows from `from` on, kGroups times as many at a time as there are Lanes. Returns where it stopped.
template <typename Lanes, int kGroups, bool kAnchors>
QV_INLINE int addGreater(const WindowsAboutMeans& of, int from, int count) noexcept {
  constexpr int kStep = kLanes<Lanes>;
  int w = from;
  for (; w + kGroups * kStep <= count; w += kGroups * kStep) {
    Lanes mean[kGroups], sum[kGroups], anchor[kGroups];
    for (std::ptrdiff_t g = 0; g < kGroups; ++g) {
      mean[g] = load<Lanes>(of.means + w + g * kStep);
      sum[g] = load<Lanes>(of.sums + w + g * kStep);
      if constexpr (kAnchors) anchor[g] = load<Lanes>(of.anchors + w + g * kStep);
    }
    const double* items = of.items + w;
#pragma GCC unroll 1
    for (int j = 0; j < of.period; ++j)
      for (std::ptrdiff_t g = 0; g < kGroups; ++g) {
        Lanes item = load<Lanes>(items + j + g * kStep);
        if constexpr (kAnchors) item = item - anchor[g];
        sum[g] = sum[g] + larger(item, mean[g]);
      }
#pragma GCC unroll 1
    for (int j = 0; j < of.openCount; ++j)
      for (std::ptrdiff_t g = 0; g < kGroups; ++g) sum[g] = sum[g] + larger(all<Lanes>(of.open[j]), mean[g]);
    for (std::ptrdiff_t g = 0; g < kGroups; ++g) store(of.sums + w + g * kStep, sum[g]);
  }
  return w;
}
template <typename Lanes, bool kAnchors>
QV_INLINE void addGreaterOf(const WindowsAboutMeans& of, int count) noexcept {
  int w = addGreater<Lanes, 4, kAnchors>(of, 0, count);
  w = addGreater<Lanes, 1, kAnchors>(of, w, count);
  addGreater<double, 1, kAnchors>(of, w, count);
}
template <typename Lanes>
QV_INLINE void addGreaterBy(const WindowsAboutMeans& of, int count) noexcept {
  of.anchors ? addGreaterOf<Lanes, true>(of, count) : addGreaterOf<Lanes, false>(of, count);
}

// Four abreast (wide.cpp).
void addGreaterWide(const WindowsAboutMeans& of, int count) noexcept;

// Adds max(item, mean) to the sums of the first `count` windows.
inline void addGreater(const WindowsAboutMeans& of, int count) noexcept {
#if QV_WIDE_LOOPS
  if (wideLoops) return addGreaterWide(of, count);
#endif
  addGreaterBy<Two>(of, count);
}

}  // namespace qv
