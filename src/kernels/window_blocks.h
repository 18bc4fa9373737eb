// How the kernels walk their series.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "core/memory.h"
#include "kernels/window.h"
#include "qvlib60/abi.h"

namespace qv::window {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The items of the range that can take part; 0 when there are none or the period is no period.
inline int itemsOf(const Range& r) noexcept {
  return r.first >= 0 && r.end > r.first && r.period > 0 ? r.end - r.first : 0;
}

// Running results side by side, one row for each quantity.
struct Rows {
  double* data;
  std::ptrdiff_t length;

  double* operator[](int row) const noexcept { return data + row * length; }
  Rows from(std::ptrdiff_t column) const noexcept { return {data + column, length}; }
};

// Blocks of fewer items are worked on many at a time, so that the last pass, which runs across
// neighbouring windows, is a long one, while all passes stay in the first-level cache.
inline constexpr int kStretch = 512;

// What slide() needs to know of a call.
template <typename Kernel>
struct Walk {
  Kernel& kernel;
  const Range& r;
  int stretch;  // whole blocks worked on at a time
  Rows suffix;  // of the block before the stretch, then of the stretch
  Rows prefix;  // of the stretch

  void noPrefix(int column) const noexcept {
    for (int row = 0; row < Kernel::kPrefixRows; ++row) prefix[row][column] = Kernel::kNone;
  }

  // The prefixes of the block at `at`, which ends at `column` of the stretch, then its suffixes.
  void takeBlock(int at, int column, Rows suffixes) const noexcept {
    const int p = r.period;
    kernel.prefixes(at, p - 1, prefix.from(column - (p - 1)));
    kernel.anchorAt(at + p - 1);
    kernel.suffixes(at, p, suffixes);
    noPrefix(column);  // the window that ends with its block is the block's longest suffix
  }

  void firstWindow() const noexcept {
    kernel.load(r.first, r.period, prefix);
    kernel.anchorAt(r.first + r.period - 1);
    kernel.suffixes(r.first, r.period, suffix);
    noPrefix(0);
    kernel.finish(r.first + r.period - 1, 1, suffix, prefix);
  }

  void shortBlocks() const noexcept {
    const int p = r.period;
    for (int at = r.first + p; at < r.end;) {
      const int items = std::min(stretch, r.end - at);
      kernel.load(at, items, prefix);
      int b = 0;
      for (; b + p <= items; b += p) takeBlock(at + b, b + p - 1, suffix.from(p + b));
      kernel.prefixes(at + b, items - b, prefix.from(b));
      kernel.finish(at, items, suffix.from(1), prefix);
      if (r.end - at <= stretch) break;
      at += stretch;
      for (int row = 0; row < Kernel::kSuffixRows; ++row)
        std::copy(suffix[row] + stretch, suffix[row] + stretch + p, suffix[row]);
    }
  }

  // One block at a time; the two halves of the suffix rows take turns.
  void longBlocks() const noexcept {
    const int p = r.period;
    Rows last = suffix, next = suffix.from(p);
    for (int at = r.first + p; at < r.end;) {
      const int items = std::min(p, r.end - at);
      kernel.load(at, items, prefix);
      if (items < p) {
        kernel.prefixes(at, items, prefix);
        kernel.finish(at, items, last.from(1), prefix);
        break;
      }
      takeBlock(at, p - 1, next);
      kernel.finish(at, p - 1, last.from(1), prefix);
      kernel.finish(at + p - 1, 1, next, prefix.from(p - 1));
      if (r.end - at == p) break;
      at += p;
      std::swap(last, next);
    }
  }
};

// Slides a kernel, which gives
//   kSuffixRows, kPrefixRows, kNone   how many rows it keeps, and what the prefix rows of no items hold
//   load(i, n, prefix)                the calls that follow are about items i .. i + n - 1
//   anchorAt(i)                       item i ends a block: the results that follow may be relative to it
//   suffixes(i, n, rows)              results over the last 1 .. n items of the block i .. i + n - 1
//   prefixes(i, n, rows)              results over the first 1 .. n items after the anchor, i being next
//   finish(i, n, suffix, prefix)      writes results i .. i + n - 1 out of both columns of each window
//   finishCut(i, n, prefix)           writes the results of the windows that begin at i
// A block's last item becomes the anchor before its suffixes are taken. Results may overwrite the input:
// what later windows need of it has been taken before.
template <typename Kernel>
int slide(Kernel kernel, const Range& r) noexcept {
  const int count = itemsOf(r), p = r.period;
  if (count == 0) return QV_OK;
  const bool whole = count >= p;
  const int stretch = !whole ? count : std::min(p < kStretch ? kStretch / p * p : p, count / p * p);
  const int kept = whole ? p + stretch : 0;
  memory::Buffer<double> scratch(static_cast<std::size_t>(kept) * Kernel::kSuffixRows +
                                 static_cast<std::size_t>(stretch) * Kernel::kPrefixRows);
  if (!scratch.ok()) return QV_MALLOC;
  const Rows suffix{scratch.data(), kept};
  const Rows prefix{scratch.data() + std::ptrdiff_t{kept} * Kernel::kSuffixRows, stretch};

  const Walk<Kernel> walk{kernel, r, stretch, suffix, prefix};
  if (whole) {
    walk.firstWindow();
    if (p < kStretch)
      walk.shortBlocks();
    else
      walk.longBlocks();
  }
  if (r.cut && p > 1) {
    const int items = std::min(p - 1, count);
    kernel.load(r.first, items, prefix);
    kernel.anchorAt(r.first);
    kernel.prefixes(r.first, items, prefix);
    kernel.finishCut(r.first, items, prefix);
  }
  return QV_OK;
}

// The running results of an operation of(earlier, later) that starts at Operation::kNone, from the last
// item to the first and from the first to the last. Long runs are taken four items at a time, so that
// only one of four operations has to wait for the one before it. item(j) is item j; take(j, result)
// receives the results.
inline constexpr int kLongRun = 15;

template <typename Operation, typename Item, typename Take>
void runBackwards(int n, Item item, Take take) noexcept {
  double run = Operation::kNone;
  int j = n - 1;
  if (n >= kLongRun) {
    for (; j >= 3; j -= 4) {
      const double one = item(j), two = Operation::of(item(j - 1), one);
      const double three = Operation::of(item(j - 2), two);
      const double four = Operation::of(Operation::of(item(j - 3), item(j - 2)), two);
      take(j, Operation::of(one, run));
      take(j - 1, Operation::of(two, run));
      take(j - 2, Operation::of(three, run));
      run = Operation::of(four, run);
      take(j - 3, run);
    }
  }
  for (; j >= 0; --j) {
    run = Operation::of(item(j), run);
    take(j, run);
  }
}

template <typename Operation, typename Item, typename Take>
void runForwards(int n, Item item, Take take) noexcept {
  double run = Operation::kNone;
  int j = 0;
  if (n >= kLongRun) {
    for (; j + 4 <= n; j += 4) {
      const double one = item(j), two = Operation::of(one, item(j + 1));
      const double three = Operation::of(two, item(j + 2));
      const double four = Operation::of(two, Operation::of(item(j + 2), item(j + 3)));
      take(j, Operation::of(run, one));
      take(j + 1, Operation::of(run, two));
      take(j + 2, Operation::of(run, three));
      run = Operation::of(run, four);
      take(j + 3, run);
    }
  }
  for (; j < n; ++j) {
    run = Operation::of(run, item(j));
    take(j, run);
  }
}

}  // namespace qv::window
