// The memory of series and bar sets, single items and first-valid bookkeeping.
#include <algorithm>
#include <atomic>
#include <cstring>

#include "core/calculation.h"
#include "core/memory.h"
#include "qvlib60/core.h"

namespace {

using qv::kSeriesCount;
using qv::seriesOf;

constexpr int kLargestCount = 0x40000000;

static_assert(sizeof(QvArray) == (sizeof(void*) == 8 ? 24 : 16));
static_assert(sizeof(QvBars) == (sizeof(void*) == 8 ? 576 : 520));

std::atomic<int> maxFirstValid{0};

void clear(QvArray& a) noexcept {
  a = QvArray{};
}
void clear(QvBars& b) noexcept {
  std::memset(&b, 0, sizeof b);
}

double* zeroedItems(int n) noexcept {
  if (n < 0) return nullptr;
  return static_cast<double*>(qv::memory::allocateZeroed(static_cast<std::size_t>(n), sizeof(double)));
}

int enlarge(QvArray& a, int n) noexcept {
  void* block = qv::memory::resize(a.data, static_cast<std::size_t>(n), sizeof(double));
  if (!block) return QV_MALLOC;
  a.data = static_cast<double*>(block);
  a.size = a.capacity = n;
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvAllocArray(QvArray* a, int n) noexcept {
  if (!a) return QV_INVALID_PARM;
  n = std::min(n, kLargestCount);
  clear(*a);
  a->data = zeroedItems(n);
  if (!a->data) return QV_MALLOC;
  a->size = a->capacity = n;
  return QV_OK;
}

int QVCALL qvReAllocArray(QvArray* a, int n) noexcept {
  if (!a) return QV_INVALID_PARM;
  if (!a->data) return qvAllocArray(a, n);
  return a->capacity < n ? enlarge(*a, n) : qvReSizeArray(a, n);
}

int QVCALL qvReSizeArray(QvArray* a, int n) noexcept {
  if (!a) return QV_INVALID_PARM;
  if (n > a->capacity) return QV_MALLOC;
  a->size = n;
  return QV_OK;
}

int QVCALL qvCopyArray(const QvArray* src, QvArray* dst) noexcept {
  if (!src || !dst) return QV_INVALID_PARM;
  if (!dst->data)
    if (const int status = qvAllocArray(dst, src->capacity)) return status;
  dst->size = std::min(src->size, dst->capacity);
  dst->firstValid = src->firstValid;
  const int items = std::min(src->capacity, dst->capacity);
  if (src->data && items > 0)
    std::memmove(dst->data, src->data, static_cast<std::size_t>(items) * sizeof(double));
  return QV_OK;
}

void QVCALL qvFreeArray(QvArray* a) noexcept {
  if (!a) return;
  qv::memory::release(a->data);
  clear(*a);
}

int QVCALL qvAllocBars(QvBars* b, int n) noexcept {
  if (!b) return QV_INVALID_PARM;
  n = std::min(n, kLargestCount);
  for (int k = 0; k < kSeriesCount; ++k) {
    if (qvAllocArray(&seriesOf(*b, k), n) == QV_OK) continue;
    while (k-- > 0) qvFreeArray(&seriesOf(*b, k));
    clear(*b);
    return QV_MALLOC;
  }
  b->barsize = b->datasize = n;
  return QV_OK;
}

int QVCALL qvReAllocBars(QvBars* b, int n) noexcept {
  if (!b) return QV_INVALID_PARM;
  if (!b->date.data) return qvAllocBars(b, n);
  if (b->datasize >= n) return qvReSizeBars(b, n);
  for (int k = 0; k < kSeriesCount; ++k)
    if (const int status = enlarge(seriesOf(*b, k), n)) return status;
  b->barsize = b->datasize = n;
  return QV_OK;
}

int QVCALL qvReSizeBars(QvBars* b, int n) noexcept {
  if (!b) return QV_INVALID_PARM;
  if (n > b->datasize) return QV_MALLOC;
  b->barsize = n;
  // A series with a shorter block, which is the caller's, stays within it.
  for (int k = 0; k < kSeriesCount; ++k) {
    QvArray& a = seriesOf(*b, k);
    a.size = a.data ? std::min(n, +a.capacity) : n;
  }
  return QV_OK;
}

int QVCALL qvCopyBars(const QvBars* src, QvBars* dst) noexcept {
  if (!src || !dst) return QV_INVALID_PARM;
  if (!dst->date.data)
    if (const int status = qvAllocBars(dst, src->datasize)) return status;
  qvCopyBarInfo(src, dst);
  dst->barsize = std::min(src->barsize, dst->datasize);
  for (int k = 0; k < kSeriesCount; ++k)
    if (const int status = qvCopyArray(&seriesOf(*src, k), &seriesOf(*dst, k))) return status;
  return QV_OK;
}

void QVCALL qvCopyBarInfo(const QvBars* src, QvBars* dst) noexcept {
  if (!src || !dst || src == dst) return;
  dst->reccnt = src->reccnt;
  std::memcpy(dst->path, src->path, sizeof dst->path);
  std::memcpy(dst->name, src->name, sizeof dst->name);
  std::memcpy(dst->description, src->description, sizeof dst->description);
  std::memcpy(dst->symbol, src->symbol, sizeof dst->symbol);
  std::memcpy(dst->cusip, src->cusip, sizeof dst->cusip);
  dst->begindate = src->begindate;
  dst->enddate = src->enddate;
  dst->filetype = src->filetype;
  dst->frequency = src->frequency;
  dst->datatype = src->datatype;
  dst->optiontype = src->optiontype;
  dst->deliverydate = src->deliverydate;
  dst->strikeprice = src->strikeprice;
}

void QVCALL qvFreeBars(QvBars* b) noexcept {
  if (!b) return;
  for (int k = 0; k < kSeriesCount; ++k) qv::memory::release(seriesOf(*b, k).data);
  clear(*b);
}

double QVCALL qvGetArrayItem(const QvArray* a, int i) noexcept {
  return a && qv::hasItem(*a, i) ? a->data[i] : 0.0;
}

void QVCALL qvSetArrayItem(QvArray* a, int i, double v) noexcept {
  if (a && qv::hasItem(*a, i)) a->data[i] = v;
}

int QVCALL qvSetFirstValid(QvArray* a, int n) noexcept {
  if (!a) return QV_INVALID_PARM;
  a->firstValid = n;
  int highest = maxFirstValid.load(std::memory_order_relaxed);
  while (n > highest && !maxFirstValid.compare_exchange_weak(highest, n, std::memory_order_relaxed)) {
  }
  return std::max(n, highest);
}

int QVCALL qvSetMaxFirstValid(int n) noexcept {
  maxFirstValid.store(n, std::memory_order_relaxed);
  return n;
}

int QVCALL qvGetMaxFirstValid(void) noexcept {
  return maxFirstValid.load(std::memory_order_relaxed);
}

}  // extern "C"
