/* Array utilities: scaling, shifting, division, interpolation, look-ups and per-bar price formulas.
   Included by core.h, which defines the records. */
#ifndef QVLIB60_CORE_ARRAYS_H
#define QVLIB60_CORE_ARRAYS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
