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
  memory::Buffer<double> grown(static_cast<std::size_t>(more) * static_cast<std::size_t>(rows + inputs));
  failed = !grown.ok();
  if (failed) return false;
  for (int s = 0; s < inputs && room > 0; ++s)
    std::copy_n(kept(s), room, grown.data() + std::ptrdiff_t{rows + s} * more);
  std::fill_n(grown.data(), std::ptrdiff_t{rows} * more, none);
  scratch = std::move(grown);
  room = more;
  return true;
}

}  // namespace qv
