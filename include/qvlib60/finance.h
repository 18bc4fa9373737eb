/* Options, bonds and the time value of money. */
#ifndef QVLIB60_FINANCE_H
#define QVLIB60_FINANCE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_END_DECLS

#endif
