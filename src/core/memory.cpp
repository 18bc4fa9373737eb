#include "core/memory.h"

#include <cstdlib>

#ifdef QV_ALLOCATION_FAULTS
#include <atomic>
#endif

namespace qv::memory {

namespace {

#ifdef QV_ALLOCATION_FAULTS
std::atomic<long> countdown{0};
std::atomic<long> live{0};

bool permitted() noexcept {
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
constexpr bool permitted() noexcept {
  return true;
}
constexpr void taken() noexcept {}
constexpr void given() noexcept {}
#endif

// The largest block that pointer arithmetic can still span.
constexpr std::size_t largestBlock = static_cast<std::size_t>(PTRDIFF_MAX);

bool fits(std::size_t count, std::size_t itemSize) noexcept {
  return itemSize == 0 || count <= largestBlock / itemSize;
}

}  // namespace

void* allocateZeroed(std::size_t count, std::size_t itemSize) noexcept {
  if (!fits(count, itemSize) || !permitted()) return nullptr;
  void* block = std::calloc(count ? count : 1, itemSize ? itemSize : 1);
  if (block) taken();
  return block;
}

void* allocate(std::size_t count, std::size_t itemSize) noexcept {
  if (!fits(count, itemSize) || !permitted()) return nullptr;
  const std::size_t bytes = count * itemSize;
  void* block = std::malloc(bytes ? bytes : 1);
  if (block) taken();
  return block;
}

void* resize(void* block, std::size_t count, std::size_t itemSize) noexcept {
  if (!block) return allocateZeroed(count, itemSize);
  if (!fits(count, itemSize) || !permitted()) return nullptr;
  const std::size_t bytes = count * itemSize;
  return std::realloc(block, bytes ? bytes : 1);
}

void release(void* block) noexcept {
  if (block) given();
  std::free(block);
}

#ifdef QV_ALLOCATION_FAULTS
void failAllocation(long k) noexcept {
  countdown.store(k, std::memory_order_relaxed);
}
long liveBlocks() noexcept {
  return live.load(std::memory_order_relaxed);
}
#endif

}  // namespace qv::memory
