// One bar of a set as a value.
#pragma once

#include "qvlib60/core.h"

namespace qv {

struct Bar {
  double date = 0.0, open = 0.0, high = 0.0, low = 0.0, close = 0.0, volume = 0.0, openInterest = 0.0;
};

// The set has room for bar i in each of its series.
inline void storeBar(QvBars& bars, int i, const Bar& bar) noexcept {
  bars.date.data[i] = bar.date;
  bars.open.data[i] = bar.open;
  bars.high.data[i] = bar.high;
  bars.low.data[i] = bar.low;
  bars.close.data[i] = bar.close;
  bars.volume.data[i] = bar.volume;
  bars.openInterest.data[i] = bar.openInterest;
}

inline Bar barAt(const QvBars& bars, int i) noexcept {
  return {bars.date.data[i],  bars.open.data[i],   bars.high.data[i],        bars.low.data[i],
          bars.close.data[i], bars.volume.data[i], bars.openInterest.data[i]};
}

}  // namespace qv
