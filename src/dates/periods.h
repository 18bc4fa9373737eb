// Where calendar periods begin: the rule by which bars are compressed.
#pragma once

#include <cmath>

#include "core/bar.h"
#include "qvlib60/codes.h"
#include "qvlib60/dates.h"

namespace qv {

// A group is dated and closed by its last bar.
inline void addToGroup(Bar& group, const Bar& bar) noexcept {
  group.date = bar.date;
  if (bar.high > group.high) group.high = bar.high;
  if (bar.low < group.low) group.low = bar.low;
  group.close = bar.close;
  group.volume += bar.volume;
  group.openInterest += bar.openInterest;
}

// Compares each date with the one examined before it.
class CalendarPeriods {
 public:
  explicit CalendarPeriods(int frequency) noexcept : frequency_(frequency) {}

  void begin(double date) noexcept { keep(splitOf(date)); }

  bool crossedBy(double date) noexcept {
    const Split now = splitOf(date), before = last_;
    keep(now);
    switch (frequency_) {
      case QV_FREQ_DAILY:
        return now.day != before.day;
      case QV_FREQ_WEEKLY:
        return now.weekday < before.weekday || now.day - before.day >= 7.0;
      case QV_FREQ_MONTHLY:
        return now.year != before.year || now.month != before.month;
      case QV_FREQ_QUARTERLY:  // a month before the last one, out of order, stays in the group
        return now.year != before.year || quarterOf(now.month) > quarterOf(before.month);
      default:
        return now.year != before.year;
    }
  }

 private:
  struct Split {
    double day = 0.0;
    int weekday = 0, year = 0, month = 0;  // those that the frequency needs
  };

  Split splitOf(double date) const noexcept {
    Split s;
    s.day = std::floor(date);
    if (frequency_ == QV_FREQ_WEEKLY) s.weekday = qvDayOfWeek(date);
    if (frequency_ >= QV_FREQ_MONTHLY)
      qvDateToYMD(date, &s.year, &s.month, nullptr, nullptr, nullptr, nullptr);
    return s;
  }
  void keep(const Split& s) noexcept { last_ = s; }
  static int quarterOf(int month) noexcept { return (month - 1) / 3; }

  int frequency_;
  Split last_;
};

}  // namespace qv
