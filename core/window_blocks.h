// How every kernel walks its series: block by block, each full block with the windows that begin in it.
#pragma once

#include <algorithm>
#include <cstddef>

#include "core/memory.h"
#include "core/window.h"
#include "qvlib60/abi.h"

namespace qv::window {

// The items of the range that can take part; 0 when there are none or the period is no period.
inline int itemsOf(const Range& r) noexcept {
  return r.first >= 0 && r.end > r.first && r.period > 0 ? r.end - r.first : 0;
}

// Running results of one block, `perItem` for each of its items.
inline memory::Buffer<double> scratchFor(const Range& r, int perItem = 1) noexcept {
  return memory::Buffer<double>(static_cast<std::size_t>(std::min(r.period, itemsOf(r))) *
                                static_cast<std::size_t>(perItem));
}

// Calls windowsFrom(left, results) for each full block, `left` being its first item: window j < results
// begins at left + j, ends at left + period - 1 + j, and thus covers a suffix of this block and the first
// j items of the next. The last block comes first, so that results may overwrite the input: no later call
// reads an item at or after the ends of its windows. Where the range is cut, cutWindows(results) follows:
// window j < results covers the items first .. first + j.
template <typename WindowsFrom, typename CutWindows>
void forEachBlock(const Range& r, WindowsFrom windowsFrom, CutWindows cutWindows) noexcept {
  const int count = itemsOf(r);
  if (count == 0) return;
  for (int b = count / r.period - 1; b >= 0; --b) {
    const int left = r.first + b * r.period;
    windowsFrom(left, std::min(r.period, r.end - (left + r.period) + 1));
  }
  if (r.cut) cutWindows(std::min(r.period - 1, count));
}

}  // namespace qv::window
