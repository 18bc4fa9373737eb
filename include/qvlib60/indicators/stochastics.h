/* Stochastic oscillators and their kin: closes within their range. */
#ifndef QVLIB60_INDICATORS_STOCHASTICS_H
#define QVLIB60_INDICATORS_STOCHASTICS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
