#include "kernels/mean_deviation.h"

#include <functional>

#include "kernels/greater_sums.h"

namespace qv {

namespace {

constexpr int kShortPeriod = 200;  // up to here the plain sum is as quick
constexpr int kAboutOne = 16;      // windows about one anchor
constexpr int kOwnAnchors = 32;    // up to this period each window has its own

// Few windows leave few items open, many bear the cost of a line together.
constexpr int kSmallestGroup = 16, kGroupsInGroup = 8;

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

// The mean deviation out of the sum over max(item, mean), the mean being a distance like the items.
struct DeviationOf {
  double perItem;
  double operator()(double sum, double mean) const noexcept {
    return notNegative(2.0 * (sum * perItem - mean));
  }
};

}  // namespace

MeanDeviation::MeanDeviation(int period) noexcept
    : period_(period), begin_(period - 1), distance_(period, DistanceFromMean(period)) {
  int windows = kSmallestGroup;
  for (groupCount_ = 1; groupCount_ < kMostGroups && windows * kGroupsInGroup <= period / 4; ++groupCount_)
    windows *= kGroupsInGroup;
  for (int g = 0; g < groupCount_; ++g, windows /= kGroupsInGroup) groups_[g].windows = windows;
}

void MeanDeviation::run(Inputs<1> in, int count, Outputs<2> out) noexcept {
  for (int items; count > 0; in = advanced(in, items), out = advanced(out, items), count -= items) {
    items = std::min(kTile, count);
    distance_.run(in, items, {out[0]});
    if (!ok() || !keep(in[0], items)) {
      for (double* y : out) std::fill_n(y, items, 0.0);
      continue;
    }
    const int none = begin_.pass(items, out[1]);
    const double* distance = out[0] + none;
    if (!isLong())
      shortWindows(items_.data() + held_ - items + none, items - none, distance, out[1] + none);
    else
      longWindows(held_ - items + none, items - none, distance, out[1] + none);
  }
}

bool MeanDeviation::isLong() const noexcept {
  return period_ > kShortPeriod;
}

// The room that the groups can need at most.
bool MeanDeviation::makeGroups() noexcept {
  auto most = static_cast<std::size_t>(period_) + 1;
  for (int g = 0; g < groupCount_; ++g) {
    const auto windows = static_cast<std::size_t>(groups_[g].windows);
    if (!groups_[g].open.grow(most) || !groups_[g].ends.grow(2 * windows)) return false;
    most += windows;
  }
  return mixed_.grow(static_cast<std::size_t>(period_) / kChunk + 2);
}

bool MeanDeviation::reserve(int count) noexcept {
  const auto room = static_cast<std::size_t>(held_) + static_cast<std::size_t>(count);
  return items_.grow(room) && (!isLong() || chunks_.grow(room / (2 * kChunk) + 1)) &&
         (!isLong() || begin_.left() >= count || makeGroups());
}

bool MeanDeviation::restored() noexcept {
  if (!isLong()) return true;
  if (!reserve(1)) return false;
  sumUpChunks(0);
  return true;
}

// Of the pairs of chunks that are complete.
void MeanDeviation::sumUpChunks(std::ptrdiff_t firstPair) noexcept {
  constexpr auto kPair = std::ptrdiff_t{2} * kChunk;
  for (auto pair = firstPair; (pair + 1) * kPair <= held_; ++pair) {
    TwoChunks& chunks = chunks_[static_cast<std::size_t>(pair)];
    for (int c = 0; c < 2; ++c) {
      const double* item = items_.data() + pair * kPair + std::ptrdiff_t{c} * kChunk;
      double lowest = item[0], highest = item[0], sum = 0.0;
      for (int j = 1; j < kChunk; ++j) {
        lowest = std::min(lowest, item[j]);
        highest = std::max(highest, item[j]);
        sum += item[j] - item[0];
      }
      chunks.lowest[c] = lowest, chunks.highest[c] = highest, chunks.sum[c] = sum;
    }
  }
}

// Appends items to those of the last period; what is older goes as soon as it is as much again.
bool MeanDeviation::keep(const double* x, int count) noexcept {
  constexpr auto kPair = std::ptrdiff_t{2} * kChunk;
  if (const auto old = (held_ - (period_ - 1)) / kPair; old * kPair >= saturatingSum(period_, kTile)) {
    held_ -= old * kPair;
    std::copy_n(items_.data() + old * kPair, held_, items_.data());
    if (isLong()) std::copy_n(chunks_.data() + old, held_ / kPair, chunks_.data());
  }
  const auto room = static_cast<std::size_t>(held_ + count);
  failed_ = !items_.grow(room) || (isLong() && !chunks_.grow(room / kPair + 1));
  if (failed_) return false;
  std::copy_n(x, count, items_.data() + held_);
  const std::ptrdiff_t before = held_;
  held_ += count;
  if (isLong()) sumUpChunks(before / kPair);
  return true;
}

// Each window by itself, about its newest item, or where they are longer about that of the first of
// neighbouring ones.
void MeanDeviation::shortWindows(const double* newest, int count, const double* distance,
                                 double* deviation) noexcept {
  Tile means, sums;
  std::fill_n(sums, count, 0.0);
  if (period_ <= kOwnAnchors) {
    map(
        count, means, [](double d) { return -d; }, distance);
    addGreater({newest - (period_ - 1), period_, newest, nullptr, 0, means, sums}, count);
  }
  for (int at = 0, windows; period_ > kOwnAnchors && at < count; at += windows) {
    if (aboutOne_ == 0) anchor_ = newest[at];
    windows = std::min(kAboutOne - aboutOne_, count - at);
    aboutOne_ = (aboutOne_ + windows) % kAboutOne;
    double items[kShortPeriod + kAboutOne];
    map(
        period_ - 1 + windows, items, [anchor = anchor_](double item) { return item - anchor; },
        newest + at - (period_ - 1));
    map(windows, means + at, std::minus<>{}, items + period_ - 1, distance + at);
    addGreater({items, period_, nullptr, nullptr, 0, means + at, sums + at}, windows);
  }
  map(count, deviation, DeviationOf{1.0 / period_}, sums, means);
}

void MeanDeviation::longWindows(std::ptrdiff_t newest, int count, const double* distance,
                                double* deviation) noexcept {
  for (int i = 0; i < count && !failed_;) {
    if (!(magnitude(distance[i]) < kInfinity)) {  // nor has the window a deviation
      deviation[i++] = std::numeric_limits<double>::quiet_NaN();
      for (Neighbours& group : groups_) group.left = group.done = 0;
      continue;
    }
    int windows = nextWindows(newest + i, count - i, distance + i, deviation + i);
    if (windows == 0) {
      beginGroups(newest + i, distance[i]);
      if (failed_) break;
      windows = nextWindows(newest + i, count - i, distance + i, deviation + i);
      if (windows == 0) deviation[i] = std::numeric_limits<double>::quiet_NaN(), windows = 1;
    }
    i += windows;
  }
}

// The windows for which the smallest group's line is good, as many as there are. 0: there is none.
int MeanDeviation::nextWindows(std::ptrdiff_t newest, int count, const double* distance,
                               double* deviation) noexcept {
  Neighbours& smallest = groups_[groupCount_ - 1];
  const double* x = items_.data() + newest;
  double items[kSmallestGroup], means[kSmallestGroup], sums[kSmallestGroup];
  int good = 0;
  for (; good < std::min(smallest.left, count); ++good) {
    items[good] = x[good] - anchor_;
    means[good] = items[good] - distance[good];
    if (!smallest.contains(means[good])) break;
    sums[good] = smallest.constant + smallest.slope * means[good];
  }
  for (int g = 0; g < groupCount_; ++g) {
    const int first = groups_[g].done == 0 ? 1 : 0;  // whose newest item all share
    if (first < good)
      std::copy(items + first, items + good,
                groups_[g].ends.data() + groups_[g].windows - 2 + groups_[g].done + first);
  }
  addGreater({smallest.ends.data() + smallest.done, smallest.windows - 1, nullptr, smallest.open.data(),
              smallest.openCount, means, sums},
             good);
  map(good, deviation, DeviationOf{1.0 / period_}, sums, means);
  if (smallest.done == 0 && good > 0) firstDeviation_ = deviation[0];
  for (int w = 0; w < good; ++w) {
    if (deviation[w] >= firstDeviation_ / 16.0) continue;
    good = w;  // the lines have been made of larger items
    for (Neighbours& group : groups_) group.left = w;
  }
  if (good == 0) return 0;
  for (Neighbours& group : groups_) {
    group.done += good;
    group.left -= good;
  }
  deviation_ = deviation[good - 1];
  return good;
}

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

// The items from .. end - 1, whole chunks at a time where all of a chunk lie on one side.
void MeanDeviation::foldShared(Neighbours& group, std::ptrdiff_t from, std::ptrdiff_t end) noexcept {
  constexpr auto kPair = std::ptrdiff_t{2} * kChunk;
  const double* items = items_.data();
  const auto first = (from + kPair - 1) / kPair, last = end / kPair;
  if (first >= last) return group.fold(items + from, static_cast<int>(end - from), anchor_);
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
