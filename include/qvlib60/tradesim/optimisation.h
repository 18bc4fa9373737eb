/* Parameter ranges of a trading system, stepped through combination by combination. */
#ifndef QVLIB60_TRADESIM_OPTIMISATION_H
#define QVLIB60_TRADESIM_OPTIMISATION_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

/* Number of combinations of the variables; stores each variable's count = (end - start) / step + 1,
   truncated, or 1 when the step is 0. 1 without variables. A range that runs against
   its step has a count of zero or below; the result is the product of the counts. Saturates. */
QVAPI int QVCALL qvOptVarCount(QvOptVar* vars, int n) QVNOEXCEPT;

/* Sets every variable's value to its value in combination k (1 .. qvOptVarCount); the first
   variable changes fastest. -1 when there is no combination k: nothing but the counts is changed. */
QVAPI int QVCALL qvOptVarValue(QvOptVar* vars, int n, int k) QVNOEXCEPT;

/* Writes the values as one text, for labelling a run: each in the width and the decimals that its
   range and step need, at most 10 characters (a value wider than its range loses its tail). `out` needs
   qvOptVarStringLen characters. */
QVAPI int QVCALL qvOptVarString(const QvOptVar* vars, int n, const char* separator, char* out) QVNOEXCEPT;

/* Room that qvOptVarString needs, the terminating NUL included. */
QVAPI int QVCALL qvOptVarStringLen(const QvOptVar* vars, int n, const char* separator) QVNOEXCEPT;

QV_END_DECLS

#endif
