#include "core/memory.h"

#include <cstdlib>

#ifdef QV_ALLOCATION_FAULTS
#include <atomic>

#include "core/guarded_heap.h"
#endif

namespace qv::memory {

namespace {

#ifdef QV_ALLOCATION_FAULTS
std::atomic<long> countdown{0};
std::atomic<long> live{0};

bool permitted(std::size_t bytes) noexcept {
  const std::size_t largest = largestGiven.load(std::memory_order_relaxed);
  if (largest != 0 && bytes > largest) return false;
  const long k = countdown.load(std::memory_order_relaxed);
  if (k == 0) return true;
  countdown.store(k - 1, std::memory_order_relaxed);
  return k != 1;
}
void taken() noexcept {
  live.fetch_add(1, std::memory_order_relaxed);
}
void given() noexcept {
  live.fetch_sub(1, std::memory_order_relaxed);
}
#else
constexpr bool permitted(std::size_t) noexcept {
  return true;
}
constexpr void taken() noexcept {}
constexpr void given() noexcept {}
#endif

#if defined(QV_ALLOCATION_FAULTS) && !defined(QV_PLAIN_HEAP)
void* take(std::size_t bytes, bool zeroed) noexcept {
  return guarded::take(bytes, zeroed);
}
void* takeLarger(void* block, std::size_t bytes) noexcept {
  return guarded::resize(block, bytes);
}
void give(void* block) noexcept {
  guarded::give(block);
}
#else
// At least a byte: a block of 0 bytes may be null.
void* take(std::size_t bytes, bool zeroed) noexcept {
  return zeroed ? std::calloc(bytes ? bytes : 1, 1) : std::malloc(bytes ? bytes : 1);
}
void* takeLarger(void* block, std::size_t bytes) noexcept {
  return std::realloc(block, bytes ? bytes : 1);
}
void give(void* block) noexcept {
  std::free(block);
}
#endif

// The largest block that pointer arithmetic can still span.
constexpr std::size_t largestBlock = static_cast<std::size_t>(PTRDIFF_MAX);

bool fits(std::size_t count, std::size_t itemSize) noexcept {
  return itemSize == 0 || count <= largestBlock / itemSize;
}

}  // namespace

void* allocateZeroed(std::size_t count, std::size_t itemSize) noexcept {
  if (!fits(count, itemSize) || !permitted(count * itemSize)) return nullptr;
  void* block = take(count * itemSize, true);
  if (block) taken();
  return block;
}

void* allocate(std::size_t count, std::size_t itemSize) noexcept {
  if (!fits(count, itemSize) || !permitted(count * itemSize)) return nullptr;
  void* block = take(count * itemSize, false);
  if (block) taken();
  return block;
}

void* resize(void* block, std::size_t count, std::size_t itemSize) noexcept {
  if (!block) return allocateZeroed(count, itemSize);
  if (!fits(count, itemSize) || !permitted(count * itemSize)) return nullptr;
  return takeLarger(block, count * itemSize);
}

void release(void* block) noexcept {
  if (block) given();
  give(block);
}

#ifdef QV_ALLOCATION_FAULTS
long failAllocation(long k) noexcept {
  return countdown.exchange(k, std::memory_order_relaxed);
}
long liveBlocks() noexcept {
  return live.load(std::memory_order_relaxed);
}
#endif

}  // namespace qv::memory
