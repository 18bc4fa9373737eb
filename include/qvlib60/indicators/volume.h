/* Volume and money flow. */
#ifndef QVLIB60_INDICATORS_VOLUME_H
#define QVLIB60_INDICATORS_VOLUME_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
