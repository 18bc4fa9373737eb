/* Dates and times: date numbers, calendar arithmetic, parsing, formatting, convenience wrappers. */
#ifndef QVLIB60_DATES_H
#define QVLIB60_DATES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QVAPI int QVCALL qvDayOfWeek(double date) QVNOEXCEPT;

QV_END_DECLS

#endif
