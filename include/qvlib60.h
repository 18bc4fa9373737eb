/* QVLIB60, a technical-analysis programmer's library: the whole interface, for C99 and C++. */
#ifndef QVLIB60_H
#define QVLIB60_H

#include "qvlib60/catalogue.h"
#include "qvlib60/charting.h"
#include "qvlib60/codes.h"
#include "qvlib60/core.h"
#include "qvlib60/datafiles.h"
#include "qvlib60/dates.h"
#include "qvlib60/finance.h"
#include "qvlib60/formula.h"
#include "qvlib60/indicators.h"
#include "qvlib60/patterns.h"
#include "qvlib60/pnf.h"
#include "qvlib60/stream.h"
#include "qvlib60/tradesim.h"
#include "qvlib60/version.h"

#endif
