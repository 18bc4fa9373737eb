// The stretch of a series that a single value is taken over, and the plain statistics of one.
#pragma once

#include <algorithm>
#include <initializer_list>

#include "core/calculation.h"

namespace qv {

struct Stretch {
  int first, last;  // both inclusive
  bool empty() const noexcept { return first > last; }
};

// from .. to in either order, begun at the series' first valid indices, ended at the last item of
// the shortest series; empty when a series has no data.
inline Stretch stretchOf(int from, int to, std::initializer_list<const QvArray*> arrays) noexcept {
  Stretch s{firstValidOf(std::min(from, to), arrays), std::max(from, to)};
  for (const QvArray* a : arrays) s.last = std::min(s.last, a->data ? saturatingSum(a->size, -1) : -1);
  return s;
}

struct StretchStats {
  double minimum = 0.0, maximum = 0.0, sum = 0.0;
  int count = 0;
};

// Minimum and maximum start at the first item, also where it is a skipped zero; of equal items the
// last is kept. Zeros are skipped by the minimum, the sum and the count only. All zero for an empty
// stretch.
inline StretchStats statsOf(const double* items, Stretch s, bool skipZeros) noexcept {
  StretchStats stats;
  if (s.empty()) return stats;
  stats.minimum = stats.maximum = items[s.first];
  for (int i = s.first; i <= s.last; ++i) {
    const double x = items[i];
    if (stats.maximum <= x) stats.maximum = x;
    if (skipZeros && x == 0.0) continue;
    if (x <= stats.minimum) stats.minimum = x;
    stats.sum += x;
    ++stats.count;
  }
  return stats;
}

}  // namespace qv
