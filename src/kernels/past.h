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
    const int held = std::min(most_, held_);
    failed_ = !ok() || !items_.grow(static_cast<std::size_t>(held) + static_cast<std::size_t>(count));
    if (failed_) return x;
    double* first = items_.data();
    std::memmove(first, first + (held_ - held), static_cast<std::size_t>(held) * sizeof(double));
    std::copy_n(x, count, first + held);
    held_ = held + count;
    return first + held;
  }

 private:
  int most_, held_ = 0;  // held: with the last piece
  bool failed_ = false;
  memory::Buffer<double> items_;
};

}  // namespace qv
