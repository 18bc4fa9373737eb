#include "formula/frames.h"

#include <algorithm>
#include <limits>

#include "core/calculation.h"
#include "dates/periods.h"

namespace qv::formula {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Where the groups of qvGroupBarsDate begin; it stops at a date that is no number.
int findGroups(const QvBars& bars, int frequency, std::int32_t* starts) noexcept {
  const double* date = bars.date.data;
  CalendarPeriods periods(frequency);
  periods.begin(date[0]);
  int groups = 0;
  starts[groups++] = 0;
  for (int i = 1; i < bars.barsize && date[i] <= kInfinity; ++i)
    if (periods.crossedBy(date[i])) starts[groups++] = i;
  return groups;
}

// A group is known when all its bars are.
void setFirstValid(const Frame& frame, const QvBars& parent, QvBars& bars) noexcept {
  for (int k = 0; k < kSeriesCount; ++k) {
    const std::int32_t *begin = frame.starts, *end = begin + frame.groups;
    const auto* first = std::lower_bound(begin, end, seriesOf(parent, k).firstValid);
    seriesOf(bars, k).firstValid = static_cast<int>(first - begin);
  }
}

int compress(const QvBars& parent, int frequency, Frame& frame) noexcept {
  const auto n = static_cast<std::size_t>(parent.barsize);
  frame.starts = static_cast<std::int32_t*>(memory::allocateZeroed(n, sizeof(std::int32_t)));
  if (!frame.starts) return QV_MALLOC;
  frame.groups = findGroups(parent, frequency, frame.starts);
  // The compression wants all series; those that the formula does not read may be missing.
  QvBars whole = parent;
  Temporary zeros;
  for (int k = 0; k < kSeriesCount; ++k) {
    QvArray& a = seriesOf(whole, k);
    if (a.data && a.capacity >= parent.barsize) continue;
    if (!zeros.data && qvAllocArray(&zeros, parent.barsize) < 0) return QV_MALLOC;
    a = zeros;
  }
  if (const int status = qvAllocBars(&frame.own, frame.groups)) return status;
  frame.bars = &frame.own;
  const int status = qvGroupBarsDate(&whole, &frame.own, frequency, -kInfinity, kInfinity);
  setFirstValid(frame, parent, frame.own);
  return status;
}

}  // namespace

Frames::~Frames() {
  if (!frames_.ok()) return;
  for (int i = 0; i < count_; ++i) {
    qvFreeBars(&(*this)[i].own);
    memory::release((*this)[i].starts);
    memory::release((*this)[i].blocks);
  }
}

int Frames::build(const QvFormula& f, const QvBars& bars) noexcept {
  if (!frames_.ok()) return QV_MALLOC;
  for (int i = 0; i < count_; ++i) {
    Frame& frame = (*this)[i];
    frame.bars = &bars;
    const Context& context = f.contexts[static_cast<std::size_t>(i)];
    if (context.parent >= 0) {
      if (const int status = compress(*(*this)[context.parent].bars, context.frequency, frame)) return status;
    }
    // Every node clears what it does not know. In one piece: a heap gives large pieces back to the system,
    // and many small ones at its end, too, to ask for them again at the next evaluation.
    const auto bytes = static_cast<std::size_t>(frame.size()) * sizeof(double);
    frame.blocks = static_cast<double*>(memory::allocate(static_cast<std::size_t>(context.slots), bytes));
    if (!frame.blocks) return QV_MALLOC;
  }
  return QV_OK;
}

int layBack(const Frame& coarse, const QvArray& values, int n, double* out) noexcept {
  const int first = std::max(values.firstValid, 0);
  if (first + 1 >= coarse.groups) return n;
  for (int g = first; g + 1 < coarse.groups; ++g) {
    const int end = g + 2 < coarse.groups ? coarse.starts[g + 2] : n;
    std::fill(out + coarse.starts[g + 1], out + end, values.data[g]);
  }
  return coarse.starts[first + 1];
}

}  // namespace qv::formula
