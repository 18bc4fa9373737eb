/* The trading-system simulator: orders, fills, positions, trades, statistics, reports.

   The caller owns one QvOrderSystem record and drives it bar by bar:

     qvOrderSystemInit(&sys, "My system", &bars);    then change settings in the record
     while (qvProcessOrders(&sys) == 1) {            moves to the next bar and fills pending orders
       look at the bars up to sys.currentBar;
       qvBuyToOpen, qvSellToClose, ... qvCancelOrder
     }
     qvTradeRpt1, qvProfitRpt, ...                   reports, at any time
     qvEquity, qvEquityFigures, qvTradeFigures       what the reports lack
     qvOrderSystemReset(&sys);                       to run again over the same bars
     qvOrderSystemClose(&sys);

   A null record or a null required text is -1 (functions without a result do nothing). */
#ifndef QVLIB60_TRADESIM_H
#define QVLIB60_TRADESIM_H

#include "qvlib60/tradesim/equity.h"
#include "qvlib60/tradesim/optimisation.h"
#include "qvlib60/tradesim/orders.h"
#include "qvlib60/tradesim/records.h"
#include "qvlib60/tradesim/reports.h"
#include "qvlib60/tradesim/trade_marks.h"

#endif
