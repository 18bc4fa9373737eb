/* Market data files: the front, which serves all formats, and the functions of each format. */
#ifndef QVLIB60_DATAFILES_H
#define QVLIB60_DATAFILES_H

#include "qvlib60/datafiles/computrac.h"
#include "qvlib60/datafiles/dowjones.h"
#include "qvlib60/datafiles/front.h"
#include "qvlib60/datafiles/reserved.h"
#include "qvlib60/datafiles/techtools.h"
#include "qvlib60/datafiles/telechart.h"
#include "qvlib60/datafiles/text.h"

#endif
