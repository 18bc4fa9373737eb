// Bar compression. The calendar decides where most groups begin.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "core/bar.h"
#include "core/calculation.h"
#include "core/stretch.h"
#include "dates/calendar.h"
#include "dates/periods.h"
#include "kernels/whole.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv;

constexpr unsigned kAllSeries = kDate | kPrices | kVolume | kOpenInterest;

bool isFrequency(int frequency) noexcept {
  return frequency >= QV_FREQ_DAILY && frequency <= QV_FREQ_YEARLY;
}

bool sharesBlocks(const QvBars& a, const QvBars& b) noexcept {
  return sharesBlock(&a.date, &b.date);
}

// Checks a compression's bar sets, allocates an empty output and describes it as the input.
int prepareBars(const QvBars* in, QvBars* out) noexcept {
  if (!out || !hasSeries({in, kAllSeries})) return QV_INVALID_PARM;
  if (!out->date.data) {
    if (const int status = qvAllocBars(out, in->datasize)) return status;
  }
  for (int k = 0; k < kSeriesCount; ++k) {
    const QvArray& a = seriesOf(*out, k);
    if (!a.data || a.capacity < out->datasize) return QV_INVALID_PARM;
  }
  if (!sharesBlocks(*in, *out)) qvCopyBarInfo(in, out);
  return QV_OK;
}

// ---- Where groups begin -------------------------------------------------------------------------

// Spans of seconds from the time of a group's first bar, each day for itself.
class TimeSpans {
 public:
  explicit TimeSpans(double seconds) noexcept : seconds_(seconds) {}

  void begin(double date) noexcept {
    day_ = std::floor(date);
    groupTime_ = secondOfDay(date);
  }

  bool crossedBy(double date) noexcept {
    const double time = secondOfDay(date);
    const bool crossed = std::floor(date) != day_ || time - groupTime_ >= seconds_;
    day_ = std::floor(date);
    if (crossed) groupTime_ = time;
    return crossed;
  }

 private:
  // In whole seconds.
  static double secondOfDay(double date) noexcept {
    return std::floor(dates::secondsOfDay(date) + dates::kSecondTolerance);
  }

  double seconds_;
  double day_ = 0.0, groupTime_ = 0.0;
};

// ---- Groups of bars -----------------------------------------------------------------------------

// Both sets may be the same: a group is stored at or below the last bar that it took.
template <typename Periods>
int groupBars(QvBars& in, QvBars& out, Periods periods, double startDate, double endDate) noexcept {
  const double* date = in.date.data;
  if (endDate == 0.0 && in.barsize > 0) endDate = date[in.barsize - 1];
  int i = 0;
  while (i < in.barsize && date[i] < startDate) ++i;

  int g = 0;
  if (i < in.barsize && out.datasize > 0) {
    Bar group = barAt(in, i);
    periods.begin(date[i]);
    for (++i; i < in.barsize && date[i] <= endDate; ++i) {
      if (!periods.crossedBy(date[i])) {
        addToGroup(group, barAt(in, i));
        continue;
      }
      storeBar(out, g++, group);
      if (g == out.datasize) break;
      group = barAt(in, i);
    }
    if (g < out.datasize) storeBar(out, g++, group);
  }
  qvReSizeBars(&out, g);
  if (&in != &out && sharesBlocks(in, out)) in = out;
  return QV_OK;
}

// ---- Rolling compression ------------------------------------------------------------------------

using Kernel = int (*)(const double*, const Windows&, double*) noexcept;

// The windows of the first n bars, begun at the series' first valid item; 0.0 stays below it.
int roll(const QvArray& in, int n, int p, Kernel kernel, QvArray& out) noexcept {
  const int first = std::max(in.firstValid, 0);
  return first < n ? kernel(in.data, {first, n, p, true}, out.data) : int{QV_OK};
}

void copyItems(const QvArray& from, QvArray& to, int start, int end) noexcept {
  std::memmove(to.data + start, from.data + start, static_cast<std::size_t>(end - start) * sizeof(double));
}

}  // namespace

extern "C" {

int QVCALL qvGroupBarsDate(QvBars* in, QvBars* out, int frequency, double startDate,
                           double endDate) noexcept {
  if (!isFrequency(frequency)) return QV_INVALID_PARM;
  if (const int status = prepareBars(in, out)) return status;
  out->frequency = frequency;
  return groupBars(*in, *out, CalendarPeriods(frequency), startDate, endDate);
}

int QVCALL qvGroupBarsTime(QvBars* in, QvBars* out, double seconds, double startDate,
                           double endDate) noexcept {
  if (const int status = prepareBars(in, out)) return status;
  return groupBars(*in, *out, TimeSpans(seconds), startDate, endDate);
}

int QVCALL qvGroupArray(const QvBars* dates, const QvArray* in, QvArray* out, int frequency) noexcept {
  if (!isFrequency(frequency) || !hasSeries({dates, kDate}) || !in || !in->data || !out)
    return QV_INVALID_PARM;
  if (!out->data) {
    if (const int status = qvAllocArray(out, in->size)) return status;
  }
  const int valid = in->firstValid;  // read before it is set: both may be one record
  const int n = std::min(dates->barsize, in->size), room = out->capacity;
  const double *date = dates->date.data, *item = in->data;
  CalendarPeriods periods(frequency);
  periods.begin(n > 0 ? date[0] : 0.0);
  int groups = 0, firstGroup = -1;
  for (int i = 0; i < n; ++i) {
    const double x = item[i];
    if (i == 0 || periods.crossedBy(date[i])) {
      if (groups == room) break;
      out->data[groups++] = 0.0;
    }
    if (i < valid) continue;
    out->data[groups - 1] += x;
    if (firstGroup < 0) firstGroup = groups - 1;
  }
  out->firstValid = std::max(firstGroup, 0);
  return qvReSizeArray(out, groups);
}

int QVCALL qvGroupBars(const QvBars* in, double* open, double* high, double* low, double* close,
                       double* volume, double* openInterest, int p, int index) noexcept {
  if (!open || !high || !low || !close || !volume || !openInterest) return QV_INVALID_PARM;
  if (p < 1 || !hasSeries({in, kAllSeries}) || index < 0 || index >= in->barsize) return QV_INVALID_PARM;
  const int first = index - std::min(p - 1, index);
  const auto stats = [first, index](const QvArray& a) {
    return statsOf(a.data, stretchOf(first, index, {&a}), false);
  };
  *open = in->open.data[first];
  *close = in->close.data[index];
  *high = stats(in->high).maximum;
  *low = stats(in->low).minimum;
  *volume = stats(in->volume).sum;
  *openInterest = stats(in->openInterest).sum;
  return QV_OK;
}

int QVCALL qvGroupBarsPeriods(const QvBars* in, QvBars* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (const int status = prepareBars(in, out)) return status;
  const int n = std::max(std::min(out->datasize, in->barsize), 0);
  const int s = std::clamp(start, 0, n);

  // Rolled aside, since both sets may be the same and a failure must leave the bars as they are.
  Temporary high, low, volume, openInterest;
  if (const int status = allocArrays(n, {&high, &low, &volume, &openInterest})) return status;
  if (const int status = roll(in->high, n, p, highestOfWindows, high)) return status;
  if (const int status = roll(in->low, n, p, lowestOfWindows, low)) return status;
  if (const int status = roll(in->volume, n, p, sumOfWindows, volume)) return status;
  if (const int status = roll(in->openInterest, n, p, sumOfWindows, openInterest)) return status;

  qvReSizeBars(out, n);
  copyItems(in->date, out->date, s, n);
  copyItems(in->close, out->close, s, n);
  for (int i = n - 1; i >= s; --i) out->open.data[i] = in->open.data[i - std::min(p - 1, i)];
  copyItems(high, out->high, s, n);
  copyItems(low, out->low, s, n);
  copyItems(volume, out->volume, s, n);
  copyItems(openInterest, out->openInterest, s, n);
  return QV_OK;
}

int QVCALL qvGroupBarsArray(const QvBars* in, QvBars* out, int p, int start) noexcept {
  return qvGroupBarsPeriods(in, out, p, start);
}

}  // extern "C"
