#include "datafiles/record_range.h"

#include <algorithm>

#include "core/calculation.h"

namespace qv::datafiles {

int fitToBars(QvBars& bars, int& count) noexcept {
  if (!bars.date.data && count != 0)
    if (const int status = qvAllocBars(&bars, count)) return status;
  count = std::clamp(count, 0, std::max(bars.datasize, 0));
  if (count == 0) return QV_OK;
  for (int k = 0; k < kSeriesCount; ++k) {
    const QvArray& a = seriesOf(bars, k);
    if (!a.data || a.capacity < bars.datasize) return QV_INVALID_PARM;
  }
  for (int k = 0; k < kSeriesCount; ++k) seriesOf(bars, k).firstValid = 0;
  return QV_OK;
}

namespace {

int fitToArray(QvArray& array, int& count) noexcept {
  if (!array.data && count != 0)
    if (const int status = qvAllocArray(&array, count)) return status;
  count = std::clamp(count, 0, std::max(array.capacity, 0));
  array.firstValid = 0;
  return QV_OK;
}

template <typename Fit>
int rangeOf(int records, int& start, int& count, Fit fit) noexcept {
  if (start >= records) return QV_RECORD_NOT_FOUND;
  if (count < 0) count = start > 0 ? records - start : records;
  if (const int status = fit()) return status;
  if (start < 0) start = std::max(records - count, 0);
  return QV_OK;
}

}  // namespace

int recordRange(QvBars& bars, int records, int& start, int& count) noexcept {
  return rangeOf(records, start, count, [&] { return fitToBars(bars, count); });
}

int recordRange(QvArray& array, int records, int& start, int& count) noexcept {
  return rangeOf(records, start, count, [&] { return fitToArray(array, count); });
}

}  // namespace qv::datafiles
