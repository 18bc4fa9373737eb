/* Formulas: rules and values over a bar set, written as text: "rsi(14) < 30 and close > sma(200)". The same
   text means the same to a screen, a backtest and a chart. docs/formulas.md has the whole language.

   A formula is opened once, and evaluated over any number of bar sets. But for its parameters an opened
   formula never changes: several threads may evaluate it at once, so long as none sets a parameter
   meanwhile. What is opened must be closed.

   A value is known from the latest first valid index of its parts on; that becomes the output's, and items
   below it are 0.0. Rules are 1.0 where they hold and 0.0 where they don't; not-a-number compares
   false. */
#ifndef QVLIB60_FORMULA_H
#define QVLIB60_FORMULA_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Limits: longer and deeper texts are refused. Brackets, `not`, minus signs and calls count as levels. */
enum { QV_FORMULA_MAX_LENGTH = 65535, QV_FORMULA_MAX_DEPTH = 200, QV_FORMULA_MAX_PARAMETERS = 64 };

typedef struct QvFormula QvFormula;

/* How many bars a formula needs: indices counted from the first bar of the data. Weeks count as 5 bars,
   months as 23, quarters as 66 and years as 262, the most that daily bars of weekdays have. */
typedef struct QvFormulaNeeds {
  int32_t
      firstValid;   /* of the first value, if the bar set is valid from bar 0: firstValid + 1 bars give it */
  int32_t settled;  /* of the first value that does not depend on where the data began (within the
                       tolerance): the history to load before the first bar of interest. -1 where the
                       values never forget, as running totals */
  int32_t repaints; /* 1: a part looks at later bars, so what it shows at a bar was not known then. Not for
                       a backtest, which must refuse it */
  int32_t series;   /* the series of the bar set that are read: QV_SERIES_... of catalogue.h */
} QvFormulaNeeds;

/* Reads a formula. Null when it can't be used: `error` then says why, naming the place ("rsii: unknown, did
   you mean rsi? at 5": the fifth character), or has the text of -3 where memory ran out. `error` holds
   errorSize characters (200 are enough), is always ended, empty on success, and may be null. */
QVAPI QvFormula* QVCALL qvFormulaOpen(const char* text, char* error, int errorSize) QVNOEXCEPT;

/* Sets $name, in any case and with or without the "$". Every parameter needs a value, not-a-number is none.
   -1 for a name that does not stand in the formula. */
QVAPI int QVCALL qvFormulaParameter(QvFormula* f, const char* name, double value) QVNOEXCEPT;

/* The number of parameters, and the name of one without its "$", in the order of the text; null outside
   0 .. count - 1. */
QVAPI int QVCALL qvFormulaParameterCount(const QvFormula* f) QVNOEXCEPT;
QVAPI const char* QVCALL qvFormulaParameterName(const QvFormula* f, int i) QVNOEXCEPT;

/* The formula's value at every bar. `out` is treated as the outputs of calculations are: allocated when
   empty, or reused; it may not share a block of the bar set other than the dates. Where a period is longer
   than the data no value is known: first valid is at or past the end, and all items are 0.0.
   -1: null records, a series that the formula reads is missing, no bars, a parameter without a value or with
   one that its calculation refuses (a period of 0, negative bars back). -3: memory ran out. */
QVAPI int QVCALL qvFormulaEval(const QvFormula* f, const QvBars* bars, QvArray* out) QVNOEXCEPT;

/* How many bars it needs, with the parameters as they are set; `tolerance` as in qvCatalogueSettle (0.001: a
   thousandth). -1 as for qvFormulaEval. */
QVAPI int QVCALL qvFormulaNeeds(const QvFormula* f, double tolerance, QvFormulaNeeds* needs) QVNOEXCEPT;

/* Frees the formula; null is fine. */
QVAPI void QVCALL qvFormulaClose(QvFormula* f) QVNOEXCEPT;

QV_END_DECLS

#endif
