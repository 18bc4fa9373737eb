#pragma once

#include <iterator>

#include "qvlib60/core.h"

namespace qv {

// The series of a bar set by number: 0 date .. 6 open interest.
inline constexpr QvArray QvBars::*kSeriesMembers[] = {&QvBars::date,        &QvBars::open,  &QvBars::high,
                                                      &QvBars::low,         &QvBars::close, &QvBars::volume,
                                                      &QvBars::openInterest};
inline constexpr int kSeriesCount = static_cast<int>(std::size(kSeriesMembers));
inline QvArray& seriesOf(QvBars& b, int i) noexcept {
  return b.*kSeriesMembers[i];
}
inline const QvArray& seriesOf(const QvBars& b, int i) noexcept {
  return b.*kSeriesMembers[i];
}

}  // namespace qv
