/* Trend and directional indicators. */
#ifndef QVLIB60_INDICATORS_TREND_H
#define QVLIB60_INDICATORS_TREND_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
