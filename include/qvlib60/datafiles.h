/* Market data files: the front and the readers of each vendor's format. */
#ifndef QVLIB60_DATAFILES_H
#define QVLIB60_DATAFILES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
