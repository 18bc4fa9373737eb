/* Indicators over series and bar sets, one header per family.

   The frame of every indicator: inputs first (bar sets, then series), then outputs, then
   parameters, last `start`, the first index that the caller wants computed (below 0 counts as 0).

   Outputs. Every output is needed, each a record of its own, also where only one of several lines is of
   interest. One that is empty is allocated with the inputs' smallest capacity. One that owns a block keeps
   it: the block is cleared to 0.0 over its whole capacity and filled up to its room, and all outputs of the
   call end where the shortest does. So the size of an output is the shortest input's length or the room
   that it had, whichever is less: a record that was filled from a shorter series before cuts the result
   without an error. Read up to `size`, or free the record first (qvFreeArray) to get one of full length.

   Values begin at the output's first valid index, which each function documents in terms of
   f = the larger of start and the input series' first valid indices (bar-set members use start as
   given). Items below it hold 0.0 or a remnant of the work (a seed, a partial sum) and mean nothing. Each
   function raises the process-wide maximum first valid index.

   Inputs. A bar set needs its dates and the series that the function reads, each with a block of at least
   `barsize` items (`capacity`); see QvBars for a set over the caller's own memory. Leave the series' own
   first valid indices at 0: members that hand a series of the set on begin no earlier than it does.

   No value uses later bars than its own, unless a function says that it looks ahead: such lines are
   drawings, and a backtest that trades on them knows the future.

   Results: 0; -1 for missing data, an empty input, a null record, a period below 1 or an output
   that shares its block with an input (the dates of a bar set excepted); -3 when memory runs out.
   Functions that may run in place (output and input the same block) say so. */
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
