#include "charting/date_axis.h"

#include <cmath>
#include <cstdio>

#include "qvlib60/dates.h"

namespace qv::charting {

namespace {

struct Unit {
  enum Kind { Minutes, Days, Weeks, Months, Years } kind;
  int step;
};
constexpr Unit kUnits[] = {
    {Unit::Minutes, 1},   {Unit::Minutes, 5},   {Unit::Minutes, 15},  {Unit::Minutes, 30},
    {Unit::Minutes, 60},  {Unit::Minutes, 120}, {Unit::Minutes, 240}, {Unit::Minutes, 360},
    {Unit::Minutes, 720}, {Unit::Days, 1},      {Unit::Weeks, 1},     {Unit::Weeks, 2},
    {Unit::Months, 1},    {Unit::Months, 3},    {Unit::Months, 6},    {Unit::Years, 1},
    {Unit::Years, 2},     {Unit::Years, 5},     {Unit::Years, 10},    {Unit::Years, 20},
    {Unit::Years, 50},    {Unit::Years, 100}};

constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr double kLatestDate = 2958465.0;  // 31 December 9999

struct Moment {
  int year, month, day, hour, minute;
};

// Dates that are none count as day 0.
double safe(double date) noexcept {
  return date >= 0.0 && date <= kLatestDate ? date : 0.0;
}

Moment momentOf(double date) noexcept {
  Moment m{};
  qvDateToYMD(safe(date), &m.year, &m.month, &m.day, &m.hour, &m.minute, nullptr);
  m.month = std::clamp(m.month, 1, 12);
  return m;
}

// A number that grows by one from period to period.
int periodOf(double date, const Unit& unit) noexcept {
  date = safe(date);
  constexpr double kSecond = 1.0 / 86400.0;
  constexpr int kMonday = 2;  // 1 January 1900
  switch (unit.kind) {
    case Unit::Minutes: {
      const double day = std::floor(date), minutes = std::floor((date - day + 0.5 * kSecond) * 1440.0);
      return static_cast<int>(day) * (1440 / unit.step) + static_cast<int>(minutes) / unit.step;
    }
    case Unit::Days:
      return static_cast<int>(date);
    case Unit::Weeks:
      return (static_cast<int>(date) - kMonday + 7 * unit.step) / (7 * unit.step);
    case Unit::Months: {
      const Moment m = momentOf(date);
      return (m.year * 12 + m.month - 1) / unit.step;
    }
    default:
      return momentOf(date).year / unit.step;
  }
}

// The first bar behind `bar` that is in another period, else `end`. Dates rise; where they don't it is some
// bar.
int nextPeriod(const double* dates, int bar, int end, const Unit& unit) noexcept {
  const int period = periodOf(dates[bar], unit);
  int low = bar + 1, high = end;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (periodOf(dates[middle], unit) > period)
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

int rankOf(const double* dates, int bar) noexcept {
  if (bar == 0) return 0;
  const Moment a = momentOf(dates[bar - 1]), b = momentOf(dates[bar]);
  return a.year != b.year ? 3 : a.month != b.month ? 2 : a.day != b.day ? 1 : 0;
}

void writeLabel(char (&out)[32], double date, int rank, const Unit& unit) noexcept {
  const Moment m = momentOf(date);
  const char* month = kMonths[m.month - 1];
  if (rank == 3 || unit.kind == Unit::Years)
    std::snprintf(out, sizeof out, "%d", m.year);
  else if (unit.kind == Unit::Months)
    std::snprintf(out, sizeof out, "%s", month);
  else if (rank > 0 || unit.kind != Unit::Minutes)
    std::snprintf(out, sizeof out, "%d %s", m.day, month);
  else
    std::snprintf(out, sizeof out, "%02d:%02d", m.hour, m.minute);
}

// The whole of what most labels leave out.
void writeFullLabel(char (&out)[32], double date, const Unit& unit) noexcept {
  const Moment m = momentOf(date);
  const char* month = kMonths[m.month - 1];
  if (unit.kind == Unit::Years)
    std::snprintf(out, sizeof out, "%d", m.year);
  else if (unit.kind == Unit::Months)
    std::snprintf(out, sizeof out, "%s %d", month, m.year);
  else
    std::snprintf(out, sizeof out, "%d %s %d", m.day, month, m.year);
}

class Ticks {
 public:
  Ticks(const TimeAxis& axis, double right, double gap, Canvas& canvas,
        DateTick (&out)[kMostDateTicks]) noexcept
      : axis_(axis), right_(right), gap_(gap), canvas_(canvas), out_(out) {}

  // All first bars of a unit's periods; false when they are too many.
  bool collect(const double* dates, int first, int end, const Unit& unit) noexcept {
    count_ = 0;
    const char* usual = unit.kind == Unit::Minutes ? "00:00" : unit.kind < Unit::Months ? "30 Nov" : "2000";
    const double widest = canvas_.extent(usual) + gap_;
    const int most = std::min(kMostDateTicks, static_cast<int>((right_ - axis_.left) / widest * 1.5) + 2);
    int bar = first == 0 || periodOf(dates[first - 1], unit) != periodOf(dates[first], unit)
                  ? first
                  : nextPeriod(dates, first, end, unit);
    double last = -1e9;
    int near = 0;
    for (; bar < end; bar = nextPeriod(dates, bar, end, unit)) {
      if (count_ >= most) return false;
      const double x = axis_.x(bar);
      near += x - last < widest;
      last = x;
      out_[count_++].bar = bar;
    }
    return near * 3 <= count_;
  }

  // Leaves out labels that would overlap, those of finer periods first; what does not fit into the width
  // goes.
  int label(const double* dates, const Unit& unit) noexcept {
    int kept = 0;
    double edge = axis_.left;  // up to where labels stand
    double edgeBefore = axis_.left;
    for (int i = 0; i < count_; ++i) {
      DateTick tick = out_[i];
      tick.rank = rankOf(dates, tick.bar);
      tick.bold = tick.rank == 3 && unit.kind != Unit::Years;
      writeLabel(tick.text, dates[tick.bar], tick.rank, unit);
      const double x = axis_.x(tick.bar), half = canvas_.extent(tick.text, tick.bold) / 2;
      if (x + half > right_ || x - half < axis_.left) continue;
      if (kept > 0 && x - half < edge + gap_) {
        if (tick.rank <= out_[kept - 1].rank || x - half < edgeBefore + (kept > 1 ? gap_ : 0.0)) continue;
        --kept;
        edge = edgeBefore;
      }
      edgeBefore = edge;
      edge = x + half;
      out_[kept++] = tick;
    }
    tellYears(dates, unit, kept);
    return kept;
  }

 private:
  // The first label, and the first one of another year, tell the year; where there is no room the next one
  // does.
  void tellYears(const double* dates, const Unit& unit, int count) noexcept {
    int told = -1;
    for (int i = 0; i < count; ++i) {
      const int year = momentOf(dates[out_[i].bar]).year;
      const bool isTime = unit.kind == Unit::Minutes && out_[i].rank == 0;
      if (out_[i].rank == 3 || (year != told && (i == 0 || !isTime) && widen(dates, unit, i, count)))
        told = year;
    }
  }

  bool widen(const double* dates, const Unit& unit, int i, int count) noexcept {
    DateTick whole = out_[i];
    writeFullLabel(whole.text, dates[whole.bar], unit);
    const double x = axis_.x(whole.bar), half = canvas_.extent(whole.text) / 2;
    const auto halfOf = [&](int k) { return canvas_.extent(out_[k].text, out_[k].bold) / 2; };
    const double left = i > 0 ? axis_.x(out_[i - 1].bar) + halfOf(i - 1) + gap_ : axis_.left;
    const double right = i + 1 < count ? axis_.x(out_[i + 1].bar) - halfOf(i + 1) - gap_ : right_;
    if (x - half < left || x + half > right) return false;
    out_[i] = whole;
    return true;
  }

  const TimeAxis& axis_;
  double right_, gap_;
  Canvas& canvas_;
  DateTick (&out_)[kMostDateTicks];
  int count_ = 0;
};

}  // namespace

bool hasTimes(const QvBars& bars, int first, int last) noexcept {
  first = std::max(first, 0);
  last = std::min(last, barCount(bars) - 1);
  // A session's bars may begin at midnight: a few neighbours are enough to tell.
  for (int i = first; i <= last && i < first + 8; ++i)
    if (const double date = safe(bars.date.data[i]); date != std::floor(date)) return true;
  return false;
}

int dateTicks(const QvBars& bars, const TimeAxis& axis, double right, double gap, Canvas& canvas,
              DateTick (&out)[kMostDateTicks]) noexcept {
  const int first = std::max(axis.first, 0), end = std::min(axis.last, barCount(bars) - 1) + 1;
  if (first >= end) return 0;
  const double* dates = bars.date.data;
  Ticks ticks(axis, right, gap, canvas, out);
  const bool times = hasTimes(bars, first, end - 1);
  for (const Unit& unit : kUnits) {
    if (unit.kind == Unit::Minutes && !times) continue;
    if (!ticks.collect(dates, first, end, unit)) continue;
    return ticks.label(dates, unit);
  }
  return 0;
}

void writeDate(char (&out)[32], double date, bool time) noexcept {
  const Moment m = momentOf(date);
  const char* month = kMonths[m.month - 1];
  if (time)
    std::snprintf(out, sizeof out, "%d %s %d %02d:%02d", m.day, month, m.year, m.hour, m.minute);
  else
    std::snprintf(out, sizeof out, "%d %s %d", m.day, month, m.year);
}

}  // namespace qv::charting
