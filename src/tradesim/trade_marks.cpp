// The closed trades as marks on their bars, for a chart.
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/tradesim.h"

namespace {

using namespace qv;

void addMark(QvArray& out, int n, int bar, int mark) noexcept {
  if (bar >= 0 && bar < n) out.data[bar] = truncatedInt(out.data[bar]) | mark;
}

}  // namespace

extern "C" {

int QVCALL qvCreateTradeGraph(const QvOrderSystem* sys, QvArray* out) noexcept {
  if (!sys || !out) return QV_INVALID_PARM;
  const int n = prepareOutputs({{&sys->bars, kNone}}, {}, {out});
  if (n < 1) return n;
  for (int i = 0; i < sys->tradeCount; ++i) {
    const QvTrade& trade = sys->trades[i];
    addMark(*out, n, trade.position.entryBar,
            trade.position.direction == QV_LONG ? QV_MARK_LONG_ENTRY : QV_MARK_SHORT_ENTRY);
    addMark(*out, n, trade.exitBar,
            trade.exitDirection == QV_BUY ? QV_MARK_CLOSED_BY_BUY : QV_MARK_CLOSED_BY_SELL);
  }
  return QV_OK;
}

}  // extern "C"
