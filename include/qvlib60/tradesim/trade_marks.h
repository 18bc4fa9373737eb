/* The marks of a trading system's trades on a chart. */
#ifndef QVLIB60_TRADESIM_TRADE_MARKS_H
#define QVLIB60_TRADESIM_TRADE_MARKS_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

/* Marks the closed trades on their bars, a sum per bar of: 1 long entry, 2 short entry, 4 trade
   closed by a buy, 8 trade closed by a sell. The output's first valid index is left alone. */
QVAPI int QVCALL qvCreateTradeGraph(const QvOrderSystem* sys, QvArray* out) QVNOEXCEPT;

QV_END_DECLS

#endif
