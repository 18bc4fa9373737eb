/* Market breadth. */
#ifndef QVLIB60_INDICATORS_BREADTH_H
#define QVLIB60_INDICATORS_BREADTH_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
