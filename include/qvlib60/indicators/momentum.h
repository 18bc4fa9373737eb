/* Momentum oscillators. */
#ifndef QVLIB60_INDICATORS_MOMENTUM_H
#define QVLIB60_INDICATORS_MOMENTUM_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Chande momentum oscillator: (rises - falls) / (rises + falls) * 100 over the last p moves from bar
   to bar, 0.0 where nothing moved, between -100 and 100 (Tushar Chande and Stanley Kroll, "The New
   Technical Trader", 1994). First valid f + p, f = the larger of start and the input's first valid. */
QVAPI int QVCALL qvCMO(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
