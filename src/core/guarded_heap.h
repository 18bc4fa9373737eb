// The heap behind memory.h in the tests. Guard bytes stand around each block and are looked at when it is
// given back; so are the blocks given back, for a while, before their memory is used again: a block released
// twice, a write beyond its ends or after its release ends the program. AddressSanitizer sees all of that by
// itself, reads too, and gets its blocks as they are; so does ThreadSanitizer, from which the lock in here
// would hide races.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QV_PLAIN_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QV_PLAIN_HEAP
#endif
#endif

namespace qv::memory {

// Test switch: a block of more bytes than these is refused like one that the machine does not have; 0: none
// is.
inline std::atomic<std::size_t> largestGiven{0};

namespace guarded {

constexpr std::size_t kGuard = 16;
constexpr unsigned char kGuardByte = 0xA5, kReleasedByte = 0xDD;
constexpr std::uint64_t kLive = 0x71766C6976650001u, kReleased = 0x7176646561640001u;

// In the blocks taken and not yet released.
inline std::atomic<std::size_t> liveBytes{0};

struct alignas(16) Head {
  std::uint64_t state;
  std::size_t bytes;
  alignas(16) unsigned char guard[kGuard];  // up to the block
};

[[noreturn]] inline void fail(const char* what, const void* block) noexcept {
  std::fprintf(stderr, "heap: %s: %p\n", what, block);
  std::abort();
}
inline bool allBytes(const unsigned char* p, std::size_t count, unsigned char byte) noexcept {
  for (std::size_t i = 0; i < count; ++i)
    if (p[i] != byte) return false;
  return true;
}
inline unsigned char* itemsOf(Head* h) noexcept {
  return reinterpret_cast<unsigned char*>(h + 1);
}
inline Head* headOf(void* block) noexcept {
  return static_cast<Head*>(block) - 1;
}

inline void* guardBlock(Head* h, std::size_t bytes) noexcept {
  if (!h) return nullptr;
  liveBytes += bytes;
  h->state = kLive;
  h->bytes = bytes;
  std::memset(h->guard, kGuardByte, kGuard);
  std::memset(itemsOf(h) + bytes, kGuardByte, kGuard);
  return h + 1;
}
inline void checkGuards(Head* h, std::uint64_t state) noexcept {
  if (h->state != state) fail(h->state == kReleased ? "released twice" : "no block of this heap", h + 1);
  if (!allBytes(h->guard, kGuard, kGuardByte)) fail("written before its begin", h + 1);
  if (!allBytes(itemsOf(h) + h->bytes, kGuard, kGuardByte)) fail("written beyond its end", h + 1);
}

// The blocks released last, but for large ones.
class Released {
 public:
  Head* exchange(Head* h) noexcept {
    const std::lock_guard<std::mutex> lock(mutex_);
    Head* oldest = blocks_[next_];
    blocks_[next_] = h;
    next_ = (next_ + 1) % kKept;
    return oldest;
  }

 private:
  static constexpr std::size_t kKept = 128;
  std::mutex mutex_;
  Head* blocks_[kKept] = {};
  std::size_t next_ = 0;
};
inline Released released;

inline constexpr std::size_t kOverhead = sizeof(Head) + kGuard;

inline void* take(std::size_t bytes, bool zeroed) noexcept {
  if (bytes > SIZE_MAX - kOverhead) return nullptr;
  return guardBlock(
      static_cast<Head*>(zeroed ? std::calloc(1, bytes + kOverhead) : std::malloc(bytes + kOverhead)), bytes);
}
inline void give(void* block) noexcept {
  if (!block) return;
  Head* h = headOf(block);
  checkGuards(h, kLive);
  liveBytes -= h->bytes;
  h->state = kReleased;
  constexpr std::size_t kLarge = std::size_t{1} << 16;
  if (h->bytes <= kLarge) {
    std::memset(itemsOf(h), kReleasedByte, h->bytes);
    h = released.exchange(h);
    if (!h) return;
    checkGuards(h, kReleased);
    if (!allBytes(itemsOf(h), h->bytes, kReleasedByte)) fail("written after its release", h + 1);
  }
  std::free(h);
}
// Always to another place: who kept a pointer is found out.
inline void* resize(void* block, std::size_t bytes) noexcept {
  void* moved = take(bytes, false);
  if (!moved) return nullptr;
  const std::size_t old = headOf(block)->bytes;
  std::memcpy(moved, block, old < bytes ? old : bytes);
  give(block);
  return moved;
}

}  // namespace guarded

}  // namespace qv::memory
