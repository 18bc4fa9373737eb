#include "kernels/mean_deviation.h"

#include <functional>

#include "kernels/greater_sums.h"

namespace qv {

namespace {

constexpr int kShortPeriod = 200;  // up to here the plain sum is as quick
constexpr int kOwnAnchors = 32;    // up to this period each window has its own

// Few windows leave few items open, many bear the cost of a line together.
constexpr int kSmallestGroup = 16, kGroupsInGroup = 8;

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
  if (!items_.grow(room)) return false;
  if (!isLong()) return true;
  return chunks_.grow(room / (std::size_t{2} * kChunk) + 1) && (begin_.left() >= count || makeGroups());
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
  for (int i = 0; i < count;) {
    if (!(magnitude(distance[i]) < kInfinity)) {  // nor has the window a deviation
      deviation[i++] = std::numeric_limits<double>::quiet_NaN();
      for (Neighbours& group : groups_) group.left = group.done = 0;
      continue;
    }
    int windows = nextWindows(newest + i, count - i, distance + i, deviation + i);
    if (windows == 0) {
      beginGroups(newest + i, distance[i]);
      if (failed_) return std::fill_n(deviation + i, count - i, 0.0), void();
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

}  // namespace qv
