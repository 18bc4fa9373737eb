/* The catalogue: one entry for every calculation that turns bar sets and series into output series. An
   entry tells a host, a tool or a manual what the calculation takes and gives, and the calculation can be
   called, asked for its first valid index and for the history that it needs through its entry.

   Entries and all texts and tables in them are constant and live as long as the library is loaded. No
   text pointer is null: what does not exist is "". An entry is known by its address: the functions below
   take pointers that qvCatalogueItem or qvCatalogueFind gave, and answer -1 to null and to any other.

   Numbers stand in one array of doubles, in the order of the entry's parameters, which is that of the
   function; a null array stands for the defaults. An integer parameter is truncated toward zero, saturates
   at the ends of an int, and not-a-number counts as 0. Nothing here allocates but the calculations. */
#ifndef QVLIB60_CATALOGUE_H
#define QVLIB60_CATALOGUE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- What an entry tells --------------------------------------------------------------------- */

/* Series of a bar set, as bits: QvCatalogueEntry.series, QvCatalogueInput.series. */
enum {
  QV_SERIES_DATE = 1,
  QV_SERIES_OPEN = 2,
  QV_SERIES_HIGH = 4,
  QV_SERIES_LOW = 8,
  QV_SERIES_CLOSE = 16,
  QV_SERIES_VOLUME = 32,
  QV_SERIES_OPEN_INTEREST = 64
};

/* QvCatalogueEntry.flags. */
enum {
  QV_CALC_IN_PLACE = 1,     /* the output may be the input's own block */
  QV_CALC_RECURSIVE = 2,    /* a value depends on all items before it: see qvCatalogueSettle */
  QV_CALC_WHOLE_SERIES = 4, /* some output looks at later bars (QvCatalogueOutput.repaints): what it
                               shows at a bar was not known at that bar. Not for a backtest. */
  QV_CALC_TWO_BARS = 8,     /* takes two bar sets */
  QV_CALC_SIGNALS = 16,     /* every output is a series of signals */
  QV_CALC_NO_STREAM = 32    /* every output looks at later bars: there are no updates bar by bar, and
                               qvStreamOpen answers -10 */
};

/* QvCatalogueParam.kind. */
enum {
  QV_PARAM_PERIOD = 0,  /* bars to look at; below 1 is refused with -1 */
  QV_PARAM_INTEGER = 1, /* another integer: a lag, a number of passes, a switch */
  QV_PARAM_REAL = 2,
  QV_PARAM_METHOD = 3, /* an average of qvMovingAverage, 0 .. 7; any other is refused with -1 */
  QV_PARAM_DATE = 4,   /* a date number; 0 is before all bars */
  QV_PARAM_CHOICE = 5  /* one of the names in `choices`, 0 .. choiceCount - 1 */
};

/* QvCatalogueOutput.place and .style: how to draw it. */
enum {
  QV_PLACE_PRICE = 0, /* over the prices, or over the series that it was computed from */
  QV_PLACE_PANEL = 1  /* in a panel of its own, which the other panel outputs of the entry share */
};
enum {
  QV_STYLE_LINE = 0,
  QV_STYLE_HISTOGRAM = 1, /* columns from 0.0 */
  QV_STYLE_DOTS = 2,
  QV_STYLE_BAND = 3,   /* one edge of a band; the next (previous) output of this style is the other */
  QV_STYLE_SIGNAL = 4, /* 0.0 where there is none; 1.0, and -1.0 for the contrary one: a mark at its bar */
  QV_STYLE_STATE = 5   /* 1.0, -1.0 or 0.0 at every bar: the side that holds there */
};

QV_PACK_POINTERS

typedef struct QvCatalogueParam {
  const char* name;           /* as in the function's declaration: "p", "method" */
  const char* const* choices; /* names of the values 0, 1 .. of the kinds METHOD and CHOICE; else null */
  double defaultValue;        /* what the field uses */
  double least;               /* the smallest and the largest value that make sense; the calculation is */
  double greatest;            /* safe with any other too */
  double optimiseStart;       /* from, to and step of a search; a step of 0.0 means that the parameter */
  double optimiseEnd;         /* is not searched over */
  double optimiseStep;
  int32_t kind;        /* QV_PARAM_... */
  int32_t isInteger;   /* 1 where the function takes an int (a period of qvExpMA, for one, is real) */
  int32_t choiceCount; /* names in `choices` */
  int32_t reserved;
} QvCatalogueParam;

typedef struct QvCatalogueInput {
  const char* name; /* as in the function's declaration: "in", "adv" */
  int32_t series;   /* the series of a bar set that one usually passes (QV_SERIES_CLOSE for most); 0 for
                       data that a bar set does not hold, as advancing issues */
  int32_t reserved;
} QvCatalogueInput;

typedef struct QvCatalogueOutput {
  const char* name; /* "upper", "signal"; "value" for the only one */
  double low;       /* range of the values, for the panel's scale; both 0.0 where it is open */
  double high;
  double zones[2];   /* levels at which people draw lines, 30 and 70 */
  int32_t zoneCount; /* how many of them there are: 0 .. 2 */
  int32_t place;     /* QV_PLACE_... */
  int32_t style;     /* QV_STYLE_... */
  int32_t repaints;  /* 1: looks at later bars */
} QvCatalogueOutput;

typedef struct QvCatalogueEntry {
  const char* name;      /* the function: "qvRSI" */
  const char* shortName; /* for formulas: "rsi"; lower case, unique */
  const char* title;     /* "Relative Strength Index" */
  const char* group;     /* "Momentum" */
  const char* summary;   /* one sentence */
  const char* source;    /* author, work, year; "" where none is known */
  const char* note;      /* why a chart that people know may show other values; "" where there is no reason */
  const QvCatalogueParam* params;
  const QvCatalogueInput* inputs;
  const QvCatalogueOutput* outputs;
  int32_t barsCount;   /* bar sets, 0 .. 2 */
  int32_t inputCount;  /* series, 0 .. 4 */
  int32_t outputCount; /* 1 .. 5 */
  int32_t paramCount;  /* 0 .. 5 */
  int32_t mainOutput;  /* index of the output that is meant when none is named */
  int32_t series;      /* QV_SERIES_... that are read of each bar set: a missing one is -1 */
  int32_t flags;       /* QV_CALC_... */
  int32_t reserved;
} QvCatalogueEntry;

#pragma pack(pop)

/* ---- Finding --------------------------------------------------------------------------------- */

/* The number of entries, and entry i in the order of their groups; null outside 0 .. size - 1. */
QVAPI int QVCALL qvCatalogueSize(void) QVNOEXCEPT;
QVAPI const QvCatalogueEntry* QVCALL qvCatalogueItem(int i) QVNOEXCEPT;

/* The entry of a name in any case: short names go first ("macd" is the one with free periods, qvMACDx),
   then functions with or without the prefix ("qvMACD"). Null where there is none. */
QVAPI const QvCatalogueEntry* QVCALL qvCatalogueFind(const char* name) QVNOEXCEPT;

/* The value of a choice by its name, in any case and with or without its blanks and the prefix of
   functions: 4 for "wilder", "InsideBar", "inside bar" and "qvInsideBar" are the same. -1 where the entry
   has no such parameter or the parameter no such name. */
QVAPI int QVCALL qvCatalogueChoice(const QvCatalogueEntry* entry, int param, const char* name) QVNOEXCEPT;

/* ---- Calling --------------------------------------------------------------------------------- */

/* Runs the calculation: bars points to barsCount bar sets, inputs to inputCount series, outputs to
   outputCount series; arrays that the entry does not take may be null. Gives the same as calling the
   function: the same items and first valid indices, -1 and -3 where it gives them. A function that takes
   an index to end at runs to the last bar.

   0, where functions of signals answer their count too; below 0 an error; above 0 (the functions
   that say so in their headers) the bars are too few for the periods, nothing was computed and the outputs
   are cleared: no item is a value then, whatever their first valid index. */
QVAPI int QVCALL qvCatalogueCall(const QvCatalogueEntry* entry, const QvBars* const* bars,
                                 const QvArray* const* inputs, QvArray* const* outputs, const double* params,
                                 int start) QVNOEXCEPT;

/* ---- How many bars --------------------------------------------------------------------------- */

/* The first valid index that the calculation sets for inputs that are valid from 0 and long enough: that
   of one output, and the latest of all outputs. -1 where the calculation sets none, where dates in the
   data decide (comparisons of two bar sets), and where it refuses the parameters or a choice has no such
   number. Neither reads nor raises the process-wide maximum. */
QVAPI int QVCALL qvCatalogueFirstValidOf(const QvCatalogueEntry* entry, int output, const double* params,
                                         int start) QVNOEXCEPT;
QVAPI int QVCALL qvCatalogueFirstValid(const QvCatalogueEntry* entry, const double* params,
                                       int start) QVNOEXCEPT;

/* How many bars after the first valid index the values have forgotten where the data began: from
   qvCatalogueFirstValid(entry, params, 0) + this many bars on, series that began earlier give the same
   values but for a relative tolerance. That sum is the history to load before the first bar of interest.

   0 for calculations over a window, which have forgotten as soon as they are valid (a few hold 0.0 at their
   first valid index, and a signal needs a bar before it: 1 or 2 there). For recursive ones the
   bars after which what stood before has no more weight than the tolerance, relative to the size of the
   output's values (of 0.001, a thousandth); out of the smoothing constants, so a market that leapt tenfold
   within these bars may need some more. -1 where the values never forget or the data decide (running
   totals, averages that adapt to the market, stops), and where the parameters are refused. A tolerance of 1
   or more is 0 bars; of 0 or less, or not a number, is never met by a recursive calculation: -1. */
QVAPI int QVCALL qvCatalogueSettle(const QvCatalogueEntry* entry, const double* params,
                                   double tolerance) QVNOEXCEPT;

/* ---- Version --------------------------------------------------------------------------------- */

/* The version of the library that is loaded: "0.1.0". */
QVAPI const char* QVCALL qvVersion(void) QVNOEXCEPT;

QV_END_DECLS

#endif
