/* Moving averages and smoothing sums. */
#ifndef QVLIB60_INDICATORS_AVERAGES_H
#define QVLIB60_INDICATORS_AVERAGES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
