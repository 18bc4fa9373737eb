// Formations of one bar against the bar before: reversals, gaps, inside and outside bars.
#include <algorithm>

#include "core/calculation.h"
#include "core/text.h"
#include "qvlib60/patterns/formations.h"

namespace {

using namespace qv;

// The tests below read bar i and the bar before it: i >= 1. All comparisons are strict, so equal
// prices make no formation. Joined by & and not by &&: prices go either way from bar to bar, and a
// mispredicted branch costs more than all the comparisons.
struct Prices {
  const double *high, *low, *close;
};

// +1 for the upward case, else -1 for the downward one.
int signalOf(bool up, bool down) noexcept {
  return up - (down & !up);
}

bool higherHigh(const Prices& p, int i) noexcept {
  return p.high[i] > p.high[i - 1];
}

bool lowerLow(const Prices& p, int i) noexcept {
  return p.low[i] < p.low[i - 1];
}

int gapUp(const Prices& p, int i) noexcept {
  return p.low[i] > p.high[i - 1];
}

int gapDown(const Prices& p, int i) noexcept {
  return p.high[i] < p.low[i - 1];
}

int gap(const Prices& p, int i) noexcept {
  return signalOf(gapUp(p, i), gapDown(p, i));
}

int insideBar(const Prices& p, int i) noexcept {
  return (p.high[i] < p.high[i - 1]) & (p.low[i] > p.low[i - 1]);
}

int outsideBar(const Prices& p, int i) noexcept {
  const bool higher = higherHigh(p, i), lower = lowerLow(p, i);
  return higher & lower;
}

int closePriceReversal(const Prices& p, int i) noexcept {
  return outsideBar(p, i) * signalOf(p.close[i] > p.high[i - 1], p.close[i] < p.low[i - 1]);
}

// A gap whose bar closes in the outer 30 % of its range, against the gap.
int islandReversal(const Prices& p, int i) noexcept {
  const double part = 0.7 * (p.high[i] - p.low[i]);
  return signalOf(gapDown(p, i) & (p.close[i] > p.low[i] + part),
                  gapUp(p, i) & (p.close[i] < p.high[i] - part));
}

int keyReversal(const Prices& p, int i) noexcept {
  const double close = p.close[i], before = p.close[i - 1];
  return signalOf(lowerLow(p, i) & (close > before), higherHigh(p, i) & (close < before));
}

using Test = int (*)(const Prices&, int) noexcept;

// Writes the signals of bars first .. last and returns how many there are; bar 0 never signals.
template <Test test>
int fill(const Prices& prices, double* out, int first, int last) noexcept {
  int count = 0;
  for (int i = std::max(first, 1); i <= last; ++i) {
    const int signal = test(prices, i);
    out[i] = signal;
    count += signal != 0;
  }
  return count;
}

struct Formation {
  const char* name;
  unsigned series;
  int (*fill)(const Prices&, double*, int, int) noexcept;
};

constexpr Formation kFormations[] = {
    {"qvCPR", kHighLowClose, fill<closePriceReversal>},
    {"qvGap", kHighLow, fill<gap>},
    {"qvGapDown", kHighLow, fill<gapDown>},
    {"qvGapUp", kHighLow, fill<gapUp>},
    {"qvIslandReversal", kHighLowClose, fill<islandReversal>},
    {"qvInsideBar", kHighLow, fill<insideBar>},
    {"qvKeyReversal", kHighLowClose, fill<keyReversal>},
    {"qvOutsideBar", kHighLow, fill<outsideBar>},
};

const Formation* findFormation(const char* name) noexcept {
  for (const Formation& f : kFormations)
    if (compareNoCase(f.name, name) == 0) return &f;
  return nullptr;
}

// The signal of bar i; 0 where bar i, the bar before it or a series that the test reads is missing.
int signalAt(const QvBars* b, int i, unsigned series, Test test) noexcept {
  if (!b) return QV_INVALID_PARM;
  if (i < 1 || !hasBar({b, series}, i)) return 0;
  return test({b->high.data, b->low.data, b->close.data}, i);
}

}  // namespace

extern "C" {

int QVCALL qvCPR(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLowClose, closePriceReversal);
}

int QVCALL qvGap(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLow, gap);
}

int QVCALL qvIslandReversal(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLowClose, islandReversal);
}

int QVCALL qvInsideBar(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLow, insideBar);
}

int QVCALL qvKeyReversal(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLowClose, keyReversal);
}

int QVCALL qvOutsideBar(const QvBars* b, int i) noexcept {
  return signalAt(b, i, kHighLow, outsideBar);
}

int QVCALL qvFormationFill(const QvBars* bars, QvArray* out, const char* name, int first, int last) noexcept {
  if (!name) return QV_INVALID_PARM;
  const Formation* formation = findFormation(name);
  const int n = prepareOutputs({{bars, formation ? formation->series : kNone}}, {}, {out});
  if (n < 1) return n;
  if (!formation) return QV_INVALID_PARM;
  first = std::max(first, 0);
  const Prices prices{bars->high.data, bars->low.data, bars->close.data};
  const int count = formation->fill(prices, out->data, first, std::min(last, n - 1));
  qvSetFirstValid(out, first);
  return count;
}

}  // extern "C"
