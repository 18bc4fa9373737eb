/* Bar compression: coarser bars out of finer ones, by calendar period, by time and rolling.
   Included by core.h, which defines the records. */
#ifndef QVLIB60_CORE_COMPRESS_H
#define QVLIB60_CORE_COMPRESS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
