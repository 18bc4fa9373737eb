#include "kernels/blocks.h"

namespace qv {

BlockMemory::BlockMemory(int ofPeriod, int ofRows, int ofInputs, double ofNothing) noexcept
    : period(ofPeriod),
      length(ofPeriod & ~1),
      place(length),
      missing(ofPeriod - 1),
      rows(ofRows),
      inputs(ofInputs),
      none(ofNothing) {}

bool BlockMemory::makeRoom(int items) noexcept {
  const int more = room < length / 2 ? std::max(2 * room, items) : length;
  memory::Buffer<double> grown(sizeFor(more));
  failed = !grown.ok();
  if (failed) return false;
  const std::ptrdiff_t stride = std::ptrdiff_t{more} + kMore;
  for (int s = 0; s < inputs && room > 0; ++s) std::copy_n(kept(s), room, grown.data() + (rows + s) * stride);
  std::fill_n(grown.data(), rows * stride, none);
  scratch = std::move(grown);
  room = more;
  return true;
}

}  // namespace qv
