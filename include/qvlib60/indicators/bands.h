/* Bands, envelopes and channels. */
#ifndef QVLIB60_INDICATORS_BANDS_H
#define QVLIB60_INDICATORS_BANDS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
