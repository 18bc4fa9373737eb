// The shape that every calculation shares: the entry step, the first index, temporaries that free
// themselves.
#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <span>

#include "core/bar_series.h"
#include "core/numbers.h"
#include "qvlib60/core.h"

namespace qv {

// Which series of a bar set a calculation reads.
enum BarSeries : unsigned {
  kNone = 0,
  kDate = 1u << 0,
  kOpen = 1u << 1,
  kHigh = 1u << 2,
  kLow = 1u << 3,
  kClose = 1u << 4,
  kVolume = 1u << 5,
  kOpenInterest = 1u << 6,
  kHighLow = kHigh | kLow,
  kHighLowClose = kHigh | kLow | kClose,
  kPrices = kOpen | kHigh | kLow | kClose,
};

struct BarInput {
  const QvBars* bars;
  unsigned series;  // the BarSeries that are read: a missing block there is missing data
};

// True when item i is there, whatever the index.
inline bool hasItem(const QvArray& a, int i) noexcept {
  return a.data && i >= 0 && i < a.size;
}

// Entry step: checks the arguments, clears or allocates the outputs, sets their sizes. Returns the
// working count (>= 1), -1 for missing data, no usable length or an output that shares an input's
// block (the date series of a bar set excepted), or -3. Nothing is written before the checks pass.
int prepareOutputs(std::initializer_list<BarInput> bars, std::initializer_list<const QvArray*> inputs,
                   std::initializer_list<QvArray*> outputs) noexcept;
// For a parameter whose error shows in more than so many items only: -1 for these, with nothing written; else
// the same.
int refuseMoreThan(int items, std::initializer_list<BarInput> bars,
                   std::initializer_list<const QvArray*> inputs,
                   std::initializer_list<QvArray*> outputs) noexcept;

// Parts of that check, for a bar set that does not take part in the working count: true when the set
// holds its dates and the series that are read, and when an output shares the block of a series (the
// dates excepted).
bool hasSeries(const BarInput& in) noexcept;
// The same for one bar of the set, whatever the index.
bool hasBar(const BarInput& in, int i) noexcept;
bool sharesSeries(const QvArray& out, const QvBars& bars) noexcept;

// The same for a calculation of one series that may run in place: when both share their block the
// output is left alone and the count is the input's size.
int prepareOutputInPlace(const QvArray* in, QvArray* out) noexcept;

// The same for a calculation that writes every item from *first on, which becomes firstValidOf(start,
// inputs). Only the other items are cleared: to clear a long series that is overwritten at once takes a third
// of the time of a moving sum. The second form is that of one series where the output may be the input.
int prepareOverwritten(std::span<const BarInput> bars, std::span<const QvArray* const> inputs,
                       std::span<QvArray* const> outputs, int start, int* first, std::size_t starts) noexcept;
int prepareOverwritten(const QvArray* in, QvArray* out, int start, int* first) noexcept;

inline bool sharesBlock(const QvArray* a, const QvArray* b) noexcept {
  return a->data == b->data;
}

// The largest of start (below 0 counts as 0) and the series' first valid indices.
int firstValidOf(int start, std::span<const QvArray* const> arrays) noexcept;
inline int firstValidOf(int start, std::initializer_list<const QvArray*> arrays) noexcept {
  return firstValidOf(start, std::span(arrays.begin(), arrays.size()));
}

// How many items behind the start a series' values begin, for the few leads that are counted from the start
// alone.
inline int itemsBehind(const QvArray* in, int start) noexcept {
  return in ? std::max(0, saturatingSum(in->firstValid, -std::max(start, 0))) : 0;
}

// Allocates n zeroed items in each array; at the first failure frees those already taken and
// returns -3.
int allocArrays(int n, std::initializer_list<QvArray*> arrays) noexcept;

// True for an output that owns a block without room: the calculation that prepared it wrote nothing and
// answered 0, and so does one that would go on with it.
inline bool hasNoRoom(const QvArray* out) noexcept {
  return out->size < 1;
}

// A work series that is freed when the calculation returns, on every path.
struct Temporary : QvArray {
  Temporary() noexcept : QvArray() {}
  ~Temporary() { qvFreeArray(this); }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
};

}  // namespace qv
