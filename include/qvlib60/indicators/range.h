/* Range, efficiency and volatility-system indicators. */
#ifndef QVLIB60_INDICATORS_RANGE_H
#define QVLIB60_INDICATORS_RANGE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
