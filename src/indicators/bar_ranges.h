// Sliding extremes of whole bars.
#pragma once

#include "kernels/window.h"
#include "qvlib60/core.h"

namespace qv {

// Lowest and highest of the open, high, low and close over each window of bars, exactly as qvBarStats
// finds them: both start at the close of the window's first bar, and prices of 0.0 never lower the
// minimum. Either output may be null; neither may be a series of the bars. The caller has checked that
// the four series reach to the range's end. 0 or -3.
int slidingBarRange(const QvBars* bars, window::Range r, double* min, double* max) noexcept;

}  // namespace qv
