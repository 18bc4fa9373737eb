// The items of a piece with those before them side by side, for what looks at each of the last items.
#pragma once

#include <cstring>

#include "kernels/tiles.h"

namespace qv {

class Past {
 public:
  // Keeps so many items before a piece, as soon as there were as many.
  explicit Past(int items) noexcept : most_(items) {}
  bool ok() const noexcept { return !failed_ && (held_ == 0 || items_.ok()); }
  // The piece, which may be up to a tile long, behind the items kept: x[0] is its first, x[-k] stood k items
  // before, for the k up to `items` that have passed.
  const double* with(const double* x, int count) noexcept {
    failed_ = !ok() || !reserve(count);
    if (failed_) return x;
    double* piece = items_.data() + held_;
    std::copy_n(x, count, piece);
    held_ += count;
    return piece;
  }
  // Those that can be read behind the next piece.
  int held() const noexcept { return std::min(most_, held_); }
  // What is too old goes when the room is full, which is as much again.
  bool reserve(int count) noexcept {
    if (static_cast<std::size_t>(held_) + static_cast<std::size_t>(count) <= items_.count()) return true;
    forgetOld();
    const int most = saturatingSum(held_, std::max(count, held_ < most_ ? 0 : most_));
    return items_.grow(static_cast<std::size_t>(most));
  }
  template <typename V>
  void fields(V& v) noexcept {
    forgetOld();
    v.within(held_, 0, most_);
    v.buffer(items_, held_);
  }

 private:
  void forgetOld() noexcept {
    const int kept = held();
    if (items_.ok() && kept < held_)
      std::memmove(items_.data(), items_.data() + (held_ - kept),
                   static_cast<std::size_t>(kept) * sizeof(double));
    held_ = kept;
  }

  int most_, held_ = 0;  // held: with the last piece
  bool failed_ = false;
  memory::Buffer<double> items_;
};

}  // namespace qv
