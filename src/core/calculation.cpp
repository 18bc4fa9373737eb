#include "core/calculation.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>

#include "core/memory.h"

namespace qv {

namespace {

// Lowers n and cap to the set's when all the series that a calculation reads are there.
bool takeBars(const BarInput& in, int& n, int& cap) noexcept {
  if (!hasSeries(in)) return false;
  n = std::min(n, in.bars->barsize);
  cap = std::min(cap, in.bars->datasize);
  return true;
}

bool takeArray(const QvArray* a, int& n, int& cap) noexcept {
  if (!a || !a->data) return false;
  n = std::min(n, a->size);
  cap = std::min(cap, a->capacity);
  return true;
}

template <typename T>
std::span<const T> spanOf(std::initializer_list<T> items) noexcept {
  return {items.begin(), items.size()};
}

bool sharesInput(const QvArray* out, std::span<const BarInput> bars,
                 std::span<const QvArray* const> inputs) noexcept {
  for (const BarInput& b : bars)
    if (sharesSeries(*out, *b.bars)) return true;
  for (const QvArray* a : inputs)
    if (a->data == out->data) return true;
  return false;
}

// The checks of the entry step: the inputs' common count or -1; `cap` becomes their smallest capacity.
int checkedCount(std::span<const BarInput> bars, std::span<const QvArray* const> inputs,
                 std::span<QvArray* const> outputs, int& cap) noexcept {
  int n = INT_MAX;
  cap = INT_MAX;
  for (const BarInput& b : bars)
    if (!takeBars(b, n, cap)) return QV_INVALID_PARM;
  for (const QvArray* a : inputs)
    if (!takeArray(a, n, cap)) return QV_INVALID_PARM;
  if (n < 1 || n == INT_MAX) return QV_INVALID_PARM;
  for (const QvArray* out : outputs) {
    if (!out) return QV_INVALID_PARM;
    if (out->data && sharesInput(out, bars, inputs)) return QV_INVALID_PARM;
  }
  return n;
}

void clear(QvArray* out, int from, int to) noexcept {
  for (int i = from; i < to; ++i) out->data[i] = 0.0;
}

// Allocates or resizes a checked output; what it held is cleared but for the items from .. n - 1, which
// the calculation overwrites. Returns its new size or -3.
int takeOutput(QvArray* out, int n, int cap, int from) noexcept {
  if (!out->data) {
    if (const int status = qvAllocArray(out, cap)) return status;
  } else {
    clear(out, 0, std::min(from, out->capacity));
    clear(out, std::max(from, n), out->capacity);
  }
  return out->size = std::min(n, out->capacity);
}

// The same for all outputs: the count that fits into each of them, or -3.
int takeOutputs(std::span<QvArray* const> outputs, int n, int cap, int from) noexcept {
  for (QvArray* out : outputs) {
    const int size = takeOutput(out, n, cap, from);
    if (size < 0) return size;
    n = std::min(n, size);
  }
  return n;
}

// True when each of the series that are read holds at least n items.
bool haveRoom(const BarInput& in, int n) noexcept {
  for (unsigned left = in.series; left; left &= left - 1) {
    const QvArray& a = seriesOf(*in.bars, std::countr_zero(left));
    if (!a.data || a.capacity < n) return false;
  }
  return true;
}

}  // namespace

bool hasSeries(const BarInput& in) noexcept {
  return in.bars && in.bars->date.data && haveRoom(in, in.bars->barsize);
}

bool hasBar(const BarInput& in, int i) noexcept {
  return in.bars && i >= 0 && i < in.bars->barsize && haveRoom(in, i + 1);
}

bool sharesSeries(const QvArray& out, const QvBars& bars) noexcept {
  if (!out.data) return false;
  for (int k = 1; k < kSeriesCount; ++k)  // the date series may serve as an output
    if (seriesOf(bars, k).data == out.data) return true;
  return false;
}

int prepareOutputs(std::initializer_list<BarInput> bars, std::initializer_list<const QvArray*> inputs,
                   std::initializer_list<QvArray*> outputs) noexcept {
  int cap;
  const int n = checkedCount(spanOf(bars), spanOf(inputs), spanOf(outputs), cap);
  return n < 1 ? n : takeOutputs(spanOf(outputs), n, cap, INT_MAX);
}

int refuseMoreThan(int items, std::initializer_list<BarInput> bars,
                   std::initializer_list<const QvArray*> inputs,
                   std::initializer_list<QvArray*> outputs) noexcept {
  int cap;
  return checkedCount(spanOf(bars), spanOf(inputs), spanOf(outputs), cap) > items
             ? int{QV_INVALID_PARM}
             : prepareOutputs(bars, inputs, outputs);
}

int prepareOutputInPlace(const QvArray* in, QvArray* out) noexcept {
  if (in && out && in->data && sharesBlock(in, out)) return in->size < 1 ? int{QV_INVALID_PARM} : in->size;
  return prepareOutputs({}, {in}, {out});
}

int prepareOverwritten(std::span<const BarInput> bars, std::span<const QvArray* const> inputs,
                       std::span<QvArray* const> outputs, int start, int* first,
                       std::size_t starts) noexcept {
  int cap;
  const int n = checkedCount(bars, inputs, outputs, cap);
  if (n < 1) return n;
  *first = firstValidOf(start, inputs.first(starts));
  return takeOutputs(outputs, n, cap, *first);
}

int prepareOverwritten(const QvArray* in, QvArray* out, int start, int* first) noexcept {
  if (!in || !out || !in->data || !sharesBlock(in, out))
    return prepareOverwritten({}, {&in, 1}, {&out, 1}, start, first, 1);
  *first = firstValidOf(start, {in});
  return prepareOutputInPlace(in, out);
}

int firstValidOf(int start, std::span<const QvArray* const> arrays) noexcept {
  int s = std::max(start, 0);
  for (const QvArray* a : arrays) s = std::max(s, a->firstValid);
  return s;
}

int allocArrays(int n, std::initializer_list<QvArray*> arrays) noexcept {
  for (auto it = arrays.begin(); it != arrays.end(); ++it) {
    if (const int status = qvAllocArray(*it, n)) {
      while (it != arrays.begin()) qvFreeArray(*--it);
      return status;
    }
  }
  return QV_OK;
}

}  // namespace qv
