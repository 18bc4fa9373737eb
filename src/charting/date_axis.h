// The ticks of the time axis: from minutes to decades, at the first bar of each period.
#pragma once

#include "charting/canvas.h"

namespace qv::charting {

struct DateTick {
  int bar;
  int rank;   // of the coarsest period that begins there: 0 time, 1 day, 2 month, 3 year
  bool bold;  // a year among months or days
  char text[32];
};

inline constexpr int kMostDateTicks = 256;

// The ticks of the visible bars as dense as their labels allow; rising, labels at least `gap` apart.
int dateTicks(const QvBars& bars, const TimeAxis& axis, double right, double gap, Canvas& canvas,
              DateTick (&out)[kMostDateTicks]) noexcept;

// "17 Apr 2020", with the time of day where the bars have one.
void writeDate(char (&out)[32], double date, bool time) noexcept;
// Whether some visible bar has a time of day.
bool hasTimes(const QvBars& bars, int first, int last) noexcept;

}  // namespace qv::charting
