// Several numbers of each bar, such as the running results of a statistic.
#pragma once

#include "kernels/tiles.h"

namespace qv {

template <typename Number, int kCount>
using Group = std::array<Number, static_cast<std::size_t>(kCount)>;

template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> oneBack(const std::array<Lanes, kCount>& a,
                                            const std::array<Lanes, kCount>& b) noexcept {
  std::array<Lanes, kCount> back;
  for (std::size_t r = 0; r < kCount; ++r) back[r] = oneBack(a[r], b[r]);
  return back;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> twoBack(const std::array<Lanes, kCount>& a,
                                            const std::array<Lanes, kCount>& b) noexcept {
  std::array<Lanes, kCount> back;
  for (std::size_t r = 0; r < kCount; ++r) back[r] = twoBack(a[r], b[r]);
  return back;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> oneOn(const std::array<Lanes, kCount>& a,
                                          const std::array<Lanes, kCount>& b) noexcept {
  std::array<Lanes, kCount> on;
  for (std::size_t r = 0; r < kCount; ++r) on[r] = oneOn(a[r], b[r]);
  return on;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> twoOn(const std::array<Lanes, kCount>& a,
                                          const std::array<Lanes, kCount>& b) noexcept {
  std::array<Lanes, kCount> on;
  for (std::size_t r = 0; r < kCount; ++r) on[r] = twoOn(a[r], b[r]);
  return on;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Two, kCount> lower(const std::array<Lanes, kCount>& a) noexcept {
  std::array<Two, kCount> pair;
  for (std::size_t r = 0; r < kCount; ++r) pair[r] = lower(a[r]);
  return pair;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Two, kCount> upper(const std::array<Lanes, kCount>& a) noexcept {
  std::array<Two, kCount> pair;
  for (std::size_t r = 0; r < kCount; ++r) pair[r] = upper(a[r]);
  return pair;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> withUpper(const std::array<Lanes, kCount>& a,
                                              const std::array<Lanes, kCount>& b) noexcept {
  std::array<Lanes, kCount> joint;
  for (std::size_t r = 0; r < kCount; ++r) joint[r] = withUpper(a[r], b[r]);
  return joint;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> inAllPairs(const std::array<Two, kCount>& a) noexcept {
  std::array<Lanes, kCount> lanes;
  for (std::size_t r = 0; r < kCount; ++r) lanes[r] = inAllPairs<Lanes>(a[r]);
  return lanes;
}
template <std::size_t kCount>
QV_INLINE std::array<Two, kCount> twice(const std::array<Two, kCount>& a, int lane) noexcept {
  std::array<Two, kCount> both;
  for (std::size_t r = 0; r < kCount; ++r) both[r] = twice(a[r][lane]);
  return both;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> noneOf(double none) noexcept {
  std::array<Lanes, kCount> rows;
  rows.fill(all<Lanes>(none));
  return rows;
}
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> load(const std::array<const double*, kCount>& from, int at) noexcept {
  std::array<Lanes, kCount> items;
  for (std::size_t s = 0; s < kCount; ++s) items[s] = load<Lanes>(from[s] + at);
  return items;
}
// The results of four bars, the first two of which are `first`; of two Lanes these.
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> ofFour(const std::array<Two, kCount>& first,
                                           const std::array<Two, kCount>& second) noexcept {
  if constexpr (sizeof(Lanes) == sizeof(Two)) {
    return first;
  } else {
    std::array<Lanes, kCount> rows;
    for (std::size_t r = 0; r < kCount; ++r) rows[r] = four(first[r], second[r]);
    return rows;
  }
}
// The places k, k + 1 ..
template <typename Lanes>
QV_INLINE Lanes placesFrom(int k) noexcept {
  Lanes places = all<Lanes>(k);
  for (int lane = 1; lane < kLanes<Lanes>; ++lane) places[lane] += lane;
  return places;
}

}  // namespace qv
