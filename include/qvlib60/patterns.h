/* Formations, crossovers, the candle engine and the candlestick patterns. */
#ifndef QVLIB60_PATTERNS_H
#define QVLIB60_PATTERNS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
