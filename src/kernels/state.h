// The state of stages and chains, member by member.
//
// What changes while a stage runs it lists in one line, and holds to for everything that is done with state:
//
//   auto state() noexcept { return std::tie(window_, before_, begin_); }
//
// Members are numbers, truth values, pairs, arrays, variants and other stages. With others a stage lists its
// state to a visitor:
//
//   template <typename V>
//   void fields(V& v) noexcept { v(begun_); v.within(place_, 0, period_ - 1); v.buffer(kept_, held_); }
//
// Integers come with the range that keeps the stage inside its memory, buffers with the items that count.
// What must hold of members together is v.require(held_ >= passed). What can be made again out of the others
// is left to restored(), which says whether there was memory for it; its buffers are v.scratch. Parameters,
// and what is made of them, are left out: state is only ever given to a chain that was opened with the same.
//
// A stage that takes memory as its items come has reserve(count): room for so many more of them. Whoever
// reserves before every piece loses nothing when memory runs out.
#pragma once

#include <bit>
#include <cstdint>
#include <tuple>
#include <variant>

#include "core/memory.h"
#include "kernels/lanes.h"

namespace qv {

template <typename Self>
class Fields {
 public:
  template <typename... Parts>
  QV_INLINE void operator()(Parts&... parts) noexcept {
    (take(parts), ...);
  }
  template <typename T>
  void buffer(memory::Buffer<T>& items, std::size_t count) noexcept {
    if (!self().room(items, count)) return;
    for (std::size_t k = 0; k < count; ++k) take(items[k]);
  }
  template <typename T>
  void buffer(memory::Buffer<T>& items, int count) noexcept {
    buffer(items, static_cast<std::size_t>(count));
  }
  template <typename T>
  void scratch(memory::Buffer<T>&, int) noexcept {}
  void require(bool) noexcept {}

 private:
  Self& self() noexcept { return static_cast<Self&>(*this); }
  QV_INLINE void take(double& x) noexcept { self().number(x); }
  QV_INLINE void take(bool& is) noexcept { self().flag(is); }
  QV_INLINE void take(Two& pair) noexcept {
    double first = pair[0], second = pair[1];
    self().number(first);
    self().number(second);
    pair = Two{first, second};
  }
  template <typename T, std::size_t kCount>
  QV_INLINE void take(T (&items)[kCount]) noexcept {
    for (T& item : items) take(item);
  }
  template <typename T, std::size_t kCount>
  QV_INLINE void take(std::array<T, kCount>& items) noexcept {
    for (T& item : items) take(item);
  }
  template <typename... Any>
  QV_INLINE void take(std::variant<Any...>& any) noexcept {
    std::visit([this](auto& one) { this->take(one); }, any);
  }
  template <typename Stage>
  requires std::is_class_v<Stage> QV_INLINE void take(Stage& stage) noexcept {
    if constexpr (!std::is_empty_v<Stage>) {
      if constexpr (requires { stage.state(); })
        std::apply([this](auto&... parts) QV_LAMBDA { (*this)(parts...); }, stage.state());
      else
        stage.fields(self());
      self().stage(stage);
    }
  }
};

// Room for `count` more items in every stage.
class Reserve : public Fields<Reserve> {
 public:
  explicit Reserve(int count) noexcept : count_(count) {}
  bool ok() const noexcept { return ok_; }

  QV_INLINE void number(double&) noexcept {}
  QV_INLINE void flag(bool&) noexcept {}
  template <typename Integer>
  QV_INLINE void within(Integer&, std::int64_t, std::int64_t) noexcept {}
  template <typename T>
  QV_INLINE bool room(memory::Buffer<T>&, std::size_t) noexcept {
    return false;
  }
  template <typename Stage>
  QV_INLINE void stage(Stage& stage) noexcept {
    if constexpr (requires { stage.reserve(count_); }) ok_ = stage.reserve(count_) && ok_;
  }

 private:
  int count_;
  bool ok_ = true;
};

// Whether a copy has all its memory.
class IsWhole : public Fields<IsWhole> {
 public:
  bool ok() const noexcept { return ok_; }

  void number(double&) noexcept {}
  void flag(bool&) noexcept {}
  template <typename Integer>
  void within(Integer&, std::int64_t, std::int64_t) noexcept {}
  template <typename T>
  bool room(memory::Buffer<T>& items, std::size_t count) noexcept {
    ok_ = ok_ && items.count() >= count;
    return false;
  }
  template <typename T>
  void scratch(memory::Buffer<T>& items, int count) noexcept {
    room(items, static_cast<std::size_t>(count));
  }
  template <typename Stage>
  void stage(Stage&) noexcept {}

 private:
  bool ok_ = true;
};

// How many numbers the state has.
class Measure : public Fields<Measure> {
 public:
  std::size_t numbers() const noexcept { return numbers_; }

  void number(double&) noexcept { ++numbers_; }
  void flag(bool&) noexcept { ++numbers_; }
  template <typename Integer>
  void within(Integer&, std::int64_t, std::int64_t) noexcept {
    ++numbers_;
  }
  template <typename T>
  bool room(memory::Buffer<T>&, std::size_t count) noexcept {
    numbers_ += count;
    return false;
  }
  template <typename Stage>
  void stage(Stage&) noexcept {}

 private:
  std::size_t numbers_ = 0;
};

// Bytes that are the same on every platform: fixed widths, the lowest byte first.
class Bytes {
 public:
  bool ok() const noexcept { return ok_; }
  std::size_t size() const noexcept { return size_; }
  const unsigned char* data() const noexcept { return bytes_.data(); }

  // One at least.
  void raw(const void* from, std::size_t count) noexcept {
    ok_ = ok_ && bytes_.grow(size_ + count);
    if (!ok_) return;
    std::memcpy(bytes_.data() + size_, from, count);
    size_ += count;
  }
  template <typename Word>
  void word(Word value) noexcept {
    unsigned char bytes[sizeof(Word)];
    for (unsigned k = 0; k < sizeof(Word); ++k) bytes[k] = static_cast<unsigned char>(value >> 8 * k);
    raw(bytes, sizeof bytes);
  }
  void integer(int value) noexcept { word(static_cast<std::uint32_t>(value)); }
  void number(double value) noexcept { word(std::bit_cast<std::uint64_t>(value)); }

 private:
  memory::Buffer<unsigned char> bytes_;
  std::size_t size_ = 0;
  bool ok_ = true;
};

class Save : public Fields<Save> {
 public:
  explicit Save(Bytes& to) noexcept : to_(to) {}

  void number(double& x) noexcept { to_.number(x); }
  void flag(bool& is) noexcept { to_.word(static_cast<std::uint8_t>(is)); }
  template <typename Integer>
  void within(Integer& value, std::int64_t, std::int64_t) noexcept {
    to_.integer(static_cast<int>(value));
  }
  template <typename T>
  bool room(memory::Buffer<T>&, std::size_t) noexcept {
    return to_.ok();
  }
  template <typename Stage>
  void stage(Stage&) noexcept {}

 private:
  Bytes& to_;
};

// What was saved, read with as much mistrust as a stranger's file deserves. Reading beyond the end gives
// zeros and is remembered.
class Reader {
 public:
  Reader(const unsigned char* bytes, std::size_t size) noexcept : at_(bytes), left_(size) {}
  bool ok() const noexcept { return ok_; }
  std::size_t left() const noexcept { return left_; }
  void refuse() noexcept { ok_ = false; }

  // The next bytes; null where there are not as many.
  const unsigned char* raw(std::size_t count) noexcept {
    ok_ = ok_ && count <= left_;
    if (!ok_) return nullptr;
    const unsigned char* bytes = at_;
    at_ += count;
    left_ -= count;
    return bytes;
  }
  template <typename Word>
  Word word() noexcept {
    const unsigned char* bytes = raw(sizeof(Word));
    Word value = 0;
    for (unsigned k = 0; bytes && k < sizeof(Word); ++k)
      value = static_cast<Word>(value | static_cast<Word>(bytes[k]) << 8 * k);
    return value;
  }
  int integer() noexcept { return static_cast<int>(word<std::uint32_t>()); }
  // One out of a range.
  int integer(std::int64_t low, std::int64_t high) noexcept {
    const int value = integer();
    ok_ = ok_ && value >= low && value <= high;
    return ok_ ? value : 0;
  }
  double number() noexcept { return std::bit_cast<double>(word<std::uint64_t>()); }

 private:
  const unsigned char* at_;
  std::size_t left_;
  bool ok_ = true;
};

class Load : public Fields<Load> {
 public:
  explicit Load(Reader& from) noexcept : from_(from) {}
  bool hasMemory() const noexcept { return hasMemory_; }

  void number(double& x) noexcept { x = from_.number(); }
  void flag(bool& is) noexcept {
    const auto byte = from_.word<std::uint8_t>();
    if (byte > 1) from_.refuse();
    is = byte == 1;
  }
  template <typename Integer>
  void within(Integer& value, std::int64_t low, std::int64_t high) noexcept {
    const int read = from_.integer(low, high);
    if (from_.ok()) value = read;
  }
  // An item takes a byte at least: a block never asks for much more memory than it has itself.
  template <typename T>
  bool room(memory::Buffer<T>& items, std::size_t count) noexcept {
    if (count > from_.left()) from_.refuse();
    if (!from_.ok() || !hasMemory_) return false;
    hasMemory_ = items.grow(count);
    return hasMemory_;
  }
  void require(bool is) noexcept {
    if (!is) from_.refuse();
  }
  template <typename Stage>
  void stage(Stage& stage) noexcept {
    if constexpr (requires { stage.restored(); })
      if (from_.ok() && hasMemory_) hasMemory_ = stage.restored();
  }

 private:
  Reader& from_;
  bool hasMemory_ = true;
};

}  // namespace qv
