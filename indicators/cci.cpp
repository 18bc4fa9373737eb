// The commodity channel index: the distance of a bar's price from its average, in units of the mean
// absolute deviation from that average.
//
// The deviations of each window are taken from the window's own mean, so their sum can't be rolled from
// bar to bar. But the means of neighbouring windows lie close together, and an item above all of them
// adds item - mean to each window's sum, one below them mean - item: a straight line in the mean. A
// group of windows that end at neighbouring bars thus folds most of the items that they share into one
// line. Items that lie among the means stay open; they are handed on, with the items that not all
// windows of the group share, to smaller groups, and what is left in the smallest is summed item by
// item. Where many items stay open (data that crowds around its own mean) they are sorted, and each
// window finds its mean among them. The cost per bar grows with the logarithm of the period, on prices
// with a small factor.
//
// Items and means are distances from an anchor that every window of a block contains, and nothing is
// ever taken out of a sum: the result is as exact for large prices that move little, a window of equal
// prices has deviation 0, and a wild price is forgotten once the window has passed it.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/numbers.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

namespace {

// Window k of a group: items[k .. k + period - 1] about means[k].
struct Group {
  const double* items;
  int period;
  const double* means;
  int count;
};

// What the items shared by all windows of a group add to each window's sum of absolute deviations.
struct Shared {
  double constant = 0.0, slope = 0.0;  // the folded items: constant + slope * mean
  const double* open = nullptr;        // the others
  int openCount = 0;
};

// ---- The plain sums -----------------------------------------------------------------------------

// Two windows, or two items, side by side.
typedef double Pair __attribute__((vector_size(16)));
typedef long long PairMask __attribute__((vector_size(16)));

// Adds to the sums of 2 * Pairs neighbouring windows from window k on.
template <int Pairs>
void sumDeviations(const Group& g, const Shared& shared, int k, double* sums) noexcept {
  constexpr PairMask kMagnitude = {INT64_MAX, INT64_MAX};
  Pair mean[Pairs], sum[Pairs];
  std::memcpy(mean, g.means + k, sizeof mean);
  std::memcpy(sum, sums + k, sizeof sum);
  for (int w = 0; w < Pairs; ++w) sum[w] += shared.constant + shared.slope * mean[w];
  for (int j = 0; j < g.period; ++j) {
    for (int w = 0; w < Pairs; ++w) {
      Pair item;
      std::memcpy(&item, g.items + k + j + 2 * w, sizeof item);
      const auto distance = reinterpret_cast<PairMask>(item - mean[w]);
      sum[w] += reinterpret_cast<Pair>(distance & kMagnitude);
    }
  }
  for (int j = 0; j < shared.openCount; ++j) {
    for (int w = 0; w < Pairs; ++w) {
      const auto distance = reinterpret_cast<PairMask>(shared.open[j] - mean[w]);
      sum[w] += reinterpret_cast<Pair>(distance & kMagnitude);
    }
  }
  std::memcpy(sums + k, sum, sizeof sum);
}

void sumDeviations(const Group& g, const Shared& shared, double* sums) noexcept {
  int k = 0;
  for (; k + 8 <= g.count; k += 8) sumDeviations<4>(g, shared, k, sums);
  for (; k + 2 <= g.count; k += 2) sumDeviations<1>(g, shared, k, sums);
  if (k == g.count) return;
  const double mean = g.means[k];
  sums[k] += shared.constant + shared.slope * mean;
  for (int j = 0; j < g.period; ++j) sums[k] += std::fabs(g.items[k + j] - mean);
  for (int j = 0; j < shared.openCount; ++j) sums[k] += std::fabs(shared.open[j] - mean);
}

// ---- Folding ------------------------------------------------------------------------------------

// Folds the items outside lowest .. highest into the line and appends the others (not-a-number among
// them) to `open`; returns how many are open then. Free of branches: which items are open is as random
// as prices are. Writes up to `count` items beyond openCount.
int fold(const double* items, int count, double lowest, double highest, Shared& shared, double* open,
         int openCount) noexcept {
  const Pair low = {lowest, lowest}, high = {highest, highest};
  Pair sumAbove = {}, sumBelow = {};
  PairMask balance = {};  // items below less items above
  int i = 0;
  for (; i + 2 <= count; i += 2) {
    Pair item;
    std::memcpy(&item, items + i, sizeof item);
    const auto above = reinterpret_cast<PairMask>(item >= high);
    const auto below = reinterpret_cast<PairMask>(item <= low);
    const auto bits = reinterpret_cast<PairMask>(item);
    sumAbove += reinterpret_cast<Pair>(above & bits);
    sumBelow += reinterpret_cast<Pair>(below & bits);
    balance += above - below;  // a true lane is -1
    const PairMask folded = above | below;
    open[openCount] = items[i];
    openCount += 1 + static_cast<int>(folded[0]);
    open[openCount] = items[i + 1];
    openCount += 1 + static_cast<int>(folded[1]);
  }
  shared.constant += (sumAbove[0] + sumAbove[1]) - (sumBelow[0] + sumBelow[1]);
  shared.slope += static_cast<double>(balance[0] + balance[1]);
  for (; i < count; ++i) open[openCount++] = items[i];  // a last odd item stays open: it costs little
  return openCount;
}

// Adds the deviations of the items from each window's mean to the sums. Sorts the items, none of which
// is a not-a-number; `running` takes as many.
void addSorted(double* items, int count, const Group& g, double* running, double* sums) noexcept {
  std::sort(items, items + count);
  double sum = 0.0;
  for (int i = 0; i < count; ++i) running[i] = sum += items[i];
  for (int k = 0; k < g.count; ++k) {
    const double mean = g.means[k];
    const auto below = std::lower_bound(items, items + count, mean) - items;
    const double sumBelow = below > 0 ? running[below - 1] : 0.0;
    const auto difference = static_cast<double>(below + below - count);
    sums[k] += difference * mean + (sum - sumBelow - sumBelow);
  }
}

// ---- Groups within groups -----------------------------------------------------------------------

constexpr int kSmallestGroup = 32;
constexpr int kShortPeriod = 70;  // up to here the plain sum is as quick
constexpr int kCrowd = 400;       // from here on sorting is quicker than the plain sum

// Adds each window's sum of absolute deviations to `sums`.
//
// The scratch takes 5 periods at most. A group of windows of P items, N of them not folded, writes at
// most P for its ends and N open ones (twice when it sorts them), keeps at most N / 2 of these when it goes
// on to smaller groups, and those have periods of at most P / 2 and N / 2 + P / 2 items not folded: 2 N + 3 P
// in all.
void resolve(const Group& g, const Shared& shared, double* scratch, double* sums) noexcept {
  if (g.period <= kShortPeriod) return sumDeviations(g, shared, sums);
  int size = kSmallestGroup;
  while (size <= g.period / 8) size *= 4;

  for (int k = 0; k < g.count; k += size) {
    const int count = std::min(size, g.count - k), common = g.period - count + 1;
    const double *items = g.items + k, *means = g.means + k;
    double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
    for (int m = 0; m < count; ++m) {
      if (means[m] < lowest) lowest = means[m];
      if (means[m] > highest) highest = means[m];
    }
    if (lowest > highest) {  // no mean is a number; elsewhere no common item is a not-a-number
      std::copy_n(means, count, sums + k);
      continue;
    }

    // The items at the windows' ends: oldest first, as if the common ones between them were not there.
    double* ends = scratch;
    const int endCount = count - 1;
    std::copy_n(items, endCount, ends);
    std::copy_n(items + g.period, endCount, ends + endCount);
    const Group inner{ends, endCount, means, count};

    Shared part = shared;
    double* open = ends + 2 * endCount;
    part.open = open;
    part.openCount = fold(shared.open, shared.openCount, lowest, highest, part, open, 0);
    part.openCount = fold(items + endCount, common, lowest, highest, part, open, part.openCount);
    if (part.openCount <= (shared.openCount + common) / 2) {
      resolve(inner, part, open + part.openCount, sums + k);
    } else if (part.openCount < kCrowd) {
      sumDeviations(inner, part, sums + k);
    } else {
      addSorted(open, part.openCount, inner, open + part.openCount, sums + k);
      part.openCount = 0;
      resolve(inner, part, open, sums + k);
    }
  }
}

// ---- Blocks -------------------------------------------------------------------------------------

// The index for the bars s + period - 1 .. n - 1 (there is at least one), block by block: the `period`
// windows that begin within a block all contain the block's last bar.
int channelIndex(const QvBars& bars, int s, int n, int period, double* out) noexcept {
  const auto p = static_cast<std::size_t>(period);
  memory::Buffer<double> buffer(9 * p);
  if (!buffer.ok()) return QV_MALLOC;
  double *items = buffer.data(), *means = items + 2 * p, *sums = means + p, *scratch = sums + p;

  const double *high = bars.high.data, *low = bars.low.data, *close = bars.close.data;
  const auto price = [=](int i) { return high[i] + low[i] + close[i]; };  // its third would cancel out
  for (int begin = s; begin <= n - period; begin += period) {
    const int count = std::min(period, n - begin - period + 1);
    const double anchor = price(begin + period - 1);
    for (int j = 0; j < std::min(period + count, n - begin); ++j) items[j] = price(begin + j) - anchor;

    // Window k is the end of the block from its item k on, and the first k items of the next block.
    double left = 0.0, right = 0.0;
    for (int j = period - 1; j >= count; --j) left += items[j];
    for (int j = count - 1, k = 0; j >= 0; --j, ++k) {
      means[j] = left += items[j];
      sums[k] = right;
      right += items[period + k];
    }
    for (int k = 0; k < count; ++k) means[k] = (means[k] + sums[k]) / period;

    std::fill_n(sums, count, 0.0);
    resolve({items, period, means, count}, {}, scratch, sums);
    double* index = out + begin + period - 1;
    for (int k = 0; k < count; ++k) {
      // Where nothing deviates the unit is 0 and the price its own mean: 0 / 1, without a branch.
      const double unit = sums[k] / period * 0.015 + (sums[k] != 0.0 ? 0.0 : 1.0);
      index[k] = (items[k + period - 1] - means[k]) / unit;
    }
  }
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvCCI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, -1);
  if (first < n)
    if (const int status = channelIndex(*bars, s, n, p, out->data)) return status;
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
