/* Indicators over series and bar sets, one header per family.

   The frame of every indicator: inputs first (bar sets, then series), then outputs, then
   parameters, last `start`, the first index that the caller wants computed (below 0 counts as 0).
   An output that is empty is allocated with the inputs' smallest capacity; one that owns a block is
   cleared to 0.0 over its whole capacity and reused. Its size becomes the shortest input's length.
   Values begin at the output's first valid index, which each function documents in terms of
   f = the larger of start and the input series' first valid indices (bar-set members use start as
   given); items below it are 0.0. Each function raises the process-wide maximum first valid index.

   Results: 0; -1 for missing data, an empty input, a null record, a period below 1 or an output
   that shares its block with an input; -3 when memory runs out. Functions that may run in place
   (output and input the same block) say so. */
#ifndef QVLIB60_INDICATORS_H
#define QVLIB60_INDICATORS_H

#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/bands.h"
#include "qvlib60/indicators/barshape.h"
#include "qvlib60/indicators/breadth.h"
#include "qvlib60/indicators/counting.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/range.h"
#include "qvlib60/indicators/rvi.h"
#include "qvlib60/indicators/sentiment.h"
#include "qvlib60/indicators/statistics.h"
#include "qvlib60/indicators/stochastics.h"
#include "qvlib60/indicators/transforms.h"
#include "qvlib60/indicators/trend.h"
#include "qvlib60/indicators/volume.h"

#endif
