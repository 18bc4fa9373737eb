/* Bar-shape and regression oscillators. */
#ifndef QVLIB60_INDICATORS_BARSHAPE_H
#define QVLIB60_INDICATORS_BARSHAPE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
