/* Point and figure: bars turned into rising columns of X boxes and falling columns of O boxes, a new
   column starting only after a reversal of a given number of boxes, and their text chart.

   A column is one bar of the output: date of the bar that opened it; open, the first box (one box
   above the previous low when rising, one below the previous high when falling; 0.0 in column 0);
   high and low; close, its last extreme; volume, the number of boxes, written when a reversal closes
   the column (so 0.0 in the last one); openInterest, +1.0 rising or -1.0 falling. */
#ifndef QVLIB60_PNF_H
#define QVLIB60_PNF_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Columns by closing prices, and for every bar the number of the column that it fell into.

   `columns` and `columnOf` are allocated afresh, with room for as many items as there are bars;
   free what they hold before the call. Column 0 opens at the bar after `start`; its direction is
   that of the first later bar whose close is a box or more away from the close of bar `start`, and
   until then it widens with every close. From there on a column follows new extremes, and a close
   `reversal` boxes back opens the next one. columnOf is 0.0 for the bars before that first one.

   Extremes are kept as the prices are, not cut down to whole boxes (elsewhere they are).

   0; -1 when the prices never move one box (both outputs stay allocated), and before anything is
   written for missing data, an output that is an input and a box that is not above 0; -3.
   Source: Victor de Villiers, The Point and Figure Method of Anticipating Stock Price Movements, 1933. */
QVAPI int QVCALL qvBars2PNF(const QvBars* bars, QvBars* columns, QvArray* columnOf, double box,
                            double reversal, int start) QVNOEXCEPT;

/* The same by highs and lows: highs carry a rising column on and turn a falling one, lows the
   reverse; one bar may do both. Column 0 opens with the whole range of its bar; the first bar whose
   high is a box above the close of bar `start`, else whose low is a box below it, decides.
   Source: A. W. Cohen, Stock Market Timing, 1947, for reversals of three boxes by highs and lows. */
QVAPI int QVCALL qvBars2PNFhilo(const QvBars* bars, QvBars* columns, QvArray* columnOf, double box,
                                double reversal, int start) QVNOEXCEPT;

/* Writes the columns as text, a row for each box level from the highest high down to the lowest low:
   the level to three decimals, then "X" or "O" for each column that reaches the level to within a
   tenth of a box, else a blank. Each row begins with its newline. The file is truncated, or appended
   to when append is not 0; "STDOUT" is a file name like any other.

   0; -1, with nothing written, for missing columns, a box that is not above 0 or not finite, a
   highest high or lowest low that is not finite, and more than 100,000 rows; -2 when the file cannot be
   opened. */
QVAPI int QVCALL qvPNFchart(const QvBars* columns, double box, const char* file, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
