// Formations of one bar against the bar before: reversals, gaps, inside and outside bars.
#include "patterns/formations.h"

#include <algorithm>

#include "core/text.h"
#include "kernels/calculate.h"
#include "qvlib60/patterns/formations.h"

namespace {

using namespace qv;

struct Formation {
  const char* name;
  unsigned series;
  int (*fill)(const QvBars*, QvArray*, StartEnd) noexcept;
};

template <typename Rule>
int fill(const QvBars* bars, QvArray* out, StartEnd range) noexcept {
  return calculate<chain::Formation<Rule>>(bars, {out}, range);
}
template <typename Rule>
constexpr Formation named(const char* name) noexcept {
  return {name, Rule::kSeries, fill<Rule>};
}

constexpr Formation kFormations[] = {
    named<formation::ClosePriceReversal>("qvCPR"),
    named<formation::Gap>("qvGap"),
    named<formation::GapDown>("qvGapDown"),
    named<formation::GapUp>("qvGapUp"),
    named<formation::IslandReversal>("qvIslandReversal"),
    named<formation::InsideBar>("qvInsideBar"),
    named<formation::KeyReversal>("qvKeyReversal"),
    named<formation::OutsideBar>("qvOutsideBar"),
};

const Formation* findFormation(const char* name) noexcept {
  for (const Formation& f : kFormations)
    if (compareNoCase(f.name, name) == 0) return &f;
  return nullptr;
}

// The signal of bar i; 0 where bar i, the bar before it or a series that the rule reads is missing.
template <typename Rule>
int signalAt(const QvBars* b, int i) noexcept {
  if (!b) return QV_INVALID_PARM;
  if (i < 1 || !hasBar({b, Rule::kSeries}, i)) return 0;
  const auto pricesOf = [b](int bar) {
    return formation::Prices{b->high.data[bar], b->low.data[bar],
                             Rule::kSeries & kClose ? b->close.data[bar] : 0.0};
  };
  return static_cast<int>(Rule::of(pricesOf(i), pricesOf(i - 1)));
}

}  // namespace

extern "C" {

int QVCALL qvCPR(const QvBars* b, int i) noexcept {
  return signalAt<formation::ClosePriceReversal>(b, i);
}

int QVCALL qvGap(const QvBars* b, int i) noexcept {
  return signalAt<formation::Gap>(b, i);
}

int QVCALL qvIslandReversal(const QvBars* b, int i) noexcept {
  return signalAt<formation::IslandReversal>(b, i);
}

int QVCALL qvInsideBar(const QvBars* b, int i) noexcept {
  return signalAt<formation::InsideBar>(b, i);
}

int QVCALL qvKeyReversal(const QvBars* b, int i) noexcept {
  return signalAt<formation::KeyReversal>(b, i);
}

int QVCALL qvOutsideBar(const QvBars* b, int i) noexcept {
  return signalAt<formation::OutsideBar>(b, i);
}

int QVCALL qvFormationFill(const QvBars* bars, QvArray* out, const char* name, int first, int last) noexcept {
  if (!name) return QV_INVALID_PARM;
  const Formation* formation = findFormation(name);
  if (!formation) {
    const int n = prepareOutputs({{bars, kNone}}, {}, {out});
    return n < 1 ? n : int{QV_INVALID_PARM};
  }
  first = std::max(first, 0);
  if (const int status = formation->fill(bars, out, {first, saturatingSum(std::max(last, -1), 1)}))
    return status;
  const double* signals = out->data;
  int count = 0;
  for (int i = first; i < out->size; ++i) count += signals[i] != 0.0;
  return count;
}

}  // extern "C"
