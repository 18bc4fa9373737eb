/* Point and figure. */
#ifndef QVLIB60_PNF_H
#define QVLIB60_PNF_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
