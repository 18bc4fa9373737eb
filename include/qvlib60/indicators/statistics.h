/* Statistics over a stretch of a series, and their moving forms. */
#ifndef QVLIB60_INDICATORS_STATISTICS_H
#define QVLIB60_INDICATORS_STATISTICS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
