/* The marks of a trading system's trades on a chart. */
#ifndef QVLIB60_TRADESIM_TRADE_MARKS_H
#define QVLIB60_TRADESIM_TRADE_MARKS_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

/* Marks the closed trades on their bars, a sum per bar of: QV_MARK_LONG_ENTRY 1, QV_MARK_SHORT_ENTRY 2,
   QV_MARK_CLOSED_BY_BUY 4, QV_MARK_CLOSED_BY_SELL 8. The output behaves as those of the indicators; its
   first valid index is left alone. 0; -1 for missing data or an output that is a series of the bars; -3. */
QVAPI int QVCALL qvCreateTradeGraph(const QvOrderSystem* sys, QvArray* out) QVNOEXCEPT;

QV_END_DECLS

#endif
