/* The trading-system simulator: orders, fills, trades, statistics, reports. */
#ifndef QVLIB60_TRADESIM_H
#define QVLIB60_TRADESIM_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
