/* The relative volatility index. */
#ifndef QVLIB60_INDICATORS_RVI_H
#define QVLIB60_INDICATORS_RVI_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
