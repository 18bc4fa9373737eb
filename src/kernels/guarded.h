// Quotients that have a stand-in where they are not defined, as vector code.
#pragma once

#include <algorithm>

namespace qv {

// out[i] = value(i) where defined(i), else `otherwise`, for i = from .. end - 1. Values of some bars are
// made first and chosen from then: a choice beside a division becomes a branch around it, and the loop
// scalar code. value and defined may read out[i].
template <typename Value, typename Defined>
void fillGuarded(int from, int end, double* out, Value value, Defined defined, double otherwise) noexcept {
  constexpr int kMany = 128;
  double values[kMany];
  for (int i = from; i < end; i += kMany) {
    const int count = std::min(kMany, end - i);
    for (int k = 0; k < count; ++k) values[k] = value(i + k);
    for (int k = 0; k < count; ++k) out[i + k] = defined(i + k) ? values[k] : otherwise;
  }
}

}  // namespace qv
