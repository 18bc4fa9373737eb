// Series and bar sets that a graph refers to, or copies.
#include "charting/graph.h"

namespace qv::charting {

namespace {

template <typename Record>
Record* own(Kept<Record>& kept) noexcept {
  auto* record = static_cast<Record*>(memory::allocateZeroed(1, sizeof(Record)));
  kept = {record, record != nullptr};
  return record;
}

// The items that the record tells of, without its spare room.
int copySeries(const QvArray& from, QvArray& to) noexcept {
  const int size = Values(from).end();
  if (const int status = qvAllocArray(&to, size)) return status;
  if (size > 0) std::copy_n(from.data, size, to.data);
  to.firstValid = from.firstValid;
  return QV_OK;
}

}  // namespace

QvArray* ownSeries(KeptSeries& kept) noexcept {
  return own(kept);
}
QvBars* ownBars(KeptBars& kept) noexcept {
  return own(kept);
}

int keep(KeptSeries& kept, const QvArray* series, int how) noexcept {
  kept = {series, false};
  if (how == QV_GRAPH_REFER || !series) return QV_OK;
  QvArray* copy = own(kept);
  return copy ? copySeries(*series, *copy) : int{QV_MALLOC};
}

int keep(KeptBars& kept, const QvBars* bars, int how) noexcept {
  kept = {bars, false};
  if (how == QV_GRAPH_REFER) return QV_OK;
  QvBars* copy = own(kept);
  if (!copy) return QV_MALLOC;
  qvCopyBarInfo(bars, copy);
  copy->barsize = copy->datasize = bars->barsize;
  for (int k = 0; k < kSeriesCount; ++k)
    if (const int status = copySeries(seriesOf(*bars, k), seriesOf(*copy, k))) return status;
  return QV_OK;
}

void release(KeptSeries& kept) noexcept {
  if (kept.own) {
    auto* series =
        const_cast<QvArray*>(kept.record);  // NOLINT(cppcoreguidelines-pro-type-const-cast): its own
    qvFreeArray(series);
    memory::release(series);
  }
  kept = {};
}

void release(KeptBars& kept) noexcept {
  if (kept.own) {
    auto* bars = const_cast<QvBars*>(kept.record);  // NOLINT(cppcoreguidelines-pro-type-const-cast): its own
    qvFreeBars(bars);
    memory::release(bars);
  }
  kept = {};
}

bool sameDates(const QvBars& axis, const QvBars& bars) noexcept {
  const int count = barCount(axis);
  if (&axis == &bars || axis.date.data == bars.date.data) return true;
  return count == barCount(bars) && std::equal(axis.date.data, axis.date.data + count, bars.date.data);
}

// Both sets in the order of their dates; a bar without its like on the axis is left out.
int alignBars(const QvBars& axis, const QvBars& bars, KeptBars& kept) noexcept {
  QvBars* laid = own(kept);
  const int count = barCount(axis), theirs = barCount(bars);
  if (!laid || qvAllocBars(laid, count) != QV_OK) return QV_MALLOC;
  qvCopyBarInfo(&bars, laid);
  const double *dates = axis.date.data, *others = bars.date.data;
  for (int i = 0, j = 0; i < count; ++i) {
    while (j < theirs && others[j] < dates[i]) ++j;
    const bool found = j < theirs && others[j] == dates[i];
    laid->date.data[i] = dates[i];
    for (int k = 1; k < kSeriesCount; ++k)
      seriesOf(*laid, k).data[i] = found ? Values(seriesOf(bars, k))[j] : kNotKnown;
  }
  return QV_OK;
}

}  // namespace qv::charting
