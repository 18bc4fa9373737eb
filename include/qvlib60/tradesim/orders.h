/* A trading system's life: initialisation, orders, the step to the next bar. */
#ifndef QVLIB60_TRADESIM_ORDERS_H
#define QVLIB60_TRADESIM_ORDERS_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

/* Clears the record, allocates its tables, copies the name (at most 79 characters) and the bars'
   record, sets the settings' defaults. Tables that the record held before are not freed. -3 leaves
   the record all zero. */
QVAPI int QVCALL qvOrderSystemInit(QvOrderSystem* sys, const char* name, const QvBars* bars) QVNOEXCEPT;

/* Back to before the first bar: no orders, positions, trades, statistics. Settings, name, bars and
   the tables' capacities stay. */
QVAPI void QVCALL qvOrderSystemReset(QvOrderSystem* sys) QVNOEXCEPT;

/* Frees the tables. The result, 0 for any record, carries no status. */
QVAPI int QVCALL qvOrderSystemClose(QvOrderSystem* sys) QVNOEXCEPT;

/* The four order calls place an order at the current bar; it may fill from the next processed bar
   on. Names are cut to 19 characters. Market and close orders ignore the price. Order type, volume
   and time in force are stored unchecked.
   0; -1 before the first qvProcessOrders; -3 when the order table cannot grow (the order is not
   stored, the others stay). */

/* Opens a long position, unless longEntriesAllowed is 0: then nothing is stored and the result 0. */
QVAPI int QVCALL qvBuyToOpen(QvOrderSystem* sys, const char* name, int volume, double price, int orderType,
                             int timeInForce) QVNOEXCEPT;

/* Opens a short position, unless shortEntriesAllowed is 0. */
QVAPI int QVCALL qvSellToOpen(QvOrderSystem* sys, const char* name, int volume, double price, int orderType,
                              int timeInForce) QVNOEXCEPT;

/* Closes contracts of long positions, oldest first: those of the entry named fromEntry, or of any
   when that is empty. */
QVAPI int QVCALL qvSellToClose(QvOrderSystem* sys, const char* name, const char* fromEntry, int volume,
                               double price, int orderType, int timeInForce) QVNOEXCEPT;

/* Closes contracts of short positions. */
QVAPI int QVCALL qvBuyToClose(QvOrderSystem* sys, const char* name, const char* fromEntry, int volume,
                              double price, int orderType, int timeInForce) QVNOEXCEPT;

/* Withdraws every order of that name (exactly as stored), or every order when the name is empty:
   they are not filled, and leave the table at the end of the next bar. Returns how many records it
   marked. The record behind the last order takes part, so that an empty name returns the number of
   orders plus one, and an order that has just left the table may still be counted. */
QVAPI int QVCALL qvCancelOrder(QvOrderSystem* sys, const char* name) QVNOEXCEPT;

/* Moves to the next bar, fills the pending orders against it, keeps positions, trades, statistics
   and the position summary.

   Exits are tried before entries, buys before sells, market orders first, then lower buy prices
   and higher sell prices first; a market sell entry and the buy entries around it keep the order in
   which they were placed. At most one entry per direction fills on a bar; the other pending
   entries of that direction are dropped with it. Day orders leave the table with the bar.

   A market order fills at the open, a close order at the close of the bar before the one that is
   processed. A stop or limit order fills at its price where the bar reaches it, as an entry one tick from
   it: above for buy stops and sell limits, below for sell stops and buy limits. With gapFills, a bar that
   opens beyond the price fills at its open; without, one that lies wholly beyond it fills at its extreme
   nearest to the price.

   Prices are put on the tick grid by taking off the remainder, as floating-point numbers have it:
   where a price is stored a hair below a multiple of the tick (10.1 on ticks of 0.01), that is a
   whole tick. Ticks that are binary fractions (1, 0.25, 1/32) have no such prices.

   1 when a bar was processed (the first call only moves to bar 0), 0 when the bars are exhausted,
   -1 when the bar set has no date, open, high, low or close series. A position or
   trade that finds no memory is lost without a word; the statistics keep such a trade. */
QVAPI int QVCALL qvProcessOrders(QvOrderSystem* sys) QVNOEXCEPT;

QV_END_DECLS

#endif
