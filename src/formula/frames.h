// The bar sets that a formula is computed on: the caller's, and those compressed from it.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

struct Frame {
  const QvBars* bars = nullptr;
  QvBars own{};                    // of a compressed context
  std::int32_t* starts = nullptr;  // the first bar of each group, in the parent
  int groups = 0;
  double* blocks = nullptr;  // one for each slot of the context

  int size() const noexcept { return bars->barsize; }
  double* block(int slot) const noexcept {
    return blocks + static_cast<std::size_t>(slot) * static_cast<std::size_t>(size());
  }
};

class Frames {
 public:
  explicit Frames(int count) noexcept : frames_(static_cast<std::size_t>(count)), count_(count) {}
  ~Frames();
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;

  // Compresses the bars of every context and takes its blocks. 0 or -3.
  int build(const QvFormula& f, const QvBars& bars) noexcept;
  Frame& operator[](int context) noexcept { return frames_[static_cast<std::size_t>(context)]; }

 private:
  memory::Buffer<Frame> frames_;
  int count_;
};

// Lays the values of groups back onto the bars of the parent: a group's value is known from the bar after its
// last one on. Returns the first valid index.
int layBack(const Frame& coarse, const QvArray& values, int n, double* out) noexcept;

}  // namespace qv::formula
