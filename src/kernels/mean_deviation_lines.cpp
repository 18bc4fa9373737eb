// The lines of a mean deviation's groups: what items that all windows of a group share add to the sums, as
// far as it is known on which side of the means they lie.
#include "kernels/mean_deviation.h"

namespace qv {

namespace {

// Sums up what lies on one side of a range, without branches: which items do is as random as prices are.
class Sides {
 public:
  Sides(double low, double high) noexcept : low_(twice(low)), high_(twice(high)) {}
  // Of two items, or two groups of them with this sum; bits for those that do not lie on one side.
  QV_INLINE unsigned add(Two lowest, Two highest, Two sum) noexcept {
    const auto isAbove = lowest >= high_, isBelow = highest <= low_;
    above_ = above_ + (Two)(isAbove & (Mask)sum);
    below_ = below_ - (isBelow & ~isAbove);
    return bitsOf(~(isAbove | isBelow));
  }
  void leaveOut() noexcept { below_[1] -= 1; }
  double above() const noexcept { return above_[0] + above_[1]; }
  double below() const noexcept { return static_cast<double>(below_[0] + below_[1]); }

 private:
  using Mask = decltype(Two{} >= Two{});
  static QV_INLINE unsigned bitsOf(Mask is) noexcept {
#if defined(__SSE2__)
    return static_cast<unsigned>(_mm_movemask_pd((__m128d)is));
#else
    return static_cast<unsigned>((is[0] & 1) | (is[1] & 2));
#endif
  }
  Two low_, high_, above_{};
  Mask below_{};
};

}  // namespace

// The groups whose first window ends at `newest`, from the first whose line is not good any more.
void MeanDeviation::beginGroups(std::ptrdiff_t newest, double distance) noexcept {
  int g = 0;
  while (g < groupCount_ - 1 &&
         groups_[g].contains(items_[static_cast<std::size_t>(newest)] - anchor_ - distance))
    ++g;
  if (g == 0) anchor_ = items_[static_cast<std::size_t>(newest)];
  for (; g < groupCount_ && !failed_; ++g) beginGroup(g, newest, distance);
}

void MeanDeviation::beginGroup(int g, std::ptrdiff_t newest, double distance) noexcept {
  Neighbours& group = groups_[g];
  Neighbours* parent = g > 0 ? &groups_[g - 1] : nullptr;
  const int period =
      parent ? parent->windows - 1 : period_;  // of the items that are not in the parent's line
  const auto most = static_cast<std::size_t>(parent ? parent->openCount + period : period);
  failed_ = !group.open.grow(most + 1) || !group.ends.grow(2 * static_cast<std::size_t>(group.windows)) ||
            !mixed_.grow(static_cast<std::size_t>(period_) / kChunk + 2);
  if (failed_) return;

  const double item = items_[static_cast<std::size_t>(newest)], mean = item - distance;
  const double middle = item - anchor_ - distance;
  // The mean will go on as it went, and to and fro as items of this deviation move it.
  double drift = group.done > 0 ? (mean - group.firstMean) / group.done * group.windows : 0.0;
  double stray =
      4.0 * std::sqrt(static_cast<double>(group.windows)) * deviation_ / period_ + magnitude(drift) / 4.0;
  if (!(stray < kInfinity)) drift = stray = 0.0;
  const auto setRange = [&] {
    group.low = std::min(drift, 0.0) - stray + middle;
    group.high = std::max(drift, 0.0) + stray + middle;
    if (parent) {
      group.low = std::max(group.low, parent->low);
      group.high = std::min(group.high, parent->high);
    }
  };
  setRange();
  group.firstMean = mean;
  group.done = group.openCount = 0;
  group.left = parent ? std::min(group.windows, parent->left) : group.windows;
  group.constant = parent ? parent->constant : 0.0;
  group.slope = parent ? parent->slope : 0.0;
  const int own = group.windows - 1;  // items at either end that not all windows share
  double* ends = group.ends.data();
  if (parent) {
    double* items = parent->ends.data() + parent->done;
    if (parent->done > 0) items[period - 1] = item - anchor_;
    std::copy_n(items, own, ends);
    group.fold(parent->open.data(), parent->openCount, 0.0);
    group.fold(items + own, period - own, 0.0);
  } else {
    const std::ptrdiff_t oldest = newest - (period - 1);
    for (int j = 0; j < own; ++j) ends[j] = items_[static_cast<std::size_t>(oldest + j)] - anchor_;
    foldShared(group, oldest + own, newest + 1);
  }
  // Where items crowd about the mean the line is good for a shorter way.
  for (int tries = 0; tries < 7 && group.openCount > 2 * group.windows + period_ / 16; ++tries) {
    drift /= 8.0;
    stray /= 8.0;
    if (tries == 6) drift = stray = 0.0;
    setRange();
    group.fold(group.open.data(), std::exchange(group.openCount, 0), 0.0);
  }
}

// The items from .. end - 1, which are some pairs of chunks, whole chunks at a time where all of a chunk lie
// on one side.
void MeanDeviation::foldShared(Neighbours& group, std::ptrdiff_t from, std::ptrdiff_t end) noexcept {
  constexpr auto kPair = std::ptrdiff_t{2} * kChunk;
  const double* items = items_.data();
  const auto first = (from + kPair - 1) / kPair, last = end / kPair;
  group.fold(items + from, static_cast<int>(first * kPair - from), anchor_);
  Sides sides(group.low, group.high);
  int mixed = 0;
  for (auto pair = first; pair < last; ++pair) {
    const TwoChunks& chunks = chunks_[static_cast<std::size_t>(pair)];
    const Two anchor = twice(anchor_), begin{items[pair * kPair], items[pair * kPair + kChunk]};
    const unsigned open = sides.add(loadTwo(chunks.lowest) - anchor, loadTwo(chunks.highest) - anchor,
                                    loadTwo(chunks.sum) + (begin - anchor) * twice(kChunk));
    for (unsigned c = 0; c < 2; ++c) {
      mixed_[static_cast<std::size_t>(mixed)] = static_cast<int>(2 * pair) + static_cast<int>(c);
      mixed += static_cast<int>(open >> c & 1U);
    }
  }
  group.constant += sides.above();
  group.slope += kChunk * sides.below();
  for (int m = 0; m < mixed; ++m)
    group.fold(items + std::ptrdiff_t{mixed_[static_cast<std::size_t>(m)]} * kChunk, kChunk, anchor_);
  group.fold(items + last * kPair, static_cast<int>(end - last * kPair), anchor_);
}

// `items` may be the open ones themselves.
void MeanDeviation::Neighbours::fold(const double* items, int count, double anchor) noexcept {
  Sides sides(low, high);
  double* end = open.data() + openCount;
  int j = 0;
  for (; j + 2 <= count; j += 2) {
    const Two item = loadTwo(items + j) - twice(anchor);
    const unsigned isOpen = sides.add(item, item, item);
    *end = item[0];
    end += isOpen & 1U;
    *end = item[1];
    end += isOpen >> 1U;
  }
  if (j < count) {  // beside one that adds nothing and is not open
    const Two item{items[j] - anchor, -kInfinity};
    const unsigned isOpen = sides.add(item, item, item);
    sides.leaveOut();
    *end = item[0];
    end += isOpen & 1U;
  }
  openCount = static_cast<int>(end - open.data());
  constant += sides.above();
  slope += sides.below();
}

}  // namespace qv
