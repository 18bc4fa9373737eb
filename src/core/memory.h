// The one door to the heap. Every block that the library takes goes through here, so that a test
// can make the k-th allocation fail and count what was not given back.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "qvlib60/codes.h"

namespace qv::memory {

// Null when the memory is exhausted or count * itemSize does not fit; never null for 0 bytes.
void* allocateZeroed(std::size_t count, std::size_t itemSize) noexcept;
// The same, not cleared: for what is written before it is read.
void* allocate(std::size_t count, std::size_t itemSize) noexcept;
// Keeps the old block when it fails. New bytes are not cleared.
void* resize(void* block, std::size_t count, std::size_t itemSize) noexcept;
void release(void* block) noexcept;

#ifdef QV_ALLOCATION_FAULTS
// Test switch: the k-th allocation from now on fails (0: none). Gives what is left of the last k: 0, it did.
long failAllocation(long k) noexcept;
// Blocks taken and not yet released.
long liveBlocks() noexcept;
#endif

// A zeroed block of plain items that frees itself. Test ok() after construction, also that of a copy.
template <typename T>
class Buffer {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Buffer() noexcept = default;
  explicit Buffer(std::size_t count) noexcept
      : items_(static_cast<T*>(allocateZeroed(count, sizeof(T)))), count_(items_ ? count : 0) {}
  ~Buffer() { release(items_); }
  Buffer(const Buffer& other) noexcept
      : items_(other.items_ ? static_cast<T*>(allocateZeroed(other.count_, sizeof(T))) : nullptr),
        count_(items_ ? other.count_ : 0) {
    if (count_ > 0) std::memcpy(items_, other.items_, count_ * sizeof(T));
  }
  Buffer(Buffer&& other) noexcept
      : items_(std::exchange(other.items_, nullptr)), count_(std::exchange(other.count_, 0)) {}
  Buffer& operator=(Buffer other) noexcept {
    std::swap(items_, other.items_);
    std::swap(count_, other.count_);
    return *this;
  }

  bool ok() const noexcept { return items_ != nullptr; }
  T* data() noexcept { return items_; }
  const T* data() const noexcept { return items_; }
  std::size_t count() const noexcept { return count_; }
  T& operator[](std::size_t i) noexcept { return items_[i]; }
  const T& operator[](std::size_t i) const noexcept { return items_[i]; }

  // Enlarges to at least `count` items, doubling; false leaves the buffer as it was. New items are
  // not cleared.
  bool grow(std::size_t count) noexcept {
    if (count <= count_) return true;
    const std::size_t wanted = std::max(count, 2 * count_);  // no block has more than half of all bytes
    void* block = resize(items_, wanted, sizeof(T));
    if (!block) return false;
    items_ = static_cast<T*>(block);
    count_ = wanted;
    return true;
  }

 private:
  T* items_ = nullptr;
  std::size_t count_ = 0;
};

}  // namespace qv::memory

namespace qv {

// Makes room for record `index` in a heap table of `count` records, growing it by one step; new records
// are zero bytes. 0, or -3 with the old table and count kept.
template <typename Record>
int growTable(Record*& table, int index, std::int32_t& count, int step) noexcept {
  static_assert(std::is_trivially_copyable_v<Record>);
  if (index < count) return QV_OK;
  if (step < 1 || count > INT_MAX - step || index >= INT_MAX / static_cast<int>(sizeof(Record)))
    return QV_MALLOC;
  const auto old = static_cast<std::size_t>(count), enlarged = old + static_cast<std::size_t>(step);
  void* block = memory::resize(table, enlarged, sizeof(Record));
  if (!block) return QV_MALLOC;
  table = static_cast<Record*>(block);
  std::memset(table + old, 0, (enlarged - old) * sizeof(Record));
  count += step;
  return QV_OK;
}

}  // namespace qv
