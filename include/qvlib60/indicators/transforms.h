/* Price transforms and comparisons of two securities. */
#ifndef QVLIB60_INDICATORS_TRANSFORMS_H
#define QVLIB60_INDICATORS_TRANSFORMS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
