/* Text reports over a trading system, at any point of a run.

   Common to all: the output "STDOUT" (in any case) is standard output, any other name a file that
   is appended to when append is not 0 and truncated otherwise. 0; -2 when the file cannot be
   opened; write errors are not reported. Dates follow qvSetDefaultDateFormat. Amounts are printed
   as whole part and truncated decimals, so an amount between -1 and 0 shows no sign (the ...Rpt1 reports
   of orders, trades and open positions round to three decimals and keep it); not-a-number and infinities
   print as 0.

   The ...Rpt1 reports of orders, trades and open positions are for other programs: `separator`
   stands between the fields, `header` other than 0 writes the header line. A separator that begins
   with a blank chooses columns of fixed width with a line of dashes below the header. */
#ifndef QVLIB60_TRADESIM_REPORTS_H
#define QVLIB60_TRADESIM_REPORTS_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

/* The pending orders; without any the file is not opened. Action, direction, order type and time
   in force are written as the characters whose codes are their values. */
QVAPI int QVCALL qvPrintOrders(const QvOrderSystem* sys, const char* file, int append) QVNOEXCEPT;

/* The pending orders as fields; without any the file is not opened. */
QVAPI int QVCALL qvOrderRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                             const char* separator) QVNOEXCEPT;

/* The closed trades, two lines each. Fractions have four digits. */
QVAPI int QVCALL qvPrintTrades(const QvOrderSystem* sys, const char* file, int append) QVNOEXCEPT;

/* The closed trades as fields. */
QVAPI int QVCALL qvTradeRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                             const char* separator) QVNOEXCEPT;

/* The open positions as fields, valued as if closed at the current (or the last) bar's close. */
QVAPI int QVCALL qvOpenPosRpt1(const QvOrderSystem* sys, const char* file, int append, int header,
                               const char* separator) QVNOEXCEPT;

/* The performance summary: 24 lines of net, long and short values. */
QVAPI int QVCALL qvProfitRpt(const QvOrderSystem* sys, const char* file, int append) QVNOEXCEPT;

/* One line of chosen values: the lead text ("%%" in it is a per cent sign), then the template, in
   which every three letters are a code and other characters stand for themselves ("\t", typed as
   two characters, is a tab). The code's first letter chooses the block: L long, S short, any other
   net. The other two choose the value:
   NP total net profit, GP gross profit, GL gross loss, NT number of trades, PP percent profitable,
   NW winners, NL losers, LW largest winner, LL largest loser, AW average winner, AL average loser,
   WL ratio of these, AT average trade, MW, ML maximum consecutive winners, losers, WS, LS average
   bars in winners, losers, MD maximum intraday drawdown, PF profit factor, MC maximum contracts
   held, AS account size required, RA return on account, PR pessimistic return ratio.
   An unknown code is printed as typed, right-aligned in 11 columns. */
QVAPI int QVCALL qvProfitRpt1(const QvOrderSystem* sys, const char* file, int append, const char* lead,
                              const char* pattern) QVNOEXCEPT;

QV_END_DECLS

#endif
