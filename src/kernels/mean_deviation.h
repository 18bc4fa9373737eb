// The mean absolute deviation over a window.
#pragma once

#include "kernels/sums.h"

namespace qv {

// How far the newest item lies above its window's mean. Of equal items exactly 0.
struct DistanceFromMean : Means<1> {
  using Corrected = CorrectedSums<DistanceFromMean>;

  using Means<1>::Means;
  template <typename Rows, typename Items, typename Number>
  QV_INLINE Rows finish(const Rows& sums, const Items& anchors, Number, const Items& x) const noexcept {
    return {(x[0] - anchors[0]) - sums[0] * perItem};
  }
};

// The distance of each item from the mean of the last `period` items, and the mean absolute distance of these
// from that mean.
//
// The deviations are twice those of the items above the mean, and the sum over max(item, mean) tells them. It
// can't be rolled, since each window has its own mean. But the mean moves little: while it stays in a range,
// an item above that adds itself to the sum and one below it the mean. So the items that a group of
// neighbouring windows share become a straight line in the mean, whole chunks at a time where all of a chunk
// lie on one side. The items in the range stay open; with those that not all windows of the group share they
// are handed on to smaller groups, and what is left in the smallest is summed in each window. When the
// windows of a group are through, or the mean or the deviation leaves the range in which its line is good,
// the next group begins. All that it hangs on has passed before, so that it is the same however the series is
// cut.
//
// Items are distances from one of the window: nothing large cancels, and nothing is ever taken out of a sum.
class MeanDeviation {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  explicit MeanDeviation(int period) noexcept;
  bool ok() const noexcept { return !failed_ && distance_.ok(); }
  int lead() const noexcept { return distance_.lead(); }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept;
  bool reserve(int count) noexcept;
  template <typename V>
  void fields(V& v) noexcept {
    v(begin_, distance_);
    // The windows that come lie in what is held.
    v.within(held_, period_ - 1 - begin_.left(), 2 * std::int64_t{period_} + std::int64_t{4} * kTile);
    v.buffer(items_, static_cast<std::size_t>(held_));
    v.scratch(chunks_, isLong() ? static_cast<int>(held_ / (std::int64_t{2} * kChunk)) : 0);
    if (!isLong()) {
      v.within(aboutOne_, 0, kAboutOne - 1);
      return v(anchor_);
    }
    for (int g = 0; g < groupCount_; ++g)
      groups_[g].fields(v, period_, g > 0 ? groups_[g - 1].left : INT_MAX);
    v(anchor_, firstDeviation_, deviation_);
  }
  bool restored() noexcept;

 private:
  static constexpr int kChunk = 8;
  static constexpr int kAboutOne = 16;  // short windows about one anchor
  struct TwoChunks {
    double lowest[2], highest[2], sum[2];  // the sum of distances from the chunk's first item
  };

  // Neighbouring windows and the line of the items that they share: constant + slope * mean for means from
  // low to high.
  struct Neighbours {
    int windows = 0, done = 0, left = 0, openCount = 0;
    double low = 0.0, high = 0.0, constant = 0.0, slope = 0.0, firstMean = 0.0;
    memory::Buffer<double> open;  // the shared items between low and high
    memory::Buffer<double> ends;  // those that not all windows share, as if they stood side by side

    template <typename V>
    void fields(V& v, int period, int leftOfLarger) noexcept {
      v.within(done, 0, windows);
      v.within(left, 0, std::min(windows - done, leftOfLarger));
      v.within(openCount, 0, 2 * std::int64_t{period});
      v(low, high, constant, slope, firstMean);
      v.buffer(open, left > 0 ? openCount : 0);
      v.buffer(ends, left > 0 ? windows - 2 + std::max(done, 1) : 0);
    }
    bool contains(double mean) const noexcept { return left > 0 && mean >= low && mean <= high; }
    void fold(const double* items, int count, double anchor) noexcept;
  };
  static constexpr int kMostGroups = 5;

  bool isLong() const noexcept;
  bool makeGroups() noexcept;
  void sumUpChunks(std::ptrdiff_t firstPair) noexcept;
  bool keep(const double* x, int count) noexcept;
  void shortWindows(const double* newest, int count, const double* distance, double* deviation) noexcept;
  void longWindows(std::ptrdiff_t newest, int count, const double* distance, double* deviation) noexcept;
  int nextWindows(std::ptrdiff_t newest, int count, const double* distance, double* deviation) noexcept;
  void beginGroups(std::ptrdiff_t newest, double distance) noexcept;
  void beginGroup(int g, std::ptrdiff_t newest, double distance) noexcept;
  void foldShared(Neighbours& group, std::ptrdiff_t from, std::ptrdiff_t end) noexcept;

  int period_, groupCount_ = 0;
  Lead begin_;
  bool failed_ = false;
  Sliding<DistanceFromMean> distance_;
  std::ptrdiff_t held_ = 0;           // items kept; whole pairs of chunks have passed before them
  memory::Buffer<double> items_;      // as long as they are needed
  memory::Buffer<TwoChunks> chunks_;  // of the items, where windows are long
  memory::Buffer<int> mixed_;         // chunks that do not lie on one side
  Neighbours groups_[kMostGroups];    // the largest first
  int aboutOne_ = 0;                  // short windows that have been taken about the anchor
  double anchor_ = 0.0;               // of the distances of short windows, or in the groups
  double firstDeviation_ = 0.0;       // of the smallest group's first window
  double deviation_ = 0.0;            // of the last window
};

}  // namespace qv
