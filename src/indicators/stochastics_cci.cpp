// The commodity channel index: the distance of a bar's price from its average, in units of the mean
// absolute deviation from that average.
//
// As the mean halves the deviations, their sum is twice that of the greater ones of item and mean, less
// period * mean. The sum is taken about the window's own mean, so it can't be rolled from bar to bar. But
// the means of neighbouring windows lie close together, and an item above all of them adds itself to each
// window's sum, one below them the mean: a straight line in the mean. A group of windows that end at
// neighbouring bars thus folds most of the items that they share into one line, whole chunks of
// neighbouring items at once where all lie on one side. Items that lie among the means stay open; they are
// handed on, with the items that not all windows of the group share, to smaller groups, and what is left
// in the smallest is summed item by item. Where many items stay open (data that crowds around its own
// mean) they are sorted, and each window finds its mean among them. The cost per bar grows with the
// logarithm of the period, on prices with a small factor.
//
// Items and means are distances from an anchor that every window of a block contains, and nothing is
// ever taken out of a sum: the result is as exact for large prices that move little, a window of equal
// prices has deviation 0, and a wild price is forgotten once the window has passed it.
#include <emmintrin.h>

#include <algorithm>
#include <limits>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/numbers.h"
#include "kernels/running_sums.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

namespace {

constexpr int kChunk = 8;

// Sums and extremes of kChunk items each, from a block's first item on.
struct Chunks {
  double *lowest, *highest, *sum;
  int* mixed;  // room for the indices of as many chunks and one more
};

// Window k of a group: items[k .. k + period - 1] about means[k].
struct Group {
  const double* items;
  int period;
  const double* means;
  int count;
};

// What the items shared by all windows of a group add to each window's sum.
struct Shared {
  double constant = 0.0, slope = 0.0;  // the folded items: constant + slope * mean
  const double* open = nullptr;        // the others
  int openCount = 0;
};

// ---- The plain sums -----------------------------------------------------------------------------

// Adds to the sums of 2 * Pairs neighbouring windows from window k on.
template <int Pairs>
void addGreater(const Group& g, const Shared& shared, int k, double* sums) noexcept {
  const __m128d constant = _mm_set1_pd(shared.constant), slope = _mm_set1_pd(shared.slope);
  __m128d mean[Pairs], sum[Pairs];
  for (int w = 0; w < Pairs; ++w) {
    mean[w] = _mm_loadu_pd(g.means + k + 2 * w);
    sum[w] = _mm_add_pd(_mm_loadu_pd(sums + k + 2 * w), _mm_add_pd(constant, _mm_mul_pd(slope, mean[w])));
  }
  const double* const items = g.items + k;
  for (int j = 0; j < g.period; ++j)
    for (int w = 0; w < Pairs; ++w)
      sum[w] = _mm_add_pd(sum[w], _mm_max_pd(_mm_loadu_pd(items + j + 2 * w), mean[w]));
  for (int j = 0; j < shared.openCount; ++j) {
    const __m128d item = _mm_set1_pd(shared.open[j]);
    for (int w = 0; w < Pairs; ++w) sum[w] = _mm_add_pd(sum[w], _mm_max_pd(item, mean[w]));
  }
  for (int w = 0; w < Pairs; ++w) _mm_storeu_pd(sums + k + 2 * w, sum[w]);
}

void addGreater(const Group& g, const Shared& shared, double* sums) noexcept {
  int k = 0;
  for (; k + 8 <= g.count; k += 8) addGreater<4>(g, shared, k, sums);
  for (; k + 2 <= g.count; k += 2) addGreater<1>(g, shared, k, sums);
  if (k == g.count) return;
  const double mean = g.means[k];
  sums[k] += shared.constant + shared.slope * mean;
  for (int j = 0; j < g.period; ++j) sums[k] += std::max(mean, g.items[k + j]);
  for (int j = 0; j < shared.openCount; ++j) sums[k] += std::max(mean, shared.open[j]);
}

// ---- Folding ------------------------------------------------------------------------------------

// Folds items that lie outside the range of a group's means into a line and hands on the others. Free of
// branches: which items are open is as random as prices are.
class Folding {
 public:
  // `open` takes up to one item more than are folded.
  Folding(double lowest, double highest, double* open) noexcept
      : low_(_mm_set1_pd(lowest)), high_(_mm_set1_pd(highest)), open_(open), end_(open) {}

  void items(const double* items, int count) noexcept {
    count_ += count;
    int i = 0;
    for (; i + 2 <= count; i += 2) pair(_mm_loadu_pd(items + i));
    if (i < count) pair(_mm_set_pd(-std::numeric_limits<double>::infinity(), items[i]));
  }

  // The chunks from `first` up to before `last`, whose items begin at block[0].
  int chunks(const Chunks& chunks, const double* block, int first, int last) noexcept {
    count_ += (last - first) * kChunk;
    __m128i aboveChunks = _mm_setzero_si128();
    int* mixed = chunks.mixed;
    int c = first;
    for (; c + 2 <= last; c += 2) {
      const __m128d above = _mm_cmpge_pd(_mm_loadu_pd(chunks.lowest + c), high_);
      const __m128d below = _mm_cmple_pd(_mm_loadu_pd(chunks.highest + c), low_);
      sumAbove_ = _mm_add_pd(sumAbove_, _mm_and_pd(above, _mm_loadu_pd(chunks.sum + c)));
      aboveChunks = _mm_sub_epi64(aboveChunks, _mm_castpd_si128(above));  // a true lane is -1
      const std::size_t open = openLanes(above, below);
      *mixed = c;
      mixed += open & 1U;
      *mixed = c + 1;
      mixed += open >> 1U;
    }
    if (c < last) *mixed++ = c;
    static_assert(kChunk == 1 << 3);
    above_ = _mm_add_epi64(above_, _mm_slli_epi64(aboveChunks, 3));
    for (const int* m = chunks.mixed; m < mixed; ++m)
      for (int i = 0; i < kChunk; i += 2) pair(_mm_loadu_pd(block + *m * kChunk + i));
    return static_cast<int>(mixed - chunks.mixed);
  }

  // Adds the folded items to the line; the open ones become its open ones.
  void close(Shared& shared) const noexcept {
    shared.open = open_;
    shared.openCount = openCount();
    const auto above = _mm_cvtsi128_si32(_mm_add_epi64(above_, _mm_unpackhi_epi64(above_, above_)));
    shared.constant += sumAbove_[0] + sumAbove_[1];
    shared.slope += count_ - shared.openCount - above;
  }

  int openCount() const noexcept { return static_cast<int>(end_ - open_); }

 private:
  void pair(__m128d item) noexcept {
    const __m128d above = _mm_cmpge_pd(item, high_), below = _mm_cmple_pd(item, low_);
    sumAbove_ = _mm_add_pd(sumAbove_, _mm_and_pd(above, item));
    above_ = _mm_sub_epi64(above_, _mm_castpd_si128(above));
    const std::size_t open = openLanes(above, below);
    _mm_storel_pd(end_, item);
    end_ += open & 1U;
    _mm_storeh_pd(end_, item);
    end_ += open >> 1U;
  }

  static std::size_t openLanes(__m128d above, __m128d below) noexcept {
    return static_cast<unsigned>(_mm_movemask_pd(_mm_or_pd(above, below))) ^ 3U;
  }

  __m128d low_, high_, sumAbove_ = _mm_setzero_pd();
  __m128i above_ = _mm_setzero_si128();  // items above the means
  double *open_, *end_;
  int count_ = 0;
};

// Adds the sums of the greater ones of the items and each window's mean. Sorts the items, none of which is a
// not-a-number; `running` takes as many.
void addSorted(double* items, int count, const Group& g, double* running, double* sums) noexcept {
  std::sort(items, items + count);
  double sum = 0.0;
  for (int i = 0; i < count; ++i) running[i] = sum += items[i];
  for (int k = 0; k < g.count; ++k) {
    const auto below = std::lower_bound(items, items + count, g.means[k]) - items;
    const double sumBelow = below > 0 ? running[below - 1] : 0.0;
    sums[k] += static_cast<double>(below) * g.means[k] + (sum - sumBelow);
  }
}

// The sums and extremes of the items' whole chunks.
void summarise(const double* items, int count, const Chunks& chunks) noexcept {
  for (int c = 0; c < count / kChunk; ++c, items += kChunk) {
    __m128d low = _mm_loadu_pd(items), high = low, sum = low;
    for (int i = 2; i < kChunk; i += 2) {
      const __m128d item = _mm_loadu_pd(items + i);
      low = _mm_min_pd(low, item), high = _mm_max_pd(high, item), sum = _mm_add_pd(sum, item);
    }
    chunks.lowest[c] = std::min(low[0], low[1]);
    chunks.highest[c] = std::max(high[0], high[1]);
    chunks.sum[c] = sum[0] + sum[1];
  }
}

// ---- Groups within groups -----------------------------------------------------------------------

constexpr int kSmallestGroup = 16;
constexpr int kShortPeriod = 56;  // up to here the plain sum is as quick
constexpr int kCrowd = 400;       // from here on sorting is quicker than the plain sum

// Small groups fold more of their items, but looking at each item pays for many windows only.
int groupSize(int period, bool mixed) noexcept {
  int size = kSmallestGroup;
  if (period <= 16 * size) return size;
  if (mixed) size *= 2;
  while (size <= period / (mixed ? 8 : 32)) size *= 4;
  return size;
}

struct Range {
  double lowest, highest;
};

// Of the means that are numbers; lowest > highest where none is.
Range rangeOf(const double* means, int count) noexcept {
  __m128d low = _mm_set1_pd(std::numeric_limits<double>::infinity());
  __m128d high = _mm_set1_pd(-std::numeric_limits<double>::infinity());
  const auto take = [&](__m128d mean) { low = _mm_min_pd(mean, low), high = _mm_max_pd(mean, high); };
  int m = 0;
  for (; m + 2 <= count; m += 2) take(_mm_loadu_pd(means + m));
  if (m < count) take(_mm_set1_pd(means[m]));
  return {std::min(low[0], low[1]), std::max(high[0], high[1])};
}

void copyItems(const double* from, int count, double* to) noexcept {
  int i = 0;
  for (; i + 2 <= count; i += 2) _mm_storeu_pd(to + i, _mm_loadu_pd(from + i));
  if (i < count) to[i] = from[i];
}

// Adds each window's sum of the greater ones of item and mean to `sums`. `chunks` are those of g.items, or
// null.
//
// The scratch takes 5 periods at most. A group of windows of P items, N of them not folded, writes at
// most P for its ends and N open ones (twice when it sorts them), keeps at most N / 2 of these when it goes
// on to smaller groups, and those have periods of at most P / 2 and N / 2 + P / 2 items not folded: 2 N + 3 P
// in all.
void resolve(const Group& g, const Chunks* chunks, const Shared& shared, bool& mixed, double* scratch,
             double* sums) noexcept {
  if (g.period <= kShortPeriod) return addGreater(g, shared, sums);
  for (int k = 0, count; k < g.count; k += count) {
    const int size = groupSize(g.period, mixed), left = g.count - k;
    // A short last group would cost as much as a whole one.
    count = 2 * left <= std::min(3 * size, g.period) ? left : std::min(left, size);
    const int endCount = count - 1;
    const double* means = g.means + k;
    const auto [lowest, highest] = rangeOf(means, count);
    if (lowest > highest) {  // no mean is a number; elsewhere no common item is a not-a-number
      std::copy_n(means, count, sums + k);
      continue;
    }

    // The items at the windows' ends: oldest first, as if the common ones between them were not there.
    double* ends = scratch;
    copyItems(g.items + k, endCount, ends);
    copyItems(g.items + k + g.period, endCount, ends + endCount);
    const Group inner{ends, endCount, means, count};

    double* open = ends + 2 * endCount;
    Folding folding(lowest, highest, open);
    folding.items(shared.open, shared.openCount);
    const int first = k + endCount, last = k + g.period;  // the common items
    const int firstChunk = (first + kChunk - 1) / kChunk, lastChunk = last / kChunk;
    if (chunks && firstChunk < lastChunk) {
      folding.items(g.items + first, firstChunk * kChunk - first);
      mixed = 4 * folding.chunks(*chunks, g.items, firstChunk, lastChunk) > 3 * (lastChunk - firstChunk);
      folding.items(g.items + lastChunk * kChunk, last - lastChunk * kChunk);
    } else {
      folding.items(g.items + first, last - first);
    }
    Shared part = shared;
    folding.close(part);
    if (part.openCount <= (shared.openCount + last - first) / 2) {
      resolve(inner, nullptr, part, mixed, open + part.openCount, sums + k);
    } else if (part.openCount < kCrowd) {
      addGreater(inner, part, sums + k);
    } else {
      addSorted(open, part.openCount, inner, open + part.openCount, sums + k);
      part.openCount = 0;
      resolve(inner, nullptr, part, mixed, open, sums + k);
    }
  }
}

// ---- Blocks -------------------------------------------------------------------------------------

// The index for the bars s + period - 1 .. n - 1 (there is at least one), block by block: the `period`
// windows that begin within a block all contain the block's last bar.
int channelIndex(const QvBars& bars, int s, int n, int period, double* out) noexcept {
  const auto p = static_cast<std::size_t>(period), chunkCount = 2 * p / kChunk;
  memory::Buffer<double> buffer(9 * p + 3 * chunkCount);
  memory::Buffer<int> mixedChunks(chunkCount + 1);
  if (!buffer.ok() || !mixedChunks.ok()) return QV_MALLOC;
  double *items = buffer.data(), *means = items + 2 * p, *sums = means + p, *scratch = sums + p;
  double* summary = scratch + 5 * p;
  const Chunks chunks{summary, summary + chunkCount, summary + 2 * chunkCount, mixedChunks.data()};

  const double *high = bars.high.data, *low = bars.low.data, *close = bars.close.data;
  const auto price = [=](int i) { return high[i] + low[i] + close[i]; };  // its third would cancel out
  bool mixed = false;
  for (int begin = s; begin <= n - period; begin += period) {
    const int count = std::min(period, n - begin - period + 1);
    const double anchor = price(begin + period - 1);
    for (int j = 0; j < std::min(period + count, n - begin); ++j) items[j] = price(begin + j) - anchor;

    // Window k is the end of the block from its item k on, and the first k items of the next block.
    window::suffixSums(items, period, means);
    sums[0] = 0.0;
    window::prefixSums(items + period, count - 1, 0.0, sums + 1);
    for (int k = 0; k < count; ++k) means[k] = (means[k] + sums[k]) / period;

    if (period > kShortPeriod) summarise(items, period + count - 1, chunks);
    std::fill_n(sums, count, 0.0);
    resolve({items, period, means, count}, &chunks, {}, mixed, scratch, sums);
    double* index = out + begin + period - 1;
    for (int k = 0; k < count; ++k) {
      // Where nothing deviates the unit is 0 and the price its own mean: 0 / 1, without a branch.
      const double deviation = 2.0 * (sums[k] - period * means[k]);
      const double unit = deviation / period * 0.015 + (deviation != 0.0 ? 0.0 : 1.0);
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
