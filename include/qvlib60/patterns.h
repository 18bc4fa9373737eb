/* Formations, crossovers, the candle engine and the candlestick patterns. */
#ifndef QVLIB60_PATTERNS_H
#define QVLIB60_PATTERNS_H

#include "qvlib60/patterns/candle_patterns.h"
#include "qvlib60/patterns/candles.h"
#include "qvlib60/patterns/formations.h"

#endif
